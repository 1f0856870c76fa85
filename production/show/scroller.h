#pragma once

#include <string_view>

#include "production/making/product.h"

namespace vex::show {

// What the closing scene's scroller says: letters, blanks and `. , ! ? -`, which its font has.
std::string_view scrollerWords();

Products scrollerText();  // data\scroller.txt

}  // namespace vex::show
