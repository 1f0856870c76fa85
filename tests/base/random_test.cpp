#include "base/random.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace vex {

// The same sequence in 64-bit arithmetic, worked out apart from the code.
TEST(Random, FollowsTheCongruence) {
  randomState() = 1;
  std::uint64_t state = 1;
  for (int i = 0; i < 1000; ++i) {
    state = (state * 214013 + 2531011) % 4294967296;
    EXPECT_EQ(randomNext(), static_cast<int>(state / 65536 % 32768)) << "draw " << i;
  }
}

TEST(Random, StartsWithKnownValues) {
  randomState() = 1;
  for (const int expected : {41, 18467, 6334, 26500, 19169}) EXPECT_EQ(randomNext(), expected);
}

TEST(Random, SymmetricDrawUsesTheLastFourDigits) {
  randomState() = 1;
  for (const float expected : {(41 - 5000) / 5000.0f, (8467 - 5000) / 5000.0f, (6334 - 5000) / 5000.0f}) {
    EXPECT_FLOAT_EQ(randomSymmetric(2.0f), 2.0f * expected);
  }
}

}  // namespace vex
