#include "studio/panes/inline_edit.h"

#include <FL/Fl.H>
#include <FL/Fl_Window.H>

#include <charconv>
#include <utility>

#include "studio/panes/look.h"

namespace vex::studio {

InlineEdit::InlineEdit() : Fl_Input(0, 0, 10, 10) {
  box(FL_BORDER_BOX);
  hide();
}

void InlineEdit::open(int left, int top, int width, int height, const std::string& text,
                      std::function<void(const std::string&)> typed, bool always) {
  close(true);
  takesAny = always;
  before = text;
  take = std::move(typed);
  resize(left, top, width, height);
  textsize(px(12));
  color(flColour(colour::ground));
  textcolor(flColour(colour::text));
  cursor_color(flColour(colour::chosen));
  selection_color(flColour(blended(colour::ground, colour::chosen, 0.5)));
  value(text.c_str());
  position(size(), 0);
  show();
  take_focus();
  window()->redraw();
}

void InlineEdit::close(bool taken) {
  if (!visible()) return;
  const std::string typed = value();
  const auto given = std::exchange(take, nullptr);
  hide();
  window()->redraw();
  if (taken && given && (takesAny || typed != before)) given(typed);
}

int InlineEdit::handle(int event) {
  if (event == FL_KEYBOARD && visible()) {
    switch (Fl::event_key()) {
      case FL_Enter:
      case FL_KP_Enter:
      case FL_Tab:
        close(true);
        return 1;
      case FL_Escape:
        close(false);
        return 1;
      default:
        break;
    }
  }
  const int handled = Fl_Input::handle(event);
  if (event == FL_UNFOCUS) close(true);
  return handled;
}

bool readNumber(const std::string& text, double& number) {
  const std::size_t first = text.find_first_not_of(" +"), last = text.find_last_not_of(' ');
  if (first == std::string::npos) return false;
  const char* end = text.data() + last + 1;
  const auto [rest, error] = std::from_chars(text.data() + first, end, number);
  return error == std::errc() && rest == end;
}

}  // namespace vex::studio
