#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

// How the programs are built, as their files tell. The sanitizers' build has guards of its own.

#ifndef __SANITIZE_ADDRESS__

namespace vex {

TEST(Hardening, EveryProgramIsBuiltWithItsGuards) {
  const struct {
    const char* guard;
    const char* command;  // readelf's arguments
    const char* sign;
  } guards[] = {
      {"code at any address", "-h", "DYN (Position-Independent Executable file)"},
      {"tables that nobody writes", "-lW", "GNU_RELRO"},
      {"all functions bound at the start", "-dW", "NOW"},
      {"guarded stacks", "-W --dyn-syms", "__stack_chk_fail"},
      {"checked library calls", "-W --dyn-syms", "printf_chk"},
      {"checked containers", "-W --dyn-syms", "__glibcxx_assert_fail"},
  };
  for (const char* program : {"vex", "vexmodel", "vexpak", "vexproduce", "vexproject", "vexrecord"}) {
    for (const auto& [guard, command, sign] : guards) {
      const Program told = runProgram(std::string("readelf ") + command + " " VEX_BIN "/" + program);
      EXPECT_NE(told.output.find(sign), std::string::npos) << program << ": " << guard << told.errors;
    }
  }
}

}  // namespace vex

#endif
