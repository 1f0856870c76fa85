#include "platform/dialog_controls.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>

#include <algorithm>

#include "platform/look.h"

namespace vex {

ModeList::ModeList(int x, int y, int width, int height) : Fl_Hold_Browser(x, y, width, height) {
  format_char(0);
  when(FL_WHEN_NEVER);
}

void ModeList::select(int line) {
  selected = std::clamp(line, 1, std::max(size(), 1));
  value(selected);
  if (size() > 0) make_visible(selected);
  redraw();
}

int ModeList::handle(int event) {
  int left, top, width, height;
  bbox(left, top, width, height);

  if (event == FL_KEYBOARD) {
    const int page = std::max(1, height / (incr_height() + 1) - 1);
    switch (Fl::event_key()) {
      case FL_Enter:
      case FL_KP_Enter:
        return 0;
      case FL_Home:
        select(1);
        return 1;
      case FL_End:
        select(size());
        return 1;
      case FL_Page_Up:
        select(selected - page);
        return 1;
      case FL_Page_Down:
        select(selected + page);
        return 1;
      case FL_Up:
        select(selected - 1);
        return 1;
      case FL_Down:
        select(selected + 1);
        return 1;
    }
  }

  const int handled = Fl_Hold_Browser::handle(event);
  if (value() > 0) {
    selected = value();
  } else if (size() > 0) {
    select(selected);  // a press below the last line selects nothing
  }
  if (event == FL_RELEASE && Fl::event_clicks() > 0 && Fl::event_inside(left, top, width, height) &&
      find_item(Fl::event_y())) {
    Fl::event_clicks(0);
    do_callback();
  }
  return handled;
}

PlainButton::PlainButton(int x, int y, int width, int height, const char* text)
    : Fl_Button(x, y, width, height, text) {}

int PlainButton::handle(int event) {
  const bool enter = Fl::event_key() == FL_Enter || Fl::event_key() == FL_KP_Enter;
  if (event != FL_KEYBOARD || !enter) return Fl_Button::handle(event);
  do_callback();
  return 1;
}

DefaultButton::DefaultButton(int x, int y, int width, int height, const char* text)
    : Fl_Return_Button(x, y, width, height, text) {}

void DefaultButton::draw() {
  const bool pressed = value() != 0;
  labelcolor(flColour(pressed ? icon::inkBlack : icon::bone));
  draw_box(FL_FLAT_BOX, flColour(pressed ? icon::acidGreen : icon::inkBlack));
  draw_label();
  if (Fl::focus() == this) {
    fl_color(flColour(pressed ? icon::inkBlack : icon::acidGreen));
    fl_rect(x() + 3, y() + 3, w() - 6, h() - 6);
  }
}

TextLine::TextLine(int x, int y, int width, int height) : Fl_Box(x, y, width, height) {}

void TextLine::draw() {
  if (!label()) return;
  fl_color(labelcolor());
  fl_font(labelfont(), labelsize());
  fl_draw(label(), x(), y() + (h() + fl_height()) / 2 - fl_descent());
}

}  // namespace vex
