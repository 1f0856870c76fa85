#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "studio/panes/inline_edit.h"
#include "studio/panes/pane.h"

namespace vex::studio {

// The chosen part: its own numbers, then each call with its parameters; the show's own where none is chosen.
// Numbers are dragged or typed.
class CallsPane : public Pane {
 public:
  CallsPane(Session& shared, InlineEdit& field);

  // Commands that need menus and choosers, set by the window.
  std::function<void()> addCall;
  std::function<void(ParameterAt)> chooseKind;
  std::function<void(ParameterAt, ArgumentKind)> chooseName;
  std::function<void()> chooseMusic;

  void renamePart();  // types the part's name
  void cancel();      // what the mouse is about

 protected:
  void draw() override;
  int handle(int event) override;

 private:
  enum class Field : std::int8_t {
    // Of the show, where no part is chosen.
    showName,
    total,
    begin,
    tempo,
    music,
    // Of the part.
    name,
    at,
    length,
    start,
    speed,
    track,
    call,
    parameter,
    add
  };
  enum class Half : std::int8_t { both, left, right };  // of its line
  struct Row {
    Field field;
    int line = 0;
    Half half = Half::both;
    int call = -1;
    int parameter = -1;
  };
  // Where a row's name, number and what is said of it stand.
  struct Cell {
    int name, value, end;
  };
  struct Columns {
    int name, kind, value, hint, end;  // left edges
  };

  InlineEdit& edit;
  std::vector<Row> rows;
  int listedPart = -1;
  int scrolled = 0;  // pixels
  std::optional<Row> dragged;
  double dragValue = 0;
  int dragX = 0;
  bool moved = false;

  void listRows();
  Columns columns() const;
  int rowHeight() const;
  void listShow();
  void listPart(const ProjectPart& part);
  Cell cellOf(const Row& row) const;
  int topOf(const Row& row) const;
  std::optional<std::size_t> rowAt(int x, int y) const;
  void drawRow(const Row& row, int top) const;
  void drawScrolled() const;
  void drawShowRow(const Row& row, int top) const;
  void drawNumber(const Row& row, int top, const char* name, const std::string& value,
                  const std::string& hint = "") const;
  void drawParameter(const Row& row, int top, const Columns& at) const;
  void drawCall(const Row& row, int top, const Columns& at) const;

  bool stands(const Row& row) const;
  const ProjectParameter& parameterOf(const Row& row) const;
  double numberOf(const Row& row) const;
  double stepOf(const Row& row) const;  // of the number, for a pixel
  bool isNumber(const Row& row) const;
  void setNumber(const Row& row, double value);
  void type(const Row& row, int top);
  int press();
  int drag();
  int release();
  void pressCall(const Row& row);
};

}  // namespace vex::studio
