#include "studio/panes/pane.h"

#include <FL/fl_draw.H>

#include "studio/panes/look.h"

namespace vex::studio {

int Pane::contentTop() const {
  return y() + lineHeight();
}

void Pane::drawFrame() const {
  setDrawColour(colour::pane);
  fl_rectf(x(), y(), w(), h());
  setDrawColour(colour::raised);
  fl_rectf(x(), y(), w(), lineHeight());
  setDrawColour(colour::dim);
  useFont(true, 11);
  drawText(title, x() + px(8), y(), w() - px(16), lineHeight());
}

}  // namespace vex::studio
