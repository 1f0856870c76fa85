#pragma once

#include <FL/Fl_Hold_Browser.H>
#include <FL/Fl_Return_Button.H>

namespace vex {

// A list in which one line is always selected. Its callback means a double click on a line. Besides
// the arrows, Home, End, Page Up and Page Down move the selection; Enter is left to the dialog.
class ModeList : public Fl_Hold_Browser {
 public:
  ModeList(int x, int y, int width, int height);

  // `line` counts from 1; out of range goes to the nearest.
  void select(int line);

  int handle(int event) override;

 private:
  int selected = 1;
};

// Answers Enter like a return button, and is told from the others by its black face instead of an
// arrow.
class DefaultButton : public Fl_Return_Button {
 public:
  DefaultButton(int x, int y, int width, int height, const char* text);

 private:
  void draw() override;
};

}  // namespace vex
