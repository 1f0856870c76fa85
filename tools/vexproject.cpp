#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "authoring/project_check.h"
#include "authoring/project_lexer.h"
#include "authoring/project_text.h"
#include "base/files.h"
#include "base/report.h"
#include "platform/end_request.h"
#include "platform/replace_file.h"
#include "platform/sound_file.h"
#include "platform/standard_streams.h"
#include "scenes/scene_tables.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_record.h"
#include "tools/beats/beats.h"
#include "tools/command_line.h"
#include "tools/project_input.h"

namespace {

constexpr const char* usage =
    "Usage: vexproject compile IN.txt OUT.hvp       make a project file of its text form\n"
    "       vexproject dump IN.hvp                  print the text form of a project file\n"
    "       vexproject check FILE [--dir RUNDIR]    say all that is wrong with a project of either form;\n"
    "                                               with a run folder also look for its data there, loose\n"
    "                                               or in vex.pak\n"
    "       vexproject beats MUSIC                  find tempo and first beat of music, as a line for the "
    "text\n"
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
  const vex::CompiledProject compiled = vex::compileProjectText(text);
  if (!compiled.problems.empty()) {
    const vex::TextProblem& first = compiled.problems.front();
    vex::fatalError("%s:%d: %s", textName, first.line, first.text.c_str());
  }
  writeFile(projectName, compiled.bytes);
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
  loadAsThePlayer(bytes, name);
  printOut(vex::writeProjectText(vex::decodeProject(bytes, name).project));
}

// A project in either form, and what is wrong with it by itself.
struct Checked {
  vex::Project project;
  std::vector<vex::Finding> findings;
  bool readable = true;
};

Checked readProject(const char* name) {
  const std::string bytes = vex::readProjectFile(name);
  Checked checked;
  if (vex::isProjectFile(bytes)) {
    vex::DecodedProject decoded = vex::decodeProject(bytes, name);
    checked.readable = decoded.failure.empty();
    std::replace(decoded.failure.begin(), decoded.failure.end(), '\n', ' ');
    if (!checked.readable) checked.findings.push_back({.text = decoded.failure, .hint = ""});
    checked.project = std::move(decoded.project);
    if (checked.readable) checked.findings = vex::checkRules(checked.project);
  } else {
    vex::ReadProjectText read = vex::readProjectText(bytes);
    for (vex::TextProblem& problem : read.problems) {
      checked.findings.push_back({.line = problem.line, .text = std::move(problem.text), .hint = ""});
    }
    checked.project = std::move(read.project);
  }
  return checked;
}

void print(const char* file, const vex::Project& project, const vex::Finding& finding) {
  std::string place = file;
  if (finding.line > 0) {
    place += ":" + std::to_string(finding.line);
  } else if (finding.part >= 0) {
    const std::string& name = project.parts[static_cast<std::size_t>(finding.part)].name;
    place += ": part " + vex::quoteText(name) + " (" + std::to_string(finding.part + 1) + ")";
  }
  std::fprintf(stderr, "vexproject: %s: %s%s%s%s\n", place.c_str(), finding.remark ? "remark: " : "",
               finding.text.c_str(), finding.hint.empty() ? "" : "; hint: ", finding.hint.c_str());
}

// The exit code.
int check(const char* name, const char* runFolder) {
  Checked checked = readProject(name);
  // Holes where something could not be read would look like problems of the whole show.
  const bool whole = checked.findings.empty();
  if (runFolder) {
    if (chdir(runFolder) != 0) vex::fatalError("can't go to folder %s: %s", runFolder, std::strerror(errno));
    vex::pakOpen("vex.pak");
  }
  const auto add = [&checked, whole](std::vector<vex::Finding> more) {
    for (vex::Finding& finding : more) {
      if (whole || finding.line > 0 || finding.part >= 0) checked.findings.push_back(std::move(finding));
    }
  };
  if (checked.readable) {
    const auto tables = vex::sceneEntries();
    add(vex::checkTimeLine(checked.project, tables));
    if (runFolder) add(vex::checkData(checked.project, tables));
    const auto hasMask = [runFolder](const std::string& texture) {
      return runFolder && vex::textureHasMask(texture);
    };
    if (whole) add(vex::checkGround(checked.project, tables, hasMask));
  }
  std::stable_sort(checked.findings.begin(), checked.findings.end(), [](const auto& a, const auto& b) {
    return std::pair(a.line, a.part) < std::pair(b.line, b.part);
  });
  bool problems = false;
  for (const vex::Finding& finding : checked.findings) {
    print(name, checked.project, finding);
    problems = problems || !finding.remark;
  }
  if (problems) return 255;
  printOut("no problems\n");
  return 0;
}

// A line for the text of a project, below one on how far it is to be trusted.
void beats(const char* name) {
  if (access(name, R_OK) != 0) vex::fatalError("can't read %s: %s", name, std::strerror(errno));
  vex::SoundFile sound = vex::openSoundFile(name, 0, vex::wholeFile);
  if (!sound.decoder) {
    vex::fatalError("music %s cannot be played: it takes WAV, OGG, FLAC or MP3 with one or two channels",
                    name);
  }
  const std::optional<vex::Beats> found = vex::findBeats(sound);
  if (!found) vex::fatalError("music %s: no steady beat was found", name);
  const char* how = found->sureness() >= 12 ? "sure" : found->sureness() >= 8 ? "likely" : "doubtful";
  printOut(vex::formatted("# %s: %d of %d beats are marked by what begins there\ntempo %.6g from %.3f\n", how,
                          found->marked, found->count, found->perMinute, found->first));
}

}  // namespace

int main(int argc, char** argv) {
  vex::openStandardStreams();
  vex::endAtSignals();
  const vex::CommandLine line("vexproject", usage, argc, argv);
  std::optional<std::string> folder;
  const vex::Option options[] = {{"--dir", [&folder](auto& value) { folder = value; }}};
  const std::vector<std::string> words = line.parse(options);
  const std::string command = words.empty() ? "" : words[0];
  if (folder && command != "check") line.refuse("--dir belongs to check");
  if (command == "compile" && words.size() == 3) {
    compile(words[1].c_str(), words[2].c_str());
  } else if (command == "dump" && words.size() == 2) {
    dump(words[1].c_str());
  } else if (command == "check" && words.size() == 2) {
    return check(words[1].c_str(), folder ? folder->c_str() : nullptr);
  } else if (command == "beats" && words.size() == 2) {
    beats(words[1].c_str());
  } else if (command == "functions" && words.size() == 1) {
    printOut(vex::functionsAsMarkdown(vex::sceneEntries()));
  } else {
    line.refuse();
  }
  return 0;
}
