#include "platform/start_dialog.h"

#include <memory>

#include "platform/dialog_window.h"
#include "platform/display_modes.h"
#include "platform/end_request.h"
#include "resources/start_dialog.h"

namespace vex {

namespace {

DialogResult result;

void finish(Fl_Widget* widget, DialogResult how) {
  result = how;
  (widget->as_window() ? widget->as_window() : widget->window())->hide();
}

void accept(Fl_Widget* widget, void*) {
  finish(widget, DialogResult::ok);
}

void refuse(Fl_Widget* widget, void*) {
  finish(widget, DialogResult::cancel);
}

}  // namespace

DialogResult runStartDialog(const char* title, const std::vector<std::string>& lines,
                            StartDialogChoice& choice) {
  if (!displayReachable()) return DialogResult::failed;
  prepareDialogs();
  StartDialog dialog;
  const std::unique_ptr<Fl_Window> window(dialog.window101);
  window->label(title);
  window->callback(refuse);
  dialog.control1->callback(accept);
  dialog.control2->callback(refuse);
  dialog.control1001->callback(accept);
  for (const std::string& line : lines) dialog.control1001->add(line.c_str());
  dialog.control1002->value(choice.fullscreen);
  dialog.control1003->value(choice.noSound);
  dialog.control1004->value(choice.showStats);
  dialog.control1005->value(choice.useStripCache);

  result = DialogResult::cancel;
  dialog.control1001->select(choice.line + 1);
  dialog.control1001->take_focus();
  showDialog(*window);
  {
    const KeyboardLoan keyboard(*window);
    while (window->shown() && !endRequested()) Fl::wait(0.25);
  }
  window->hide();
  Fl::flush();

  choice.line = dialog.control1001->value() - 1;
  choice.fullscreen = dialog.control1002->value() != 0;
  choice.noSound = dialog.control1003->value() != 0;
  choice.showStats = dialog.control1004->value() != 0;
  choice.useStripCache = dialog.control1005->value() != 0;
  return result;
}

}  // namespace vex
