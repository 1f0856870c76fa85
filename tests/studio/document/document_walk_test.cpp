#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "production/time_line.h"
#include "studio/document/document.h"
#include "tests/studio/document/kept_in_step.h"
#include "timeline/parameter.h"

namespace vex::studio {
namespace {

std::string showText() {
  const image::Bytes bytes = show::writeProject(presentationScript());
  const std::string_view file(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  return writeProjectText(decodeProject(file, "show").project);
}

// In bars and seconds, with until, times of dots and comments, as a person writes.
const std::string handMade =
    "# a show\ntempo 128\ntotal 16:0\n\n"
    "part \"one\" {\n  at 1:0  until 7:0  # long\n"
    "  S.f(a = linear(0 -1, 0.3 2.5, 0.3 1, 2:0 0.25, 1 0), b = 3, c = \"text\",\n"
    "      d = sine(cycles 2.5, amplitude 3, offset -1, phase 30),\n"
    "      e = spline(0 0, 0.2 1, 0.5 -2, 7s 1, 1 0.5))\n}\n\n"
    "part two {\n  at 3.5  length 7  start 1.5  speed -0.75  track 3\n"
    "  S.g(a = linear(0 1), b = spline(0 1, 1 4), c = spline(0 1, 0.5 2, 1 -3) in -2 to 1,\n"
    "      d = sine(cycles -3, amplitude 0.5))\n}\n";

// All that a part shows at a demo time: its scene time, and each value as the player evaluates it.
std::vector<double> shownAt(const ProjectPart& part, double time) {
  std::vector<double> shown{part.start + (time - part.pos) * part.speed};
  for (const ProjectCall& call : part.calls) {
    for (const ProjectParameter& parameter : call.parameters) {
      if (parameter.type == PARAM_STRING) continue;
      Parameter played;
      fillPlayed(played, parameter);
      const auto progress = static_cast<float>((time - part.pos) / part.length);
      shown.push_back(static_cast<double>(*static_cast<const float*>(played.evaluate(progress))));
    }
  }
  return shown;
}

// Right at a step a value may be that of either side.
bool nearDot(const ProjectPart& part, double time) {
  for (const ProjectCall& call : part.calls) {
    for (const ProjectParameter& parameter : call.parameters) {
      for (std::size_t i = 1; i < parameter.dots.size(); ++i) {
        const ProjectDot &a = parameter.dots[i - 1], &b = parameter.dots[i];
        const bool steep = std::abs(b.y - a.y) > 50 * (b.x - a.x);
        const double slack = 1e-4 * part.length;
        if (steep && time > part.pos + a.x * part.length - slack &&
            time < part.pos + b.x * part.length + slack) {
          return true;
        }
      }
    }
  }
  return false;
}

// Expects that between the times one part shows what the other does.
void expectShownAlike(const ProjectPart& before, const ProjectPart& after, double from, double to) {
  constexpr int moments = 200;
  for (int i = 0; i <= moments; ++i) {
    const double time = from + (to - from) * i / moments;
    if (nearDot(before, time)) continue;
    const std::vector<double> wanted = shownAt(before, time), shown = shownAt(after, time);
    ASSERT_EQ(wanted.size(), shown.size());
    for (std::size_t k = 0; k < wanted.size(); ++k) {
      ASSERT_NEAR(shown[k], wanted[k], 1e-5 * std::max(1.0, std::abs(wanted[k])))
          << after.name << " value " << k << " at " << time << " of " << from << " to " << to;
    }
  }
}

TEST(DocumentCurves, ShowTheSameInBothHalves) {
  for (const double share : {0.5, 0.123456789, 0.29, 0.31, 0.875}) {
    for (int part = 0; part < 2; ++part) {
      Document document(handMade);
      const ProjectPart before = document.project().parts[static_cast<std::size_t>(part)];
      const double cut = before.pos + share * before.length;
      const Edited edited = document.splitPart(part, cut);
      ASSERT_TRUE(edited) << *edited.refusal;
      expectInStep(document);
      const auto& parts = document.project().parts;
      const auto second = static_cast<std::size_t>(edited.index);
      ASSERT_EQ(parts.size(), 3u);
      const std::size_t first = parts[0].name == before.name ? 0 : 1;
      EXPECT_EQ(parts[first].name, before.name);
      EXPECT_EQ(parts[second].name, before.name + "_2");
      EXPECT_NEAR(parts[first].pos + parts[first].length, parts[second].pos, 1e-7);
      EXPECT_NEAR(parts[second].pos, cut, 3e-4);
      EXPECT_NEAR(parts[second].pos + parts[second].length, before.pos + before.length, 1e-7);
      expectShownAlike(before, parts[first], before.pos, parts[second].pos);
      expectShownAlike(before, parts[second], parts[second].pos, before.pos + before.length);
    }
  }
}

TEST(DocumentCurves, ShowTheSameInWhatATrimLeaves) {
  for (int part = 0; part < 2; ++part) {
    for (const double share : {-0.5, 0.2, 0.61803}) {
      Document document(handMade);
      const ProjectPart before = document.project().parts[static_cast<std::size_t>(part)];
      const double end = before.pos + before.length;
      const Edited start = document.trimStart(part, before.pos + share * before.length / 2);
      ASSERT_TRUE(start);
      ASSERT_TRUE(document.trimEnd(start.index, end - share * before.length / 3));
      expectInStep(document);
      const ProjectPart& after = document.project().parts[static_cast<std::size_t>(start.index)];
      EXPECT_NEAR(after.pos, before.pos + share * before.length / 2, 3e-4);
      expectShownAlike(before, after, std::max(before.pos, after.pos),
                       std::min(end, after.pos + after.length));
      // Farther than before it shows as much again.
      ASSERT_TRUE(document.undo() && document.undo());
      EXPECT_EQ(document.text(), handMade);
    }
  }
}

TEST(DocumentCurves, KeepTheirDotsInALongerPart) {
  Document document(handMade);
  const std::vector<double> before = shownAt(document.project().parts[0], 1.875 + 0.4 * 11.25);
  ASSERT_TRUE(document.setPartLength(0, 22.5));
  expectInStep(document);
  const std::vector<double> after = shownAt(document.project().parts[0], 1.875 + 0.4 * 22.5);
  for (std::size_t i = 1; i < before.size(); ++i) EXPECT_NEAR(after[i], before[i], 1e-3) << i;
}

class Walk {
 public:
  explicit Walk(Document& theDocument) : document(theDocument) {}

  // One edit of whatever kind; the one that fits nothing is refused.
  Edited step() {
    const int count = static_cast<int>(document.project().parts.size());
    const int part = whole(0, count - 1);
    const ProjectPart& record = document.project().parts[static_cast<std::size_t>(part)];
    const int calls = static_cast<int>(record.calls.size());
    const int call = whole(0, std::max(0, calls - 1));
    const int parameters =
        calls == 0 ? 0 : static_cast<int>(record.calls[static_cast<std::size_t>(call)].parameters.size());
    const ParameterAt at{part, call, whole(0, std::max(0, parameters - 1))};
    switch (whole(0, 25)) {
      case 0:
      case 1:
        return document.movePart(part, record.pos + real(-3, 3), record.track);
      case 2:
        return document.movePart(part, beat(record.pos), whole(-128, 127));
      case 3:
        return document.trimStart(part, record.pos + real(-0.5, 0.9) * record.length);
      case 4:
        return document.trimEnd(part, record.pos + real(0.1, 1.5) * record.length);
      case 5:
        return document.setPartStart(part, real(-10, 10));
      case 6:
        return document.setPartLength(part, record.length * real(0.5, 1.5));
      case 7:
        return document.setPartSpeed(part, real(-2, 2));
      case 8:
        return document.renamePart(part, "name " + std::to_string(whole(0, 50)));
      case 9:
        return document.doublePart(part, record.pos + real(0, 20), record.track);
      case 10:
        return document.splitPart(part, record.pos + real(-0.1, 1.1) * record.length);
      case 11:
        return document.removePart(part);
      case 12:
        return document.createPart(real(0, 240), real(0.1, 9), whole(0, 9), "SceneHelper", "drawBitmap");
      case 13:
        return document.addCall(part, "SceneHelper", "fadeScreen");
      case 14:
        return calls > 1 ? document.removeCall({part, call}) : Edited{};
      case 15:
        return document.moveCall({part, call}, whole(0, std::max(0, calls - 1)));
      case 16:
        return document.setConstant(at, real(-2, 2));
      case 17:
        return document.setString(at, "data\\text" + std::to_string(whole(0, 99)));
      case 18:
        return document.setSine(at, static_cast<SineField>(whole(0, 3)), real(-5, 5));
      case 19:
        return document.setKind(at, static_cast<ParameterType>(whole(0, 3)), real(0, 1));
      case 20:
      case 21:
        return document.setDot(at, whole(0, 3), real(0, 1), real(-1, 2));
      case 22:
        return document.addDot(at, real(0, 1), real(-1, 2));
      case 23:
        return document.removeDot(at, whole(0, 3));
      case 24:
        return document.addTick(real(0, 240), whole(0, 1) == 0 ? "" : "a # mark");
      default:
        return whole(0, 1) == 0 ? document.moveTick(whole(0, 20), real(0, 240))
                                : document.removeTick(whole(0, 20));
    }
  }

 private:
  Document& document;
  std::mt19937 random{20260714};

  int whole(int least, int most) { return std::uniform_int_distribution(least, most)(random); }
  double real(double least, double most) { return std::uniform_real_distribution(least, most)(random); }
  double beat(double time) { return std::round(time * 128 / 60 + real(-8, 8)) * 60 / 128; }
};

// Every text on the way, once there and once back.
void walk(const std::string& text, int edits, int looks) {
  Document document(text);
  Walk random(document);
  std::vector<std::size_t> hashes;  // of the texts behind each step
  const auto hash = [&] { return std::hash<std::string>()(document.text()); };
  hashes.push_back(hash());
  int made = 0;
  for (int i = 0; i < edits; ++i) {
    const std::uint64_t before = document.revision();
    const Edited edited = random.step();
    ASSERT_TRUE(document.problems().empty()) << "edit " << i;
    if (hash() != hashes.back()) {
      ASSERT_TRUE(edited) << *edited.refusal;
      ASSERT_NE(document.revision(), before);
      hashes.push_back(hash());
      ++made;
    }
    ASSERT_EQ(document.saved(), document.text() == text);
    if (i % looks == 0) expectInStep(document);
    if (testing::Test::HasFailure()) FAIL() << "edit " << i;
  }
  EXPECT_GT(made, edits / 2);
  expectInStep(document);
  for (int i = made; i > 0; --i) {
    ASSERT_TRUE(document.undo());
    ASSERT_EQ(hash(), hashes[static_cast<std::size_t>(i - 1)]) << "step " << i;
  }
  EXPECT_FALSE(document.undo());
  EXPECT_EQ(document.text(), text);
  expectInStep(document);
  for (int i = 1; i <= made; ++i) {
    ASSERT_TRUE(document.redo());
    ASSERT_EQ(hash(), hashes[static_cast<std::size_t>(i)]) << "step " << i;
  }
  expectInStep(document);
}

#ifdef __SANITIZE_ADDRESS__
constexpr int editsOfTheShow = 300;  // each is some ten times slower
#else
constexpr int editsOfTheShow = 2000;
#endif

TEST(DocumentWalk, OfTheShowKeepsItReadable) {
  walk(showText(), editsOfTheShow, 100);
}

TEST(DocumentWalk, OfAHandMadeTextKeepsItReadable) {
  walk(handMade, 600, 1);
}

}  // namespace
}  // namespace vex::studio
