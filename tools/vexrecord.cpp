#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "app/recorder.h"
#include "base/options.h"
#include "base/report.h"
#include "platform/encoder.h"
#include "platform/standard_streams.h"
#include "tools/command_line.h"

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
    "  --from S              start at this time instead of the project's start time\n"
    "  --to S                end at this time instead of the project's total time\n"
    "  --stats               log to Demo.log and draw the statistics overlay\n"
    "  --help                show this text\n"
    "\n"
    "Exit codes: 0 done, 2 wrong usage, 130 interrupted (the video so far is kept), 255 failed.\n";

constexpr int maxSide = 8192;
constexpr int maxSupersample = 8;
constexpr int maxQuality = 20;
constexpr int maxFramesPerSecond = 1000;

constexpr double maxSeconds = 1e6;

struct Request {
  std::string dir = ".";
  std::string out;
  std::string cues;
  bool everyGiven = false;
  vex::Recording recording;
};

Request parse(const vex::CommandLine& line) {
  Request request;
  vex::Recording& recording = request.recording;
  const auto seconds = [&line](const char* option, const std::string& value, double least = 0) {
    return line.number(option, value, least, maxSeconds);
  };
  const vex::Option options[] = {
      {"--dir", [&](auto& value) { request.dir = value; }},
      {"--out", [&](auto& value) { request.out = value; }},
      {"--stills",
       [&](auto& value) {
         for (const std::string& text : vex::splitAtCommas(value)) {
           const double time = seconds("--stills", text);
           recording.stills.push_back({time, vex::stillName(time)});
         }
       }},
      {"--cues", [&](auto& value) { request.cues = value; }},
      {"--frames", [&](auto& value) { recording.framesFolder = value; }},
      {"--contact-sheet", [&](auto& value) { recording.contactSheet = value; }},
      {"--every",
       [&](auto& value) {
         recording.contactSheetEvery = seconds("--every", value, 0.001);
         request.everyGiven = true;
       }},
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
      {"--from", [&](auto& value) { recording.from = static_cast<float>(seconds("--from", value)); }},
      {"--to", [&](auto& value) { recording.to = static_cast<float>(seconds("--to", value)); }},
      {"--stats", [](auto&) { vex::options().showStats = true; }, true},
  };
  const std::vector<std::string> others = line.parse(options);
  if (!others.empty()) line.refuse("unknown option " + others[0]);
  return request;
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
  if (request.everyGiven && recording.contactSheet.empty())
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
  assignOutputs(line, request);
  if (chdir(request.dir.c_str()) != 0) {
    vex::fatalError("can't go to folder %s: %s", request.dir.c_str(), std::strerror(errno));
  }
  return vex::record(request.recording);
}
