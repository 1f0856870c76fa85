#pragma once

#include <FL/Fl_Widget.H>

#include "studio/session/session.h"

namespace vex::studio {

// A pane of the window that draws itself from the session.
class Pane : public Fl_Widget {
 public:
  Pane(Session& shared, const char* headline) : Fl_Widget(0, 0, 1, 1), session(shared), title(headline) {}

 protected:
  Session& session;
  const char* title;

  // Ground and headline; what is left below it begins at contentTop().
  void drawFrame() const;
  int contentTop() const;
};

}  // namespace vex::studio
