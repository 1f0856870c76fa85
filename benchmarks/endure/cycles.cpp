#include <X11/Xlib.h>
#include <X11/keysym.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "benchmarks/endure/endure.h"
#include "tests/support/left_behind.h"
#include "tests/support/run_folder.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/x_server.h"

namespace vex::endure {

namespace {

namespace fs = std::filesystem;

constexpr const char* title = "Vex by Halvane";
constexpr int desktopWidth = 800, modeWidth = 640;

enum class WayOut { escape, closeButton, signal, totalTime, fatal };
constexpr struct {
  WayOut way;
  const char* name;
  const char* folder;
  int code;
} ways[] = {
    {WayOut::escape, "Escape", "long", 0},         {WayOut::closeButton, "close button", "long", 0},
    {WayOut::signal, "signal", "long", 0},         {WayOut::totalTime, "total time", "short", 0},
    {WayOut::fatal, "fatal error", "broken", 255},
};

void makeRunFolder(const std::string& name, double seconds) {
  const fs::path before = fs::current_path();
  fs::create_directories(name);
  fs::current_path(name);
  ProjectData project{.totalTime = seconds};
  project.parts = {fillPart("red", 0, seconds + 1, 1, 0, 0)};
  writeRunFolder(project);
  // What the player writes once: compiled models.
  runProgram(programPath("vexrecord") + " --trace-calls /dev/null --to 0.1 --size 16x16");
  if (name == "broken") writeFile("test.hvp", "0.1\n");
  fs::current_path(before);
}

// One key, through the server's test extension.
void press(const char* keys) {
  runProgram(std::string("xdotool key ") + keys);
}

int screenWidth(Display* display) {
  XWindowAttributes root{};
  XGetWindowAttributes(display, DefaultRootWindow(display), &root);
  return root.width;
}

// From the dialog to the way out; what went wrong, or nothing.
std::string leave(WayOut way, Process& player, Display* display) {
  const auto appears = [&](const char* name, int width) {
    Window window = 0;
    waitUntil([&] { return (window = findWindow(display, name, width)) != 0 || player.ended(); });
    return window;
  };
  if (!appears(title, 0)) return "no start dialog";
  press("Return");
  if (way == WayOut::fatal) {
    if (!appears("Error", 0)) return "no box with the error";
    press("Return");
    return "";
  }
  const Window show = appears(title, modeWidth);
  if (way == WayOut::totalTime) return "";
  if (!show) return "no window of the show";
  if (way == WayOut::escape) pressKeys(display, show, {XK_Escape});
  if (way == WayOut::closeButton) pressCloseButton(display, show);
  if (way == WayOut::signal) player.signal(SIGTERM);
  return "";
}

struct Serving {
  double memory = 0;  // KiB
  double handles = 0;
};

Serving measureServer() {
  const std::string process = runProgram("pgrep -n -P " + std::to_string(getpid()) + " Xvfb").output;
  const std::string folder = "/proc/" + process.substr(0, process.find('\n'));
  const std::string status = readFile(folder + "/status");
  const std::size_t at = status.find("VmRSS:");
  return {
      at == std::string::npos ? 0 : std::stod(status.substr(at + 6)),
      static_cast<double>(std::distance(fs::directory_iterator(folder + "/fd"), fs::directory_iterator()))};
}

}  // namespace

bool endureCycles(int count) {
  Account account("cycles");
  const TemporaryFolder work;
  const XServer server(desktopWidth, 600);
  offerMode640x480();
  makeRunFolder("long", 1000);
  makeRunFolder("short", 0.3);
  makeRunFolder("broken", 1000);
  const TestDisplay display = connect();
  constexpr int warmUp = static_cast<int>(std::size(ways));
  long first = 0, last = 0;
  Serving before;
  const double begun = now();
  for (int i = 0; i < count + warmUp; ++i) {
    const auto& [way, name, folder, code] = ways[static_cast<std::size_t>(i) % std::size(ways)];
    fs::current_path(work.path() / folder);
    const auto files = filesOf(".");
    Process player({programPath("vex")});
    const std::string trouble = leave(way, player, display.get());
    const End end = player.wait();
    const std::string where = std::string(name) + ", cycle " + std::to_string(i) + ": ";
    if (!trouble.empty()) account.fail(where + trouble);
    if (end.code != code)
      account.fail(where + "exit code " + std::to_string(end.code) + ", " + readFile("../errors"));
    if (!waitUntil([&] { return screenWidth(display.get()) == desktopWidth; }))
      account.fail(where + "the screen stays " + std::to_string(screenWidth(display.get())) + " wide");
    if (findWindow(display.get(), title)) account.fail(where + "a window stays");
    if (filesOf(".") != files) account.fail(where + "the run folder is another");
    if (way == WayOut::escape) (i < warmUp ? first : last) = end.mostMemory;
    if (i == warmUp - 1) before = measureServer();
  }
  const Serving after = measureServer();
  fs::current_path(work.path());
  account.figure(std::to_string(count) + " of the player by " + std::to_string(std::size(ways)) +
                 " ways out in " + std::to_string(static_cast<int>(now() - begun)) + " s");
  account.standsStill("the player's memory", static_cast<double>(first), static_cast<double>(last), "KiB");
  account.standsStill("the X server's memory", before.memory, after.memory, "KiB");
  account.standsStill("the X server's handles", before.handles, after.handles, "");
  return account.clean();
}

}  // namespace vex::endure
