#pragma once

#include <FL/Fl_Widget.H>

#include "studio/session/session.h"

namespace vex::studio {

// The line under the picture: buttons of the transport, time, bar and beat, frame rate, size of the picture.
class TransportPane : public Fl_Widget {
 public:
  explicit TransportPane(Session& shared);

  std::string pictureSize;

 protected:
  void draw() override;
  int handle(int event) override;

 private:
  Session& session;
};

}  // namespace vex::studio
