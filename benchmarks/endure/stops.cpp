#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "benchmarks/endure/endure.h"
#include "tests/support/run_folder.h"
#include "tests/support/temporary_folder.h"

// What writes, stopped at random: by a signal that it may answer, and by one that it cannot.

namespace vex::endure {

namespace {

namespace fs = std::filesystem;

bool hidden(const std::string& name) {
  return name.starts_with(".") || name.find("/.") != std::string::npos;
}

void writeShow(double seconds) {
  ProjectData project{.totalTime = seconds};
  project.parts = {fillPart("red", 0, seconds + 1, 1, 0, 0)};
  writeRunFolder(project);
  // What the player writes once: compiled models.
  runProgram(programPath("vexrecord") + " --trace-calls /dev/null --to 0.1 --size 16x16");
}

// The names that an archive of the folder would hold.
std::set<std::string> packedNames() {
  std::set<std::string> names;
  const Program made = runProgram(programPath("vexpak") + " create ../all.pak . && " + programPath("vexpak") +
                                  " list ../all.pak | sed 's/^ *[0-9]* *[0-9]* *//'");
  std::string name;
  for (const char letter : made.output) {
    if (letter != '\n') {
      name += letter == '\\' ? '/' : letter;
      continue;
    }
    names.insert(name);
    name.clear();
  }
  return names;
}

struct Writer {
  const char* name;
  std::vector<std::string> words;
  std::vector<std::string> targets;  // files or folders that it writes, relative
  std::function<void()> prepare = [] {};
  double within = 0;  // killed within that time, s; 0 for as long as a run takes
};

std::vector<Writer> writers() {
  const std::string record = programPath("vexrecord");
  // The slowest first: small counts leave it out.
  return {
      {"vexproduce", {programPath("vexproduce"), "made", "--draft"}, {"made"}, [] {}, 3},
      {"vexrecord --out .mp4", {record, "--out", "out.mp4", "--size", "64x36"}, {"out.mp4"}},
      {"vexrecord --out .mkv", {record, "--out", "out.mkv", "--size", "64x36"}, {"out.mkv"}},
      {"vexrecord --frames", {record, "--frames", "frames", "--size", "64x36"}, {"frames"}},
      {"vexrecord --contact-sheet",
       {record, "--contact-sheet", "sheet.png", "--every", "1", "--trace-calls", "calls.tsv", "--size",
        "64x36"},
       {"sheet.png", "calls.tsv"}},
      {"vexpak create", {programPath("vexpak"), "create", "made.pak", "bulk"}, {"made.pak"}},
      {"vexpak extract", {programPath("vexpak"), "extract", "../bulk.pak", "out"}, {"out"}},
      {"vexproject compile", {programPath("vexproject"), "compile", "show.txt", "made.hvp"}, {"made.hvp"}},
      {"vexmodel compile", {programPath("vexmodel"), "compile", "grid.ase"}, {"grid.hv3"}},
  };
}

// A grid of n x n squares as model text.
std::string gridText(int n) {
  std::string vertices, faces;
  const auto number = [](int value) { return std::to_string(value); };
  for (int i = 0; i < (n + 1) * (n + 1); ++i) {
    vertices += "*MESH_VERTEX " + number(i) + " " + number(i % (n + 1)) + " " + number(i / (n + 1)) + " 0\n";
  }
  for (int i = 0; i < n * n; ++i) {
    const int a = i / n * (n + 1) + i % n;
    for (const auto& [half, b, c] : {std::tuple{0, a + 1, a + n + 1}, {1, a + n + 2, a + n + 1}}) {
      faces += "*MESH_FACE " + number(2 * i + half) + ": A: " + number(half ? a + 1 : a) +
               " B: " + number(b) + " C: " + number(c) + " AB: 1 BC: 1 CA: 1\n";
    }
  }
  return "*GEOMOBJECT {\n*NODE_NAME \"Grid\"\n*MESH {\n*MESH_NUMVERTEX " + number((n + 1) * (n + 1)) +
         "\n*MESH_NUMFACES " + number(2 * n * n) + "\n*MESH_VERTEX_LIST {\n" + vertices +
         "}\n*MESH_FACE_LIST {\n" + faces + "}\n}\n}\n";
}

// A run folder with something to do for every writer.
void makeWorkshop(const fs::path& folder) {
  fs::create_directories(folder);
  fs::current_path(folder);
  writeShow(4);
  for (int i = 0; i < 60; ++i)
    writeFile("bulk/file" + std::to_string(i), std::string(300'000, static_cast<char>(i)));
  runProgram(programPath("vexpak") + " create ../bulk.pak bulk");
  writeFile("grid.ase", gridText(60));
  std::string text = "total 1000\n";
  for (int i = 0; i < 900; ++i) {
    text +=
        "part \"p" + std::to_string(i) + "\" { at " + std::to_string(i) +
        " length 1 SceneHelper.fadeScreen(red = 1, green = 0, blue = 0, alpha = spline(0 0, 0.5 1, 1 0)) }\n";
  }
  writeFile("show.txt", text);
}

void removeTargets(const Writer& writer) {
  for (const std::string& target : writer.targets) fs::remove_all(target);
}

// The files of the targets by their names.
std::map<std::string, std::string> targetFiles(const Writer& writer) {
  std::map<std::string, std::string> files;
  for (const std::string& target : writer.targets) {
    if (fs::is_regular_file(target)) files[target] = readFile(target);
    if (!fs::is_directory(target)) continue;
    for (const auto& [name, bytes] : filesOf(target)) files[(fs::path(target) / name).native()] = bytes;
  }
  return files;
}

struct Whole {
  std::map<std::string, std::string> files;
  double seconds = 0;
};

Whole runToItsEnd(const Writer& writer, Account& account) {
  removeTargets(writer);
  Process program(writer.words);
  const End end = program.wait(300);
  if (end.code != 0) account.fail(std::string(writer.name) + ": " + readFile("../errors"));
  return {targetFiles(writer), end.seconds};
}

// Kills one run at a random moment; how many hidden files it left.
int killOnce(const Writer& writer, const Whole& whole, Chance& chance, Account& account) {
  removeTargets(writer);
  int left = 0;
  {
    Process program(writer.words);
    const double moment = between(chance, 0, writer.within > 0 ? writer.within : whole.seconds);
    for (const double last = now() + moment; now() < last && !program.ended();) pauseFor(0.001);
    if (!program.killAlone()) account.fail(std::string(writer.name) + ": a helper stays");
  }
  std::set<std::string> visible;
  for (const auto& [name, bytes] : filesOf(".")) {
    if (hidden(name)) {
      ++left;
    } else {
      visible.insert(name);
    }
  }
  for (const auto& [name, bytes] : targetFiles(writer)) {
    const auto one = whole.files.find(name);
    if (!hidden(name) && (one == whole.files.end() || one->second != bytes))
      account.fail(std::string(writer.name) + ": " + name + " is half");
  }
  if (left > 0 && !std::ranges::includes(visible, packedNames()))
    account.fail(std::string(writer.name) + ": a temporary file is packed");
  for (const auto& entry : fs::directory_iterator(".")) {
    if (hidden(entry.path().filename().native())) fs::remove_all(entry.path());
  }
  return left;
}

}  // namespace

bool endureInterrupts(int count, Chance& chance) {
  Account account("interrupts");
  const TemporaryFolder work;
  fs::create_directories("show");
  fs::current_path("show");
  writeShow(100'000);
  const auto before = filesOf(".");
  int kept = 0;
  const double begun = now();
  for (int i = 0; i < count; ++i) {
    Process recorder({programPath("vexrecord"), "--out", "out.mp4", "--size", "64x36"});
    pauseFor(between(chance, 0, 1.5));
    recorder.signal(i % 2 ? SIGTERM : SIGINT);
    const End end = recorder.wait();
    // A signal before anybody listens ends the program by itself.
    if (end.code != 130 && !(end.code == -1 && filesOf(".") == before))
      account.fail("exit code " + std::to_string(end.code) + ", " + readFile("../errors"));
    if (fs::exists("out.partial.mp4")) {
      ++kept;
      const Program probe = runProgram(
          "ffprobe -v error -count_frames -show_entries stream=nb_read_frames "
          "-of csv=p=0 out.partial.mp4");
      if (probe.exitCode != 0 || !probe.errors.empty() || std::atoi(probe.output.c_str()) < 1)
        account.fail("a part that cannot be played: " + probe.errors);
      fs::remove("out.partial.mp4");
    }
    if (filesOf(".") != before) account.fail("something else is left in the run folder");
  }
  fs::current_path(work.path());
  account.figure(std::to_string(count) + " of a recording, " + std::to_string(kept) +
                 " parts kept, all played, in " + std::to_string(static_cast<int>(now() - begun)) + " s");
  return account.clean();
}

bool endureKills(int count, Chance& chance) {
  Account account("kills");
  const TemporaryFolder work;
  makeWorkshop(work.path() / "shop");
  const std::vector<Writer> all = writers();
  const double begun = now();
  int done = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Writer& writer = all[i];
    const int times = static_cast<int>((static_cast<std::size_t>(count) + i) / all.size());
    if (times == 0) continue;
    const Whole whole = runToItsEnd(writer, account);
    int left = 0;
    for (int n = 0; n < times; ++n, ++done) left += killOnce(writer, whole, chance, account) > 0;
    account.figure(std::string(writer.name) + ": " + std::to_string(times) + " times, " +
                   std::to_string(left) + " left a hidden temporary file");
    removeTargets(writer);
  }
  fs::current_path(work.path());
  if (account.clean()) account.figure("no target was half, no temporary file packed, no helper stayed");
  account.figure(std::to_string(done) + " in " + std::to_string(static_cast<int>(now() - begun)) + " s");
  return account.clean();
}

}  // namespace vex::endure
