#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>

#include "benchmarks/figure.h"
#include "tests/support/image_files.h"
#include "tests/support/run_folder.h"
#include "tests/support/temporary_folder.h"

// The most that a show may hold, and a little more: what it takes a program to play it, or to refuse it with
// its reason.

namespace vex {
namespace {

namespace fs = std::filesystem;

// --- What is asked for. Each makes its data in the working folder and gives the command's words.

void writeParts(int count, double every, double length) {
  ProjectData project{.totalTime = count * every + length};
  for (int i = 0; i < count; ++i)
    project.parts.push_back(fillPart("part" + std::to_string(i), i * every, length, 1, 0, 0));
  writeRunFolder(project);
}

std::string play999Parts() {
  writeParts(999, 1, 1);
  return "vexrecord --fps 1 --size 64x36 --trace-calls calls.tsv";
}

std::string play16AtOnce() {
  writeParts(16, 0, 10);
  return "vexrecord --fps 2 --size 640x360 --trace-calls calls.tsv";
}

std::string refuse17AtOnce() {
  writeParts(17, 0, 10);
  return "vexproject check test.hvp";
}

void writeMembers(int count) {
  for (int i = 0; i < count; ++i) writeFile("members/" + std::to_string(i), std::string(100'000, 'm'));
}

std::string pack256Members() {
  writeMembers(256);
  return "vexpak create members.pak members";
}

std::string refuse257Members() {
  writeMembers(257);
  return "vexpak create members.pak members";
}

// The show's own textures are some 80 of them.
void writeTextures(int count, int side) {
  writeParts(1, 1, 1);
  std::string list;
  writeFile("data/texture0.bmp", bmpBytes(side, side, plain({90, 60, 30})));
  for (int i = 0; i < count; ++i) {
    const std::string name = "texture" + std::to_string(i);
    if (i > 0) fs::create_hard_link("data/texture0.bmp", "data/" + name + ".bmp");
    list += "data\\" + name + " 1\n";
  }
  writeFile("used_textures.log", list);
}

std::string play900Textures() {
  writeTextures(900, 512);
  return "vexrecord --stills 0.5 --out . --size 64x36";
}

std::string refuse1100Textures() {
  writeTextures(1100, 4);
  return "vexrecord --stills 0.5 --out . --size 64x36";
}

// As large as Mesa's software renderer takes them: a gigabyte of pixels.
std::string playLargestTexture() {
  writeTextures(1, 16384);
  return "vexrecord --stills 0.5 --out . --size 64x36";
}

// A grid of 707 x 707 squares: 999 698 faces, 50 MB of text.
std::string readMillionFaces() {
  constexpr int n = 707;
  std::string text = "*GEOMOBJECT {\n*NODE_NAME \"Grid\"\n*MESH {\n*MESH_NUMVERTEX " +
                     std::to_string((n + 1) * (n + 1)) + "\n*MESH_NUMFACES " + std::to_string(2 * n * n) +
                     "\n*MESH_VERTEX_LIST {\n";
  for (int i = 0; i < (n + 1) * (n + 1); ++i) {
    text += "*MESH_VERTEX " + std::to_string(i) + " " + std::to_string(i % (n + 1)) + " " +
            std::to_string(i / (n + 1)) + " 0\n";
  }
  text += "}\n*MESH_FACE_LIST {\n";
  for (int face = 0; face < 2 * n * n; ++face) {
    const int a = face / 2 / n * (n + 1) + face / 2 % n, half = face % 2;
    text += "*MESH_FACE " + std::to_string(face) + ": A: " + std::to_string(a + half) +
            " B: " + std::to_string(a + 1 + half * (n + 1)) + " C: " + std::to_string(a + n + 1) +
            " AB: 1 BC: 1 CA: 1\n";
  }
  writeFile("data/grid.ase", text + "}\n}\n}\n");
  return "vexmodel info data/grid.ase";
}

// 16 bits stereo at 44100 Hz: 2.5 GB of silence that takes no room on the disk.
std::string playFourHours() {
  constexpr std::uint32_t seconds = 4 * 3600, bytes = seconds * 44100 * 4;
  const auto word = [](std::uint32_t value) {
    return std::string{static_cast<char>(value), static_cast<char>(value >> 8),
                       static_cast<char>(value >> 16), static_cast<char>(value >> 24)};
  };
  ProjectData project{.totalTime = seconds};
  project.music = "data\\long.wav";
  project.parts = {fillPart("red", 0, seconds, 1, 0, 0)};
  writeRunFolder(project);
  writeFile("data/long.wav", "RIFF" + word(bytes + 36) + "WAVEfmt " + word(16) + std::string("\1\0\2\0", 4) +
                                 word(44100) + word(44100 * 4) + std::string("\4\0\20\0", 4) + "data" +
                                 word(bytes));
  fs::resize_file("data/long.wav", 44 + std::uintmax_t{bytes});
  return "vexrecord --from 14390 --out end.mkv --size 64x36 --fps 5";
}

std::string record7680x4320() {
  writeParts(1, 1, 1);
  return "vexrecord --to 0.2 --fps 10 --size 7680x4320 --out large.mkv";
}

// --- How it is measured

constexpr int refused = 255;

struct Load {
  const char* name;
  const char* peer;
  std::string (*prepare)();
  int exitCode;
};

constexpr std::array loads{
    Load{"999_parts", "played, a frame a second", play999Parts, 0},
    Load{"16_parts_at_once", "played, 20 frames of 640 x 360", play16AtOnce, 0},
    Load{"17_parts_at_once", "found by the check", refuse17AtOnce, refused},
    Load{"256_members", "packed, 100 kB each", pack256Members, 0},
    Load{"257_members", "refused", refuse257Members, refused},
    Load{"900_textures", "512 x 512, and the show's own", play900Textures, 0},
    Load{"1100_textures", "refused", refuse1100Textures, refused},
    Load{"largest_texture", "16384 x 16384", playLargestTexture, 0},
    Load{"million_faces", "read from text", readMillionFaces, 0},
    Load{"four_hours_of_music", "the last ten seconds recorded", playFourHours, 0},
    Load{"7680x4320", "three frames recorded", record7680x4320, 0},
};

// The peak of a child counts what it was forked from: that may not be us, who have held a show by then.
constexpr const char* launcher =
    "import resource, subprocess, sys, time\n"
    "begun = time.monotonic()\n"
    "code = subprocess.call(sys.argv[1:])\n"
    "seconds = time.monotonic() - begun\n"
    "print(seconds, resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024, file=open('used', 'w'))\n"
    "sys.exit(code)\n";

void measure(benchmark::State& state, const Load& load) {
  const fs::path bin = fs::read_symlink("/proc/self/exe").parent_path();
  const TemporaryFolder folder;
  writeFile("launcher.py", launcher);
  const std::string command = "python3 launcher.py " + (bin / load.prepare()).native();
  for (auto _ : state) {
    const Program program = runProgram(command);
    double seconds = 0, megabytes = 0;
    std::istringstream(readFile("used")) >> seconds >> megabytes;
    state.counters["seconds"] = seconds;
    state.counters["MiB"] = megabytes;
    const std::string said = program.errors + program.output;
    if (program.exitCode != load.exitCode) state.SkipWithError((load.name + (": " + said)).c_str());
    if (load.exitCode == refused) state.SetLabel(said.substr(0, said.find('\n')));
  }
}

std::string benchmarkName(const Load& load) {
  return std::string("limits/") + load.name;
}

template <std::size_t index>
double secondsOf(const Measurements& m) {
  return m.counter(benchmarkName(loads[index]) + "/iterations:1", "seconds");
}

template <std::size_t index>
double memoryOf(const Measurements& m) {
  return m.counter(benchmarkName(loads[index]) + "/iterations:1", "MiB");
}

template <std::size_t... indices>
bool addLoads(std::index_sequence<indices...>) {
  constexpr std::array<double (*)(const Measurements&), loads.size()> seconds{secondsOf<indices>...},
      memory{memoryOf<indices>...};
  bool added = true;
  for (std::size_t i = 0; i < loads.size(); ++i) {
    const Load& load = loads[i];
    benchmark::RegisterBenchmark(benchmarkName(load).c_str(), measure, load)
        ->Iterations(1)
        ->Repetitions(1)
        ->Unit(benchmark::kMillisecond);
    added = addFigure({.name = std::string("limit_s_") + load.name,
                       .unit = "s",
                       .peer = load.peer,
                       .limit = {},
                       .value = seconds[i]}) &&
            addFigure({.name = std::string("limit_mib_") + load.name,
                       .unit = "MiB",
                       .peer = load.peer,
                       .limit = {},
                       .value = memory[i]}) &&
            added;
  }
  return added;
}

const bool added = addLoads(std::make_index_sequence<loads.size()>());

}  // namespace
}  // namespace vex
