#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vex::studio {

// A window of names with small pictures (of the textures that `pictureOf` gives), filtered while one types.
// None when it is left.
std::optional<std::string> chooseName(const std::string& title, const std::vector<std::string>& names,
                                      const std::string& now,
                                      const std::function<std::string(const std::string&)>& pictureOf);

// Scene and function from a menu at the mouse pointer. None when it is left.
std::optional<std::pair<std::string, std::string>> chooseFunction();

// One of the entries of a menu at the mouse pointer; -1 when it is left.
int chooseEntry(const std::vector<std::string>& entries, int ticked = -1);

}  // namespace vex::studio
