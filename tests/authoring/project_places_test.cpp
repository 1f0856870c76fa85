#include "authoring/project_places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "authoring/project_text.h"

namespace vex {
namespace {

const std::string shownText =
    "# a show\n"
    "tempo 120 beats 3 from 1s\n"
    "total 8:0 start 4.5s\n"
    "music \"data\\vex.ogg\"  # it leads\n"
    "ticks 1 0:2  # two\n"
    "  9s\n"
    "range y 0 to 1\n"
    "ticks 12\n"
    "part \"night sky\" {\n"
    "  at 1:0  until 7:0  # long\n"
    "  track 10 start 0.5 editorNumber 3\n"
    "  S.f(texture = \"a%22b\",\n"
    "    alpha = linear(0 1, 1:0 0.5,  # falls\n"
    "                   1 -inf) in -1 to 2 also 3 also sine(phase 2),\n"
    "    y = sine(phase 90, cycles +2.5))  \"odd scene\".g()\n"
    "}\n"
    "tempo 60\n"
    "range \"be ta\" 0 to 2\n"
    "part p { at 0x4008000000000000 length 2s speed -1 }  # end\n";

std::string at(const std::string& text, TextSpan span) {
  return text.substr(span.begin, span.end - span.begin);
}

TEST(ProjectPlaces, AreThoseOfTheValues) {
  for (const std::string before : {"", "\xef\xbb\xbf"}) {
    const std::string text = before + shownText;
    const ReadProjectText read = readProjectText(text);
    ASSERT_TRUE(read.problems.empty()) << read.problems[0].text;
    const ProjectPlaces& places = read.places;
    ASSERT_EQ(places.ticks.size(), 4u);
    ASSERT_EQ(places.parts.size(), 2u);
    const PartPlace &sky = places.parts[0], &last = places.parts[1];
    ASSERT_EQ(sky.calls.size(), 2u);
    const CallPlace& call = sky.calls[0];
    ASSERT_EQ(call.parameters.size(), 3u);
    const ParameterPlace &texture = call.parameters[0], &alpha = call.parameters[1], &y = call.parameters[2];
    ASSERT_EQ(alpha.dots.size(), 3u);
    ASSERT_EQ(alpha.surplus.size(), 2u);
    const std::pair<TextSpan, std::string> expected[]{
        {places.total, "8:0"},
        {places.start, "4.5s"},
        {places.music, "\"data\\vex.ogg\""},
        {places.ticks[0], "1"},
        {places.ticks[1], "0:2"},
        {places.ticks[2], "9s"},
        {places.ticks[3], "12"},
        {sky.name, "\"night sky\""},
        {sky.at, "1:0"},
        {sky.until, "7:0"},
        {sky.length, ""},
        {sky.track, "10"},
        {sky.start, "0.5"},
        {sky.speed, ""},
        {call.scene, "S"},
        {call.function, "f"},
        {texture.name, "texture"},
        {texture.value, "\"a%22b\""},
        {texture.whole, "texture = \"a%22b\""},
        {texture.bounds, ""},
        {alpha.value, "linear(0 1, 1:0 0.5,  # falls\n                   1 -inf)"},
        {alpha.dots[0].x, "0"},
        {alpha.dots[1].x, "1:0"},
        {alpha.dots[1].y, "0.5"},
        {alpha.dots[2].y, "-inf"},
        {alpha.bounds, "in -1 to 2"},
        {alpha.surplus[0], "also 3"},
        {alpha.surplus[1], "also sine(phase 2)"},
        {alpha.sine[3], ""},
        {y.value, "sine(phase 90, cycles +2.5)"},
        {y.sine[0], "+2.5"},
        {y.sine[1], ""},
        {y.sine[3], "90"},
        {sky.calls[1].whole, "\"odd scene\".g()"},
        {sky.calls[1].scene, "\"odd scene\""},
        {last.whole, "part p { at 0x4008000000000000 length 2s speed -1 }"},
        {last.name, "p"},
        {last.at, "0x4008000000000000"},
        {last.length, "2s"},
        {last.speed, "-1"},
    };
    for (std::size_t i = 0; i < std::size(expected); ++i) {
      EXPECT_EQ(at(text, expected[i].first), expected[i].second) << "row " << i;
      EXPECT_EQ(expected[i].first.given(), !expected[i].second.empty()) << "row " << i;
    }
    EXPECT_TRUE(at(text, {0, call.whole.end}).ends_with("+2.5))"));
    EXPECT_TRUE(at(text, {0, alpha.whole.end}).ends_with("also sine(phase 2)"));
    EXPECT_TRUE(at(text, {0, sky.keysEnd}).ends_with("editorNumber 3"));
    EXPECT_TRUE(at(text, {0, places.headEnd}).ends_with("ticks 12"));
    EXPECT_EQ(places.ticks[0].statement, places.ticks[2].statement);
    EXPECT_EQ(at(text, {places.ticks[3].statement, places.ticks[3].end}), "ticks 12");
  }
}

TEST(ProjectPlaces, KnowWhatHoldsThere) {
  const ProjectPlaces places = readProjectText("ticks 2\n" + shownText).places;
  EXPECT_FALSE(places.ticks[0].tempo);
  EXPECT_EQ(places.total.tempo.value().beatsPerBar, 3);
  EXPECT_EQ(places.tempo.value().beatsPerMinute, 120);
  EXPECT_EQ(places.parts[0].tempo.value().beatsPerMinute, 120);
  EXPECT_EQ(places.parts[1].tempo.value().beatsPerMinute, 60);
  EXPECT_EQ(places.parts[0].rangesAbove, 1u);
  EXPECT_EQ(places.parts[1].rangesAbove, 2u);
  ASSERT_EQ(places.ranges.size(), 2u);
  EXPECT_EQ(places.ranges[1].parameter, "be ta");
}

TEST(ProjectPlaces, OfATextWithoutHeadBeginBehindTheMark) {
  EXPECT_EQ(readProjectText("\xef\xbb\xbfpart p { at 0 length 1 } total 1").places.headEnd, 3u);
  EXPECT_EQ(readProjectText("# c\npart p { at 0 length 1 } total 1").places.headEnd, 0u);
}

Project ofParts(std::vector<ProjectPart> parts) {
  Project project;
  project.parts = std::move(parts);
  return project;
}

TEST(ProjectParts, ReadAloneAreTheSame) {
  const ReadProjectText read = readProjectText(shownText);
  for (std::size_t i = 0; i < read.places.parts.size(); ++i) {
    const ProjectPart& part = read.project.parts[i];
    const PartPlace& place = read.places.parts[i];
    const auto alone = readProjectParts(shownText, place.whole, part.line, read.places, i);
    ASSERT_TRUE(alone) << i;
    ASSERT_EQ(alone->parts.size(), 1u);
    EXPECT_EQ(encodeProject(ofParts(alone->parts)), encodeProject(ofParts({part})));
    EXPECT_EQ(alone->parts[0].line, part.line);
    EXPECT_EQ(alone->places[0].whole.end, place.whole.end);
    EXPECT_EQ(alone->places[0].keysEnd, place.keysEnd);
    EXPECT_EQ(alone->places[0].rangesAbove, place.rangesAbove);
    if (!part.calls.empty()) {
      EXPECT_EQ(alone->parts[0].calls[0].parameters[2].line, part.calls[0].parameters[2].line);
    }
  }
}

TEST(ProjectParts, AreNoneWhereAnythingElseStands) {
  const ReadProjectText read = readProjectText(shownText);
  const std::size_t begin = read.places.parts[0].whole.begin;
  const std::size_t end = read.places.parts[0].whole.end;
  const TextSpan none[]{{begin, end - 1}, {begin, shownText.size()}, {begin + 1, end}, {begin, end + 7}};
  for (const TextSpan piece : none) {
    EXPECT_FALSE(readProjectParts(shownText, piece, 9, read.places, 0)) << piece.begin << " " << piece.end;
  }
}

}  // namespace
}  // namespace vex
