#include "studio/panes/keys_page.h"

#include <FL/Fl.H>
#include <FL/Fl_Double_Window.H>
#include <FL/fl_draw.H>

#include <array>
#include <string>

#include "studio/panes/look.h"
#include "studio/panes/window.h"

namespace vex::studio {

namespace {

struct MouseRow {
  const char* gesture;
  const char* does;
};

constexpr std::array mouseRows{
    MouseRow{"click or drag on ruler or music", "move the cursor; picture and music follow"},
    MouseRow{"Shift-drag on the ruler", "loop"},
    MouseRow{"drag a part, its ends", "move, trim; caught by beats unless Alt is held"},
    MouseRow{"double-click an empty lane", "make a part"},
    MouseRow{"right click on a part", "split, double, rename, delete"},
    MouseRow{"wheel", "zoom at the pointer; with Shift along the time, with Ctrl along the tracks"},
    MouseRow{"middle button", "drag the time line"},
    MouseRow{"drag on a number", "change it; finely with Shift"},
    MouseRow{"click on a number", "type it"},
    MouseRow{"Alt-1, Alt-2, ...", "answer what the line at the foot asks"},
    MouseRow{"double-click on a curve", "make a dot; right click removes it"},
};

int rowHeight() {
  return px(20);
}

// As it stands on the key, where the toolkit has another word.
std::string keyName(int shortcut) {
  if (shortcut == FL_Page_Up) return "Page Up";
  if (shortcut == FL_Page_Down) return "Page Down";
  if (shortcut == ' ') return "Space";
  return fl_shortcut_label(static_cast<unsigned>(shortcut));
}

class KeysPage : public Fl_Double_Window {
 public:
  explicit KeysPage(const std::vector<Command>& all)
      : Fl_Double_Window(px(860), 10, "Keys of vexstudio"), commands(all) {
    int keyed = 0;
    for (const Command& command : commands) keyed += command.shortcut != 0;
    rowsInColumn = (keyed + 1) / 2;
    resize(x(), y(), w(), (rowsInColumn + static_cast<int>(mouseRows.size()) + 2) * rowHeight());
    end();
  }

 protected:
  void draw() override {
    setDrawColour(colour::pane);
    fl_rectf(0, 0, w(), h());
    int row = 0;
    for (const Command& command : commands) {
      if (command.shortcut == 0) continue;
      const int left = px(16) + row / rowsInColumn * w() / 2,
                top = rowHeight() / 2 + row % rowsInColumn * rowHeight();
      drawRow(keyName(command.shortcut), command.does, left, top, px(116));
      ++row;
    }
    int top = (rowsInColumn + 1) * rowHeight();
    for (const MouseRow& mouse : mouseRows) {
      drawRow(mouse.gesture, mouse.does, px(16), top, px(240));
      top += rowHeight();
    }
  }

  int handle(int event) override {
    if (event != FL_KEYBOARD && event != FL_PUSH) return Fl_Double_Window::handle(event);
    hide();
    return 1;
  }

 private:
  const std::vector<Command>& commands;
  int rowsInColumn;

  void drawRow(const std::string& key, const char* does, int left, int top, int keyWidth) const {
    useFont(true, 12);
    setDrawColour(colour::chosen);
    drawText(key, left, top, keyWidth, rowHeight());
    useFont(false, 12);
    setDrawColour(colour::text);
    drawText(does, left + keyWidth, top, w() - left - keyWidth, rowHeight());
  }
};

}  // namespace

void showKeysPage(const std::vector<Command>& commands) {
  Fl_Group::current(nullptr);
  KeysPage page(commands);
  page.set_modal();
  page.show();
  while (page.shown()) Fl::wait();
}

}  // namespace vex::studio
