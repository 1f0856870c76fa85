#include "studio/panes/calls_pane.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>

#include <algorithm>
#include <cmath>

#include "base/report.h"
#include "studio/panes/look.h"
#include "studio/session/played_curve.h"

namespace vex::studio {

namespace {

constexpr int buttonWidth = 22;
constexpr int buttons = 3;  // of a call: up, down, remove

const char* kindName(ParameterType kind) {
  switch (kind) {
    case PARAM_CONST:
      return "constant";
    case PARAM_LINEAR:
      return "linear";
    case PARAM_SPLINE:
      return "spline";
    case PARAM_SINE:
      return "sine";
    case PARAM_STRING:
      return "text";
  }
  return "";
}

std::string shown(double value) {
  return formatted("%.6g", value);
}

std::string rangeText(const FunctionParameter& described) {
  switch (described.kind) {
    case ArgumentKind::number:
    case ArgumentKind::wholeNumber:
    case ArgumentKind::cameraNumber:
    case ArgumentKind::frameNumber:
      return described.min < described.max ? formatted("%.4g … %.4g", static_cast<double>(described.min),
                                                       static_cast<double>(described.max))
                                           : "";
    case ArgumentKind::textureName:
      return "picture";
    case ArgumentKind::movieName:
      return "movie";
    case ArgumentKind::fileName:
      return "file";
    case ArgumentKind::objectName:
      return "object";
  }
  return "";
}

}  // namespace

CallsPane::CallsPane(Session& shared, InlineEdit& field) : Pane(shared, "Part"), edit(field) {}

int CallsPane::rowHeight() const {
  return px(21);
}

CallsPane::Columns CallsPane::columns() const {
  const int left = x() + px(10), width = w() - px(20);
  return {left, left + width * 36 / 100, left + width * 53 / 100, left + width * 79 / 100, left + width};
}

void CallsPane::listRows() {
  rows.clear();
  const ProjectPart* part = session.selectedPart();
  if (std::exchange(listedPart, session.selection().part) != session.selection().part && !session.inGesture())
    scrolled = 0;
  title = part ? "Part" : "Show";
  part ? listPart(*part) : listShow();
  const int height = (rows.back().line + 1) * rowHeight() + px(8);
  scrolled = std::clamp(scrolled, 0, std::max(0, height - (y() + h() - contentTop())));
}

void CallsPane::listShow() {
  rows = {{Field::showName, 0},
          {Field::total, 1, Half::left},
          {Field::begin, 1, Half::right},
          {Field::tempo, 2, Half::left},
          {Field::music, 3}};
}

void CallsPane::listPart(const ProjectPart& part) {
  rows = {{Field::name, 0, Half::left},    {Field::track, 0, Half::right}, {Field::at, 1, Half::left},
          {Field::length, 1, Half::right}, {Field::start, 2, Half::left},  {Field::speed, 2, Half::right}};
  int line = 3, call = 0;
  for (const ProjectCall& each : part.calls) {
    rows.push_back({Field::call, line++, Half::both, call});
    for (int i = 0; i < static_cast<int>(each.parameters.size()); ++i)
      rows.push_back({Field::parameter, line++, Half::both, call, i});
    ++call;
  }
  rows.push_back({Field::add, line});
}

CallsPane::Cell CallsPane::cellOf(const Row& row) const {
  const Columns at = columns();
  const int middle = (at.name + at.end) / 2, gap = px(10), label = (middle - at.name) * 2 / 5;
  if (row.field == Field::parameter)
    return {at.name, at.value, parameterOf(row).type == PARAM_STRING ? at.end : at.hint};
  if (row.field == Field::name) return {at.name, at.name, middle - gap};
  switch (row.half) {
    case Half::left:
      return {at.name, at.name + label, middle - gap};
    case Half::right:
      return {middle + gap, middle + gap + label, at.end};
    case Half::both:
      break;
  }
  return {at.name, at.name + label, at.end};
}

int CallsPane::topOf(const Row& row) const {
  return contentTop() + px(4) + row.line * rowHeight() - scrolled;
}

std::optional<std::size_t> CallsPane::rowAt(int mouseX, int mouseY) const {
  const int middle = (columns().name + columns().end) / 2;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row& row = rows[i];
    if (mouseY < topOf(row) || mouseY >= topOf(row) + rowHeight()) continue;
    if (row.half == Half::both || (row.half == Half::left) == (mouseX < middle)) return i;
  }
  return std::nullopt;
}

const ProjectParameter& CallsPane::parameterOf(const Row& row) const {
  return session.selectedPart()
      ->calls[static_cast<std::size_t>(row.call)]
      .parameters[static_cast<std::size_t>(row.parameter)];
}

void CallsPane::draw() {
  listRows();
  drawFrame();
  fl_push_clip(x(), contentTop(), w(), y() + h() - contentTop());
  for (const Row& row : rows)
    if (topOf(row) + rowHeight() > contentTop() && topOf(row) < y() + h()) drawRow(row, topOf(row));
  if (!session.selectedPart()) {
    setDrawColour(colour::dim);
    useFont(false, 12);
    drawText("Choose a part in the time line, or double-click an empty place to make one.", columns().name,
             topOf(rows.back()) + rowHeight() * 3 / 2, w() - px(20), rowHeight());
  }
  drawScrolled();
  fl_pop_clip();
}

// Where in its rows the pane stands, when they are more than it can show.
void CallsPane::drawScrolled() const {
  const int seen = y() + h() - contentTop(), whole = (rows.back().line + 1) * rowHeight() + px(8);
  if (whole <= seen) return;
  const int left = x() + w() - px(4);
  setDrawColour(colour::ground);
  fl_rectf(left, contentTop(), px(4), seen);
  setDrawColour(colour::dim);
  fl_rectf(left, contentTop() + seen * scrolled / whole, px(4), seen * seen / whole);
}

void CallsPane::drawNumber(const Row& row, int top, const char* name, const std::string& value,
                           const std::string& hint) const {
  const Cell cell = cellOf(row);
  useFont(false, 12);
  setDrawColour(colour::dim);
  drawText(name, cell.name, top, cell.value - cell.name - px(4), rowHeight());
  setDrawColour(colour::text);
  drawText(value, cell.value, top, cell.end - cell.value, rowHeight());
  const int rest = cell.end - cell.value - textWidth(value) - px(8);
  setDrawColour(colour::dim);
  useFont(false, 11);
  if (textWidth(hint) <= rest) drawText(hint, cell.end - rest, top, rest, rowHeight(), FL_ALIGN_RIGHT);
}

void CallsPane::drawShowRow(const Row& row, int top) const {
  const Project& project = session.document().project();
  const auto tempo = session.document().places().tempo;
  switch (row.field) {
    case Field::total:
      return drawNumber(row, top, "lasts", shown(project.totalTime) + " s",
                        tempo ? "bar " + tempo->text(project.totalTime) : "");
    case Field::begin:
      return drawNumber(row, top, "begins at", shown(project.startTime) + " s");
    case Field::tempo:
      return drawNumber(row, top, "tempo", tempo ? shown(tempo->beatsPerMinute) : "none",
                        tempo ? formatted("%g beats a bar", tempo->beatsPerBar) : "");
    case Field::music:
      return drawNumber(row, top, "music", project.music.empty() ? "none" : project.music);
    default:
      useFont(true, 13);
      setDrawColour(colour::text);
      drawText(session.fileName(), columns().name, top, columns().end - columns().name, rowHeight());
  }
}

void CallsPane::drawRow(const Row& row, int top) const {
  if (row.field < Field::name) return drawShowRow(row, top);
  const Columns at = columns();
  const ProjectPart& part = *session.selectedPart();
  const auto tempo = session.document().tempo();
  const auto bars = [&](double time) { return tempo ? "bar " + tempo->text(time) : std::string(); };
  switch (row.field) {
    case Field::showName:
    case Field::total:
    case Field::begin:
    case Field::tempo:
    case Field::music:
      break;
    case Field::name: {
      useFont(true, 13);
      setDrawColour(part.calls.empty() ? colour::text
                                       : blended(sceneColour(part.calls.front().scene), colour::text, 0.5));
      const Cell cell = cellOf(row);
      drawText(part.name, cell.name, top, cell.end - cell.name, rowHeight());
      break;
    }
    case Field::at:
      drawNumber(row, top, "begins", shown(part.pos) + " s", bars(part.pos));
      break;
    case Field::length:
      drawNumber(row, top, "lasts", shown(part.length) + " s", bars(part.pos + part.length));
      break;
    case Field::start:
      drawNumber(row, top, "scene time", shown(part.start) + " s");
      break;
    case Field::speed:
      drawNumber(row, top, "speed", shown(part.speed));
      break;
    case Field::track:
      drawNumber(row, top, "track", std::to_string(part.track), "lower: behind");
      break;
    case Field::call:
      drawCall(row, top, at);
      break;
    case Field::parameter:
      drawParameter(row, top, at);
      break;
    case Field::add:
      useFont(false, 12);
      setDrawColour(colour::chosen);
      drawText("+ add a call", at.name, top, at.end - at.name, rowHeight());
      break;
  }
}

void CallsPane::drawCall(const Row& row, int top, const Columns& at) const {
  const ProjectCall& call = session.selectedPart()->calls[static_cast<std::size_t>(row.call)];
  setDrawColour(colour::raised);
  fl_rectf(x(), top, w(), rowHeight());
  setDrawColour(sceneColour(call.scene));
  fl_rectf(x(), top, px(4), rowHeight());
  useFont(true, 12);
  setDrawColour(colour::text);
  drawText(call.scene + "." + call.function, at.name, top, at.end - at.name - buttons * px(buttonWidth),
           rowHeight());
  setDrawColour(colour::text);
  useFont(false, 13);
  int left = at.end - buttons * px(buttonWidth);
  for (const char* label : {"↑", "↓", "×"}) {
    drawText(label, left, top, px(buttonWidth), rowHeight(), FL_ALIGN_CENTER);
    left += px(buttonWidth);
  }
}

void CallsPane::drawParameter(const Row& row, int top, const Columns& at) const {
  const ProjectPart& part = *session.selectedPart();
  const ProjectCall& call = part.calls[static_cast<std::size_t>(row.call)];
  const ProjectParameter& parameter = parameterOf(row);
  if (session.selection().call == row.call && session.selection().parameter == row.parameter) {
    setDrawColour(blended(colour::pane, colour::chosen, 0.16));
    fl_rectf(x(), top, w(), rowHeight());
  }
  useFont(false, 12);
  setDrawColour(colour::dim);
  drawText(parameter.name, at.name, top, at.kind - at.name - px(6), rowHeight());
  useFont(false, 11);
  setDrawColour(parameter.type == PARAM_CONST || parameter.type == PARAM_STRING
                    ? colour::dim
                    : blended(colour::dim, colour::chosen, 0.5));
  drawText(kindName(static_cast<ParameterType>(parameter.type)), at.kind, top, at.value - at.kind - px(4),
           rowHeight());
  useFont(false, 12);
  setDrawColour(colour::text);
  std::string value;
  if (parameter.type == PARAM_STRING) {
    value = parameter.string;
    if (value.empty()) {
      setDrawColour(colour::chosen);
      value = "click to choose";
    }
  } else {
    PlayedCurve curve(parameter);
    const auto now = curve.at(std::clamp(progressAt(part, session.show().time()), 0.0, 1.0));
    if (!now) setDrawColour(colour::trouble);
    value = !now ? "no value" : shown(static_cast<double>(*now));
    if (parameter.type != PARAM_CONST) setDrawColour(blended(colour::text, colour::chosen, 0.6));
  }
  drawText(value, at.value, top, (parameter.type == PARAM_STRING ? at.end : at.hint) - at.value - px(4),
           rowHeight());
  const FunctionParameter* described = vex::studio::describe(call, row.parameter);
  if (!described || parameter.type == PARAM_STRING) return;
  useFont(false, 11);
  setDrawColour(colour::dim);
  drawText(rangeText(*described), at.hint, top, at.end - at.hint, rowHeight(), FL_ALIGN_RIGHT);
}

bool CallsPane::isNumber(const Row& row) const {
  switch (row.field) {
    case Field::total:
    case Field::begin:
    case Field::tempo:
    case Field::at:
    case Field::length:
    case Field::start:
    case Field::speed:
    case Field::track:
      return true;
    case Field::parameter:
      return parameterOf(row).type == PARAM_CONST;
    default:
      return false;
  }
}

double CallsPane::numberOf(const Row& row) const {
  const Project& project = session.document().project();
  if (row.field == Field::total) return project.totalTime;
  if (row.field == Field::begin) return project.startTime;
  if (row.field == Field::tempo) {
    const auto tempo = session.document().places().tempo;
    return tempo ? tempo->beatsPerMinute : 120;
  }
  const ProjectPart& part = *session.selectedPart();
  switch (row.field) {
    case Field::at:
      return part.pos;
    case Field::length:
      return part.length;
    case Field::start:
      return part.start;
    case Field::speed:
      return part.speed;
    case Field::track:
      return part.track;
    default:
      return parameterOf(row).constant;
  }
}

double CallsPane::stepOf(const Row& row) const {
  switch (row.field) {
    case Field::total:
    case Field::begin:
    case Field::at:
    case Field::length:
    case Field::start:
      return 0.05;
    case Field::tempo:
    case Field::speed:
      return 0.01;
    case Field::track:
      return 0.1;
    default:
      break;
  }
  const ProjectCall& call = session.selectedPart()->calls[static_cast<std::size_t>(row.call)];
  const FunctionParameter* described = vex::studio::describe(call, row.parameter);
  if (described && described->kind != ArgumentKind::number) return 0.1;
  const double range =
      described ? static_cast<double>(described->max) - static_cast<double>(described->min) : 0;
  if (range > 0 && range < 1e4) return range / 300;
  return std::max(std::abs(dragValue) / 100, 0.01);
}

void CallsPane::setNumber(const Row& row, double value) {
  const int part = session.selection().part;
  Document& document = session.document();
  switch (row.field) {
    case Field::total:
      session.edit(document.setTotalTime(value));
      break;
    case Field::begin:
      session.edit(document.setStartTime(value));
      break;
    case Field::tempo:
      session.edit(document.setTempo(value));
      break;
    case Field::at:
      session.editPart(document.movePart(part, value, session.selectedPart()->track));
      break;
    case Field::length:
      session.edit(document.setPartLength(part, value));
      break;
    case Field::start:
      session.edit(document.setPartStart(part, value));
      break;
    case Field::speed:
      session.edit(document.setPartSpeed(part, value));
      break;
    case Field::track:
      session.editPart(document.movePart(part, session.selectedPart()->pos,
                                         static_cast<int>(std::clamp(std::round(value), -128.0, 127.0))));
      break;
    default:
      session.edit(document.setConstant({part, row.call, row.parameter}, value));
      break;
  }
}

void CallsPane::type(const Row& row, int top) {
  const Cell at = cellOf(row);
  const Row chosen = row;
  const std::uint64_t seen = session.document().revision();
  const auto unchanged = [this, seen] {
    if (session.document().revision() == seen) return true;
    session.tell(Message::Kind::trouble, "The text changed while you typed; nothing was taken.");
    return false;
  };
  const int part = session.selection().part;
  if (row.field == Field::name) {
    edit.open(at.value, top, at.end - at.value, rowHeight(), session.selectedPart()->name,
              [this, unchanged, part](const std::string& typed) {
                if (unchanged()) session.edit(session.document().renamePart(part, typed));
              });
  } else if (row.field == Field::parameter && parameterOf(row).type == PARAM_STRING) {
    edit.open(at.value, top, at.end - at.value, rowHeight(), parameterOf(row).string,
              [this, unchanged, part, chosen](const std::string& typed) {
                if (unchanged())
                  session.edit(session.document().setString({part, chosen.call, chosen.parameter}, typed));
              });
  } else if (isNumber(row)) {
    edit.open(
        at.value, top, at.end - at.value, rowHeight(), shown(numberOf(row)),
        [this, unchanged, part, chosen](const std::string& typed) {
          double value = 0;
          if (!readNumber(typed, value)) {
            session.tell(Message::Kind::trouble, "\"" + typed + "\" is no number.");
          } else if (unchanged()) {
            if (session.selection().part != part) session.select({part, chosen.call, chosen.parameter, -1});
            setNumber(chosen, value);
          }
        },
        row.field == Field::tempo && !session.document().places().tempo);  // the one offered counts, too
  }
}

void CallsPane::renamePart() {
  listRows();
  scrolled = 0;
  if (session.selectedPart()) type(rows.front(), topOf(rows.front()));
}

int CallsPane::handle(int event) {
  switch (event) {
    case FL_PUSH:
      return press();
    case FL_DRAG:
      return drag();
    case FL_RELEASE:
      return release();
    case FL_MOUSEWHEEL:
      edit.close(true);
      scrolled += Fl::event_dy() * rowHeight() * 2;
      redraw();
      return 1;
    default:
      return Fl_Widget::handle(event);
  }
}

void CallsPane::pressCall(const Row& row) {
  const int part = session.selection().part,
            button = (Fl::event_x() - (columns().end - buttons * px(buttonWidth))) / px(buttonWidth);
  const CallAt at{part, row.call};
  const auto calls = static_cast<int>(session.selectedPart()->calls.size());
  if (Fl::event_x() < columns().end - buttons * px(buttonWidth)) {
    session.select({part, row.call, -1, -1});
  } else if (button == 0) {
    if (row.call > 0) session.edit(session.document().moveCall(at, row.call - 1));
  } else if (button == 1) {
    if (row.call + 1 < calls) session.edit(session.document().moveCall(at, row.call + 1));
  } else {
    session.select({part, -1, -1, -1});
    session.edit(session.document().removeCall(at));
  }
}

// What it was listed for may have gone since.
bool CallsPane::stands(const Row& row) const {
  const ProjectPart* part = session.selectedPart();
  if (!part || row.field < Field::name) return !part && row.field < Field::name;
  if (row.call < 0) return true;
  if (static_cast<std::size_t>(row.call) >= part->calls.size()) return false;
  const auto& parameters = part->calls[static_cast<std::size_t>(row.call)].parameters;
  return row.parameter < 0 || static_cast<std::size_t>(row.parameter) < parameters.size();
}

void CallsPane::cancel() {
  dragged.reset();
  if (std::exchange(moved, false)) session.cancelGesture();
}

int CallsPane::press() {
  if (dragged) return 1;  // another button
  listRows();
  take_focus();
  dragged.reset();
  moved = false;
  const auto index = rowAt(Fl::event_x(), Fl::event_y());
  if (!index) return 1;
  const Row row = rows[*index];
  const Columns at = columns();
  const int part = session.selection().part;
  redraw();
  switch (row.field) {
    case Field::add:
      if (addCall) addCall();
      return 1;
    case Field::call:
      pressCall(row);
      return 1;
    case Field::parameter: {
      const ParameterAt where{part, row.call, row.parameter};
      if (session.selection().where() != where) session.select({part, row.call, row.parameter, -1});
      if (Fl::event_x() >= at.kind && Fl::event_x() < at.value && parameterOf(row).type != PARAM_STRING) {
        if (chooseKind) chooseKind(where);
        return 1;
      }
      break;
    }
    default:
      break;
  }
  dragged = row;
  dragX = Fl::event_x();
  if (isNumber(row)) dragValue = numberOf(row);
  return 1;
}

int CallsPane::drag() {
  if (!dragged || !stands(*dragged) || !isNumber(*dragged)) return 1;
  const int pixels = Fl::event_x() - dragX;
  if (!moved && std::abs(pixels) < 4) return 1;
  if (!std::exchange(moved, true)) session.beginGesture("Change value");
  const double fine = Fl::event_shift() ? 0.1 : 1, step = stepOf(*dragged) * fine;
  double value = dragValue + pixels * step;
  const double unit = std::pow(10.0, std::floor(std::log10(step)));  // no more digits than a pixel can mean
  value = std::round(value / unit) * unit;
  if (dragged->field == Field::parameter) {
    const ProjectCall& call = session.selectedPart()->calls[static_cast<std::size_t>(dragged->call)];
    const FunctionParameter* described = vex::studio::describe(call, dragged->parameter);
    if (described && described->kind != ArgumentKind::number) value = std::round(value);
    if (described && described->min < described->max)
      value = std::clamp(value, static_cast<double>(described->min), static_cast<double>(described->max));
  }
  setNumber(*dragged, value);
  redraw();
  return 1;
}

int CallsPane::release() {
  if (!dragged) return 1;
  const Row row = *dragged;
  dragged.reset();
  if (!stands(row)) {
    if (std::exchange(moved, false)) session.endGesture();
    return 1;
  }
  if (std::exchange(moved, false)) {
    session.endGesture();
    return 1;
  }
  if (Fl::event_x() < cellOf(row).value) return 1;
  if (row.field == Field::music) {
    if (chooseMusic) chooseMusic();
    return 1;
  }
  if (row.field == Field::parameter && parameterOf(row).type == PARAM_STRING && chooseName) {
    const ProjectCall& call = session.selectedPart()->calls[static_cast<std::size_t>(row.call)];
    const FunctionParameter* described = vex::studio::describe(call, row.parameter);
    if (described &&
        (described->kind == ArgumentKind::textureName || described->kind == ArgumentKind::movieName)) {
      chooseName({session.selection().part, row.call, row.parameter}, described->kind);
      return 1;
    }
  }
  type(row, topOf(row));
  return 1;
}

}  // namespace vex::studio
