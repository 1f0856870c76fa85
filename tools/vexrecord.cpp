#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

#include "app/recorder.h"
#include "base/options.h"
#include "base/report.h"
#include "platform/encoder.h"
#include "platform/standard_streams.h"

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

[[noreturn]] void refuseUsage(const std::string& message) {
  std::fprintf(stderr, "vexrecord: %s\n%s", message.c_str(), usage);
  std::exit(2);
}

// The whole text as a number within the range; anything else is wrong usage.
template <typename Number>
Number parseNumber(const std::string& option, std::string_view text, Number least, Number most) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !(value >= least && value <= most)) {
    std::ostringstream message;
    message << std::setprecision(10) << option << ' ' << text << ": a number from " << least << " to " << most
            << " is expected";
    refuseUsage(message.str());
  }
  return value;
}

constexpr double maxSeconds = 1e6;

std::vector<vex::Still> parseTimes(const std::string& option, std::string_view text) {
  std::vector<vex::Still> stills;
  while (true) {
    const std::size_t comma = text.find(',');
    const double time = parseNumber(option, text.substr(0, comma), 0.0, maxSeconds);
    stills.push_back({time, vex::stillName(time)});
    if (comma == std::string_view::npos) return stills;
    text.remove_prefix(comma + 1);
  }
}

struct CommandLine {
  std::string dir = ".";
  std::string out;
  std::string cues;
  bool everyGiven = false;
  vex::Recording recording;
};

void parseSize(const std::string& option, const std::string& text, vex::Recording& recording) {
  const std::size_t cross = text.find('x');
  if (cross == std::string::npos) refuseUsage(option + " " + text + ": WIDTHxHEIGHT is expected");
  recording.width = parseNumber(option, text.substr(0, cross), 16, maxSide);
  recording.height = parseNumber(option, text.substr(cross + 1), 16, maxSide);
}

CommandLine parse(int argc, char** argv) {
  CommandLine line;
  vex::Recording& recording = line.recording;
  const std::map<std::string, std::function<void(const std::string&, const std::string&)>> options{
      {"--dir", [&](auto&, auto& value) { line.dir = value; }},
      {"--out", [&](auto&, auto& value) { line.out = value; }},
      {"--stills", [&](auto& option, auto& value) { recording.stills = parseTimes(option, value); }},
      {"--cues", [&](auto&, auto& value) { line.cues = value; }},
      {"--frames", [&](auto&, auto& value) { recording.framesFolder = value; }},
      {"--contact-sheet", [&](auto&, auto& value) { recording.contactSheet = value; }},
      {"--every",
       [&](auto& option, auto& value) {
         recording.contactSheetEvery = parseNumber(option, value, 0.001, maxSeconds);
         line.everyGiven = true;
       }},
      {"--trace-calls", [&](auto&, auto& value) { recording.trace = value; }},
      {"--size", [&](auto& option, auto& value) { parseSize(option, value, recording); }},
      {"--supersample",
       [&](auto& option, auto& value) {
         recording.supersample = parseNumber(option, value, 1, maxSupersample);
       }},
      {"--quality",
       [&](auto& option, auto& value) { recording.quality = parseNumber(option, value, 1, maxQuality); }},
      {"--fps",
       [&](auto& option, auto& value) {
         recording.framesPerSecond = parseNumber(option, value, 1, maxFramesPerSecond);
       }},
      {"--from",
       [&](auto& option, auto& value) {
         recording.from = static_cast<float>(parseNumber(option, value, 0.0, maxSeconds));
       }},
      {"--to",
       [&](auto& option, auto& value) {
         recording.to = static_cast<float>(parseNumber(option, value, 0.0, maxSeconds));
       }},
  };
  for (int i = 1; i < argc; ++i) {
    const std::string option = argv[i];
    if (option == "--help" || option == "-h") {
      std::fputs(usage, stdout);
      std::exit(0);
    }
    if (option == "--stats") {
      vex::options().showStats = true;
      continue;
    }
    const auto known = options.find(option);
    if (known == options.end()) refuseUsage("unknown option " + option);
    if (i + 1 == argc || argv[i + 1][0] == '\0') refuseUsage(option + " needs a value");
    known->second(option, argv[++i]);
  }
  return line;
}

// Sorts out what --out means, and what cannot go together.
void assignOutputs(CommandLine& line) {
  vex::Recording& recording = line.recording;
  if (!line.cues.empty()) {
    for (vex::Still& still : vex::readCues(line.cues)) recording.stills.push_back(std::move(still));
  }
  if (!recording.stills.empty()) {
    if (line.out.empty()) refuseUsage("stills need --out DIR");
    recording.stillsFolder = line.out;
  } else if (!line.out.empty()) {
    if (!vex::isVideoName(line.out)) {
      refuseUsage("--out " + line.out + ": a name that ends in .mp4 or .mkv is expected");
    }
    if (!vex::takesOddSizes(line.out) && (recording.width % 2 != 0 || recording.height % 2 != 0)) {
      refuseUsage("--size " + std::to_string(recording.width) + "x" + std::to_string(recording.height) +
                  ": a video with this ending needs even numbers");
    }
    recording.video = line.out;
  }
  if (line.everyGiven && recording.contactSheet.empty())
    refuseUsage("--every needs --contact-sheet FILE.png");
  if (recording.video.empty() && recording.stills.empty() && recording.contactSheet.empty() &&
      recording.trace.empty() && recording.framesFolder.empty()) {
    refuseUsage("nothing to write: give --out, --frames, --contact-sheet or --trace-calls");
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
  CommandLine line = parse(argc, argv);
  assignOutputs(line);
  if (chdir(line.dir.c_str()) != 0) {
    vex::fatalError("can't go to folder %s: %s", line.dir.c_str(), std::strerror(errno));
  }
  return vex::record(line.recording);
}
