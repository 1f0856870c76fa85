#include "studio/document/number_style.h"

#include <gtest/gtest.h>

namespace vex::studio {
namespace {

TEST(NumberStyle, IsReadFromTheNumber) {
  const struct {
    const char* text;
    NumberUnit unit;
    int decimals;
  } rows[]{
      {"4", NumberUnit::plain, 0},
      {"-4.50", NumberUnit::plain, 2},
      {"4.5s", NumberUnit::seconds, 1},
      {"12:2", NumberUnit::beats, 0},
      {"12:2.25", NumberUnit::beats, 2},
      {"1.5e-3", NumberUnit::plain, 0},
      {"0.3333333333333333", NumberUnit::plain, 0},
      {"0x4008000000000000", NumberUnit::plain, 0},
      {"-inf", NumberUnit::plain, 0},
      {"", NumberUnit::plain, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(styleOf(row.text).unit, row.unit) << row.text;
    EXPECT_EQ(styleOf(row.text).decimals, row.decimals) << row.text;
  }
}

TEST(NumberStyle, WritesTheFewestDigits) {
  const struct {
    double value;
    int decimals;
    Precision precision;
    const char* text;
  } rows[]{
      {4, 0, Precision::shown, "4"},
      {4, 2, Precision::shown, "4.00"},
      {0.5, 0, Precision::shown, "0.5"},
      {-1.0 / 3, 0, Precision::shown, "-0.3333"},
      {-1.0 / 3, 6, Precision::shown, "-0.333333"},
      {1.0 / 3, 0, Precision::exact, "0.33333333"},
      {0.1 + 0.2, 0, Precision::exact, "0.3"},
      {1.99999, 0, Precision::shown, "2"},
      {1.99999, 0, Precision::exact, "1.99999"},
      {0.0123449, 0, Precision::shown, "0.01234"},
      {0.0000123, 0, Precision::shown, "0.0000123"},
      {-1e-17, 1, Precision::shown, "0.0"},
      {-0.00001, 1, Precision::shown, "-0.00001"},
      {123456789, 0, Precision::shown, "123456789"},
      {100000000000000, 0, Precision::shown, "100000000000000"},
      {1e20, 0, Precision::shown, "1e+20"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(writeNumber(row.value, row.decimals, row.precision), row.text);
  }
}

TEST(NumberStyle, WritesTimesInTheirUnit) {
  const std::optional<Tempo> tempo = Tempo{.beatsPerMinute = 120, .beatsPerBar = 3, .origin = 1};
  const NumberStyle plain, seconds{NumberUnit::seconds, 1}, beats{NumberUnit::beats, 0};
  const NumberStyle fineBeats{NumberUnit::beats, 2};
  const struct {
    double time;
    NumberStyle style;
    std::optional<Tempo> holds;
    Precision precision;
    const char* text;
  } rows[]{
      {4.5, plain, tempo, Precision::shown, "4.5"},
      {4.5, seconds, tempo, Precision::shown, "4.5s"},
      {4, seconds, tempo, Precision::shown, "4.0s"},
      {5.5, beats, tempo, Precision::shown, "3:0"},
      {5.75, beats, tempo, Precision::shown, "3:0.5"},
      {5.7499999, beats, tempo, Precision::shown, "3:0.5"},
      {5.5 - 1e-9, beats, tempo, Precision::exact, "3:0"},
      {5.5 - 0.0001, beats, tempo, Precision::shown, "3:0"},
      {5.5 - 0.0001, beats, tempo, Precision::exact, "2:2.9998"},
      {5.5, fineBeats, tempo, Precision::shown, "3:0.00"},
      {1.015625, beats, tempo, Precision::shown, "0:0.03125"},
      {1 + 1.0 / 6, beats, tempo, Precision::shown, "0:0.333"},
      {0.5, beats, tempo, Precision::shown, "-0:1"},
      {1 - 1e-12, beats, tempo, Precision::shown, "0:0"},
      {4.5, beats, std::nullopt, Precision::shown, "4.5"},
  };
  for (const auto& row : rows) EXPECT_EQ(writeTime(row.time, row.style, row.holds, row.precision), row.text);
  EXPECT_EQ(writeSpan(4.5, beats, tempo, Precision::shown), "3:0");
  EXPECT_EQ(writeSpan(-0.5, beats, tempo, Precision::shown), "-0:1");
}

}  // namespace
}  // namespace vex::studio
