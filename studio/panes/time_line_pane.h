#pragma once

#include <string>

#include "studio/panes/pane.h"
#include "studio/session/time_view.h"

namespace vex::studio {

// Ruler, waveform and a lane for each track with its parts; what mouse and wheel do to them.
class TimeLinePane : public Pane {
 public:
  explicit TimeLinePane(Session& shared);

  // Commands of the menu.
  void zoomBy(double factor);  // around the cursor
  void showAll();
  void scrollBy(double screens);
  void follow();          // the cursor, while playing
  void reveal(int part);  // its beginning and its lane
  void cancel();          // what the mouse is about

  // Where time lies, for the one who draws it beside this pane.
  const TimeView& times() const { return view; }

  // Asked for a function by name where a part is to be made; set by the window.
  std::function<void(double time, int track)> createPart;
  std::function<void()> showPartMenu;

  void resize(int x, int y, int width, int height) override;

 protected:
  void draw() override;
  int handle(int event) override;

 private:
  enum class Gesture : std::int8_t { none, cursor, move, trimBegin, trimEnd, mark, pan, loop };

  TimeView view;
  Lanes lanes;
  std::uint64_t lanesOf = ~std::uint64_t{0};  // revision of the document that they were laid out for
  int topRow = 0;
  bool viewed = false;  // the view was set for a show
  Gesture gesture = Gesture::none;
  double grabbed = 0;  // time between the mouse and what it moves
  Lanes heldLanes;     // while a part is moved, so that they do not run away under the mouse
  int heldMark = -1;
  bool played = false;  // before the cursor was taken
  double loopFrom = 0;
  double panFrom = 0;
  std::string hint;  // of the part under the mouse

  int rulerTop() const { return contentTop(); }
  int waveTop() const;
  int lanesTop() const;
  int lanesLeft() const;  // behind the tracks' numbers
  int rowHeight() const;
  int shownRows() const;
  double mouseTime() const;
  int mouseRow() const;
  double caught(double time, double pixels = snapReach) const;  // by beats and borders, unless Alt is held
  void layOutAnew();
  double total() const;

  void drawRuler() const;
  void drawWave() const;
  void drawLanes() const;
  void drawPart(int index) const;
  void drawHidden(int top, int hidden, const char* arrow) const;
  void drawCursor() const;

  int press();
  int drag();
  int release();
  int wheel();
  void hover();
  int markAt(int pixel) const;  // -1 for none
  std::string wordsOf(int mark) const;
  int pixelAt(double time) const;  // of the window, held to what can be drawn
  bool edits() const;
};

}  // namespace vex::studio
