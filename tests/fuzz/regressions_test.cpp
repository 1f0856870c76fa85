#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "base/files.h"
#include "base/report.h"
#include "fuzz/target.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

const fs::path regressions = fs::path(VEX_SOURCE) / "fuzz" / "regressions";

// What the fuzzers have found once, and what they begin with.
std::vector<std::pair<std::string, std::string>> inputsOf(const FuzzTarget& target) {
  std::vector<std::pair<std::string, std::string>> inputs;
  if (fs::exists(regressions / target.name)) {
    for (const fs::directory_entry& entry : fs::directory_iterator(regressions / target.name))
      inputs.emplace_back(entry.path().filename().native(), readFile(entry.path()));
  }
  for (const std::string& seed : target.seeds())
    inputs.emplace_back("seed " + std::to_string(inputs.size()), seed);
  return inputs;
}

// Sanitizers slow down what they watch, and keep memory of their own.
#ifdef __SANITIZE_ADDRESS__
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

double processorSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Bytes of the largest part of this process that ever was in memory.
std::size_t mostMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

class Fuzzed : public testing::TestWithParam<const FuzzTarget*> {
 protected:
  TemporaryFolder folder;
};

}  // namespace

TEST_P(Fuzzed, InputsAreTakenOrRefusedByName) {
  const FuzzTarget& target = *GetParam();
  for (const auto& [name, bytes] : inputsOf(target)) {
    const std::size_t memory = mostMemory();
    const double start = processorSeconds();
    EXPECT_EQ(judge(target, bytes), "") << name;
    EXPECT_LT(processorSeconds() - start, sanitized ? 10.0 : 1.0) << name;
    if (sanitized) continue;
    EXPECT_LE(mostMemory() - memory, (std::size_t{64} << 20) + 16 * bytes.size()) << name;
  }
}

// Every beginning of the shortest seed, and each of its bytes changed.
TEST_P(Fuzzed, DamagedSeedsAreTakenOrRefusedByName) {
  const FuzzTarget& target = *GetParam();
  const std::vector<std::string> seeds = target.seeds();
  const std::string& seed = *std::ranges::min_element(
      seeds, {}, [](const std::string& one) { return one.size() < 40 ? one.size() + 100'000 : one.size(); });
  const std::size_t step = 1 + seed.size() / 200;
  for (std::size_t size = 0; size < seed.size(); size += step) {
    EXPECT_EQ(judge(target, seed.substr(0, size)), "") << size << " bytes";
    std::string changed = seed;
    changed[size] = static_cast<char>(~changed[size]);
    EXPECT_EQ(judge(target, changed), "") << "byte " << size;
  }
}

INSTANTIATE_TEST_SUITE_P(Readers, Fuzzed, testing::ValuesIn([] {
                           std::vector<const FuzzTarget*> all;
                           for (const FuzzTarget& target : fuzzTargets()) all.push_back(&target);
                           return all;
                         }()),
                         [](const auto& test) {
                           std::string name = test.param->name;
                           std::erase(name, '-');
                           return name;
                         });

TEST(FuzzTargets, KeepAllTheirFinds) {
  if (!fs::exists(regressions)) return;
  for (const fs::directory_entry& entry : fs::directory_iterator(regressions))
    EXPECT_TRUE(findFuzzTarget(entry.path().filename().native())) << entry.path() << " belongs to no target";
}

// The judge itself: what is no outcome must not pass for one.
TEST(FuzzTargets, TellWhatIsNoOutcome) {
  const TemporaryFolder folder;
  const struct {
    void (*read)(std::string_view);
    const char* fault;
  } rows[] = {
      {[](std::string_view) {}, ""},
      {[](std::string_view) { fatalError("a.txt: bad"); }, ""},
      {[](std::string_view) { fatalError("bad"); }, "a refusal that does not name a.txt: bad"},
      {[](std::string_view) { throw BrokenPromise{"other bytes"}; }, "other bytes"},
      {[](std::string_view) { std::vector<int>().at(1); },
       "an exception that nobody takes: vector::_M_range_check: __n (which is 1) >= this->size() (which is "
       "0)"},
  };
  for (const auto& [read, fault] : rows) {
    EXPECT_EQ(judge({.name = "test", .file = "a.txt", .readers = "", .read = read, .seeds = nullptr}, ""),
              fault);
  }
}

}  // namespace vex
