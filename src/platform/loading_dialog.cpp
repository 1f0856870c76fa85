#include "platform/loading_dialog.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>

#include <algorithm>
#include <memory>
#include <string>

#include "platform/dialog_window.h"
#include "platform/display_modes.h"
#include "platform/end_request.h"
#include "platform/look.h"
#include "resources/loading_dialog.h"

namespace vex {

namespace {

std::unique_ptr<Fl_Window> window;
Fl_Progress* bar;
TextLine* line;

// The largest size from 13 down to 9 at which the text fits, and what fits at that size.
void fitText(std::string& text, TextLine& box) {
  for (int size = FL_NORMAL_SIZE; size >= 9; --size) {
    box.labelsize(size);
    fl_font(box.labelfont(), size);
    if (fl_width(text.c_str()) <= box.w()) return;
  }
  while (!text.empty() && fl_width((text + "...").c_str()) > box.w()) text.pop_back();
  text += "...";
}

}  // namespace

void openLoadingWindow(const char* title) {
  if (window || !displayReachable()) return;
  prepareDialogs();
  LoadingDialog dialog;
  window.reset(dialog.window106);
  bar = dialog.control1006;
  line = dialog.control1007;
  bar->minimum(0);
  bar->maximum(100);
  bar->selection_color(flColour(icon::acidGreen));
  window->label(title);
  window->callback([](Fl_Widget*, void*) { requestEnd(); });
  showDialog(*window);
}

void showLoadingProgress(int percent, const char* text) {
  if (!window) return;
  std::string shown(text);
  while (!shown.empty() && shown.back() == '\n') shown.pop_back();
  fitText(shown, *line);
  line->copy_label(shown.c_str());
  bar->value(static_cast<float>(std::clamp(percent, 0, 100)));
  window->redraw();
  Fl::check();
  Fl::flush();
}

void closeLoadingWindow() {
  if (!window) return;
  window->hide();
  window.reset();
  Fl::check();
}

}  // namespace vex
