#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Readers of files from others' hands, as something to throw bytes at. Two outcomes only: the bytes are
// taken, or refused by one message that names the file. Whatever is taken must also keep its promises: what
// is written again is the same, what one reader lets pass the other does too.

namespace vex {

// Changes bytes at random; what comes back has at most that many.
using Mutation = std::function<std::string(std::string bytes, std::size_t most)>;

struct FuzzTarget {
  const char* name;
  const char* file;     // that a refusal names
  const char* readers;  // sources whose lines it should reach, with blanks between

  // Into a file of the working folder and through the reader. What is refused throws FatalError, what does
  // not keep its promises BrokenPromise.
  void (*read)(std::string_view bytes);

  std::vector<std::string> (*seeds)();

  // Words of a text format; null: none.
  std::vector<std::string> (*words)() = nullptr;

  // Changes what lies behind checksums and sizes, and sets these right. Empty: nothing to change. Null: bytes
  // are changed as they stand.
  std::string (*mutate)(std::string_view bytes, std::size_t most, unsigned seed,
                        const Mutation& any) = nullptr;
};

struct BrokenPromise {
  std::string text;
};

std::span<const FuzzTarget> fuzzTargets();

// Null: no such target.
const FuzzTarget* findFuzzTarget(std::string_view name);

// Reads the bytes; what is wrong then, empty where it is one of the two outcomes. Nothing of it is left but
// files in the working folder.
std::string judge(const FuzzTarget& target, std::string_view bytes);

}  // namespace vex
