#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "studio/document/document.h"
#include "tests/studio/document/kept_in_step.h"

namespace vex::studio {
namespace {

struct EditRow {
  std::string what;
  std::string text;
  std::function<Edited(Document&)> edit;
  std::string after;
  int index = 0;
};

// Bytes as they are left, a record that agrees, and the way back and there again.
void checkEdits(const std::vector<EditRow>& rows) {
  for (const EditRow& row : rows) {
    SCOPED_TRACE(row.what);
    Document document(row.text);
    ASSERT_TRUE(document.problems().empty()) << document.problems()[0].text;
    const Edited edited = row.edit(document);
    EXPECT_EQ(edited.refusal.value_or(""), "");
    EXPECT_EQ(document.text(), row.after);
    EXPECT_EQ(edited.index, row.index);
    expectInStep(document);
    EXPECT_TRUE(document.undo());
    EXPECT_EQ(document.text(), row.text);
    EXPECT_TRUE(document.saved());
    expectInStep(document);
    EXPECT_TRUE(document.redo());
    EXPECT_EQ(document.text(), row.after);
    expectInStep(document);
  }
}

const std::string head = "tempo 120\ntotal 60  # the end\n";

std::string inPart(const std::string& call) {
  return head + "part p { at 2 length 4\n  S.f(" + call + ") }\n";
}

const ParameterAt first{0, 0, 0};

TEST(DocumentEdits, OfDots) {
  const auto dot = [](int i, double x, double y) {
    return [=](Document& d) { return d.setDot(first, i, x, y); };
  };
  checkEdits({
      {"both numbers in their decimals", inPart("a = linear(0 1, 0.50 0.5, 1 0)"), dot(1, 0.25, 0.75),
       inPart("a = linear(0 1, 0.25 0.75, 1 0)"), 1},
      {"y alone", inPart("a = linear(0 1,   0.50  0.5 , 1 0) in 0 to 1"), dot(1, 0.5, 0.75),
       inPart("a = linear(0 1,   0.50  0.75 , 1 0) in 0 to 1"), 1},
      {"x alone", inPart("a = spline(0 1, 0.50 0x3fe0000000000000, 1 0)"), dot(1, 0.1, 0.5),
       inPart("a = spline(0 1, 0.10 0x3fe0000000000000, 1 0)"), 1},
      {"hexadecimal becomes plain", inPart("a = linear(0 1, 0.5 0x3fe0000000000000, 1 0)"), dot(1, 0.5, 0.25),
       inPart("a = linear(0 1, 0.5 0.25, 1 0)"), 1},
      {"many digits become few", inPart("a = linear(0 1, 0.3333333333333333 0, 1 0)"), dot(1, 0.4, 1.0 / 3),
       inPart("a = linear(0 1, 0.4 0.3333, 1 0)"), 1},
      {"seconds", inPart("a = linear(0 1, 1.5s 0.5, 1 0)"), dot(1, 0.25, 0.5),
       inPart("a = linear(0 1, 1.0s 0.5, 1 0)"), 1},
      {"bars", inPart("a = linear(0 1, 0:1 0.5,  # half\n 1 0)"), dot(1, 0.75, 0.5),
       inPart("a = linear(0 1, 1:2 0.5,  # half\n 1 0)"), 1},
      {"held by its neighbours", inPart("a = linear(0 1, 0.5 0, 0.61234 0, 1 0)"), dot(1, 0.9, 0),
       inPart("a = linear(0 1, 0.6123 0, 0.61234 0, 1 0)"), 1},
      {"with more digits where fewer would pass it", inPart("a = linear(0 1, 0.61234 0, 0.7 0, 1 0)"),
       dot(2, 0.5, 0), inPart("a = linear(0 1, 0.61234 0, 0.61234 0, 1 0)"), 2},
      {"held apart in a spline", inPart("a = spline(0 1, 0.5 0, 0.6 0, 1 0)"), dot(1, 0.9, 0),
       inPart("a = spline(0 1, 0.5995 0, 0.6 0, 1 0)"), 1},
      {"held in the part", inPart("a = linear(0.5 1)"), dot(0, -3, 2), inPart("a = linear(0.0 2)"), 0},
      {"added between", inPart("a = linear(0 1,\n      1 0)"),
       [](Document& d) { return d.addDot(first, 0.25, 0.125); },
       inPart("a = linear(0 1,\n      0.25 0.125, 1 0)"), 1},
      {"added behind, as a time", inPart("a = linear(0 1, 0:2 0)"),
       [](Document& d) { return d.addDot(first, 0.75, 1); }, inPart("a = linear(0 1, 0:2 0, 1:2 1)"), 2},
      {"added to none", inPart("a = spline()"), [](Document& d) { return d.addDot(first, 0.75, 1); },
       inPart("a = spline(0.75 1)"), 0},
      {"the first removed", inPart("a = linear(0 1, 0.5 2, 1 0)"),
       [](Document& d) { return d.removeDot(first, 0); }, inPart("a = linear(0.5 2, 1 0)"), 0},
      {"the last removed", inPart("a = linear(0 1, 0.5 2, 1 0)"),
       [](Document& d) { return d.removeDot(first, 2); }, inPart("a = linear(0 1, 0.5 2)"), 1},
      {"comments stay", inPart("a = linear(0 1,  # up, then\n 0.5 2,  # down\n 1 0)"),
       [](Document& d) { return d.removeDot(first, 1); },
       inPart("a = linear(0 1,  # up, then\n   # down\n 1 0)"), 1},
  });
}

TEST(DocumentEdits, OfOtherValues) {
  const auto kind = [](ParameterType type, double progress) {
    return [=](Document& d) { return d.setKind(first, type, progress); };
  };
  checkEdits({
      {"a constant", inPart("a = 0.50 in 0 to 1, b = 2"), [](Document& d) { return d.setConstant(first, 1); },
       inPart("a = 1.00 in 0 to 1, b = 2")},
      {"a text", inPart("a = \"x\""), [](Document& d) { return d.setString(first, "data\\\"1\""); },
       inPart("a = \"data\\%221%22\"")},
      {"a sine's number", inPart("a = sine(cycles 2, amplitude 0.5)"),
       [](Document& d) { return d.setSine(first, SineField::cycles, 2.5); },
       inPart("a = sine(cycles 2.5, amplitude 0.5)")},
      {"a sine's missing number", inPart("a = sine(cycles 2  # twice\n)"),
       [](Document& d) { return d.setSine(first, SineField::phase, 90); },
       inPart("a = sine(cycles 2  # twice\n, phase 90)"), 3},
      {"an empty sine's number", inPart("a = sine()"),
       [](Document& d) { return d.setSine(first, SineField::offset, -1); }, inPart("a = sine(offset -1)"), 2},
      {"constant to line", inPart("a = 0x3fe0000000000000 in 0 to 1"), kind(PARAM_LINEAR, 0),
       inPart("a = linear(0 0x3fe0000000000000, 1 0x3fe0000000000000) in 0 to 1")},
      {"line to spline", inPart("a = linear (0 1, 0:1 2,# c\n 1 0)"), kind(PARAM_SPLINE, 0),
       inPart("a = spline (0 1, 0:1 2,# c\n 1 0)")},
      {"spline to line", inPart("a = spline(0 1, 1 0)"), kind(PARAM_LINEAR, 0),
       inPart("a = linear(0 1, 1 0)")},
      {"line to constant", inPart("a = linear(0 1, 1 0)"), kind(PARAM_CONST, 0.25), inPart("a = 0.75")},
      {"line to sine", inPart("a = linear(0 1, 0.5 -2, 1 0)"), kind(PARAM_SINE, 0),
       inPart("a = sine(cycles 1, amplitude 1.5, offset -0.5)")},
      {"sine to line", inPart("a = sine(cycles 1, amplitude 2, phase 90)"), kind(PARAM_LINEAR, 0),
       inPart("a = linear(0 2, 0.125 1.4142, 0.25 0, 0.375 -1.4142, 0.5 -2, 0.625 -1.4142, 0.75 0, "
              "0.875 1.4142, 1 2)")},
      {"what was kept beside gives way", inPart("a = 1 in 0 to 2 also dots(0 1, 1 0) also \"t\""),
       kind(PARAM_SPLINE, 0), inPart("a = spline(0 1, 1 1) in 0 to 2 also \"t\"")},
  });
}

TEST(DocumentEdits, OfPartsInTheirPlace) {
  const auto move = [](int part, double pos, int track) {
    return [=](Document& d) { return d.movePart(part, pos, track); };
  };
  checkEdits({
      {"seconds", head + "part p { at 2.00s  length 4 }\n", move(0, 3.5, 0),
       head + "part p { at 3.50s  length 4 }\n"},
      {"bars stay clean", head + "part p { at 1:0  until 2:2 }\n", move(0, 24.9999999999, 0),
       head + "part p { at 12:2  until 14:0 }\n"},
      {"the end goes along", head + "part p { until 4.5 at 1:0 }\n", move(0, 2.25, 0),
       head + "part p { until 4.75 at 1:0.5 }\n"},
      {"a track", head + "part p { at 1  length 2  track 3 }\n", move(0, 1, -4),
       head + "part p { at 1  length 2  track -4 }\n"},
      {"a track that was not there", head + "part p {\n  at 1  length 2  # c\n  S.f()\n}\n", move(0, 1, 7),
       head + "part p {\n  at 1  length 2  track 7  # c\n  S.f()\n}\n"},
      {"a track alone, out of order", head + "part p { at 5 length 1 }\npart q { at 1 length 1 }\n",
       move(1, 1, 7), head + "part p { at 5 length 1 }\npart q { at 1 length 1 track 7 }\n", 1},
      {"a key in a line", head + "part p {\n  at 1\n  length 2\n}\n", move(0, 1, 7),
       head + "part p {\n  at 1\n  length 2\n  track 7\n}\n"},
      {"scene time", head + "part p { at 1 length 2 }\n", [](Document& d) { return d.setPartStart(0, 1.5); },
       head + "part p { at 1 length 2 start 1.5 }\n"},
      {"scene time in bars", head + "part p { at 1 length 2 start 1:0 }\n",
       [](Document& d) { return d.setPartStart(0, 1.5); }, head + "part p { at 1 length 2 start 0:3 }\n"},
      {"speed", head + "part p { at 1 length 2 speed 1.0 }\n",
       [](Document& d) { return d.setPartSpeed(0, 2); }, head + "part p { at 1 length 2 speed 2.0 }\n"},
      {"length", head + "part p { at 1 length 4 S.f(a = linear(0 0, 0.5 1, 2s 0), b = sine(cycles 2)) }\n",
       [](Document& d) { return d.setPartLength(0, 8); },
       head + "part p { at 1 length 8 S.f(a = linear(0 0, 0.5 1, 4s 0), b = sine(cycles 2)) }\n"},
      {"length as until", head + "part p { at 0:2 until 1:0 }\n",
       [](Document& d) { return d.setPartLength(0, 3); }, head + "part p { at 0:2 until 2:0 }\n"},
      {"end as length", head + "part p { at 1 length 4 }\n", [](Document& d) { return d.trimEnd(0, 3.5); },
       head + "part p { at 1 length 2.5 }\n"},
      {"end as until", head + "part p { at 1 until 4:0 }\n", [](Document& d) { return d.trimEnd(0, 6); },
       head + "part p { at 1 until 3:0 }\n"},
      {"beginning", head + "part p { at 1 length 4 speed 2 }\n",
       [](Document& d) { return d.trimStart(0, 2.5); },
       head + "part p { at 2.5 length 2.5 speed 2 start 3 }\n"},
      {"beginning before until", head + "part p { at 0:2 until 4:0 start 5 }\n",
       [](Document& d) { return d.trimStart(0, 2); }, head + "part p { at 1:0 until 4:0 start 6 }\n"},
      {"a bare name", head + "part p { at 1 length 4 }\n", [](Document& d) { return d.renamePart(0, "q"); },
       head + "part q { at 1 length 4 }\n"},
      {"a bare name that cannot be one", head + "part p { at 1 length 4 }\n",
       [](Document& d) { return d.renamePart(0, "q 1"); }, head + "part \"q 1\" { at 1 length 4 }\n"},
      {"a name in quotes", head + "part \"p\" { at 1 length 4 }\n",
       [](Document& d) { return d.renamePart(0, "q%"); }, head + "part \"q%25\" { at 1 length 4 }\n"},
  });
}

TEST(DocumentEdits, OfTrimsKeepTheCurvesInDemoTime) {
  const std::string curves = "a = linear(0 0, 0.5 1, 1:0 0, 1 2), b = sine(cycles 2, phase 90)";
  checkEdits({
      {"end", inPart(curves), [](Document& d) { return d.trimEnd(0, 4); },
       head + "part p { at 2 length 2\n"
              "  S.f(a = linear(0 0, 1.0 1, 1:0 0, 2 2), b = sine(cycles 1, phase 90)) }\n"},
      {"end farther", inPart(curves), [](Document& d) { return d.trimEnd(0, 10); },
       head + "part p { at 2 length 8\n"
              "  S.f(a = linear(0 0, 0.25 1, 1:0 0, 0.5 2), b = sine(cycles 4, phase 90)) }\n"},
      {"beginning", inPart(curves), [](Document& d) { return d.trimStart(0, 3); },
       head + "part p { at 3 length 3 start 1\n"
              "  S.f(a = linear(-0.33333333 0, 0.33333333 1, 0:2 0, 1 2), "
              "b = sine(cycles 1.5, phase 270)) }\n"},
      {"a sine without phase", inPart("a = sine(cycles 1)"), [](Document& d) { return d.trimStart(0, 1); },
       head + "part p { at 1 length 5 start -1\n  S.f(a = sine(cycles 1.25, phase 270)) }\n"},
  });
}

const std::string three =
    head +
    "\n# section\n\n# first\npart a { at 1  length 1 }\n\npart b { at 2  length 1 }  # second\n"
    "\n# third,\n# long\npart c {\n  at 3  length 1\n}\ntrailing \"x\"\n";

TEST(DocumentEdits, KeepPartsInOrder) {
  const auto move = [](int part, double pos) {
    return [=](Document& d) { return d.movePart(part, pos, 0); };
  };
  const std::string crlf = [] {
    std::string text;
    for (const char c : three) text += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return text;
  }();
  const auto withReturns = [](const std::string& text) {
    std::string more;
    for (const char c : text) more += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return more;
  };
  const std::string cFirst =
      head +
      "\n# section\n\n# third,\n# long\npart c {\n  at 0  length 1\n}\n\n# first\npart a { at 1  length 1 }\n"
      "\npart b { at 2  length 1 }  # second\n\ntrailing \"x\"\n";
  const std::string tempi = head + "part a { at 0:1  length 1 }\ntempo 60\npart b { at 0:2  length 1 }\n";
  checkEdits({
      {"up", three, move(2, 0), cFirst, 0},
      {"up, with other line ends", withReturns(three), move(2, 0), withReturns(cFirst), 0},
      {"down to the end", three, move(0, 9),
       head + "\n# section\n\npart b { at 2  length 1 }  # second\n\n# third,\n# long\npart c {\n"
              "  at 3  length 1\n}\n\n# first\npart a { at 9  length 1 }\ntrailing \"x\"\n",
       2},
      {"down by one", three, move(0, 2.5),
       head + "\n# section\n\npart b { at 2  length 1 }  # second\n\n# first\npart a { at 2.5  length 1 }\n"
              "\n# third,\n# long\npart c {\n  at 3  length 1\n}\ntrailing \"x\"\n",
       1},
      {"equal beginnings stay", three, move(0, 3),
       head + "\n# section\n\npart b { at 2  length 1 }  # second\n\n# first\npart a { at 3  length 1 }\n"
              "\n# third,\n# long\npart c {\n  at 3  length 1\n}\ntrailing \"x\"\n",
       1},
      {"from where no blank line parts it", head + "part a { at 1 length 1 }\n\npart b { at 2 length 1 }\n",
       move(0, 3), head + "\npart b { at 2 length 1 }\n\npart a { at 3 length 1 }\n", 1},
      {"in one line", head + "part a { at 1 length 1 } part b { at 2 length 1 }  # both\n", move(0, 3),
       head + "part b { at 2 length 1 }  # both\npart a { at 3 length 1 }\n", 1},
      {"without blank lines or a last line end", head + "part a { at 1 length 1 }\npart b { at 2 length 1 }",
       move(0, 3), head + "part b { at 2 length 1 }\npart a { at 3 length 1 }", 1},
      {"the last, which has no line end", head + "part a { at 1 length 1 }\npart b { at 2 length 1 }",
       move(1, 0), head + "part b { at 0 length 1 }\npart a { at 1 length 1 }\n", 0},
      {"not over a tempo that would change it", tempi, move(0, 4),
       head + "part a { at 2:0  length 1 }\ntempo 60\npart b { at 0:2  length 1 }\n", 0},
      {"over a tempo that says nothing to it",
       head + "part a { at 1  length 1 }\ntempo 60\npart b { at 0:2  length 1 }\n", move(0, 4),
       head + "tempo 60\npart b { at 0:2  length 1 }\npart a { at 4  length 1 }\n", 1},
      {"not over a range that would change it",
       head + "part a { at 1 length 1 S.f(x = 1) }\nrange x 0 to 2\npart b { at 2 length 1 }\n", move(0, 4),
       head + "part a { at 4 length 1 S.f(x = 1) }\nrange x 0 to 2\npart b { at 2 length 1 }\n", 0},
      {"over marks", head + "part a { at 1 length 1 }\nticks 4\npart b { at 2 length 1 }\n", move(0, 4),
       head + "ticks 4\npart b { at 2 length 1 }\npart a { at 4 length 1 }\n", 1},
      {"removed with its comments", three, [](Document& d) { return d.removePart(2); },
       head + "\n# section\n\n# first\npart a { at 1  length 1 }\n\npart b { at 2  length 1 }  # second\n"
              "\ntrailing \"x\"\n",
       1},
      {"removed from a line", head + "part a { at 1 length 1 } part b { at 2 length 1 }\n",
       [](Document& d) { return d.removePart(0); }, head + "part b { at 2 length 1 }\n", 0},
      {"behind the byte order mark",
       "\xef\xbb\xbfpart a { at 1 length 1 }\npart b { at 2 length 1 }\ntotal 9\n", move(0, 3),
       "\xef\xbb\xbfpart b { at 2 length 1 }\npart a { at 3 length 1 }\ntotal 9\n", 1},
  });
}

TEST(DocumentEdits, MakeParts) {
  const std::string night = head +
                            "\npart \"sky\" {\n    at 1:0    until 3:0    track 2\n"
                            "    S.f(a = 1)  # one\n}\n\npart b { at 8 length 1 }\n";
  checkEdits({
      {"a double", night, [](Document& d) { return d.doublePart(0, 20, 5); },
       night + "\npart \"sky_2\" {\n    at 10:0    until 12:0    track 5\n    S.f(a = 1)  # one\n}\n", 2},
      {"a double of a double", head + "part sky_2 { at 1 length 2 } part sky { at 1 length 2 }\n",
       [](Document& d) { return d.doublePart(0, 1, 0); },
       head + "part sky_2 { at 1 length 2 }\npart sky_3 { at 1 length 2 }\n part sky { at 1 length 2 }\n", 1},
      {"one in the manner of its neighbour", night,
       [](Document& d) { return d.createPart(6, 1.5, 0, "SceneHelper", "fadeScreen"); },
       head + "\npart \"sky\" {\n    at 1:0    until 3:0    track 2\n    S.f(a = 1)  # one\n}\n\n"
              "part \"fadeScreen\" {\n    at 3:0    until 3:3    track 0\n"
              "    SceneHelper.fadeScreen(red = 0.5, green = 0.5, blue = 0.5, alpha = 1)\n}\n\n"
              "part b { at 8 length 1 }\n",
       1},
      {"the first before another", head + "part b {\n  at 8.250  length 1.000\n}\n",
       [](Document& d) { return d.createPart(6, 1.5, 3, "SceneHelper", "fadeScreen"); },
       head + "part \"fadeScreen\" {\n  at 6  length 1.5  track 3\n"
              "  SceneHelper.fadeScreen(red = 0.5, green = 0.5, blue = 0.5, alpha = 1)\n}\n\n"
              "part b {\n  at 8.250  length 1.000\n}\n",
       0},
      {"the first of all", "total 9",
       [](Document& d) { return d.createPart(6, 1.5, 0, "SceneHelper", "fadeScreen"); },
       "total 9\n\npart \"fadeScreen\" {\n  at 6  length 1.5\n"
       "  SceneHelper.fadeScreen(red = 0.5, green = 0.5, blue = 0.5, alpha = 1)\n}\n",
       0},
      {"a call whose texture stands elsewhere",
       head + "part p { at 1 length 1\n  S.f(texture = \"data\\x\")\n}\n",
       [](Document& d) { return d.addCall(0, "SceneHelper", "drawBitmap"); },
       head + "part p { at 1 length 1\n  S.f(texture = \"data\\x\")\n"
              "  SceneHelper.drawBitmap(texture = \"data\\x\", x = -1, y = -1, width = 2, height = 2, "
              "frames = 0,\n    glitch = 0, alpha = 1, blend = 0)\n}\n",
       1},
      {"two halves", inPart("a = linear(0 0, 0.25 1, 0.75 3, 1 4), b = 2"),
       [](Document& d) { return d.splitPart(0, 4); },
       head + "part p { at 2 length 2\n  S.f(a = linear(0 0, 0.50 1, 1.50 3), b = 2) }\n"
              "part p_2 { at 4 length 2 start 2\n  S.f(a = linear(-0.50 1, 0.50 3, 1 4), b = 2) }\n",
       1},
      {"two halves around others", head + "part p { at 1 until 9 }\npart q { at 2 length 1 }\n",
       [](Document& d) { return d.splitPart(0, 3.5); },
       head + "part p { at 1 until 3.5 }\npart q { at 2 length 1 }\npart p_2 { at 3.5 until 9 start 2.5 }\n",
       2},
  });
}

TEST(DocumentEdits, OfCalls) {
  const std::string calls =
      head + "part p {\n  at 1 length 2\n  # of a\n  S.a()  # a\n  S.b(x = 1,\n    y = 2)\n  S.c()\n}\n";
  const auto move = [](int call, int to) { return [=](Document& d) { return d.moveCall({0, call}, to); }; };
  checkEdits({
      {"down", calls, move(0, 2),
       head + "part p {\n  at 1 length 2\n  S.b(x = 1,\n    y = 2)\n  S.c()\n  # of a\n  S.a()  # a\n}\n", 2},
      {"up", calls, move(2, 0),
       head + "part p {\n  at 1 length 2\n  S.c()\n  # of a\n  S.a()  # a\n  S.b(x = 1,\n    y = 2)\n}\n", 0},
      {"in one line", head + "part p { at 1 length 2 S.a() S.b() S.c() }\n", move(0, 2),
       head + "part p { at 1 length 2 S.b() S.c() S.a() }\n", 2},
      {"up in one line", head + "part p { at 1 length 2 S.a() S.b() S.c() }\n", move(2, 0),
       head + "part p { at 1 length 2 S.c() S.a() S.b() }\n", 0},
      {"removed", calls,
       [](Document& d) {
         return d.removeCall({0, 0});
       },
       head + "part p {\n  at 1 length 2\n  S.b(x = 1,\n    y = 2)\n  S.c()\n}\n", 0},
      {"the only one removed", head + "part p { at 1 length 2 S.a() }\n",
       [](Document& d) {
         return d.removeCall({0, 0});
       },
       head + "part p { at 1 length 2 }\n", -1},
      {"added", calls, [](Document& d) { return d.addCall(0, "SceneHelper", "fadeScreen"); },
       head + "part p {\n  at 1 length 2\n  # of a\n  S.a()  # a\n  S.b(x = 1,\n    y = 2)\n  S.c()\n"
              "  SceneHelper.fadeScreen(red = 0.5, green = 0.5, blue = 0.5, alpha = 1)\n}\n",
       3},
      {"added to none", head + "part p { at 1 length 2 }\n",
       [](Document& d) { return d.addCall(0, "SceneHelper", "fadeScreen"); },
       head + "part p { at 1 length 2\n"
              "  SceneHelper.fadeScreen(red = 0.5, green = 0.5, blue = 0.5, alpha = 1)\n }\n",
       0},
      {"added with the texture that stood last, in two lines",
       head + "part p {\n at 1 length 2\n SceneHelper.drawBitmap(t = \"data\\sky\", x = 1)\n}\n",
       [](Document& d) { return d.addCall(0, "SceneHelper", "drawBitmap"); },
       head + "part p {\n at 1 length 2\n SceneHelper.drawBitmap(t = \"data\\sky\", x = 1)\n"
              " SceneHelper.drawBitmap(texture = \"data\\sky\", x = -1, y = -1, width = 2, height = 2, "
              "frames = 0,\n   glitch = 0, alpha = 1, blend = 0)\n}\n",
       1},
  });
}

TEST(DocumentEdits, OfTheWhole) {
  checkEdits({
      {"total", head, [](Document& d) { return d.setTotalTime(61.5); }, "tempo 120\ntotal 61.5  # the end\n"},
      {"total in bars", "tempo 120 from 1\ntotal 8:0\n", [](Document& d) { return d.setTotalTime(3); },
       "tempo 120 from 1\ntotal 1:0\n"},
      {"start", head + "start 4.0\n", [](Document& d) { return d.setStartTime(1); }, head + "start 1.0\n"},
      {"start that was not there", head, [](Document& d) { return d.setStartTime(1); }, head + "start 1\n"},
      {"tempo", head, [](Document& d) { return d.setTempo(127.5); }, "tempo 127.5\ntotal 60  # the end\n"},
      {"the tempo of the first part", "tempo 99\ntempo 120\ntotal 9\n",
       [](Document& d) { return d.setTempo(60); }, "tempo 99\ntempo 60\ntotal 9\n"},
      {"a tempo that was not there", "# mine\ntotal 9\n", [](Document& d) { return d.setTempo(140); },
       "# mine\ntempo 140\ntotal 9\n"},
      {"music", head + "music \"a.ogg\"  # a\n", [](Document& d) { return d.setMusic("data\\b.ogg"); },
       head + "music \"data\\b.ogg\"  # a\n"},
      {"music that was not there", head, [](Document& d) { return d.setMusic("b.ogg"); },
       head + "music \"b.ogg\"\n"},
      {"no music", head + "music \"a.ogg\"  # a\n", [](Document& d) { return d.setMusic(""); }, head},
      {"a first mark", head + "part p { at 1 length 1 }\n", [](Document& d) { return d.addTick(4, "drop"); },
       head + "ticks 4  # drop\npart p { at 1 length 1 }\n"},
      {"a further mark", head + "ticks 0:2 3\n", [](Document& d) { return d.addTick(4, ""); },
       head + "ticks 0:2 3\nticks 4\n", 2},
      {"a moved mark", head + "ticks 0:2 3.0  # x\n", [](Document& d) { return d.moveTick(0, 2.5); },
       head + "ticks 1:1 3.0  # x\n"},
      {"a removed statement", head + "ticks 1\nticks 2  # two\nticks 3\n",
       [](Document& d) { return d.removeTick(1); }, head + "ticks 1\nticks 3\n", 1},
      {"removed among others", head + "ticks 1 2 3\n", [](Document& d) { return d.removeTick(1); },
       head + "ticks 1 3\n", 1},
      {"removed with its line", head + "ticks 1  # one\n  2  # two\n  3\n",
       [](Document& d) { return d.removeTick(1); }, head + "ticks 1  # one\n  3\n", 1},
      {"removed behind others", head + "ticks 1 2  # two\n", [](Document& d) { return d.removeTick(1); },
       head + "ticks 1\n", 0},
  });
}

TEST(DocumentMarks, HaveTheirCommentsForNames) {
  const Document document(head + "ticks 1 2  #  two \n  3#three\r\n4\nticks 5 #\n");
  const char* const names[]{"", "two ", "three", "", ""};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(document.tickName(i), names[i]) << i;
  EXPECT_EQ(document.tickName(5), "");
}

}  // namespace
}  // namespace vex::studio
