#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include "fuzz/target.h"
#include "tests/support/temporary_folder.h"

// libFuzzer's side of the targets. VEX_FUZZ_TARGET names one; with VEX_FUZZ_SEEDS, a folder, its seeds and
// words are written there instead.

namespace {

const vex::FuzzTarget* target = nullptr;

std::string escaped(const std::string& word) {
  std::string text;
  for (const char c : word) {
    char hex[8];
    std::snprintf(hex, sizeof hex, "\\x%02x", static_cast<unsigned char>(c));
    text += hex;
  }
  return text;
}

void writeSeeds(const std::filesystem::path& folder) {
  int number = 0;
  for (const std::string& seed : target->seeds())
    vex::writeFile(folder / ("seed" + std::to_string(number++)), seed);
  std::string dictionary;
  if (target->words) {
    for (const std::string& word : target->words()) dictionary += "\"" + escaped(word) + "\"\n";
  }
  vex::writeFile(folder.native() + ".dict", dictionary);
}

}  // namespace

extern "C" {

std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

int LLVMFuzzerInitialize(int*, char***) {
  const char* name = std::getenv("VEX_FUZZ_TARGET");
  target = vex::findFuzzTarget(name ? name : "");
  if (!target) {
    std::fputs("VEX_FUZZ_TARGET is none of:\n", stderr);
    for (const vex::FuzzTarget& one : vex::fuzzTargets()) std::printf("%s %s\n", one.name, one.readers);
    std::exit(2);
  }
  if (const char* folder = std::getenv("VEX_FUZZ_SEEDS")) {
    writeSeeds(folder);
    std::exit(0);
  }
  static const vex::TemporaryFolder workingFolder;
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string fault = vex::judge(*target, {reinterpret_cast<const char*>(data), size});
  if (!fault.empty()) {
    std::fprintf(stderr, "%s: %s\n", target->name, fault.c_str());
    std::abort();
  }
  return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                    unsigned seed) {
  const auto any = [](std::string bytes, std::size_t most) {
    const std::size_t before = bytes.size();
    bytes.resize(std::max(most, before));
    bytes.resize(LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(bytes.data()), before, bytes.size()));
    return bytes;
  };
  std::string changed;
  if (target->mutate) changed = target->mutate({reinterpret_cast<char*>(data), size}, maxSize, seed, any);
  if (changed.empty() || changed.size() > maxSize) return LLVMFuzzerMutate(data, size, maxSize);
  std::memcpy(data, changed.data(), changed.size());
  return changed.size();
}
}
