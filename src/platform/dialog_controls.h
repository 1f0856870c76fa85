#pragma once

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
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

// A button that takes Enter, too, while it has the focus; elsewhere Enter is the default button's.
class PlainButton : public Fl_Button {
 public:
  PlainButton(int x, int y, int width, int height, const char* text);

  int handle(int event) override;
};

// Answers Enter like a return button, and is told from the others by its black face instead of an
// arrow.
class DefaultButton : public Fl_Return_Button {
 public:
  DefaultButton(int x, int y, int width, int height, const char* text);

 private:
  void draw() override;
};

// A line of text from its left edge, as it stands: labels of the toolkit would read '@' as a command.
class TextLine : public Fl_Box {
 public:
  TextLine(int x, int y, int width, int height);

 private:
  void draw() override;
};

}  // namespace vex
