#include "platform/standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace vex {

// The exit code tells in bits what went wrong, as there may be no standard error to tell it.
TEST(StandardStreams, NoLaterFileTakesTheirPlace) {
  for (int closed = 1; closed < 8; ++closed) {
    const ChildResult result = runInChild([&] {
      const int spare = dup(STDERR_FILENO);
      for (int stream = 0; stream <= 2; ++stream) {
        if (closed >> stream & 1) close(stream);
      }
      openStandardStreams();
      int wrong = open("/dev/zero", O_RDONLY) <= spare ? 1 : 0;
      char byte = 0;
      if ((closed & 1) != 0 && read(STDIN_FILENO, &byte, 1) != 0) wrong |= 2;
      if ((closed & 2) != 0 && write(STDOUT_FILENO, "x", 1) == 1) wrong |= 4;  // nobody receives it
      if (write(STDERR_FILENO, "x", 1) != 1) wrong |= 8;
      std::_Exit(wrong);
    });
    EXPECT_EQ(result.exitCode, 0) << "closed: " << closed;
    EXPECT_EQ(result.errorText, (closed & 4) != 0 ? "" : "x") << "open ones stay as they are";
  }
}

// Where standard input is closed, its name leads to nothing, or to the next file that is opened.
TEST(StandardStreams, EveryProgramOpensThem) {
  const TemporaryFolder folder;
  fs::create_symlink("/dev/stdin", "m.ase");
  const std::pair<const char*, const char*> rows[] = {
      {"vexpak list /dev/stdin", "vexpak: can't read /dev/stdin: Operation not supported\n"},
      {"vexproject dump /dev/stdin",
       "vexproject: char != 1 byte (0 read) (project /dev/stdin: version lacks its end behind byte 0)\n"},
      {"vexmodel info m.ase", "vexmodel: can't read m.ase: Operation not supported\n"},
      {"vexproduce /dev/stdin", "vexproduce: cannot make folder /dev/stdin: Not a directory\n"},
      {"vexrecord --out x.mp4 --dir /dev/stdin",
       "vexrecord: can't go to folder /dev/stdin: Not a directory\n"},
  };
  for (const auto& [command, errors] : rows)
    EXPECT_EQ(runProgram(std::string(VEX_BIN "/") + command + " <&-").errors, errors);
}

}  // namespace vex
