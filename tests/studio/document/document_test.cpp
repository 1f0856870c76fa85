#include "studio/document/document.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "tests/studio/document/kept_in_step.h"

namespace vex::studio {
namespace {

const std::string text =
    "tempo 120\ntotal 60\nticks 1\n"
    "part a { at 1 length 1 S.f(x = linear(0 0, 0.5 1, 1 0), y = 2, z = \"t\", w = sine()) }\n"
    "part b { at 2 length 1 }\npart c { at 3 length 1 }\n";
const ParameterAt curve{0, 0, 0}, constant{0, 0, 1}, string{0, 0, 2}, sine{0, 0, 3};

TEST(Document, RefusesWhatTheFormatDoes) {
  std::string manyParts = "total 9\n", manyCalls = "total 9\npart p { at 0 length 1";
  for (int i = 0; i < 999; ++i) manyParts += "part p { at 0 length 1 }\n";
  for (int i = 0; i < 255; ++i) manyCalls += " S.f()";
  std::string manyDots = "total 9\npart p { at 0 length 1 S.f(x = linear(0 0";
  for (int i = 1; i < 255; ++i) manyDots += ", " + std::to_string(i) + " 0";
  manyCalls += " }\n";
  manyDots += ")) }\n";
  const double infinity = std::numeric_limits<double>::infinity();
  const struct {
    const char* refusal;
    std::function<Edited(Document&)> edit;
    std::string text = vex::studio::text;
  } rows[]{
      {"There is no part number 4.", [](Document& d) { return d.movePart(3, 1, 0); }},
      {"There is no part number 0.", [](Document& d) { return d.removePart(-1); }},
      {"There is no call number 2.",
       [](Document& d) {
         return d.removeCall({0, 1});
       }},
      {"There is no call number 9.",
       [](Document& d) {
         return d.moveCall({0, 0}, 8);
       }},
      {"There is no parameter number 5.",
       [](Document& d) {
         return d.setConstant({0, 0, 4}, 1);
       }},
      {"\"x\" has no dot number 4.", [](Document& d) { return d.setDot(curve, 3, 0, 0); }},
      {"There is no mark number 2.", [](Document& d) { return d.moveTick(1, 2); }},
      {"The beginning of a part is inf, not a usable number.",
       [=](Document& d) { return d.movePart(0, infinity, 0); }},
      {"\"y\" is inf, not a usable number.", [](Document& d) { return d.setConstant(constant, 1e39); }},
      {"Track 128 does not lie between -128 and 127.", [](Document& d) { return d.movePart(0, 1, 128); }},
      {"A part must end behind its beginning.", [](Document& d) { return d.trimEnd(0, 1); }},
      {"A part must end behind its beginning.", [](Document& d) { return d.trimStart(0, 2); }},
      {"A part must end behind its beginning.", [](Document& d) { return d.setPartLength(0, -1); }},
      {"until 1 does not lie behind at 1", [](Document& d) { return d.trimEnd(0, 1.00001); },
       "total 9\npart p { at 1 until 2 }\n"},
      {"Part \"b\" is not there at that time.", [](Document& d) { return d.splitPart(1, 3); }},
      {"The name of a part has 127 characters, at most 126 are possible.",
       [](Document& d) { return d.renamePart(0, std::string(127, 'n')); }},
      {"The name of a part \"a%0Ab\" holds a line feed.",
       [](Document& d) { return d.renamePart(0, "a\nb"); }},
      {"The text of \"z\" has 32 characters, at most 31 are possible.",
       [](Document& d) { return d.setString(string, std::string(32, 't')); }},
      {"\"x\" is no constant.", [](Document& d) { return d.setConstant(curve, 1); }},
      {"\"x\" is no text.", [](Document& d) { return d.setString(curve, "t"); }},
      {"\"x\" is no sine.", [](Document& d) { return d.setSine(curve, SineField::phase, 1); }},
      {"\"y\" has no dots.", [](Document& d) { return d.addDot(constant, 0, 1); }},
      {"\"z\" is a text and stays one.", [](Document& d) { return d.setKind(string, PARAM_CONST, 0); }},
      {"\"y\" is a number and stays one.", [](Document& d) { return d.setKind(constant, PARAM_STRING, 0); }},
      {"The dots of a spline ascend, those of \"x\" do not.",
       [](Document& d) { return d.setKind(curve, PARAM_SPLINE, 0); },
       "total 9\npart p { at 0 length 1 S.f(x = linear(0 1, 0 2)) }\n"},
      {"\"x\" is a spline and has a dot there already.", [](Document& d) { return d.addDot(curve, 0.5, 0); },
       "total 9\npart p { at 0 length 1 S.f(x = spline(0 1, 0.5 2)) }\n"},
      {"The last dot of \"x\" stays.", [](Document& d) { return d.removeDot(curve, 0); },
       "total 9\npart p { at 0 length 1 S.f(x = linear(0 1)) }\n"},
      {"There is no scene SceneNone.", [](Document& d) { return d.addCall(0, "SceneNone", "f"); }},
      {"SceneHelper has no function f.",
       [](Document& d) { return d.createPart(0, 1, 0, "SceneHelper", "f"); }},
      {"A project has at most 999 parts.", [](Document& d) { return d.doublePart(0, 1, 0); }, manyParts},
      {"A project has at most 999 parts.",
       [](Document& d) { return d.createPart(0, 1, 0, "SceneHelper", "fadeScreen"); }, manyParts},
      {"Part \"p\" has 255 calls, more are not possible.",
       [](Document& d) { return d.addCall(0, "SceneHelper", "fadeScreen"); }, manyCalls},
      {"\"x\" has 255 dots, more are not possible.", [](Document& d) { return d.addDot(curve, 0.5, 0); },
       manyDots},
      {"The name of a mark stands in one line.", [](Document& d) { return d.addTick(1, "a\nb"); }},
  };
  for (const auto& row : rows) {
    Document document(row.text);
    ASSERT_TRUE(document.problems().empty()) << row.refusal << document.problems()[0].text;
    const Edited edited = row.edit(document);
    EXPECT_EQ(edited.refusal.value_or("made"), row.refusal);
    EXPECT_EQ(document.text(), row.text) << row.refusal;
    EXPECT_FALSE(document.undoName()) << row.refusal;
    expectInStep(document);
  }
}

TEST(Document, KeepsWhatWasReadLastWhileTheTextHasProblems) {
  Document document(text);
  const std::string broken = text + "\npart d { at }\n";
  document.replaceText(broken, "Reload");
  EXPECT_EQ(document.text(), broken);
  ASSERT_EQ(document.problems().size(), 1u);
  EXPECT_EQ(document.project().parts.size(), 3u);
  EXPECT_EQ(document.movePart(0, 0, 0).refusal, "line 8: a number for at is expected, not }");
  EXPECT_EQ(document.text(), broken);
  EXPECT_EQ(document.undoName(), "Reload");
  EXPECT_TRUE(document.undo());
  EXPECT_EQ(document.text(), text);
  expectInStep(document);
  EXPECT_TRUE(document.redo());
  document.replaceText(text + "part d { at 9 length 1 }\n", "Reload");
  EXPECT_EQ(document.project().parts.size(), 4u);
  expectInStep(document);
}

TEST(Document, WithProblemsFromTheBeginningHasNoParts) {
  Document document("total");
  EXPECT_EQ(document.problems().size(), 1u);
  EXPECT_TRUE(document.project().parts.empty());
  EXPECT_FALSE(document.undo());
  document.replaceText(text, "Reload");
  expectInStep(document);
}

TEST(Document, MakesOneStepOfAGesture) {
  Document document(text);
  document.beginGesture("Shape");
  EXPECT_TRUE(document.setDot(curve, 1, 0.25, 1));
  document.beginGesture("within");
  EXPECT_TRUE(document.setConstant(constant, 3));
  document.endGesture();
  EXPECT_TRUE(document.movePart(2, 0, 0));
  EXPECT_FALSE(document.undo());
  document.endGesture();
  const std::string after = document.text();
  EXPECT_EQ(document.undoName(), "Shape");
  EXPECT_TRUE(document.undo());
  EXPECT_EQ(document.text(), text);
  EXPECT_FALSE(document.undoName());
  EXPECT_EQ(document.redoName(), "Shape");
  EXPECT_TRUE(document.redo());
  EXPECT_EQ(document.text(), after);
  expectInStep(document);
  EXPECT_FALSE(document.redo());
}

TEST(Document, CancelsAGesture) {
  Document document(text);
  document.beginGesture("outer");
  EXPECT_TRUE(document.setConstant(constant, 3));
  const std::string between = document.text();
  document.beginGesture("inner");
  EXPECT_TRUE(document.setDot(curve, 1, 0.25, 1));
  EXPECT_TRUE(document.removePart(1));
  document.cancelGesture();
  EXPECT_EQ(document.text(), between);
  expectInStep(document);
  document.cancelGesture();
  EXPECT_EQ(document.text(), text);
  EXPECT_FALSE(document.undoName());
}

TEST(Document, LeavesNoStepWhereNothingHasChanged) {
  Document document(text);
  EXPECT_TRUE(document.setConstant(constant, 2));
  EXPECT_TRUE(document.movePart(1, 2, 0));
  document.replaceText(text, "Reload");
  document.beginGesture("To and fro");
  EXPECT_TRUE(document.movePart(1, 7, 0));
  EXPECT_TRUE(document.setConstant(constant, 5));
  EXPECT_TRUE(document.setConstant(constant, 2));
  EXPECT_TRUE(document.movePart(2, 2, 0));
  document.endGesture();
  EXPECT_EQ(document.text(), text);
  EXPECT_FALSE(document.undoName());
  document.endGesture();
  document.cancelGesture();
  EXPECT_EQ(document.text(), text);
}

TEST(Document, ForgetsWhatWasUndoneWithANewEdit) {
  Document document(text);
  EXPECT_TRUE(document.setConstant(constant, 3));
  EXPECT_TRUE(document.undo());
  EXPECT_FALSE(document.setConstant(curve, 3));
  EXPECT_TRUE(document.redoName());
  EXPECT_TRUE(document.setConstant(constant, 4));
  EXPECT_FALSE(document.redoName());
}

// What a drag passes on its way leaves no traces: neither digits nor dots nor places of parts.
TEST(Document, TakesOnlyTheLastEditOfADrag) {
  const auto once = [](const auto& edit) {
    Document document(text);
    EXPECT_TRUE(edit(document, 1.0, 0));
    return document.text();
  };
  const auto dragged = [](const auto& edit) {
    Document document(text);
    document.beginGesture("Drag");
    int index = 0;
    for (const double way : {0.1234567, 0.9, 0.31, 1.7, 1.0}) {
      const Edited edited = edit(document, way, index);
      if (edited) index = edited.index;
    }
    document.endGesture();
    expectInStep(document);
    const std::string after = document.text();
    EXPECT_TRUE(document.undo());
    EXPECT_EQ(document.text(), text);
    EXPECT_FALSE(document.undo());
    return after;
  };
  const auto move = [](Document& d, double way, int part) { return d.movePart(part, 1 + 2.1 * way, 1); };
  const auto trim = [](Document& d, double way, int part) { return d.trimStart(part, 0.5 + way / 3); };
  const auto trimEnd = [](Document& d, double way, int part) { return d.trimEnd(part, 1.1 + way / 3); };
  const auto dot = [](Document& d, double way, int) { return d.setDot(curve, 1, way / 3, way); };
  const auto tick = [](Document& d, double way, int mark) { return d.moveTick(mark, 2 * way); };
  EXPECT_EQ(dragged(move), once(move));
  EXPECT_EQ(dragged(trim), once(trim));
  EXPECT_EQ(dragged(trimEnd), once(trimEnd));
  EXPECT_EQ(dragged(dot), once(dot));
  EXPECT_EQ(dragged(tick), once(tick));
}

TEST(Document, KeepsTheDragWhereOneEditIsRefused) {
  Document document(text);
  document.beginGesture("Drag");
  EXPECT_TRUE(document.trimEnd(0, 1.5));
  const std::string before = document.text();
  EXPECT_FALSE(document.trimEnd(0, 0.5));
  EXPECT_EQ(document.text(), before);
  expectInStep(document);
  EXPECT_TRUE(document.trimEnd(0, 2));
  document.endGesture();
  EXPECT_EQ(document.text(), text);
}

TEST(Document, KnowsWhetherItIsSaved) {
  Document document(text);
  EXPECT_TRUE(document.saved());
  EXPECT_TRUE(document.setConstant(constant, 3));
  EXPECT_FALSE(document.saved());
  EXPECT_TRUE(document.setConstant(constant, 2));
  EXPECT_TRUE(document.saved());
  EXPECT_TRUE(document.undo());
  EXPECT_FALSE(document.saved());
  document.markSaved();
  EXPECT_TRUE(document.saved());
  EXPECT_TRUE(document.undo());
  EXPECT_FALSE(document.saved());
}

TEST(Document, CountsItsChanges) {
  Document document(text);
  std::uint64_t last = document.revision();
  const auto changed = [&] { return std::exchange(last, document.revision()) != last; };
  EXPECT_TRUE(document.setConstant(constant, 2));
  EXPECT_FALSE(changed());
  EXPECT_TRUE(document.setConstant(constant, 3));
  EXPECT_TRUE(changed());
  EXPECT_TRUE(document.undo());
  EXPECT_TRUE(changed());
  EXPECT_TRUE(document.redo());
  EXPECT_TRUE(changed());
  document.replaceText("total 1", "Reload");
  EXPECT_TRUE(changed());
}

}  // namespace
}  // namespace vex::studio
