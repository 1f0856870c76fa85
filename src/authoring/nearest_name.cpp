#include "authoring/nearest_name.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace vex {

namespace {

constexpr std::size_t longestCompared = 128;
constexpr int change = 1000;  // a change of case costs 1

int replacementCost(char a, char b) {
  if (a == b) return 0;
  return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b)) ? 1
                                                                                                    : change;
}

// Levenshtein's distance, row by row.
int distance(std::string_view a, std::string_view b) {
  std::vector<int> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = change * static_cast<int>(j);
  for (const char letter : a) {
    int diagonal = row[0];
    row[0] += change;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const int replaced = diagonal + replacementCost(letter, b[j]);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j + 1] + change, row[j] + change});
    }
  }
  return row.back();
}

}  // namespace

std::string_view nearestName(std::string_view wrong, std::span<const std::string_view> known) {
  if (wrong.size() > longestCompared) return {};
  int least = change * static_cast<int>((wrong.size() + 1) / 3) + change / 2;
  std::string_view nearest;
  for (const std::string_view name : known) {
    if (name.size() > longestCompared) continue;
    const int cost = distance(wrong, name);
    if (cost > least || (cost == least && !nearest.empty())) continue;
    least = cost;
    nearest = name;
  }
  return nearest;
}

std::string nearestNameHint(std::string_view wrong, std::span<const std::string_view> known) {
  if (const std::string_view name = nearestName(wrong, known); !name.empty()) {
    return "did you mean " + std::string(name) + "?";
  }
  std::string hint = known.size() == 1 ? "known is " : "known are ";
  for (std::size_t i = 0; i < known.size(); ++i) {
    if (i > 0) hint += i + 1 == known.size() ? " and " : ", ";
    hint += known[i];
  }
  return hint;
}

}  // namespace vex
