#pragma once

#include <FL/Fl_Input.H>

#include <functional>
#include <string>

namespace vex::studio {

// The one field for typing that appears over a value, and goes with Enter or Tab (taken), Escape (left), or
// when the keyboard goes elsewhere (taken).
class InlineEdit : public Fl_Input {
 public:
  InlineEdit();

  // `typed` hears of a text that differs from the one given, or with `always` of any that is entered.
  void open(int x, int y, int width, int height, const std::string& text,
            std::function<void(const std::string&)> typed, bool always = false);
  void close(bool take);

 protected:
  int handle(int event) override;

 private:
  std::function<void(const std::string&)> take;
  std::string before;
  bool takesAny = false;
};

// The whole text as a number; "1,5" is none.
bool readNumber(const std::string& text, double& number);

}  // namespace vex::studio
