#include "studio/panes/file_chooser.h"

#include <FL/Fl_Native_File_Chooser.H>

#include <cstdio>
#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/dialog_window.h"

namespace vex::studio {

namespace {

constexpr std::string_view option = "--choose-file";  // between the two processes
constexpr const char* opens = "open";
constexpr std::string_view answer = "chosen ";

}  // namespace

std::optional<std::string> FileChooser::ask(const Question& question,
                                            std::function<void(const std::string&)> take) {
  if (taken) return "A file is being chosen already.";
  const auto refusal =
      chooser.start({"/proc/self/exe", std::string(option), question.kind == Kind::open ? opens : "save",
                     question.title, question.filter, question.folder, question.name},
                    ".");
  if (!refusal) taken = std::move(take);
  return refusal;
}

void FileChooser::update() {
  if (!taken) return;
  chooser.update();
  if (chooser.running()) return;
  const auto take = std::exchange(taken, nullptr);
  const std::string said = chooser.message();
  if (chooser.exitCode() == 0 && said.starts_with(answer)) take(said.substr(answer.size()));
}

bool choosesFile(int argc, char** argv, int& exitCode) {
  if (argc != 7 || argv[1] != option) return false;
  prepareDialogs();
  const bool opening = argv[2] == std::string_view(opens);
  Fl_Native_File_Chooser chooser(opening ? Fl_Native_File_Chooser::BROWSE_FILE
                                         : Fl_Native_File_Chooser::BROWSE_SAVE_FILE);
  chooser.title(argv[3]);
  chooser.filter(argv[4]);
  chooser.directory(argv[5]);
  chooser.options(Fl_Native_File_Chooser::SAVEAS_CONFIRM);
  if (argv[6][0] != '\0') chooser.preset_file(argv[6]);
  const bool chosen = chooser.show() == 0 && chooser.filename();
  // A line is what the other side reads.
  exitCode = chosen && std::string_view(chooser.filename()).find('\n') == std::string_view::npos ? 0 : 1;
  if (exitCode == 0) std::printf("\n%s%s\n", answer.data(), chooser.filename());
  return true;
}

}  // namespace vex::studio
