// Shows a presentation while its time line is edited.

#include <FL/Fl.H>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "base/files.h"
#include "base/report.h"
#include "platform/end_request.h"
#include "platform/replace_file.h"
#include "platform/standard_streams.h"
#include "studio/panes/file_chooser.h"
#include "studio/panes/gesture_end.h"
#include "studio/panes/look.h"
#include "studio/panes/window.h"
#include "timeline/project_record.h"
#include "tools/command_line.h"

namespace {

namespace fs = std::filesystem;
using namespace vex;

constexpr const char* usage =
    R"(Usage: vexstudio SHOW.txt [--dir RUNDIR]   shape a show while it runs with the data of a run folder
       vexstudio RUNDIR                    the folder's own text, show.txt; where there is none, a dump of
                                           its test.hvp becomes one
       vexstudio --help                    show this text
       vexstudio --version                 show version, libraries and licences

Without --dir the run folder is the text's own. F1 shows all keys. What the window looked like is kept in
vex/studio of the user's configuration folder.
Exit codes: 0 done, 2 wrong usage, 255 refused.
)";

// The folder's text, or one that is made of its project.
std::string textOf(const fs::path& folder) {
  const fs::path text = folder / "show.txt";
  if (fs::exists(text)) return text;
  fs::current_path(folder);
  pakOpen("vex.pak");
  const OpenFile project(fileOpenNeeded(
      "test.hvp", "no show in folder " + folder.string() + ": neither show.txt nor test.hvp is there"));
  const auto bytes = fileReadRest<std::string>(project);
  const DecodedProject decoded = decodeProject(bytes, "test.hvp");
  if (!decoded.failure.empty()) fatalError("%s", decoded.failure.c_str());
  if (!replaceFile(text, writeProjectText(decoded.project)))
    fatalError("can't write %s: %s", text.c_str(), std::strerror(errno));
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  openStandardStreams();
  if (int exitCode = 0; studio::choosesFile(argc, argv, exitCode)) return exitCode;
  std::string folder;
  const Option options[] = {{.name = "--dir", .take = [&](const std::string& value) { folder = value; }}};
  const CommandLine line("vexstudio", usage, argc, argv);
  const std::vector<std::string> names = line.parse(options);
  if (names.size() != 1) line.refuse("one text or one run folder is expected");
  std::error_code problem;
  fs::path text = fs::absolute(names[0]);
  if (fs::is_directory(text, problem)) {
    if (!folder.empty()) line.refuse("--dir goes with a text, not with a folder");
    folder = text.string();
    text = textOf(text);
  }
  if (folder.empty()) folder = text.parent_path().string();
  fs::current_path(folder, problem);
  const std::string trouble =
      problem ? formatted("can't enter the run folder %s: %s", folder.c_str(), problem.message().c_str())
              : "";
  if (!std::getenv("DISPLAY")) fatalError("no X display to open a window on: DISPLAY is not set");
  catchEndSignals();
  studio::prepareLook();
  studio::endGesturesAtTheMouse();
  studio::Session session(text.string());
  studio::StudioWindow window(session);
  window.open(trouble);
  Fl::run();
  return 0;
}
