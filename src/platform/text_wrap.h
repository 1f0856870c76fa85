#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vex {

// Cuts UTF-8 text into lines no wider than `width` by `measure`: at line feeds, else at the last
// blank that fits, else (one long word) after the last character that fits, at least one. Blanks at
// a cut vanish, line feeds at the end are ignored.
std::vector<std::string> wrapText(std::string_view text, double width,
                                  const std::function<double(std::string_view)>& measure);

}  // namespace vex
