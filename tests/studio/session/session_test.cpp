#include "studio/session/session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "studio/session/questions.h"
#include "studio/session/settings.h"
#include "tests/support/temporary_folder.h"

// What the panes share, without a window: as on a display that gives no picture.

namespace vex::studio {

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* text =
    "tempo 120\ntotal 20s\n"
    "part a { at 0s length 8s SceneHelper.fadeScreen(red = 1, green = 0, blue = 0, alpha = 1) }\n"
    "part b { at 8s length 12s SceneHelper.fadeScreen(red = 0, green = 0, blue = 1, alpha = 1) }\n";

std::string with(const std::string& from, const std::string& to) {
  std::string changed = text;
  return changed.replace(changed.find(from), from.size(), to);
}

// Files that grow beyond so many bytes, as on a disk that is full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{bytes, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before{};
};

class StudioSession : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::optional<Session> session;

  StudioSession() {
    writeFile("show.txt", text);
    start();
  }

  void start() {
    session.emplace(fs::absolute("show.txt").string());
    session->update();
  }
  void expectTold(const std::string& words) { EXPECT_THAT(session->message().text, HasSubstr(words)); }
  void changeBlue() { EXPECT_TRUE(session->edit(session->document().setConstant({0, 0, 2}, 1))); }
  const std::string mine = with("blue = 0", "blue = 1");
  const std::string theirs = with("tempo 120", "tempo 90");
};

TEST_F(StudioSession, AsksWhichOfTwoTextsCounts) {
  const struct {
    std::size_t answer;
    std::string shaped, file, other;
    bool saved;
  } rows[]{{0, mine, mine, "", true}, {1, theirs, theirs, "", true}, {2, mine, theirs, mine, true}};
  for (const auto& row : rows) {
    writeFile("show.txt", text);
    fs::remove("show-mine.txt");
    start();
    changeBlue();
    writeFile("show.txt", theirs);
    EXPECT_FALSE(session->save()) << "nothing is overwritten unseen";
    session->update();
    EXPECT_EQ(readFile("show.txt"), theirs);
    ASSERT_EQ(session->message().answers.size(), 3u);
    session->answer(row.answer);
    EXPECT_EQ(session->document().text(), row.shaped) << row.answer;
    EXPECT_EQ(readFile("show.txt"), row.file) << row.answer;
    EXPECT_EQ(row.other.empty() ? "" : readFile("show-mine.txt"), row.other) << row.answer;
    EXPECT_EQ(session->saved(), row.saved) << row.answer;
  }
}

TEST_F(StudioSession, AsksAgainWhenTheOtherTextChangedMeanwhile) {
  changeBlue();
  writeFile("show.txt", theirs);
  session->update();
  const std::string later = with("tempo 120", "tempo 60");
  writeFile("show.txt", later);
  session->answer(0);
  EXPECT_EQ(readFile("show.txt"), later);
  ASSERT_EQ(session->message().answers.size(), 3u);
  session->answer(0);
  EXPECT_EQ(readFile("show.txt"), mine);
}

TEST_F(StudioSession, LosesNothingWhenSavingFails) {
  const struct {
    const char* told;
    std::function<void()> spoil;
    std::function<void()> mend;
  } rows[]{
      {"write-protected", [] { chmod("show.txt", 0444); }, [] { chmod("show.txt", 0644); }},
      {"Is a directory",
       [] {
         fs::remove("show.txt");
         fs::create_directory("show.txt");
       },
       [] { fs::remove("show.txt"); }},
  };
  for (const auto& row : rows) {
    writeFile("show.txt", text);
    start();
    changeBlue();
    row.spoil();
    EXPECT_FALSE(session->save()) << row.told;
    expectTold(row.told);
    EXPECT_FALSE(session->saved());
    EXPECT_EQ(session->document().text(), mine);
    row.mend();
    EXPECT_TRUE(session->save());
    EXPECT_EQ(readFile("show.txt"), mine);
  }
}

TEST_F(StudioSession, KeepsTheWholeOldTextOnAFullDisk) {
  signal(SIGXFSZ, SIG_IGN);
  changeBlue();
  {
    const FullDisk disk(50);
    EXPECT_FALSE(session->save());
  }
  expectTold("File too large");
  EXPECT_EQ(readFile("show.txt"), text);
  EXPECT_FALSE(session->saved());
  {
    const FullDisk disk(mine.size());
    EXPECT_TRUE(session->save());
  }
  expectTold("The text is saved, but can't write test.hvp");
  EXPECT_EQ(readFile("show.txt"), mine);
}

TEST_F(StudioSession, WritesATextAnewThatIsGone) {
  fs::remove("show.txt");
  session->update();
  expectTold("show.txt is gone");
  EXPECT_FALSE(session->saved());
  EXPECT_TRUE(session->save());
  EXPECT_EQ(readFile("show.txt"), text);
  EXPECT_TRUE(session->saved());
}

TEST_F(StudioSession, KeepsTheLastGoodShowOfATextWithMistakes) {
  writeFile("show.txt", with("part a", "prat a"));
  session->update();
  expectTold("Line 3: ");
  EXPECT_EQ(session->document().project().parts.size(), 2u);
  EXPECT_FALSE(session->edit(session->document().setConstant({0, 0, 2}, 1)));
  session->record(Session::Stretch::whole, "show.mp4", 64, 64, 30);
  expectTold("nothing to record");
  writeFile("show.txt", text);
  session->update();
  changeBlue();
}

TEST_F(StudioSession, TakesNoTextAndNoUndoWithinAGesture) {
  changeBlue();
  ASSERT_TRUE(session->save());
  session->beginGesture("Move part");
  session->editPart(session->document().movePart(1, 9, 0));
  session->undo();
  EXPECT_EQ(session->document().project().parts[1].pos, 9) << "undo waits for the gesture's end";
  writeFile("show.txt", theirs);
  session->update();
  EXPECT_EQ(session->document().project().parts[1].pos, 9);
  session->cancelGesture();
  EXPECT_EQ(session->document().text(), mine) << "Escape leaves no trace";
  session->update();
  EXPECT_EQ(session->document().text(), theirs);
  session->undo();
  EXPECT_EQ(session->document().text(), mine);
  session->undo();
  EXPECT_EQ(session->document().text(), text);
}

TEST_F(StudioSession, OffersWhatIsLeftAndRemovesWhatIsSaved) {
  changeBlue();
  session->leave(true);
  EXPECT_EQ(readFile(".show.txt.autosave"), mine);
  start();
  expectTold("was left with changes");
  session->answer(1);
  EXPECT_EQ(session->document().text(), text);
  EXPECT_FALSE(fs::exists(".show.txt.autosave"));
  changeBlue();
  session->leave(true);
  start();
  session->answer(0);
  EXPECT_EQ(session->document().text(), mine);
  EXPECT_FALSE(session->saved());
  ASSERT_TRUE(session->save());
  session->leave(true);
  EXPECT_FALSE(fs::exists(".show.txt.autosave"));
}

TEST_F(StudioSession, MovesTheCursorAndTheLoopWithoutAPicture) {
  session->record(Session::Stretch::loop, "show.mp4", 64, 64, 30);
  expectTold("no loop");
  session->seek(3);
  EXPECT_EQ(session->show().time(), 3);
  session->setLoopBegin();
  session->scrub(5);
  session->setLoopEnd();
  ASSERT_TRUE(session->show().loop());
  EXPECT_EQ(session->show().loop()->begin, 3);
  EXPECT_EQ(session->show().loop()->end, 5);
  session->clearLoop();
  EXPECT_FALSE(session->show().loop());
}

TEST_F(StudioSession, MarksProblemsWithTheNextFrame) {
  EXPECT_EQ(session->findingOf(0), nullptr);
  session->edit(session->document().setConstant({0, 0, 3}, 0.5));
  EXPECT_EQ(session->findingOf(0), nullptr) << "not judged yet";
  session->update();
  EXPECT_THAT(session->findings(),
              testing::Contains(testing::Field(&Finding::text, HasSubstr("no call paints"))));
}

TEST_F(StudioSession, OverwritesNoStill) {
  for (const char* name : {"show-0000.000.png", "show-0000.000-2.png", "show-0000.000-3.png"}) {
    session->saveStill({0xff0000ff}, 1, 1);
    EXPECT_TRUE(fs::exists(name)) << name;
    expectTold(name);
  }
}

TEST_F(StudioSession, NamesWhatTheRunFolderHas) {
  for (const char* name : {"data/a.jpg", "data/a_mask.jpg", "data/deep/b.bmp", "data/fire7.jpg",
                           "data/fire08.jpg", "data/s.ogg", "data/deep/t.wav", "data/note.txt"})
    writeFile(name, "x");
  EXPECT_THAT(session->textureNames(),
              ElementsAre("data\\a", "data\\deep\\b", "data\\fire08", "data\\fire7"));
  EXPECT_THAT(session->movieNames(), ElementsAre("data\\fire"));
  EXPECT_EQ(session->firstFrame("data\\fire"), "data\\fire7");
  EXPECT_THAT(session->musicNames(), ElementsAre("data\\deep\\t.wav", "data\\s.ogg"));
}

TEST(StudioQuestions, WaitInOrderOneOfEachSubject) {
  Questions questions;
  std::string said;
  const auto answers = [&](const char* word) {
    return std::vector<Message::Answer>{{"yes", [&said, word] { said += word; }}};
  };
  questions.ask(Subject::leftText, "left?", answers("a"));
  questions.ask(Subject::unsaved, "unsaved?", answers("b"));
  questions.ask(Subject::leftText, "left after all?", answers("c"));
  ASSERT_NE(questions.first(), nullptr);
  EXPECT_EQ(questions.first()->text, "left after all?");
  questions.answer(1);
  EXPECT_TRUE(questions.asks(Subject::leftText)) << "there is no second answer";
  questions.answer(0);
  EXPECT_EQ(said, "c");
  EXPECT_EQ(questions.first()->text, "unsaved?");
  questions.withdraw(Subject::unsaved);
  EXPECT_EQ(questions.first(), nullptr);
  questions.answer(0);
  EXPECT_EQ(said, "c");
}

TEST(StudioSettings, KeepNumbersAndPassDamageOver) {
  const TemporaryFolder folder;
  setenv("XDG_CONFIG_HOME", (fs::current_path() / "config").c_str(), 1);
  Settings written;
  written.set("width", 1280);
  written.set("under", 0.625);
  written.write();
  writeFile("config/vex/studio",
            readFile("config/vex/studio") + "scale\nscale x\nscale 1x\nscale nan\n\nheight 9");
  Settings settings;
  settings.read();
  EXPECT_EQ(settings.number("width", 1, 0, 4000), 1280);
  EXPECT_EQ(settings.number("under", 1, 0, 1), 0.625);
  EXPECT_EQ(settings.number("scale", 2, 0, 3), 2);
  EXPECT_EQ(settings.number("height", 1, 400, 4000), 400) << "held to the range";
}

}  // namespace

}  // namespace vex::studio
