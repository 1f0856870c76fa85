#include "app/recorder.h"

#include <GL/gl.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "app/call_trace.h"
#include "app/contact_sheet.h"
#include "app/presentation.h"
#include "base/clock.h"
#include "base/files.h"
#include "base/progress.h"
#include "base/report.h"
#include "base/window_size.h"
#include "platform/encoder.h"
#include "platform/end_request.h"
#include "platform/offscreen_context.h"
#include "platform/png_file.h"
#include "platform/replace_file.h"
#include "platform/sound_file.h"
#include "textures/gl_setup.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

constexpr double maxFrames = 10'000'000;
constexpr int maxContactSheetFrames = 1000;
void endWhileLoading(int, const char*) {
  if (endRequested()) endInterrupted();
}

// The context outlives the presentation.
struct ContextCloser {
  ~ContextCloser() { closeOffscreenContext(); }
};

void openOffscreenGl(int width, int height) {
  const std::string reason = openOffscreenContext(width, height);
  if (!reason.empty()) fatalError("no OpenGL to draw with: %s", reason.c_str());
  setUpGlState();
  setWindowSize(width, height);
  glViewport(0, 0, width, height);
}

// The means of n x n blocks: `pixels`, four bytes each, become a picture of that size.
void averageBlocks(std::vector<std::byte>& pixels, int width, int height, int n) {
  const auto columns = static_cast<std::size_t>(width) * 4, block = static_cast<std::size_t>(n);
  const auto area = static_cast<unsigned>(n * n);
  std::vector<unsigned> sums(columns);
  std::byte* mean = pixels.data();  // never before what is still to be read
  const std::byte* sample = pixels.data();
  for (int y = 0; y < height; ++y) {
    std::fill(sums.begin(), sums.end(), area / 2);
    for (int row = 0; row < n; ++row) {
      for (std::size_t column = 0; column < columns; column += 4) {
        for (std::size_t i = 0; i < 4 * block; ++i)
          sums[column + i % 4] += std::to_integer<unsigned>(*sample++);
      }
    }
    for (const unsigned sum : sums) *mean++ = static_cast<std::byte>(sum / area);
  }
  pixels.resize(columns * static_cast<std::size_t>(height));
}

struct Span {
  float start;
  float end;
  int last;  // frame number
};

// No file, or one that nobody can read, gives no decoder.
SoundFile openMusicOf(const PartDispatcher& timeLine) {
  const auto source = findFile(timeLine.musicName);
  return source ? openSoundFile(source->path.c_str(), source->offset, source->size) : SoundFile{};
}

// The player's clock follows the music, and there is no time before that.
float firstTime(const PartDispatcher& timeLine) {
  const float start = timeLine.startTime;
  const bool hasMusic = start < 0 && timeLine.musicName[0] != '\0' && openMusicOf(timeLine).decoder;
  return hasMusic ? 0.0f : start;
}

Span recordedSpan(const Recording& recording, const PartDispatcher& timeLine) {
  Span span{firstTime(timeLine), timeLine.totalTime, 0};
  if (recording.to) {
    if (*recording.to <= span.start || *recording.to > span.end) {
      fatalError("--to %g lies outside the presentation, %g to %g s", *recording.to, span.start, span.end);
    }
    span.end = *recording.to;
  }
  if ((double{span.end} - span.start) * recording.framesPerSecond > maxFrames) {
    fatalError("%g to %g s at %d frames a second are more than %.0f frames", span.start, span.end,
               recording.framesPerSecond, maxFrames);
  }
  span.last = std::max(0, lastFrame(span.start, span.end, recording.framesPerSecond));
  return span;
}

struct DecodedMusic {
  SoundTrack track;
  std::vector<std::byte> samples;
};

// In pieces, because the length that a file announces may be far beyond what it holds.
void readSamples(SoundFile& file, std::uint64_t size, std::vector<std::byte>& samples) {
  constexpr std::uint64_t pieceSize = 1 << 20;
  std::size_t wanted = 0, got = 0;
  while (got == wanted && samples.size() < size && !endRequested()) {
    const std::size_t before = samples.size();
    wanted = std::min(pieceSize, size - before);
    samples.resize(before + wanted);
    got = readSound(file, std::span(samples).subspan(before));
    samples.resize(before + got);
  }
}

// The part of the music that belongs to the span, decoded. A track without rate when there is none.
DecodedMusic readMusic(const PartDispatcher& timeLine, const Span& span, int framesPerSecond) {
  DecodedMusic music;
  const char* name = timeLine.musicName;
  if (name[0] == '\0') return music;
  if (!findFile(name)) {
    warning("Sound file %s not found, the video has no sound", name);
    return music;
  }
  SoundFile file = openMusicOf(timeLine);
  const double first = std::floor(std::max(0.0, double{span.start} * file.rate));
  const bool readable = file.decoder && first < file.frames &&
                        (first == 0 || seekSound(file, static_cast<std::uint32_t>(first)));
  const double seconds = (span.last + 1.0) / framesPerSecond;
  const double frames = std::min(std::floor(seconds * file.rate), file.frames - first);
  if (readable && frames > 0) {
    readSamples(file, static_cast<std::uint64_t>(frames) * static_cast<unsigned>(file.frameBytes()),
                music.samples);
  }
  if (endRequested()) return music;
  if (music.samples.empty()) {
    warning("Sound file %s can't be read at %g s, the video has no sound", name, span.start);
    return music;
  }
  music.track = {file.rate, file.channels, file.bytesPerSample, music.samples};
  return music;
}

// Which frames are wanted as pictures, by frame number.
std::multimap<int, Still> chooseFrames(const std::vector<Still>& stills, const Span& span,
                                       int framesPerSecond) {
  std::multimap<int, Still> chosen;
  for (const Still& still : stills) {
    const double frame = std::round((still.time - span.start) * framesPerSecond);
    if (!(frame >= 0) || frame > span.last) {
      fatalError("no frame at %g s: the recording runs from %g to %g s", still.time, span.start,
                 frameTime(span.start, span.last, framesPerSecond));
    }
    chosen.emplace(static_cast<int>(frame), still);
  }
  return chosen;
}

std::vector<Still> contactSheetStills(const Recording& recording, const Span& span) {
  std::vector<Still> stills;
  if (recording.contactSheet.empty()) return stills;
  const double count = std::floor((double{span.end} - span.start) / recording.contactSheetEvery) + 1;
  if (count > maxContactSheetFrames) {
    fatalError("--every %g gives %.0f pictures, at most %d fit on a sheet", recording.contactSheetEvery,
               count, maxContactSheetFrames);
  }
  for (int i = 0; i < static_cast<int>(count); ++i) {
    stills.push_back({span.start + i * recording.contactSheetEvery, {}});
  }
  return stills;
}

void writePicture(const Recording& recording, const std::string& folder, const std::string& name,
                  const std::vector<std::byte>& bgra) {
  std::vector<std::byte> rgb;
  rgb.reserve(bgra.size() / 4 * 3);
  const auto rowSize = static_cast<std::size_t>(recording.width) * 4;
  for (std::size_t row = bgra.size(); row > 0; row -= rowSize) {
    for (std::size_t i = row - rowSize; i < row; i += 4) {
      rgb.insert(rgb.end(), {bgra[i + 2], bgra[i + 1], bgra[i]});
    }
  }
  const std::string path = (fs::path(folder) / (name + ".png")).native();
  ReplacementFile file(path);
  if (!writePng(file, recording.width, recording.height, rgb)) {
    fatalError("can't write %s: %s", path.c_str(), std::strerror(errno));
  }
}

std::string frameName(int frame) {
  char name[16];
  std::snprintf(name, sizeof name, "%06d", frame);
  return name;
}

// The name of a cue as a part of a file name.
std::string asFileName(std::string name) {
  for (char& c : name) {
    if (static_cast<unsigned char>(c) < 32 || std::strchr("/\\:*?\"<>|", c)) c = '_';
  }
  return name;
}

// Draws frame after frame and hands each to whoever wants it.
class Recorder {
 public:
  Recorder(const Recording& what, Presentation& of, CallTraceFile* calls, const Span& frames)
      : recording(what),
        presentation(of),
        trace(calls),
        span(frames),
        stills(chooseFrames(what.stills, frames, what.framesPerSecond)),
        thumbnails(chooseFrames(contactSheetStills(what, frames), frames, what.framesPerSecond)),
        sheet(static_cast<int>(thumbnails.size()), what.width, what.height, what.tempo) {}

  // The exit code.
  int run() {
    if (!recording.contactSheet.empty()) openSheet();
    for (const std::string& folder : {recording.stillsFolder, recording.framesFolder}) {
      if (!folder.empty()) makeFolder(folder);
    }
    DecodedMusic music;
    if (!recording.video.empty()) music = readMusic(presentation.timeLine(), span, recording.framesPerSecond);
    if (endRequested()) return endInterrupted(0);
    if (!recording.video.empty()) startVideo(music.track);
    const int last = lastWanted();
    Progress progress("recording", last + 1);
    int frame = 0;
    // A video of no frame at all would be no file.
    do {
      drawAndDeliver(frame);
      progress.update(++frame);
    } while (frame <= last && !endRequested());
    progress.end();
    if (frame <= last) return endInterrupted(frame);
    if (!recording.video.empty()) endVideo(VideoEncoder::Result::complete);
    if (sheetFile && !sheet.write(*sheetFile)) failSheet();
    return 0;
  }

 private:
  [[noreturn]] void failSheet() {
    fatalError("can't write %s: %s", recording.contactSheet.c_str(), std::strerror(errno));
  }

  // At the beginning, so that nobody waits for a sheet that cannot be written.
  void openSheet() {
    sheetFile.emplace(recording.contactSheet);
    if (!sheetFile->stream()) failSheet();
  }

  // Pictures alone need no frame behind the last of them.
  int lastWanted() const {
    if (!recording.video.empty() || !recording.trace.empty() || !recording.framesFolder.empty())
      return span.last;
    const int lastStill = stills.empty() ? 0 : stills.rbegin()->first;
    return thumbnails.empty() ? lastStill : std::max(lastStill, thumbnails.rbegin()->first);
  }

  static void makeFolder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) fatalError("can't make folder %s: %s", folder.c_str(), error.message().c_str());
  }

  void startVideo(const SoundTrack& music) {
    const std::string failure = encoder.start(recording.video,
                                              {.width = recording.width,
                                               .height = recording.height,
                                               .framesPerSecond = recording.framesPerSecond,
                                               .quality = recording.quality},
                                              music);
    if (!failure.empty()) fatalError("%s", failure.c_str());
  }

  void endVideo(VideoEncoder::Result result) {
    const std::string failure = encoder.finish(result);
    if (!failure.empty()) fatalError("%s", failure.c_str());
  }

  void drawAndDeliver(int frame) {
    const float time = frameTime(span.start, frame, recording.framesPerSecond);
    clockAdvanceTo(time);
    if (trace) trace->setFrame(frame);
    presentation.drawFrame();
    const auto [firstStill, lastStill] = stills.equal_range(frame);
    const auto [firstThumbnail, lastThumbnail] = thumbnails.equal_range(frame);
    const bool everyFrame = !recording.video.empty() || !recording.framesFolder.empty();
    if (everyFrame || firstStill != lastStill || firstThumbnail != lastThumbnail) {
      const int n = recording.supersample;
      readBackBgra(recording.width * n, recording.height * n, pixels);
      if (n > 1) averageBlocks(pixels, recording.width, recording.height, n);
    }
    glClear(GL_STENCIL_BUFFER_BIT);
    for (auto still = firstStill; still != lastStill; ++still) {
      writePicture(recording, recording.stillsFolder, still->second.name, pixels);
    }
    for (auto thumbnail = firstThumbnail; thumbnail != lastThumbnail; ++thumbnail) {
      sheet.add(thumbnail->second.time, pixels);
    }
    if (!recording.framesFolder.empty())
      writePicture(recording, recording.framesFolder, frameName(frame), pixels);
    if (!recording.video.empty() && !encoder.write(pixels)) endVideo(VideoEncoder::Result::failed);
  }

  int endInterrupted(int framesDone) {
    if (!recording.video.empty() && framesDone > 0) {
      endVideo(VideoEncoder::Result::partial);
      std::fprintf(stderr, "vexrecord: interrupted, the first %.2f s are in %s\n",
                   static_cast<double>(framesDone) / recording.framesPerSecond,
                   encoder.partialPath().c_str());
    } else {
      std::fprintf(stderr, "vexrecord: interrupted\n");
    }
    return interruptedExitCode;
  }

  const Recording& recording;
  Presentation& presentation;
  CallTraceFile* trace;  // null where none is wanted
  const Span span;
  std::multimap<int, Still> stills;
  std::multimap<int, Still> thumbnails;
  ContactSheet sheet;
  std::optional<ReplacementFile> sheetFile;
  VideoEncoder encoder;
  std::vector<std::byte> pixels;
};

// A trace alone shows nothing that has a past.
double runInOf(const Recording& recording) {
  const bool seen = !recording.video.empty() || !recording.framesFolder.empty() ||
                    !recording.contactSheet.empty() || !recording.stills.empty();
  return seen ? recording.runIn : 0.0;
}

}  // namespace

float frameTime(float start, int n, int framesPerSecond) {
  return static_cast<float>(double{start} + static_cast<double>(n) / framesPerSecond);
}

int lastFrame(float start, float end, int framesPerSecond) {
  int n = static_cast<int>((double{end} - start) * framesPerSecond);
  while (frameTime(start, n, framesPerSecond) < end) ++n;
  // Far from 0 the floats lie wider apart than the frames.
  while (n > 0 && frameTime(start, n - 1, framesPerSecond) >= end) --n;
  return n;
}

std::string stillName(double time) {
  char name[32];
  std::snprintf(name, sizeof name, "%08.3f", time);
  return name;
}

std::vector<Still> readCues(const std::string& path) {
  constexpr std::size_t most = 1 << 20;  // bytes; a pipe or a device may never end
  std::ifstream source(path);
  std::string bytes(most + 1, '\0');
  source.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!source.is_open() || source.bad())
    fatalError("can't read cues %s: %s", path.c_str(), std::strerror(errno));
  bytes.resize(static_cast<std::size_t>(source.gcount()));
  if (bytes.size() > most) fatalError("cues %s are longer than %zu bytes", path.c_str(), most);
  std::istringstream file(bytes);
  std::vector<Still> stills;
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    std::istringstream words(line);
    double time = 0;
    std::string name;
    if (line.empty() || line[0] == '#') continue;
    if (!(words >> time) || !std::getline(words >> std::ws, name)) {
      fatalError("cues %s, line %d, %.200s: seconds and a name are expected", path.c_str(), number,
                 line.c_str());
    }
    stills.push_back({time, stillName(time) + " " + asFileName(name)});
  }
  if (stills.empty()) fatalError("cues %s hold no cue", path.c_str());
  return stills;
}

int record(const Recording& recording) {
  catchEndSignals();
  ignoreWriteSignals();  // who reads only the first lines of the progress still wants the recording
  const ContextCloser closer;
  Presentation presentation;
  openOffscreenGl(recording.width * recording.supersample, recording.height * recording.supersample);
  setLoadingDialog({.show = endWhileLoading});
  std::optional<CallTraceFile> trace;
  if (!recording.trace.empty()) trace.emplace(recording.trace);
  presentation.load();
  if (recording.from) {
    presentation.begin(*recording.from, runInOf(recording));
  } else {
    presentation.begin();
  }
  const Span span = recordedSpan(recording, presentation.timeLine());
  const int exitCode = Recorder(recording, presentation, trace ? &*trace : nullptr, span).run();
  if (trace && exitCode == 0) trace->finish();
  return exitCode;
}

}  // namespace vex
