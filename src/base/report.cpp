#include "base/report.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "base/fatal_place.h"
#include "base/options.h"
#include "platform/desktop.h"
#include "platform/message.h"
#include "platform/paths.h"
#include "platform/replace_file.h"

namespace vex {

namespace {

bool firstWrite = true;
LoadingSink loadingDialog;
int stepCount = 1;
int stepsShown = 0;
thread_local const FatalPlace* fatalPlace = nullptr;
thread_local int throwing = 0;  // FatalErrorsThrown that live

struct Text {
  char characters[messageSize];

  // A text that is cut keeps its line feed, so that no two lines of the log become one.
  [[gnu::format(printf, 2, 0)]] Text(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(characters, sizeof characters, format, arguments);
    if (length >= messageSize) {
      std::string whole(static_cast<std::size_t>(length) + 1, '\0');
      std::vsnprintf(whole.data(), whole.size(), format, again);
      if (whole[whole.size() - 2] == '\n') characters[messageSize - 2] = '\n';
    }
    va_end(again);
  }
};

void showLoading(int percent, const Text& text) {
  if (loadingDialog.show) loadingDialog.show(percent, text.characters);
}

// A long text is cut, not its place.
std::string withPlace(std::string text) {
  if (!fatalPlace) return text;
  const std::string place = std::string(text.ends_with('\n') ? "(" : " (") + fatalPlace->text() + ")";
  const std::size_t most = messageSize - 1;
  text.resize(std::min(text.size(), most - std::min(place.size(), most)));
  return formatted("%s%s", text.c_str(), place.c_str());
}

}  // namespace

std::string formatted(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const Text text(format, arguments);
  va_end(arguments);
  return text.characters;
}

void logPrintf(const char* format, ...) {
  if (!options().showStats) return;
  std::FILE* log = openLooseFile("Demo.log", firstWrite ? "w" : "a");
  firstWrite = false;
  if (!log) return;
  std::va_list arguments;
  va_start(arguments, format);
  const Text text(format, arguments);
  va_end(arguments);
  std::fputs(text.characters, log);
  std::fclose(log);
}

void beginLog() {
  firstWrite = true;
}

void fatalError(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const Text text(format, arguments);
  va_end(arguments);
  const std::string message = withPlace(text.characters);
  if (throwing > 0) throw FatalError(message);
  showMessage("Error", message.c_str(), MessageIcon::none);
  restoreDesktop();
  removeTemporaryFiles();
  std::_Exit(255);
}

FatalErrorsThrown::FatalErrorsThrown() {
  ++throwing;
}

FatalErrorsThrown::~FatalErrorsThrown() {
  --throwing;
}

FatalPlace::FatalPlace(std::function<std::string()> newPlace)
    : place(std::move(newPlace)), before(std::exchange(fatalPlace, this)) {}

FatalPlace::~FatalPlace() {
  fatalPlace = before;
}

std::string FatalPlace::text() const {
  return before ? place() + ", " + before->text() : place();
}

void warning(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const Text text(format, arguments);
  va_end(arguments);
  showMessage("Warning", text.characters, MessageIcon::exclamation);
}

void setLoadingDialog(LoadingSink sink) {
  loadingDialog = sink;
  stepsShown = 0;
}

void setLoadingSteps(int steps) {
  stepCount = steps;
}

void loadingProgress(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const Text text(format, arguments);
  va_end(arguments);
  showLoading(static_cast<int>(static_cast<double>(stepsShown) / stepCount * 100.0), text);
  ++stepsShown;
}

void loadingProgressAt(int percent, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const Text text(format, arguments);
  va_end(arguments);
  showLoading(percent, text);
}

void closeLoadingDialog() {
  if (loadingDialog.close) loadingDialog.close();
  loadingDialog = {};
}

}  // namespace vex
