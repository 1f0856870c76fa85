#include "studio/panes/curve_pane.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/report.h"
#include "studio/panes/look.h"
#include "studio/session/played_curve.h"
#include "studio/session/time_view.h"

namespace vex::studio {

namespace {

constexpr int dotRadius = 4;

bool hasDots(const ProjectParameter& parameter) {
  return parameter.type == PARAM_LINEAR || parameter.type == PARAM_SPLINE;
}

// What the player would hold it to all the same.
double held(const ProjectParameter& parameter, double value) {
  return parameter.min <= parameter.max ? std::clamp(value, parameter.min, parameter.max) : value;
}

// 1, 2 or 5 times a power of ten, so that some four lines fit into the range.
double gridStep(double range) {
  const double power = std::pow(10.0, std::floor(std::log10(range / 4)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (range / (power * factor) <= 5) return power * factor;
  return power * 10;
}

}  // namespace

CurvePane::CurvePane(Session& shared, InlineEdit& field) : Pane(shared, "Curve"), edit(field) {}

int CurvePane::typedTop() const {
  return contentTop() + lineHeight();
}

CurvePane::Plot CurvePane::plot() const {
  if (dragging) return heldPlot;
  const ProjectParameter& parameter = *session.selectedParameter();
  PlayedCurve curve(parameter);
  double least = std::numeric_limits<double>::infinity(), greatest = -least;
  const auto include = [&](double value) {
    if (!std::isfinite(value)) return;
    least = std::min(least, value);
    greatest = std::max(greatest, value);
  };
  for (int i = 0; i <= 100; ++i)
    if (const auto value = curve.at(i / 100.0)) include(static_cast<double>(*value));
  if (hasDots(parameter))
    for (const ProjectDot& dot : parameter.dots) include(dot.y);
  if (!(least <= greatest)) least = 0, greatest = 1;
  double air = (greatest - least) * 0.12;
  if (air < 1e-6) air = std::max(std::abs(greatest) * 0.5, 0.5);
  const int left = x() + px(48), top = typedTop() + lineHeight() + px(6);
  return {left,
          top,
          std::max(10, x() + w() - px(12) - left),
          std::max(10, y() + h() - px(10) - top),
          least - air,
          greatest + air};
}

void CurvePane::draw() {
  drawFrame();
  fl_push_clip(x(), contentTop(), w(), y() + h() - contentTop());
  const ProjectParameter* parameter = session.selectedParameter();
  useFont(false, 12);
  if (!parameter) {
    setDrawColour(colour::dim);
    drawText("Choose a parameter of the part to see its curve.", x() + px(10), contentTop() + px(8),
             w() - px(20), lineHeight());
  } else {
    const ProjectCall& call =
        session.selectedPart()->calls[static_cast<std::size_t>(session.selection().call)];
    setDrawColour(colour::text);
    useFont(true, 12);
    drawText(parameter->name, x() + px(10), contentTop(), w() * 6 / 10, lineHeight());
    useFont(false, 11);
    setDrawColour(colour::dim);
    drawText(call.function, x() + w() * 6 / 10, contentTop(), w() * 4 / 10 - px(10), lineHeight(),
             FL_ALIGN_RIGHT);
    if (parameter->type == PARAM_STRING) {
      drawText("A text has no curve.", x() + px(10), typedTop(), w() - px(20), lineHeight());
    } else {
      drawTyped();
      const Plot at = plot();
      drawGround(at);
      drawCurve(at);
      if (hasDots(*parameter)) drawDots(at);
    }
  }
  fl_pop_clip();
}

void CurvePane::drawGround(const Plot& at) const {
  const ProjectPart& part = *session.selectedPart();
  setDrawColour(colour::ground);
  fl_rectf(at.left, at.top, at.width, at.height);
  useFont(false, 10);
  const double step = gridStep(at.greatest - at.least);
  for (double value = std::ceil(at.least / step) * step; value <= at.greatest; value += step) {
    const int line = static_cast<int>(std::lround(at.yOf(value)));
    setDrawColour(std::abs(value) < step / 2 ? colour::faint : colour::edge);
    fl_xyline(at.left, line, at.left + at.width);
    setDrawColour(colour::dim);
    drawText(formatted("%.5g", std::abs(value) < step / 1e6 ? 0.0 : value), x(), line - px(8),
             at.left - x() - px(6), px(16), FL_ALIGN_RIGHT);
  }
  // The part's beats, or its seconds.
  const TimeView times{part.pos, std::max(part.length, 1e-3) / at.width, at.width};
  const auto tempo = session.document().tempo();
  for (const RulerMark& mark : tempo ? beatMarks(times, *tempo) : secondMarks(times)) {
    setDrawColour(mark.strong ? colour::edge : blended(colour::ground, colour::edge, 0.5));
    fl_yxline(at.left + static_cast<int>(std::lround(times.pixelOf(mark.time))), at.top, at.top + at.height);
  }
  const double now = progressAt(part, session.show().time());
  if (now < 0 || now > 1) return;
  setDrawColour(colour::cursor);
  fl_yxline(static_cast<int>(std::lround(at.xOf(now))), at.top, at.top + at.height);
}

void CurvePane::drawCurve(const Plot& at) const {
  PlayedCurve curve(*session.selectedParameter());
  fl_push_clip(at.left, at.top, at.width, at.height);
  setDrawColour(colour::text);
  fl_line_style(FL_SOLID, 2);
  bool drawing = false;
  for (int i = 0; i <= at.width; ++i) {
    const auto value = curve.at(static_cast<double>(i) / at.width);
    const double height = value ? at.yOf(static_cast<double>(*value)) : 0;
    if (!value || std::abs(height) > 1e5) {
      if (std::exchange(drawing, false)) fl_end_line();
      continue;
    }
    if (!std::exchange(drawing, true)) fl_begin_line();
    fl_vertex(at.left + i, height);
  }
  if (drawing) fl_end_line();
  fl_line_style(0);
  fl_pop_clip();
}

void CurvePane::drawDots(const Plot& at) const {
  const int radius = px(dotRadius);
  int i = 0;
  for (const ProjectDot& dot : session.selectedParameter()->dots) {
    const int cx = static_cast<int>(std::lround(at.xOf(dot.x))),
              cy = static_cast<int>(std::lround(std::clamp(at.yOf(dot.y), -1e4, 1e4)));
    const bool chosen = i++ == session.selection().dot;
    setDrawColour(chosen ? colour::chosen : colour::text);
    fl_pie(cx - radius, cy - radius, 2 * radius + 1, 2 * radius + 1, 0, 360);
    setDrawColour(colour::ground);
    fl_pie(cx - radius / 2, cy - radius / 2, radius + 1, radius + 1, 0, 360);
  }
}

std::vector<CurvePane::Typed> CurvePane::typedNumbers() const {
  const ProjectParameter& parameter = *session.selectedParameter();
  const ParameterAt where = session.selection().where();
  if (parameter.type == PARAM_CONST)
    return {{"value", parameter.constant,
             [=, this](double value) { session.edit(session.document().setConstant(where, value)); }}};
  if (parameter.type == PARAM_SINE) {
    const auto sine = [=, this](SineField field) {
      return [=, this](double value) { session.edit(session.document().setSine(where, field, value)); };
    };
    return {{"cycles", parameter.sinPeriod, sine(SineField::cycles)},
            {"amplitude", parameter.sinAmplitude, sine(SineField::amplitude)},
            {"offset", parameter.sinOffset, sine(SineField::offset)},
            {"phase", parameter.sinPhase, sine(SineField::phase)}};
  }
  const int dot = session.selection().dot;
  if (dot < 0 || static_cast<std::size_t>(dot) >= parameter.dots.size()) return {};
  const ProjectDot at = parameter.dots[static_cast<std::size_t>(dot)];
  const double length = session.selectedPart()->length;
  return {
      {"progress", at.x,
       [=, this](double x) { session.edit(session.document().setDot(where, dot, x, at.y)); }},
      {"second", at.x * length,
       [=, this](double seconds) {
         if (length > 0) session.edit(session.document().setDot(where, dot, seconds / length, at.y));
       }},
      {"value", at.y, [=, this](double y) { session.edit(session.document().setDot(where, dot, at.x, y)); }}};
}

void CurvePane::drawTyped() const {
  const std::vector<Typed> numbers = typedNumbers();
  useFont(false, 11);
  if (numbers.empty()) {
    setDrawColour(colour::dim);
    drawText("Drag dots; double-click makes one, Delete removes it.", x() + px(10), typedTop(), w() - px(20),
             lineHeight());
    return;
  }
  const int width = (w() - px(20)) / static_cast<int>(numbers.size());
  int left = x() + px(10);
  for (const Typed& number : numbers) {
    setDrawColour(colour::dim);
    drawText(number.name, left, typedTop(), width / 2 - px(4), lineHeight());
    setDrawColour(colour::text);
    drawText(formatted("%.5g", number.value), left + width / 2, typedTop(), width / 2 - px(4), lineHeight());
    left += width;
  }
}

int CurvePane::dotAt(const Plot& at, int mouseX, int mouseY) const {
  const auto& dots = session.selectedParameter()->dots;
  int nearest = -1;
  double best = px(dotRadius + 4);
  for (std::size_t i = 0; i < dots.size(); ++i) {
    const double distance = std::hypot(at.xOf(dots[i].x) - mouseX, at.yOf(dots[i].y) - mouseY);
    if (distance < best) {
      best = distance;
      nearest = static_cast<int>(i);
    }
  }
  return nearest;
}

int CurvePane::handle(int event) {
  switch (event) {
    case FL_PUSH:
      return press();
    case FL_DRAG:
      return drag();
    case FL_RELEASE:
      if (std::exchange(dragging, false)) session.endGesture();
      redraw();
      return 1;
    case FL_FOCUS:
    case FL_UNFOCUS:
      return 1;
    case FL_KEYBOARD:
      if (Fl::event_key() != FL_Delete && Fl::event_key() != FL_BackSpace) return 0;
      if (!session.selectedParameter() || session.selection().dot < 0) return 0;
      removeDot();
      return 1;
    default:
      return Fl_Widget::handle(event);
  }
}

void CurvePane::removeDot() {
  Selection selection = session.selection();
  const int dot = std::exchange(selection.dot, -1);
  if (session.edit(session.document().removeDot(selection.where(), dot))) session.select(selection);
  redraw();
}

void CurvePane::cancel() {
  if (std::exchange(dragging, false)) session.cancelGesture();
}

int CurvePane::press() {
  if (dragging) return 1;  // another button
  take_focus();
  const ProjectParameter* parameter = session.selectedParameter();
  if (!parameter || parameter->type == PARAM_STRING) return 1;
  redraw();
  if (Fl::event_y() < typedTop()) {
    if (chooseKind) chooseKind(session.selection().where());
    return 1;
  }
  if (Fl::event_y() < typedTop() + lineHeight()) {
    const std::vector<Typed> numbers = typedNumbers();
    if (numbers.empty()) return 1;
    const int width = (w() - px(20)) / static_cast<int>(numbers.size());
    const int index = (Fl::event_x() - x() - px(10)) / std::max(width, 1);
    if (index < 0 || index >= static_cast<int>(numbers.size())) return 1;
    const Typed number = numbers[static_cast<std::size_t>(index)];
    edit.open(x() + px(10) + index * width + width / 2, typedTop(), width / 2, lineHeight(),
              formatted("%.9g", number.value),
              [this, number, seen = session.document().revision()](const std::string& typed) {
                double value = 0;
                if (!readNumber(typed, value)) {
                  session.tell(Message::Kind::trouble, "\"" + typed + "\" is no number.");
                } else if (session.document().revision() == seen) {
                  number.set(value);
                } else {
                  session.tell(Message::Kind::trouble,
                               "The text changed while you typed; nothing was taken.");
                }
              });
    return 1;
  }
  if (!hasDots(*parameter)) return 1;
  const Plot at = plot();
  Selection selection = session.selection();
  selection.dot = dotAt(at, Fl::event_x(), Fl::event_y());
  if (Fl::event_clicks() && selection.dot < 0 && Fl::event_button() == FL_LEFT_MOUSE) {
    Fl::event_clicks(0);
    const Edited added =
        session.document().addDot(selection.where(), std::clamp(at.progressAt(Fl::event_x()), 0.0, 1.0),
                                  held(*parameter, at.valueAt(Fl::event_y())));
    selection.dot = added.index;
    if (session.edit(added)) session.select(selection);
    return 1;
  }
  session.select(selection);
  if (selection.dot < 0) return 1;
  if (Fl::event_button() == FL_RIGHT_MOUSE) {
    removeDot();
    return 1;
  }
  heldPlot = at;
  dragging = true;
  session.beginGesture("Move dot");
  return 1;
}

int CurvePane::drag() {
  if (!dragging || !session.selectedParameter()) return 1;
  const Selection& selection = session.selection();
  const ProjectPart& part = *session.selectedPart();
  const auto& dots = session.selectedParameter()->dots;
  if (selection.dot < 0 || static_cast<std::size_t>(selection.dot) >= dots.size()) return 1;
  double progress = std::clamp(heldPlot.progressAt(Fl::event_x()), 0.0, 1.0);
  if (!Fl::event_alt() && part.length > 0) {
    const double time = part.pos + progress * part.length;
    progress = (session.snapped(time, part.length / heldPlot.width) - part.pos) / part.length;
    progress = std::clamp(progress, 0.0, 1.0);
  }
  const double value = heldPlot.valueAt(
      std::clamp(Fl::event_y(), heldPlot.top - px(40), heldPlot.top + heldPlot.height + px(40)));
  const double x = Fl::event_shift() ? dots[static_cast<std::size_t>(selection.dot)].x : progress;
  const double digits =
      std::pow(10.0, std::floor(std::log10((heldPlot.greatest - heldPlot.least) / heldPlot.height)));
  const ProjectParameter& parameter = *session.selectedParameter();
  const double y = std::round(value / digits) * digits;
  session.edit(session.document().setDot(selection.where(), selection.dot, x, held(parameter, y)));
  redraw();
  return 1;
}

}  // namespace vex::studio
