#pragma once

#include <FL/Fl_Widget.H>

#include <functional>

#include "studio/session/session.h"

namespace vex::studio {

// The line at the foot: what the user is told or asked, how a recording goes, and how many problems there
// are. A click copies the message.
class MessageBar : public Fl_Widget {
 public:
  explicit MessageBar(Session& shared) : Fl_Widget(0, 0, 1, 1), session(shared) {}

  std::function<void()> listFindings;  // set by the window

 protected:
  void draw() override;
  int handle(int event) override;

 private:
  struct Button {
    std::string label;
    std::function<void()> press;
    int left, width;
  };

  Session& session;
  std::vector<Button> buttons;
  std::string hint;

  void placeButtons();
};

}  // namespace vex::studio
