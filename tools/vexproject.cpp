#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/nearest_name.h"
#include "authoring/project_text.h"
#include "authoring/whole_check.h"
#include "base/files.h"
#include "base/report.h"
#include "platform/end_request.h"
#include "platform/replace_file.h"
#include "platform/standard_streams.h"
#include "scenes/scene_tables.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_record.h"
#include "tools/command_line.h"
#include "tools/project_input.h"
#include "tools/start_show.h"

namespace {

constexpr vex::Contained contained[] = {{"aubio", "GPL-3.0+"}};

constexpr const char* usage =
    "Usage: vexproject compile IN.txt OUT.hvp       make a project file of its text form\n"
    "       vexproject dump IN.hvp                  print the text form of a project file\n"
    "       vexproject check FILE [--dir RUNDIR]    say all that is wrong with a project of either form;\n"
    "                                               with a run folder also look for its data there, loose\n"
    "                                               or in vex.pak\n"
    "       vexproject new DIR [--music FILE] [--tempo BPM]\n"
    "                                               begin a show of your own: a folder with what every show\n"
    "                                               needs, a text, and the music (or a minute of silence)\n"
    "       vexproject beats MUSIC                  find tempo and first beat of music, as a line for the "
    "text\n"
    "       vexproject scenes [NAME]                print what scenes need: models with their objects, "
    "textures\n"
    "       vexproject functions                    print docs/functions.md: what a part can call\n"
    "       vexproject --help                       show this text\n"
    "       vexproject --version                    show version, libraries and licences\n"
    "\n"
    "The text form is described in docs/project-text.md. Remarks of the check are no problems.\n"
    "Exit codes: 0 done, 2 wrong usage, 130 interrupted, 255 refused, or problems found.\n";

void writeFile(const char* name, const std::string& bytes) {
  vex::ReplacementFile file(name);
  if (!file.stream() || std::fwrite(bytes.data(), 1, bytes.size(), file.stream()) != bytes.size() ||
      !file.commit()) {
    vex::fatalError("can't write %s: %s", name, std::strerror(errno));
  }
}

void printOut(const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    vex::fatalError("can't write standard output: %s", std::strerror(errno));
  }
}

void compile(const char* textName, const char* projectName) {
  const std::string text = vex::readProjectFile(textName);
  if (vex::isProjectFile(text)) vex::fatalError("%s is a project file, not the text of one", textName);
  writeFile(projectName, vex::compileWhole(text, textName));
}

// Refuses what the player refuses, in its words.
void loadAsThePlayer(const std::string& bytes, const char* name) {
  vex::PartDispatcher player;
  player.names = vex::ProjectNames::taken;
  vex::MemorySource source(bytes);
  player.readProject(source, name);
}

void dump(const char* name) {
  const std::string bytes = vex::readProjectFile(name);
  if (!vex::isProjectFile(bytes) && vex::readProjectText(bytes, vex::KeptPlaces::none).problems.empty())
    vex::fatalError("%s is the text of a project, not its file: vexproject compile makes that", name);
  loadAsThePlayer(bytes, name);
  printOut(vex::writeProjectText(vex::decodeProject(bytes, name).project));
}

// The exit code.
int check(const char* name, const char* runFolder) {
  const std::string bytes = vex::readProjectFile(name);
  if (runFolder) {
    if (chdir(runFolder) != 0) vex::fatalError("can't go to folder %s: %s", runFolder, std::strerror(errno));
    vex::pakOpen("vex.pak");
  }
  const vex::CheckedProject checked =
      vex::checkWhole(bytes, name, runFolder ? vex::CheckedData::ofWorkingFolder : vex::CheckedData::none);
  bool problems = false;
  for (const vex::Finding& finding : checked.findings) {
    std::fprintf(stderr, "vexproject: %s\n", vex::findingText(name, checked.project, finding).c_str());
    problems = problems || !finding.remark;
  }
  if (problems) return 255;
  printOut("no problems\n");
  return 0;
}

// Of one scene, or of all where no name is given.
void printScenes(const std::string& name) {
  const auto tables = vex::sceneEntries();
  if (name.empty()) return printOut(vex::needsAsMarkdown(tables));
  const vex::SceneEntry* entry = vex::findSceneEntry(tables, name);
  if (entry) return printOut(vex::needsAsMarkdown(std::span(entry, 1)));
  std::vector<std::string_view> names;
  for (const vex::SceneEntry& known : tables) names.push_back(known.name);
  vex::fatalError("unknown scene %s; %s", name.c_str(), vex::nearestNameHint(name, names).c_str());
}

}  // namespace

int main(int argc, char** argv) {
  vex::openStandardStreams();
  vex::endAtSignals();
  const vex::CommandLine line("vexproject", usage, argc, argv, contained);
  std::optional<std::string> folder;
  std::string music;
  std::optional<double> beatsPerMinute;
  const vex::Option options[] = {
      {"--dir", [&folder](auto& value) { folder = value; }},
      {"--music", [&music](auto& value) { music = value; }},
      {"--tempo", [&](auto& value) { beatsPerMinute = line.number("--tempo", value, 1.0, 1000.0); }},
  };
  const std::vector<std::string> words = line.parse(options);
  const std::string command = words.empty() ? "" : words[0];
  if (folder && command != "check") line.refuse("--dir belongs to check");
  if (command != "new" && (!music.empty() || beatsPerMinute))
    line.refuse("--music and --tempo belong to new");
  if (command == "compile" && words.size() == 3) {
    compile(words[1].c_str(), words[2].c_str());
  } else if (command == "dump" && words.size() == 2) {
    dump(words[1].c_str());
  } else if (command == "check" && words.size() == 2) {
    return check(words[1].c_str(), folder ? folder->c_str() : nullptr);
  } else if (command == "new" && words.size() == 2) {
    vex::startShow(words[1], music, beatsPerMinute);
  } else if (command == "beats" && words.size() == 2) {
    printOut(vex::beatsOf(words[1]));
  } else if (command == "scenes" && words.size() <= 2) {
    printScenes(words.size() == 2 ? words[1] : "");
  } else if (command == "functions" && words.size() == 1) {
    printOut(vex::functionsAsMarkdown(vex::sceneEntries()));
  } else {
    line.refuse();
  }
  return 0;
}
