#include "studio/panes/transport_pane.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>

#include <cmath>

#include "base/report.h"
#include "studio/panes/look.h"

namespace vex::studio {

namespace {

constexpr int buttonWidth = 30;
enum Button { toStart, play, loop, buttonCount };

std::string clockText(double seconds) {
  const double minutes = std::floor(seconds / 60);
  return formatted("%.0f:%06.3f", minutes, seconds - minutes * 60);
}

// A track that leads back into itself: onward above, back below.
void drawLoopSign(int centre, int middle, int unit) {
  const int side = unit + 3, height = unit - 1, head = unit - 2;
  fl_line_style(FL_SOLID, 2);
  fl_begin_line();
  fl_vertex(centre - side, middle + 1);
  fl_vertex(centre - side, middle - height);
  fl_vertex(centre + side - head, middle - height);
  fl_end_line();
  fl_begin_line();
  fl_vertex(centre + side, middle - 1);
  fl_vertex(centre + side, middle + height);
  fl_vertex(centre - side + head, middle + height);
  fl_end_line();
  fl_line_style(0);
  fl_polygon(centre + side - head, middle - height - head, centre + side - head, middle - height + head,
             centre + side + 1, middle - height);
  fl_polygon(centre - side + head, middle + height - head, centre - side + head, middle + height + head,
             centre - side - 1, middle + height);
}

}  // namespace

TransportPane::TransportPane(Session& shared) : Fl_Widget(0, 0, 1, 1), session(shared) {
  tooltip(
      "to the beginning; play and pause (Space); the loop, which Shift and the mouse drag on the ruler: a "
      "click ends it");
}

void TransportPane::draw() {
  setDrawColour(colour::raised);
  fl_rectf(x(), y(), w(), h());
  const int middle = y() + h() / 2, unit = px(5);
  for (int button = 0; button < buttonCount; ++button) {
    const int centre = x() + px(buttonWidth) * button + px(buttonWidth) / 2 + px(4);
    switch (button) {
      case toStart:
        setDrawColour(colour::text);
        fl_rectf(centre - unit - 1, middle - unit, 2, 2 * unit);
        fl_polygon(centre + unit, middle - unit, centre + unit, middle + unit, centre - unit + 1, middle);
        break;
      case play:
        setDrawColour(session.show().playing() ? colour::chosen : colour::text);
        if (session.show().playing()) {
          fl_rectf(centre - unit, middle - unit, unit - 1, 2 * unit);
          fl_rectf(centre + 1, middle - unit, unit - 1, 2 * unit);
        } else {
          fl_polygon(centre - unit, middle - unit - 1, centre - unit, middle + unit + 1, centre + unit + 1,
                     middle);
        }
        break;
      default:
        setDrawColour(session.show().loop() ? colour::chosen : colour::dim);
        drawLoopSign(centre, middle, unit);
        break;
    }
  }
  const double now = session.show().time();
  int left = x() + px(buttonWidth) * buttonCount + px(16);
  useFont(true, 14);
  setDrawColour(colour::text);
  drawText(clockText(now), left, y(), px(90), h());
  left += px(90);
  useFont(false, 12);
  setDrawColour(colour::dim);
  if (const auto tempo = session.document().tempo()) {
    drawText("bar " + tempo->text(now), left, y(), px(110), h());
    left += px(110);
  }
  std::string right = pictureSize;
  if (session.show().playing()) right = formatted("%.0f fps   ", session.show().framesPerSecond()) + right;
  drawText(right, left, y(), x() + w() - left - px(10), h(), FL_ALIGN_RIGHT);
}

int TransportPane::handle(int event) {
  if (event != FL_PUSH) return Fl_Widget::handle(event);
  switch ((Fl::event_x() - x() - px(4)) / px(buttonWidth)) {
    case toStart:
      session.seek(session.show().loop() ? session.show().loop()->begin
                                         : session.document().project().startTime);
      break;
    case play:
      session.togglePlaying();
      break;
    case loop:
      session.clearLoop();
      break;
    default:
      break;
  }
  redraw();
  return 1;
}

}  // namespace vex::studio
