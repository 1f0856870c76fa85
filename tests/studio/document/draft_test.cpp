#include "studio/document/draft.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace vex::studio {
namespace {

const std::string head = "tempo 120 total 60 range y 0 to 1\n";
const std::string shown =
    head +
    "part a { at 1 length 1 } part b { at 2 length 1 S.f(y = 1) }  # both\n"
    "part c {\n  at 3\n  length 0:2\n  S.f(y = linear(0 1, 0:1 0),  # down\n    x = \"t\")\n}\n"
    "\n# d\npart d { at 4 length 1 }";

// What the whole text gives, however much of it the draft has read again.
void expectWhole(const Draft& draft) {
  const ReadProjectText read = readProjectText(draft.text());
  ASSERT_EQ(draft.problems().size(), read.problems.size()) << draft.text();
  if (!read.problems.empty()) return;
  ASSERT_EQ(draft.project().parts.size(), read.project.parts.size()) << draft.text();
  EXPECT_TRUE(encodeProject(draft.project()) == encodeProject(read.project)) << draft.text();
  for (std::size_t i = 0; i < read.places.parts.size(); ++i) {
    const PartPlace &place = draft.places().parts[i], &wanted = read.places.parts[i];
    EXPECT_EQ(place.whole.begin, wanted.whole.begin) << draft.text();
    EXPECT_EQ(place.whole.end, wanted.whole.end) << draft.text();
    EXPECT_EQ(place.keysEnd, wanted.keysEnd) << draft.text();
    EXPECT_EQ(place.track.end, wanted.track.end) << draft.text();
    EXPECT_EQ(place.rangesAbove, wanted.rangesAbove);
    EXPECT_EQ(draft.project().parts[i].line, read.project.parts[i].line) << draft.text();
  }
}

Draft changedAt(std::size_t offset, const std::string& inserted) {
  Draft draft(shown);
  draft.make({{{offset, "", inserted}}, Reach::parts});
  return draft;
}

// Among them those that close a part early, open a comment over what follows or state something else.
TEST(Draft, IsInStepWhateverIsInserted) {
  const std::string pieces[]{"#",
                             "# x\n",
                             "\n",
                             "}",
                             "{",
                             "\"",
                             " ",
                             "0",
                             "part x { at 3 length 1 }",
                             "tempo 90\n",
                             "ticks 4",
                             "track 3",
                             ")",
                             ",",
                             "S.g()",
                             "range y 0 to 3\n",
                             "x = 1, ",
                             "part",
                             "\r\n",
                             "at 9 ",
                             "} part z { at 3 length 2 "};
  for (std::size_t offset = head.size(); offset <= shown.size(); ++offset) {
    for (const std::string& piece : pieces) {
      Draft draft = changedAt(offset, piece);
      expectWhole(draft);
      draft.takeBack(0);
      ASSERT_EQ(draft.text(), shown);
      expectWhole(draft);
      if (HasFailure()) FAIL() << piece << " at " << offset;
    }
  }
}

TEST(Draft, IsInStepAfterManyChanges) {
  std::mt19937 random(7);
  Draft draft(shown);
  const std::string pieces[]{" ", "# x\n", "\n", "part x { at 3 length 1 }\n", "0"};
  for (int i = 0; i < 2000; ++i) {
    const std::size_t room = draft.text().size() - head.size() + 1;
    const std::size_t offset = head.size() + random() % room;
    const std::size_t first = draft.changes().size();
    draft.make({{{offset, "", pieces[random() % std::size(pieces)]}}, Reach::parts});
    if (!draft.problems().empty() || random() % 4 == 0) draft.takeBack(random() % 2 == 0 ? first : first / 2);
    if (random() % 8 == 0) expectWhole(draft);
    if (HasFailure()) FAIL() << "change " << i;
  }
}

TEST(Draft, ChangesSeveralPiecesAtOnce) {
  Draft draft(shown);
  const PartPlace& c = draft.places().parts[2];
  const std::vector<Replacement> replacements{
      {{c.calls[0].whole.end, c.calls[0].whole.end}, "\n  S.h()"}, {c.at, "2.5"}, {c.length, "0:1"}};
  draft.rewrite(replacements);
  EXPECT_NE(draft.text().find("  at 2.5\n  length 0:1\n"), std::string::npos);
  EXPECT_EQ(draft.project().parts[2].calls.size(), 2u);
  expectWhole(draft);
  const std::string after = draft.text();
  const std::vector<TextChange> taken = draft.takeBack(0);
  EXPECT_EQ(draft.text(), shown);
  ASSERT_EQ(taken.size(), 1u);
  draft.make(taken[0]);
  EXPECT_EQ(draft.text(), after);
  EXPECT_THROW(draft.rewrite({{draft.places().parts[0].at, "x"}}), Refusal);
  EXPECT_EQ(draft.text(), after);
}

TEST(Draft, FindsTheDifferenceOfTexts) {
  const std::string many(10000, 'a');
  const struct {
    std::string before, after;
    std::size_t offset;
    std::string removed, inserted;
  } rows[]{
      {"abc", "abxc", 2, "", "x"}, {"aaa", "aa", 2, "a", ""},
      {"", "x", 0, "", "x"},       {"abc", "axc", 1, "b", "x"},
      {"abab", "ab", 2, "ab", ""}, {many + "x" + many, many + "yz" + many, 10000, "x", "yz"},
  };
  for (const auto& row : rows) {
    const TextChange change = differenceOf(row.before, row.after);
    ASSERT_EQ(change.pieces.size(), 1u) << row.before;
    EXPECT_EQ(change.pieces[0].offset, row.offset) << row.before;
    EXPECT_EQ(change.pieces[0].removed, row.removed) << row.before;
    EXPECT_EQ(change.pieces[0].inserted, row.inserted) << row.before;
  }
  EXPECT_TRUE(differenceOf("abc", "abc").pieces.empty());
}

}  // namespace
}  // namespace vex::studio
