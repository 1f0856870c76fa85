#include "production/show/scroller.h"

namespace vex::show {

using namespace image;

// Twenty letters fill the screen; the greetings come up with the last chorus.
std::string_view scrollerWords() {
  return "this was vex, by halvane...  a box that should have stayed shut.  "
         "no picture was drawn, no note was played - all of it is code, "
         "painted, carved and sung by one small program.  "
         "greetings to you who watch, to you who listen, and to you who code!  "
         "now close the lid...      ";
}

Products scrollerText() {
  Product product;
  product.outputs = {"data/scroller.txt"};
  product.source = __FILE__;
  product.work = 0.1f;
  product.make = [](const Settings&) { return std::vector<Bytes>{bytesOf(scrollerWords())}; };
  return {product};
}

}  // namespace vex::show
