#include "studio/panes/time_line_pane.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>

#include <algorithm>
#include <cmath>

#include "base/report.h"
#include "studio/panes/look.h"

namespace vex::studio {

namespace {

constexpr int rulerRow = 17;  // seconds, bars
constexpr int markRow = 9;    // the project's marks
constexpr int waveHeight = 46;
constexpr int trackColumn = 44;
constexpr int footHeight = 16;  // what tells of rows that are out of sight
constexpr double wheelZoom = 1.25;
constexpr double longestShown = 1e7;  // s

}  // namespace

TimeLinePane::TimeLinePane(Session& shared) : Pane(shared, "Time line") {
  tooltip("");
}

int TimeLinePane::waveTop() const {
  return rulerTop() + 2 * px(rulerRow) + px(markRow);
}

int TimeLinePane::lanesTop() const {
  return waveTop() + px(session.show().hasMusic() || session.peaks() ? waveHeight : 0);
}

int TimeLinePane::lanesLeft() const {
  return x() + px(trackColumn);
}

int TimeLinePane::rowHeight() const {
  return px(24);
}

int TimeLinePane::shownRows() const {
  const int room = y() + h() - lanesTop(), whole = room / rowHeight();
  return std::max(1, lanes.rows > whole ? (room - px(footHeight)) / rowHeight() : whole);
}

double TimeLinePane::total() const {
  double last = session.document().project().totalTime;
  for (const ProjectPart& part : session.document().project().parts)
    last = std::max(last, part.pos + part.length);
  return std::isfinite(last) ? std::clamp(last, 1.0, longestShown) : 1;
}

double TimeLinePane::mouseTime() const {
  return view.timeAt(Fl::event_x() - lanesLeft());
}

int TimeLinePane::mouseRow() const {
  return topRow + (Fl::event_y() - lanesTop()) / rowHeight();
}

double TimeLinePane::caught(double time, double pixels) const {
  return Fl::event_alt() ? time : session.snapped(time, view.secondsPerPixel, pixels);
}

void TimeLinePane::layOutAnew() {
  if (lanesOf == session.document().revision()) return;
  lanesOf = session.document().revision();
  lanes = layOut(session.document().project());
  topRow = std::clamp(topRow, 0, std::max(0, lanes.rows - shownRows()));
}

void TimeLinePane::resize(int left, int top, int width, int height) {
  Fl_Widget::resize(left, top, width, height);
  view.width = std::max(1, width - px(trackColumn));
  if (std::exchange(viewed, true)) {
    view.scroll(0, total());
  } else {
    view.showAll(total());
  }
}

void TimeLinePane::zoomBy(double factor) {
  const double pixel = view.pixelOf(session.show().time());
  view.zoom(factor, pixel >= 0 && pixel <= view.width ? pixel : view.width / 2.0, total());
  redraw();
}

void TimeLinePane::showAll() {
  view.showAll(total());
  redraw();
}

void TimeLinePane::scrollBy(double screens) {
  view.scroll(screens * view.width * view.secondsPerPixel, total());
  redraw();
}

void TimeLinePane::reveal(int part) {
  layOutAnew();
  const auto index = static_cast<std::size_t>(part);
  if (part < 0 || index >= lanes.rowOfPart.size()) return;
  view.reveal(session.document().project().parts[index].pos, total());
  const int row = lanes.rowOfPart[index];
  if (row < topRow || row >= topRow + shownRows())
    topRow = std::clamp(row, 0, std::max(0, lanes.rows - shownRows()));
  redraw();
}

void TimeLinePane::cancel() {
  if (edits()) session.cancelGesture();
  gesture = Gesture::none;
  redraw();
}

bool TimeLinePane::edits() const {
  return gesture == Gesture::move || gesture == Gesture::trimBegin || gesture == Gesture::trimEnd ||
         gesture == Gesture::mark;
}

int TimeLinePane::pixelAt(double time) const {
  return lanesLeft() + static_cast<int>(std::lround(std::clamp(view.pixelOf(time), -1e5, 1e5)));
}

void TimeLinePane::follow() {
  if (gesture != Gesture::none) return;
  view.reveal(session.show().time(), total());
  redraw();
}

void TimeLinePane::draw() {
  layOutAnew();
  drawFrame();
  fl_push_clip(x(), contentTop(), w(), y() + h() - contentTop());
  drawRuler();
  if (lanesTop() > waveTop()) drawWave();
  drawLanes();
  drawCursor();
  drawHidden(lanesTop(), topRow, "▲");
  drawHidden(y() + h() - px(footHeight), lanes.rows - topRow - shownRows(), "▼");
  fl_pop_clip();
}

void TimeLinePane::drawRuler() const {
  const int left = lanesLeft(), top = rulerTop(), half = px(rulerRow);
  setDrawColour(colour::raised);
  fl_rectf(x(), top, w(), waveTop() - top);
  fl_push_clip(left, top, view.width, y() + h() - top);
  if (const auto loop = session.show().loop()) {
    const int from = pixelAt(loop->begin), to = pixelAt(loop->end);
    setDrawColour(blended(colour::raised, colour::chosen, 0.35));
    fl_rectf(from, top, std::max(1, to - from), waveTop() - top);
  }
  useFont(false, 11);
  const auto drawMarks = [&](const std::vector<RulerMark>& marks, int rowTop, std::uint32_t strong) {
    for (const RulerMark& mark : marks) {
      const int at = pixelAt(mark.time);
      setDrawColour(mark.strong ? colour::faint : colour::edge);
      fl_yxline(at, rowTop + (mark.strong ? half / 3 : half * 2 / 3), rowTop + half - 1);
      if (mark.label.empty()) continue;
      setDrawColour(strong);
      drawText(mark.label, at + px(3), rowTop, px(80), half);
    }
  };
  drawMarks(secondMarks(view), top, colour::dim);
  if (const auto tempo = session.document().tempo())
    drawMarks(beatMarks(view, *tempo), top + half, colour::text);
  const Project& project = session.document().project();
  setDrawColour(colour::remark);
  for (const double tick : project.ticks) {
    const int at = pixelAt(tick);
    fl_polygon(at - px(4), waveTop() - px(markRow) + 1, at + px(4), waveTop() - px(markRow) + 1, at,
               waveTop() - 1);
  }
  fl_pop_clip();
  setDrawColour(colour::dim);
  useFont(false, 11);
  drawText("time", x() + px(8), top, px(trackColumn), half);
  if (session.document().tempo()) drawText("bar", x() + px(8), top + half, px(trackColumn), half);
}

void TimeLinePane::drawWave() const {
  const int left = lanesLeft(), top = waveTop(), height = px(waveHeight), middle = top + height / 2;
  setDrawColour(colour::ground);
  fl_rectf(x(), top, w(), height);
  setDrawColour(colour::dim);
  useFont(false, 11);
  drawText("music", x() + px(8), top, px(trackColumn), height);
  const Peaks* peaks = session.peaks();
  if (!peaks || peaks->peaks.empty() || !(peaks->seconds > 0)) return;
  setDrawColour(colour::wave);
  const auto count = static_cast<double>(peaks->peaks.size());
  for (int pixel = 0; pixel < view.width; ++pixel) {
    const double from = view.timeAt(pixel) / peaks->seconds, to = view.timeAt(pixel + 1) / peaks->seconds;
    if (from < 0 || from >= count) continue;
    int low = 0, high = 0;
    for (auto i = static_cast<std::size_t>(from); i < std::min(std::max(to, std::floor(from) + 1), count);
         ++i) {
      low = std::min<int>(low, peaks->peaks[i].low);
      high = std::max<int>(high, peaks->peaks[i].high);
    }
    fl_yxline(left + pixel, middle - high * height / 260, middle - low * height / 260);
  }
}

void TimeLinePane::drawLanes() const {
  const int left = lanesLeft(), top = lanesTop(), height = rowHeight();
  fl_push_clip(x(), top, w(), std::max(0, y() + h() - top));
  setDrawColour(colour::ground);
  fl_rectf(x(), top, w(), y() + h() - top);
  for (const Lanes::Lane& lane : lanes.lanes) {
    const int laneTop = top + (lane.firstRow - topRow) * height;
    setDrawColour((&lane - lanes.lanes.data()) % 2 == 1 ? colour::pane
                                                        : blended(colour::pane, colour::ground, 0.5));
    fl_rectf(x(), laneTop, w(), lane.rows * height);
    setDrawColour(colour::edge);
    fl_xyline(x(), laneTop, x() + w());
    useFont(false, 11);
    setDrawColour(colour::dim);
    drawText(std::to_string(lane.track), x(), laneTop, px(trackColumn - 8), height, FL_ALIGN_RIGHT);
  }
  fl_push_clip(left, top, view.width, y() + h() - top);
  setDrawColour(blended(colour::pane, colour::edge, 0.7));
  const auto tempo = session.document().tempo();
  for (const RulerMark& mark : tempo ? beatMarks(view, *tempo) : secondMarks(view))
    if (mark.strong) fl_yxline(pixelAt(mark.time), top, y() + h());
  const int end = pixelAt(session.document().project().totalTime);
  setDrawColour(blended(colour::ground, 0, 0.6));
  if (end < x() + w()) fl_rectf(end, top, x() + w() - end, y() + h() - top);
  const auto parts = static_cast<int>(session.document().project().parts.size());
  for (int i = 0; i < parts; ++i)
    if (i != session.selection().part) drawPart(i);
  if (session.selectedPart()) drawPart(session.selection().part);
  fl_pop_clip();
  fl_pop_clip();
}

// How many rows lie above or below what is seen.
void TimeLinePane::drawHidden(int top, int hidden, const char* arrow) const {
  if (hidden <= 0) return;
  setDrawColour(colour::edge);
  fl_rectf(x(), top, w(), px(footHeight));
  useFont(false, 11);
  setDrawColour(colour::text);
  drawText(formatted("%s  %d more row%s of parts: Ctrl and wheel, or the wheel over the numbers", arrow,
                     hidden, hidden == 1 ? "" : "s"),
           lanesLeft() + px(6), top, w() - px(trackColumn + 12), px(footHeight));
}

void TimeLinePane::drawPart(int index) const {
  const auto i = static_cast<std::size_t>(index);
  const ProjectPart& part = session.document().project().parts[i];
  const int row = lanes.rowOfPart[i] - topRow;
  if (row < 0 || row > shownRows()) return;
  const double from = view.pixelOf(part.pos), to = view.pixelOf(part.pos + part.length);
  if (to < -2 || from > view.width + 2) return;
  const int left = lanesLeft() + static_cast<int>(std::lround(std::max(from, -8.0)));
  const int right = lanesLeft() + static_cast<int>(std::lround(std::min(to, view.width + 8.0)));
  const int width = std::max(right - left, 2), top = lanesTop() + row * rowHeight() + 2,
            height = rowHeight() - 3;
  const bool chosen = index == session.selection().part;
  const std::uint32_t hue = part.calls.empty() ? colour::faint : sceneColour(part.calls.front().scene);
  setDrawColour(chosen ? hue : blended(colour::ground, hue, 0.62));
  fl_rectf(left, top, width, height);
  setDrawColour(chosen ? colour::chosen : blended(hue, colour::text, 0.25));
  fl_rect(left, top, width, height);
  if (chosen) fl_rect(left + 1, top + 1, std::max(width - 2, 1), height - 2);
  const Finding* finding = session.findingOf(index);
  int textLeft = left + px(5);
  if (finding && width > px(8)) {
    setDrawColour(finding->remark ? colour::remark : colour::trouble);
    fl_polygon(left + 1, top + 1, left + px(9), top + 1, left + 1, top + px(9));
    textLeft += px(5);
  }
  if (width < px(16)) return;
  useFont(chosen, 11);
  setDrawColour(colour::text);
  const int room = left + width - textLeft - px(2);
  if (textWidth(part.name) <= room || room > px(70)) {
    drawText(part.name, textLeft, top, room, height);
    return;
  }
  // Letters say more than dots where there is room for few.
  fl_push_clip(textLeft, top, room, height);
  drawText(part.name, textLeft, top, textWidth(part.name), height);
  fl_pop_clip();
}

void TimeLinePane::drawCursor() const {
  const double pixel = view.pixelOf(session.show().time());
  if (pixel < 0 || pixel > view.width) return;
  const int at = lanesLeft() + static_cast<int>(std::lround(pixel));
  setDrawColour(colour::cursor);
  fl_yxline(at, rulerTop(), y() + h());
  fl_polygon(at - px(5), rulerTop(), at + px(5), rulerTop(), at, rulerTop() + px(8));
}

int TimeLinePane::handle(int event) {
  switch (event) {
    case FL_PUSH:
      return press();
    case FL_DRAG:
      return drag();
    case FL_RELEASE:
      return release();
    case FL_MOUSEWHEEL:
      return wheel();
    case FL_ENTER:
    case FL_MOVE:
      hover();
      return 1;
    case FL_LEAVE:
      fl_cursor(FL_CURSOR_DEFAULT);
      return 1;
    default:
      return Fl_Widget::handle(event);
  }
}

int TimeLinePane::press() {
  if (gesture != Gesture::none) return 1;  // another button
  layOutAnew();
  if (Fl::event_button() == FL_MIDDLE_MOUSE) {
    gesture = Gesture::pan;
    panFrom = mouseTime();
    return 1;
  }
  if (Fl::event_y() < lanesTop()) {
    const bool onMarks = Fl::event_y() >= waveTop() - px(markRow) && Fl::event_y() < waveTop();
    heldMark = onMarks ? markAt(Fl::event_x()) : -1;
    if (heldMark >= 0) {
      if (Fl::event_button() == FL_RIGHT_MOUSE) {
        session.edit(session.document().removeTick(heldMark));
      } else {
        gesture = Gesture::mark;
        session.beginGesture("Move mark");
      }
    } else if (Fl::event_shift()) {
      gesture = Gesture::loop;
      loopFrom = caught(std::max(0.0, mouseTime()));
    } else {
      gesture = Gesture::cursor;
      played = session.show().playing();
      session.scrub(caught(mouseTime()));
    }
    redraw();
    return 1;
  }
  const PartHit hit =
      partAt(session.document().project(), lanes, view, Fl::event_x() - lanesLeft(), mouseRow());
  if (hit.part < 0 && Fl::event_clicks() && Fl::event_button() == FL_LEFT_MOUSE) {
    Fl::event_clicks(0);
    if (createPart)
      createPart(std::max(0.0, caught(mouseTime(), newPartReach)), lanes.trackOfRow(mouseRow()));
    return 1;
  }
  if (hit.part != session.selection().part) session.select({hit.part, hit.part >= 0 ? 0 : -1, -1, -1});
  redraw();
  if (Fl::event_button() == FL_RIGHT_MOUSE) {
    if (hit.part >= 0 && showPartMenu) showPartMenu();
    return 1;
  }
  gesture = Gesture::none;
  if (hit.part < 0 || !session.selectedPart()) return 1;
  const ProjectPart& part = *session.selectedPart();
  gesture = hit.handle == PartHandle::begin ? Gesture::trimBegin
            : hit.handle == PartHandle::end ? Gesture::trimEnd
                                            : Gesture::move;
  grabbed = mouseTime() - (gesture == Gesture::trimEnd ? part.pos + part.length : part.pos);
  heldLanes = lanes;
  session.beginGesture(gesture == Gesture::move ? "Move part" : "Trim part");
  return 1;
}

int TimeLinePane::drag() {
  const ProjectPart* part = session.selectedPart();
  const int index = session.selection().part;
  switch (gesture) {
    case Gesture::none:
      return 1;
    case Gesture::cursor:
      session.scrub(caught(mouseTime()));
      break;
    case Gesture::pan:
      view.scroll(panFrom - mouseTime(), total());
      break;
    case Gesture::loop: {
      const double to = caught(std::max(0.0, mouseTime()));
      if (std::abs(to - loopFrom) / view.secondsPerPixel > 2)
        session.show().setLoop(Loop{std::min(loopFrom, to), std::max(loopFrom, to)});
      break;
    }
    case Gesture::move: {
      if (!part) return 1;
      double pos = std::max(0.0, mouseTime() - grabbed);
      // Either end may catch, the nearer one does.
      const double begin = caught(pos), end = caught(pos + part->length) - part->length;
      pos = std::max(
          0.0, begin != pos && (end == pos || std::abs(begin - pos) <= std::abs(end - pos)) ? begin : end);
      const int track =
          Fl::event_shift() ? part->track : std::clamp(heldLanes.trackOfRow(mouseRow()), -128, 127);
      if (pos != part->pos || track != part->track)
        session.editPart(session.document().movePart(index, pos, track));
      break;
    }
    case Gesture::mark: {
      const Edited moved = session.document().moveTick(heldMark, std::max(0.0, caught(mouseTime())));
      if (session.edit(moved)) heldMark = moved.index;
      break;
    }
    case Gesture::trimBegin:
      if (part)
        session.editPart(session.document().trimStart(index, std::max(0.0, caught(mouseTime() - grabbed))));
      break;
    case Gesture::trimEnd:
      if (part) session.editPart(session.document().trimEnd(index, caught(mouseTime() - grabbed)));
      break;
  }
  redraw();
  return 1;
}

int TimeLinePane::release() {
  if (edits()) session.endGesture();
  if (gesture == Gesture::cursor) {
    session.seek(session.show().time());
    if (played) session.togglePlaying();
  }
  if (gesture == Gesture::loop && !session.show().loop()) session.seek(loopFrom);
  gesture = Gesture::none;
  redraw();
  return 1;
}

int TimeLinePane::wheel() {
  const double turned = Fl::event_dy() + Fl::event_dx();
  if (Fl::event_ctrl()) {
    topRow = std::clamp(topRow + (turned > 0 ? 1 : -1), 0, std::max(0, lanes.rows - shownRows()));
  } else if (Fl::event_shift() || Fl::event_dx() != 0) {
    view.scroll(turned * 0.08 * view.width * view.secondsPerPixel, total());
  } else if (Fl::event_x() < lanesLeft()) {
    topRow = std::clamp(topRow + (turned > 0 ? 1 : -1), 0, std::max(0, lanes.rows - shownRows()));
  } else {
    view.zoom(std::pow(wheelZoom, turned), Fl::event_x() - lanesLeft(), total());
  }
  redraw();
  return 1;
}

int TimeLinePane::markAt(int pixel) const {
  const auto& ticks = session.document().project().ticks;
  for (std::size_t i = 0; i < ticks.size(); ++i)
    if (std::abs(pixelAt(ticks[i]) - pixel) <= px(4)) return static_cast<int>(i);
  return -1;
}

std::string TimeLinePane::wordsOf(int mark) const {
  const double time = session.document().project().ticks[static_cast<std::size_t>(mark)];
  const std::string name = session.document().tickName(mark);
  return formatted("%s%smark at %g s\ndrag it, or take it away by a right click", name.c_str(),
                   name.empty() ? "" : "\n", time);
}

void TimeLinePane::hover() {
  layOutAnew();
  std::string told;
  Fl_Cursor shape = FL_CURSOR_DEFAULT;
  if (const int mark = markAt(Fl::event_x());
      mark >= 0 && Fl::event_y() < waveTop() && Fl::event_y() >= waveTop() - px(markRow)) {
    told = wordsOf(mark);
  } else if (Fl::event_y() >= lanesTop()) {
    const PartHit hit =
        partAt(session.document().project(), lanes, view, Fl::event_x() - lanesLeft(), mouseRow());
    if (hit.handle == PartHandle::begin || hit.handle == PartHandle::end) shape = FL_CURSOR_WE;
    if (hit.part >= 0) {
      const ProjectPart& part = session.document().project().parts[static_cast<std::size_t>(hit.part)];
      told = formatted("%s\n%g s to %g s, track %d", part.name.c_str(), part.pos, part.pos + part.length,
                       part.track);
      for (const ProjectCall& call : part.calls) told += "\n" + call.scene + "." + call.function;
      for (const Finding& finding : session.findings())
        if (finding.part == hit.part) told += "\n" + std::string(finding.remark ? "• " : "⚠ ") + finding.text;
    }
  }
  fl_cursor(shape);
  if (told == hint) return;
  hint = told;
  copy_tooltip(hint.c_str());
}

}  // namespace vex::studio
