#pragma once

#include <string>
#include <vector>

#include "studio/panes/inline_edit.h"
#include "studio/panes/pane.h"

namespace vex::studio {

// The curve of the chosen parameter over its part, as the player evaluates it, with its dots.
class CurvePane : public Pane {
 public:
  CurvePane(Session& shared, InlineEdit& field);

  std::function<void(ParameterAt)> chooseKind;  // set by the window

  void cancel();  // what the mouse is about

 protected:
  void draw() override;
  int handle(int event) override;

 private:
  struct Plot {
    int left, top, width, height;
    double least, greatest;  // values at the lower and upper edge

    double xOf(double progress) const { return left + progress * width; }
    double yOf(double value) const { return top + (greatest - value) / (greatest - least) * height; }
    double progressAt(double x) const { return (x - left) / width; }
    double valueAt(double y) const { return greatest - (y - top) / height * (greatest - least); }
  };
  // A number in the row below the headline that can be typed.
  struct Typed {
    const char* name;
    double value;
    std::function<void(double)> set;
  };

  InlineEdit& edit;
  Plot heldPlot{};  // while a dot is dragged, so that it does not run away under the mouse
  bool dragging = false;

  Plot plot() const;
  std::vector<Typed> typedNumbers() const;
  int typedTop() const;
  int dotAt(const Plot& plot, int x, int y) const;
  void drawGround(const Plot& plot) const;
  void drawCurve(const Plot& plot) const;
  void drawDots(const Plot& plot) const;
  void drawTyped() const;
  int press();
  int drag();
  void removeDot();
};

}  // namespace vex::studio
