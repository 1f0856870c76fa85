#include "platform/message.h"

#include <FL/Fl.H>
#include <FL/Fl_Double_Window.H>
#include <FL/Fl_Scroll.H>
#include <FL/fl_draw.H>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dialog_controls.h"
#include "platform/dialog_window.h"
#include "platform/display_modes.h"
#include "platform/end_request.h"
#include "platform/look.h"
#include "platform/text_wrap.h"

namespace vex {

namespace {

bool messageWindows = false;
MessageSink messageSink = nullptr;

// What waits for its window.
struct {
  int lives = 0;  // of MessagesJoined
  std::string caption, text;
} joined;

constexpr int margin = 20;  // all in pixels
constexpr int captionHeight = 34;
constexpr int iconSize = 44;
constexpr int textWidth = 440;
constexpr int minTextWidth = 220;
constexpr int maxTextHeight = 420;
constexpr int buttonWidth = 110;
constexpr int buttonHeight = 34;

class Caption : public Fl_Widget {
 public:
  Caption(int width, const char* text) : Fl_Widget(0, 0, width, captionHeight, text) {}

 private:
  void draw() override {
    fl_rectf(x(), y(), w(), h(), flColour(icon::inkBlack));
    fl_rectf(x(), y() + h() - 2, w(), 2, flColour(icon::acidGreen));
    fl_color(flColour(icon::bone));
    fl_font(FL_HELVETICA_BOLD, FL_NORMAL_SIZE);
    fl_draw(label(), x() + margin, y(), w() - 2 * margin, h() - 2, FL_ALIGN_LEFT, nullptr, 0);
  }
};

class Exclamation : public Fl_Widget {
 public:
  Exclamation(int x, int y) : Fl_Widget(x, y, iconSize, iconSize) {}

 private:
  void triangle(Fl_Color colour, double inset) {
    fl_color(colour);
    fl_begin_polygon();
    fl_vertex(x() + w() / 2.0, y() + 1 + inset * 2);
    fl_vertex(x() + w() - 1 - inset * 1.7, y() + h() - 3 - inset);
    fl_vertex(x() + 1 + inset * 1.7, y() + h() - 3 - inset);
    fl_end_polygon();
  }

  void draw() override {
    triangle(flColour(icon::inkBlack), 0);
    triangle(flColour(icon::acidGreen), 2);
    fl_color(flColour(icon::inkBlack));
    fl_rectf(x() + w() / 2 - 2, y() + 16, 4, 13);
    fl_rectf(x() + w() / 2 - 2, y() + 32, 4, 4);
  }
};

// Lines as they stand: labels of the toolkit would read '@' and '&' as commands.
class TextLines : public Fl_Widget {
 public:
  TextLines(int x, int y, int width, std::vector<std::string> text)
      : Fl_Widget(x, y, width, static_cast<int>(text.size()) * lineHeight()), lines(std::move(text)) {}

  static void useFont() { fl_font(FL_HELVETICA, FL_NORMAL_SIZE); }

  static int lineHeight() {
    useFont();
    return fl_height() + 2;
  }

 private:
  std::vector<std::string> lines;

  void draw() override {
    const int step = lineHeight();
    fl_color(FL_FOREGROUND_COLOR);
    int baseline = y() + step - fl_descent() - 1;
    for (const std::string& line : lines) {
      fl_draw(line.data(), static_cast<int>(line.size()), x(), baseline);
      baseline += step;
    }
  }
};

void hideWindow(Fl_Widget* widget, void*) {
  (widget->as_window() ? widget->as_window() : widget->window())->hide();
}

void showWindow(const char* caption, const char* text, MessageIcon icon) {
  prepareDialogs();
  TextLines::useFont();
  const auto measure = [](std::string_view part) {
    return fl_width(part.data(), static_cast<int>(part.size()));
  };
  std::vector<std::string> lines = wrapText(text, textWidth, measure);
  double widest = minTextWidth;
  for (const std::string& line : lines) widest = std::max(widest, measure(line));

  const bool hasIcon = icon == MessageIcon::exclamation;
  const int textLeft = margin + (hasIcon ? iconSize + margin : 0);
  const int width = textLeft + static_cast<int>(widest) + 1 + margin;
  const int bodyTop = captionHeight + margin;
  const int linesHeight = static_cast<int>(lines.size()) * TextLines::lineHeight();
  const bool scrolls = linesHeight > maxTextHeight;
  const int textHeight = std::min(linesHeight, maxTextHeight);
  const int bodyHeight = std::max(textHeight, hasIcon ? iconSize : 0);
  const int textTop = bodyTop + (bodyHeight - textHeight) / 2;
  const int buttonTop = bodyTop + bodyHeight + margin;
  const int scrollBar = scrolls ? Fl::scrollbar_size() : 0;

  Fl_Double_Window window(width + scrollBar, buttonTop + buttonHeight + margin);
  window.clear_border();
  window.label(caption);
  window.callback(hideWindow);
  Caption strip(window.w(), caption);
  if (hasIcon) new Exclamation(margin, bodyTop + (bodyHeight - iconSize) / 2);
  Fl_Scroll scroll(textLeft, textTop, window.w() - textLeft - margin, textHeight);
  scroll.type(scrolls ? Fl_Scroll::VERTICAL_ALWAYS : 0);
  TextLines body(textLeft, textTop, static_cast<int>(widest) + 1, std::move(lines));
  scroll.end();
  DefaultButton ok(window.w() - margin - buttonWidth, buttonTop, buttonWidth, buttonHeight, "OK");
  ok.callback(hideWindow);
  window.end();
  window.set_modal();

  ok.take_focus();
  showDialog(window);
  {
    const KeyboardLoan keyboard(window);
    // An end that is asked for must not wait for a reader.
    while (window.shown() && !endRequested()) Fl::wait(0.25);
  }
  window.hide();
  Fl::check();
}

void showJoined() {
  const std::string text = std::exchange(joined.text, {});
  if (!text.empty()) showWindow(joined.caption.c_str(), text.c_str(), MessageIcon::exclamation);
}

}  // namespace

MessagesJoined::MessagesJoined() {
  ++joined.lives;
}

MessagesJoined::~MessagesJoined() {
  if (--joined.lives == 0) showJoined();
}

void showMessage(const char* caption, const char* text, MessageIcon icon) {
  if (messageSink) {
    messageSink(text);
    return;
  }
  std::string line(text);
  while (!line.empty() && line.back() == '\n') line.pop_back();
  for (char& c : line) {
    if (c == '\n') c = ' ';
  }
  const bool canShow = displayReachable();
  if (messageWindows && !canShow) line += ": " + missingDisplayText();
  std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, line.c_str());
  if (!messageWindows || !canShow) return;
  if (joined.lives > 0 && icon == MessageIcon::exclamation) {
    joined.caption = caption;
    joined.text += (joined.text.empty() ? "" : "\n\n") + std::string(text);
    return;
  }
  showJoined();
  showWindow(caption, text, icon);
}

void setMessageSink(MessageSink sink) {
  messageSink = sink;
}

void enableMessageWindows() {
  messageWindows = true;
  ignoreWriteSignals();  // the line comes before the window
}

}  // namespace vex
