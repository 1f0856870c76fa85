#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "app/recorder.h"
#include "authoring/project_text.h"
#include "base/options.h"
#include "base/report.h"
#include "platform/encoder.h"
#include "platform/standard_streams.h"
#include "tools/command_line.h"
#include "tools/project_input.h"

namespace {

constexpr const char* usage =
    "Usage: vexrecord [options]\n"
    "Renders the presentation of a run folder without window and sound device.\n"
    "\n"
    "  --dir RUNDIR          folder with vex.pak or loose data (default: the working folder)\n"
    "  --out FILE.mp4        write a video with the music: H.264 and AAC\n"
    "  --out FILE.mkv        the same without loss: FFV1 and FLAC\n"
    "  --frames DIR          write every frame as DIR/000000.png, DIR/000001.png, ...\n"
    "  --stills T,T,... --out DIR\n"
    "                        write the frames nearest to the times (seconds) as DIR/0003.500.png\n"
    "  --cues FILE --out DIR the same for a file of lines \"seconds name\", as \"DIR/0003.500 name.png\"\n"
    "  --contact-sheet FILE.png [--every S]\n"
    "                        write one picture with a small frame every S seconds (default 5)\n"
    "  --trace-calls FILE    write every scene-function call as a line of tab-separated columns\n"
    "  --size WxH            size of the frames in pixels (default 1280x720)\n"
    "  --quality N           hold an .mp4 at N times 6 Mbit/s, which is for 1280x720 at 30 frames a second "
    "and\n"
    "                        in proportion for others (default 1)\n"
    "  --supersample N       draw N x N times the pixels and scale down, for smooth edges (default 1)\n"
    "  --fps N               frames a second (default 30)\n"
    "  --from T              start at this time instead of the project's start time; particles and water "
    "have\n"
    "                        moved for two seconds then\n"
    "  --cold                with --from: they have not, as in a player that starts there\n"
    "  --to T                end at this time instead of the project's total time\n"
    "  --tempo BPM|SHOW.txt  beats a minute, or the text that states them: times may then be bars and\n"
    "                        beats, as in --from 8:0, and contact sheets show them\n"
    "  --stats               log to Demo.log and draw the statistics overlay\n"
    "  --help                show this text\n"
    "  --version             show version, libraries and licences\n"
    "\n"
    "Exit codes: 0 done, 2 wrong usage, 130 interrupted (the video so far is kept), 255 failed.\n";

constexpr int maxSide = 8192;
constexpr int maxSupersample = 8;
constexpr int maxQuality = 20;
constexpr int maxFramesPerSecond = 1000;

constexpr double maxSeconds = 1e6;
constexpr int maxBars = 100000;

// Times as they were given.
struct Request {
  std::string dir = ".";
  std::string tempo, from, to, every;
  std::vector<std::string> stills;
  std::string out;
  std::string cues;
  vex::Recording recording;
};

Request parse(const vex::CommandLine& line) {
  Request request;
  vex::Recording& recording = request.recording;
  const vex::Option options[] = {
      {"--dir", [&](auto& value) { request.dir = value; }},
      {"--out", [&](auto& value) { request.out = value; }},
      {"--stills", [&](auto& value) { request.stills = vex::splitAtCommas(value); }},
      {"--cues", [&](auto& value) { request.cues = value; }},
      {"--frames", [&](auto& value) { recording.framesFolder = value; }},
      {"--contact-sheet", [&](auto& value) { recording.contactSheet = value; }},
      {"--every", [&](auto& value) { request.every = value; }},
      {"--tempo", [&](auto& value) { request.tempo = value; }},
      {"--trace-calls", [&](auto& value) { recording.trace = value; }},
      {"--size",
       [&](auto& value) {
         std::tie(recording.width, recording.height) = line.size("--size", value, 16, maxSide);
       }},
      {"--supersample",
       [&](auto& value) { recording.supersample = line.number("--supersample", value, 1, maxSupersample); }},
      {"--quality", [&](auto& value) { recording.quality = line.number("--quality", value, 1, maxQuality); }},
      {"--fps",
       [&](auto& value) { recording.framesPerSecond = line.number("--fps", value, 1, maxFramesPerSecond); }},
      {"--from", [&](auto& value) { request.from = value; }},
      {"--cold", [&](auto&) { recording.runIn = 0; }, true},
      {"--to", [&](auto& value) { request.to = value; }},
      {"--stats", [](auto&) { vex::options().showStats = true; }, true},
  };
  const std::vector<std::string> others = line.parse(options);
  if (!others.empty()) line.refuse("unknown option " + others[0]);
  return request;
}

// Beats a minute, or the first tempo of a project's text.
vex::Tempo tempoOf(const vex::CommandLine& line, const std::string& value) {
  if (!value.ends_with(".txt")) return {.beatsPerMinute = line.number("--tempo", value, 1.0, 1000.0)};
  const std::optional<vex::Tempo> tempo = vex::readProjectText(vex::readProjectFile(value)).tempo;
  if (!tempo) vex::fatalError("%s states no tempo", value.c_str());
  return *tempo;
}

// Works the times out.
void resolveTimes(const vex::CommandLine& line, Request& request) {
  vex::Recording& recording = request.recording;
  if (!request.tempo.empty()) recording.tempo = tempoOf(line, request.tempo);
  const auto seconds = [&](const char* option, const std::string& text, bool span = false) {
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos) return line.number(option, text, span ? 0.001 : 0.0, maxSeconds);
    if (!recording.tempo) line.refuse(std::string(option) + " " + text + ": bars and beats need --tempo");
    const double bars = line.number(option, text.substr(0, colon), 0, maxBars);
    const double beats = line.number(option, text.substr(colon + 1), 0.0, 1.0 * maxBars);
    return recording.tempo->seconds(bars, beats) + (span ? 0 : recording.tempo->origin);
  };
  for (const std::string& text : request.stills) {
    const double time = seconds("--stills", text);
    recording.stills.push_back({time, vex::stillName(time)});
  }
  if (!request.every.empty()) recording.contactSheetEvery = seconds("--every", request.every, true);
  if (!request.from.empty()) recording.from = static_cast<float>(seconds("--from", request.from));
  if (!request.to.empty()) recording.to = static_cast<float>(seconds("--to", request.to));
}

// Sorts out what --out means, and what cannot go together.
void assignOutputs(const vex::CommandLine& line, Request& request) {
  vex::Recording& recording = request.recording;
  if (!request.cues.empty()) {
    for (vex::Still& still : vex::readCues(request.cues)) recording.stills.push_back(std::move(still));
  }
  if (!recording.stills.empty()) {
    if (request.out.empty()) line.refuse("stills need --out DIR");
    recording.stillsFolder = request.out;
  } else if (!request.out.empty()) {
    if (!vex::isVideoName(request.out)) {
      line.refuse("--out " + request.out + ": a name that ends in .mp4 or .mkv is expected");
    }
    if (!vex::takesOddSizes(request.out) && (recording.width % 2 != 0 || recording.height % 2 != 0)) {
      line.refuse("--size " + std::to_string(recording.width) + "x" + std::to_string(recording.height) +
                  ": a video with this ending needs even numbers");
    }
    recording.video = request.out;
  }
  if (recording.runIn == 0 && !recording.from) line.refuse("--cold needs --from T");
  if (!request.every.empty() && recording.contactSheet.empty())
    line.refuse("--every needs --contact-sheet FILE.png");
  if (recording.video.empty() && recording.stills.empty() && recording.contactSheet.empty() &&
      recording.trace.empty() && recording.framesFolder.empty()) {
    line.refuse("nothing to write: give --out, --frames, --contact-sheet or --trace-calls");
  }
  for (std::string* path : {&recording.video, &recording.contactSheet, &recording.trace,
                            &recording.stillsFolder, &recording.framesFolder}) {
    if (path->empty()) continue;
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(*path, error);
    if (error) vex::fatalError("can't tell where %s lies: %s", path->c_str(), error.message().c_str());
    *path = absolute.native();
  }
}

}  // namespace

int main(int argc, char** argv) {
  vex::openStandardStreams();
  const vex::CommandLine line("vexrecord", usage, argc, argv);
  Request request = parse(line);
  resolveTimes(line, request);
  assignOutputs(line, request);
  if (chdir(request.dir.c_str()) != 0) {
    vex::fatalError("can't go to folder %s: %s", request.dir.c_str(), std::strerror(errno));
  }
  return vex::record(request.recording);
}
