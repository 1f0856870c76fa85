#pragma once

#include <FL/Fl_Gl_Window.H>
#include <FL/Fl_Group.H>

#include <cstdint>
#include <string>
#include <vector>

#include "studio/session/session.h"

namespace vex::studio {

enum class Aspect : std::int8_t { wide, narrow, window };  // 16:9, 4:3, all of the pane

// The show at its time, in a GL window of its own: nothing else draws in that context.
class PicturePane : public Fl_Group {
 public:
  explicit PicturePane(Session& shared);

  // Once the window is shown. Empty, or why there can be no picture here.
  std::string open();
  bool opened() const { return hasContext; }
  void makeCurrent();

  void setAspect(Aspect chosen);
  Aspect aspect() const { return shape; }
  void redrawPicture();

  // What the window shows, drawn anew: four bytes a pixel (blue, green, red, alpha), rows from the bottom.
  std::vector<std::uint32_t> pixels();
  int pictureWidth() const { return view->w(); }
  int pictureHeight() const { return view->h(); }

  std::string notice;  // in place of the picture, where there is none

  void resize(int x, int y, int width, int height) override;

 protected:
  void draw() override;

 private:
  class View : public Fl_Gl_Window {
   public:
    explicit View(Session& shared);
    void draw() override;
    int handle(int event) override;

   private:
    Session& session;
  };

  Session& session;
  View* view;  // of the group
  Aspect shape = Aspect::wide;
  bool hasContext = false;

  void place();
};

}  // namespace vex::studio
