#include "platform/end_request.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "platform/replace_file.h"
#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

constexpr int endSignals[] = {SIGINT, SIGTERM, SIGHUP};

// Runs it with a temporary file half-written; how it ended, and what is left of the file.
ChildResult runWriting(const std::function<void()>& body) {
  const TemporaryFolder folder;
  ChildResult result = runInChild([&] {
    const ReplacementFile file("target");
    body();
    std::fprintf(stderr, endRequested() ? "asked" : "went on");
    std::_Exit(0);
  });
  const std::filesystem::directory_iterator left(".");
  if (result.exitCode != 0 && left != std::filesystem::directory_iterator()) {
    result.errorText += "left " + left->path().native();
  }
  return result;
}

}  // namespace

TEST(EndSignals, TheFirstIsAWishAndTheSecondEndsAtOnce) {
  for (const int signal : endSignals) {
    ChildResult result = runWriting([&] {
      catchEndSignals();
      raise(signal);
    });
    EXPECT_EQ(result.exitCode, 0) << signal;
    EXPECT_EQ(result.errorText, "asked") << signal;
    result = runWriting([&] {
      catchEndSignals();
      raise(SIGTERM);
      raise(signal);
    });
    EXPECT_EQ(result.exitCode, 130) << signal;
    EXPECT_EQ(result.errorText, "vextests: interrupted\n") << signal;
  }
}

TEST(EndSignals, ToolsEndAtTheFirst) {
  for (const int signal : endSignals) {
    const ChildResult result = runWriting([&] {
      endAtSignals();
      raise(signal);
    });
    EXPECT_EQ(result.exitCode, 130) << signal;
    EXPECT_EQ(result.errorText, "vextests: interrupted\n") << signal;
  }
}

TEST(EndSignals, WhatWasIgnoredAtTheStartStaysIgnored) {
  for (const auto install : {catchEndSignals, endAtSignals}) {
    for (const int signal : endSignals) {
      const ChildResult result = runWriting([&] {
        std::signal(signal, SIG_IGN);
        install();
        raise(signal);
        raise(signal);
      });
      EXPECT_EQ(result.exitCode, 0) << signal;
      EXPECT_EQ(result.errorText, "went on") << signal;
    }
  }
}

// A read that a signal cut short would look like a damaged file.
TEST(EndSignals, ReadsGoOnBehindAWish) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const ChildResult result = runInChild([&] {
    catchEndSignals();
    const pid_t reader = getpid();
    if (fork() == 0) {
      // Until the reader sleeps in its read.
      const std::string state = "/proc/" + std::to_string(reader) + "/stat";
      while (readFile(state).find(") S ") == std::string::npos) usleep(1000);
      kill(reader, SIGTERM);
      usleep(20000);
      [[maybe_unused]] const ssize_t written = write(ends[1], "x", 1);
      _exit(0);
    }
    char byte = 0;
    const ssize_t size = read(ends[0], &byte, 1);
    std::fprintf(stderr, "%zd %c %d", size, byte, endRequested());
  });
  close(ends[0]);
  close(ends[1]);
  EXPECT_EQ(result.errorText, "1 x 1");
}

}  // namespace vex
