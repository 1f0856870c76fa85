#include "tests/studio/document/kept_in_step.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace vex::studio {

namespace {

std::ostream& operator<<(std::ostream& out, TextSpan span) {
  return out << span.begin << '-' << span.end << ' ';
}

std::string placesText(const ProjectPlaces& places) {
  std::ostringstream out;
  out << places.total << places.start << places.music << places.headEnd << '\n';
  for (const TickPlace& tick : places.ticks) out << tick << tick.statement << ' ';
  for (const PartPlace& part : places.parts) {
    out << "\npart " << part.whole << part.name << part.at << part.start << part.length << part.until
        << part.speed << part.track << part.keysEnd << ' ' << part.rangesAbove << ' '
        << (part.tempo ? part.tempo->beatsPerMinute : 0);
    for (const CallPlace& call : part.calls) {
      out << "\ncall " << call.whole << call.scene << call.function;
      for (const ParameterPlace& parameter : call.parameters) {
        out << "\n" << parameter.whole << parameter.name << parameter.value << parameter.bounds;
        for (const TextSpan number : parameter.sine) out << number;
        for (const DotPlace& dot : parameter.dots) out << dot.x << dot.y;
        for (const TextSpan more : parameter.surplus) out << more;
      }
    }
  }
  return out.str();
}

std::string linesText(const Project& project) {
  std::ostringstream out;
  for (const ProjectPart& part : project.parts) {
    out << part.line << ':';
    for (const ProjectCall& call : part.calls) {
      out << ' ' << call.line;
      for (const ProjectParameter& parameter : call.parameters) out << ',' << parameter.line;
    }
    out << '\n';
  }
  return out.str();
}

}  // namespace

void expectInStep(const Document& document) {
  const ReadProjectText read = readProjectText(document.text());
  ASSERT_TRUE(read.problems.empty()) << read.problems[0].line << ": " << read.problems[0].text << '\n'
                                     << document.text().substr(0, 3000);
  EXPECT_TRUE(document.problems().empty());
  EXPECT_TRUE(encodeProject(document.project()) == encodeProject(read.project));
  EXPECT_EQ(linesText(document.project()), linesText(read.project));
  EXPECT_EQ(placesText(document.places()), placesText(read.places));
}

}  // namespace vex::studio
