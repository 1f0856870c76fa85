#include "studio/panes/gesture_end.h"

#include <FL/Fl.H>

namespace vex::studio {

namespace {

struct Place {
  int x = 0, y = 0;  // on the screen
  bool operator==(const Place&) const = default;
};
Place told;  // where a widget saw the mouse last

int deliver(int event, Fl_Window* window) {
  const Place now{Fl::event_x_root(), Fl::event_y_root()};
  switch (event) {
    case FL_RELEASE:
      if (Fl::pushed() && now != told) Fl::handle_(FL_DRAG, window);
      [[fallthrough]];
    case FL_PUSH:
    case FL_DRAG:
    case FL_MOVE:
      told = now;
      break;
    default:
      break;
  }
  return Fl::handle_(event, window);
}

}  // namespace

void endGesturesAtTheMouse() {
  Fl::event_dispatch(deliver);
}

}  // namespace vex::studio
