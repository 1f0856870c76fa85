#include "app/music.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "base/clock.h"
#include "base/files.h"
#include "base/options.h"
#include "base/report.h"
#include "platform/sound_file.h"
#include "tests/support/fatal.h"
#include "tests/support/sound_files.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

// Calls, warnings and log lines are compared in the order in which they come: the stand-ins write
// one line each to standard error, where the warnings go too.

std::string failing;  // name of the call that fails

bool call(const char* name) {
  std::fprintf(stderr, "%s\n", name);
  return failing.find(name) == std::string::npos;
}

constexpr SoundLibrary recordingLibrary{
    .init = [] { return call("init"); },
    .start = [] { return call("start"); },
    .createStream = [](const char* path, std::uint32_t offset, std::uint32_t size) -> SoundStream {
      std::fprintf(stderr, "%s %u %u ", path, offset, size);
      return call("create") ? 5 : 0;
    },
    .attributes = [](SoundStream stream,
                     int& rate) { return rate = 44100, call("attributes") && stream == 5; },
    .flags = [](SoundStream) { return call("flags") ? 0 : -1; },
    .length = [](SoundStream) { return std::uint32_t{60 * 44100 * 4}; },
    .setPosition = [](SoundStream, std::uint32_t bytes) { std::fprintf(stderr, "seek %u\n", bytes); },
    .play = [](SoundStream) { return call("play"); },
    .position = [](SoundStream) { return std::uint32_t{}; },
    .state = [](SoundStream) { return SoundState::playing; },
    .stop = [] { call("stop"); },
    .freeStream = [](SoundStream stream) { std::fprintf(stderr, "free stream %u\n", stream); },
    .free = [] { call("free"); },
};

// What a run from opening to shutdown did, line for line; the warnings without the program's name.
std::string linesOf(const std::function<void()>& body) {
  std::string text = runInChild(body).errorText;
  const std::string name = std::string(program_invocation_short_name) + ": ";
  for (std::size_t at = 0; (at = text.find(name, at)) != std::string::npos;)
    text.replace(at, name.size(), "! ");
  return text;
}

std::string runMusic(const char* name, bool soundEnabled) {
  return linesOf([=] {
    soundLibrary = recordingLibrary;
    options().soundEnabled = soundEnabled;
    openMusic(name);
    std::fprintf(stderr, "-\n");
    clockSetStartTime(30.0f);
    startMusic();
    std::fprintf(stderr, "- %s\n", musicActive() ? "active" : "silent");
    shutDownMusic();
  });
}

}  // namespace

TEST(SoundPlayback, CallsTheLibraryInOrderAndWarnsOfEachFailure) {
  const TemporaryFolder folder;
  writeFile("music.ogg", std::string(10, '\0'));
  struct Case {
    const char* failing;
    const char* name;
    const char* lines;
  };
  const Case cases[] = {
      {"", "music.ogg",
       "init\nstart\nmusic.ogg 0 4294967295 create\n-\n"
       "attributes\nflags\nseek 5292000\nplay\n- active\n"
       "stop\nfree stream 5\nfree\n"},
      {"init", "music.ogg",
       "init\n! Couldn't initialize BASS! Disabling sound\nstart\nmusic.ogg 0 4294967295 create\n-\n- "
       "silent\n"},
      {"start", "music.ogg",
       "init\nstart\n! Couldn't start BASS output! Disabling sound\nmusic.ogg 0 4294967295 create\n-\n- "
       "silent\n"},
      {"create", "music.ogg",
       "init\nstart\nmusic.ogg 0 4294967295 create\n! BASS stream couldn't be opened! Disabling sound\n-\n- "
       "silent\n"},
      {"init start create", "music.ogg",
       "init\n! Couldn't initialize BASS! Disabling sound\nstart\n! Couldn't start BASS output! Disabling "
       "sound\n"
       "music.ogg 0 4294967295 create\n! BASS stream couldn't be opened! Disabling sound\n-\n- silent\n"},
      {"", "no.ogg", "init\nstart\n! Sound file not found! Disabling sound\n-\n- silent\n"},
      {"attributes", "music.ogg",
       "init\nstart\nmusic.ogg 0 4294967295 create\n-\nattributes\n! BASS attributes failed! Disabling "
       "sound\n"
       "flags\nseek 5292000\nplay\n- silent\n"},
      {"flags", "music.ogg",
       "init\nstart\nmusic.ogg 0 4294967295 create\n-\nattributes\nflags\n! BASS flags failed! Disabling "
       "sound\n"
       "seek 1323000\nplay\n- silent\n"},  // taken as 8-bit mono: four times as long
      {"play", "music.ogg",
       "init\nstart\nmusic.ogg 0 4294967295 create\n-\nattributes\nflags\nseek 5292000\nplay\n"
       "! BASS play failed! Disabling sound\n- silent\n"},
  };
  for (const Case& c : cases) {
    failing = c.failing;
    EXPECT_EQ(runMusic(c.name, true), c.lines) << "failing: " << c.failing;
  }
}

TEST(SoundPlayback, CallsNothingWithoutSound) {
  const TemporaryFolder folder;
  writeFile("music.ogg", std::string(10, '\0'));
  failing = "";
  EXPECT_EQ(runMusic("music.ogg", false), "-\n- silent\n");
}

TEST(SoundPlayback, LogsWhereItOpensTheFile) {
  const TemporaryFolder folder;
  writeFile("Inside.ogg", std::string(321, '\0'));
  writePakAround("vex.pak", "Inside.ogg");
  failing = "";
  std::filesystem::rename("Inside.ogg", "loose.ogg");
  struct Case {
    const char* name;
    const char* created;
    const char* log;
  };
  const Case cases[] = {
      {"LOOSE.ogg", "LOOSE.ogg 0 4294967295 create\n",
       "opening sound file LOOSE.ogg from physical file\ndestroying sound\n"},
      {"inside.OGG", "vex.pak 899 321 create\n",  // after the directory and 777 bytes of another member
       "opening sound file inside.OGG from pak_file (index 1)\ndestroying sound\n"},
      {"nowhere.ogg", "! Sound file not found! Disabling sound\n", "destroying sound\n"},
  };
  for (const Case& c : cases) {
    const std::string lines = linesOf([&] {
      soundLibrary = recordingLibrary;
      soundLibrary.stop = soundLibrary.free = [] {};
      soundLibrary.freeStream = [](SoundStream) {};
      options().soundEnabled = true;
      options().showStats = true;
      beginLog();
      pakOpen("vex.pak");
      const int other = fileOpen("before.raw", "rb");  // takes handle 0
      openMusic(c.name);
      const int next = fileOpen("after.raw", "rb");
      std::fprintf(stderr, "%d %d\n", other, next);  // the music's handle is closed again
      shutDownMusic();
    });
    EXPECT_EQ(lines, "init\nstart\n" + std::string(c.created) + "0 1\n");
    EXPECT_EQ(readFile("Demo.log"), c.log);
  }
}

TEST(SoundPlayback, LogsOnceWhenTheStreamStopsLeading) {
  const TemporaryFolder folder;
  writeFile("music.ogg", std::string(10, '\0'));
  failing = "";
  const auto follow = [](SoundState (*state)(SoundStream)) {
    linesOf([=] {
      soundLibrary = recordingLibrary;
      soundLibrary.state = state;
      options().soundEnabled = true;
      options().showStats = true;
      beginLog();
      openMusic("music.ogg");
      for (int frame = 0; frame < 5; ++frame) musicPosition();
    });
    return readFile("Demo.log");
  };
  const std::string opened = "opening sound file music.ogg from physical file\n";
  EXPECT_EQ(follow([](SoundStream) { return SoundState::playing; }), opened);
  EXPECT_EQ(follow([](SoundStream) { return SoundState::ended; }),
            opened + "sound stream ended, going on with the system timer\n");
  EXPECT_EQ(follow([](SoundStream) { return SoundState::lost; }),
            opened + "sound device lost, going on with the system timer\n");
}

TEST(SoundPlayback, IsFoundWithoutADevice) {
  const TemporaryFolder folder;
  writeFile("member.wav", std::string(100, '\0'));
  writePakAround("vex.pak", "member.wav");
  pakOpen("vex.pak");
  const std::optional<FilePlace> loose = findFile("MEMBER.WAV");
  ASSERT_TRUE(loose);
  EXPECT_EQ(loose->path, "MEMBER.WAV");
  EXPECT_EQ(loose->offset, 0u);
  EXPECT_EQ(loose->size, wholeFile);
  std::filesystem::remove("member.wav");
  const std::optional<FilePlace> member = findFile("member.wav");
  ASSERT_TRUE(member);
  EXPECT_EQ(member->path, "vex.pak");
  EXPECT_EQ(member->offset, soundMemberOffset);
  EXPECT_EQ(member->size, 100u);
  EXPECT_FALSE(findFile("other.wav"));
  EXPECT_EQ(fileOpen("before.raw", "rb"), 0);  // no handle is left open
  fileCloseAll();
}

}  // namespace vex
