#include "models/model_number.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace vex {

namespace {

// What the C library makes of the same text is the oracle.
void expectAsStrtof(const std::string& text) {
  char* end = nullptr;
  const float expected = std::strtof(text.c_str(), &end);
  const char* p = text.data();
  float value = 0;
  ASSERT_TRUE(parseNumber(p, text.data() + text.size(), value)) << text;
  if (std::isnan(expected)) {
    EXPECT_TRUE(std::isnan(value)) << text;
  } else {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(expected)) << text;
  }
  EXPECT_EQ(p - text.data(), end - text.c_str()) << text;
}

[[gnu::format(printf, 1, 2)]] std::string printed(const char* format, ...) {
  char text[128];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

}  // namespace

TEST(ModelNumber, ReadsFloatsAsTheCLibraryDoes) {
  for (const char* text : {"0",
                           "-0",
                           "1",
                           "+1.5",
                           ".5",
                           "5.",
                           "-.25",
                           "0.1",
                           "16777217",
                           "16777219.0",
                           "18446744073709551617",  // 1 more than 64 bits hold
                           "0.000000000000000000001",
                           "340282346638528859811704183484516925440",
                           "340282356779733661637539395458142568448",
                           "1e39",
                           "-1e39",
                           "1.17549435e-38",
                           "1e-45",
                           "7e-46",
                           "1e-50",
                           "1.401298464e-45",
                           "123456789012345678901234567890",
                           "0.00000000000000000000000000000000000000000000000000001",
                           "9007199254740993",
                           "8388608.5",
                           "8388609.5",
                           "1e5",
                           "1E+5",
                           "2.5e-3",
                           "inf",
                           "-inf",
                           "nan",
                           "1.5abc",
                           "1.5.5",
                           "1-2",
                           "3,4",
                           "1.#QNAN",
                           "12e",
                           "4e+"}) {
    expectAsStrtof(text);
  }
  std::mt19937 random(7);
  for (int i = 0; i < 200000; ++i) {
    const auto value = static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
    if (!std::isfinite(value)) continue;
    const double small = static_cast<double>(static_cast<std::int32_t>(random())) / 65536.0;
    expectAsStrtof(printed("%.4f", small));
    expectAsStrtof(printed("%.9g", value));
    expectAsStrtof(printed("%.6f", small * 1e-3));
    // Halfway between two floats, and a little beside.
    const double halfway = std::fabs(small) + std::ldexp(1.0, std::ilogb(std::fabs(small) + 1e-9) - 24);
    expectAsStrtof(printed("%.17g", halfway));
    expectAsStrtof(printed("%.30f", halfway));
  }
}

TEST(ModelNumber, ReadsIntegersAndStopsAtTheirRange) {
  const struct {
    const char* text;
    int value;
    int length;
  } cases[] = {{"12", 12, 2},
               {" \t-7x", -7, 4},
               {"+3:", 3, 2},
               {"1.5", 1, 1},
               {"2147483647", 2147483647, 10},
               {"99999999999999999999", 2147483647, 20},
               {"-2147483648", -2147483647 - 1, 11},
               {"-2147483649", -2147483647 - 1, 11}};
  for (const auto& [text, expected, length] : cases) {
    const char* p = text;
    int value = 0;
    EXPECT_TRUE(parseNumber(p, text + std::string(text).size(), value)) << text;
    EXPECT_EQ(value, expected) << text;
    EXPECT_EQ(p - text, length) << text;
  }
}

TEST(ModelNumber, LeavesWhatIsNoNumber) {
  for (const std::string text : {"", " ", "-", "+", ".", "-.", "e5", "x1", "--1", "#", "{"}) {
    const char* p = text.data();
    int integer = 42;
    float number = 42;
    EXPECT_FALSE(parseNumber(p, text.data() + text.size(), integer)) << text;
    EXPECT_FALSE(parseNumber(p, text.data() + text.size(), number)) << text;
    EXPECT_EQ(integer, 42);
    EXPECT_EQ(number, 42.0f);
    EXPECT_EQ(p, text.data());
  }
}

}  // namespace vex
