#include "platform/encoder.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <functional>
#include <vector>

#include "platform/end_request.h"
#include "platform/replace_file.h"
#include "platform/steady_clock.h"
#include "platform/wave_header.h"

extern char** environ;

namespace vex {

namespace {

constexpr int pipeSize = 1 << 20;
constexpr int encoderNiceness = 10;
constexpr int soundDescriptor = 3;  // where ffmpeg finds the sound track
constexpr double patience = 5;      // s without any work of ffmpeg's, for who wants to end

// Waits until a pipe has been read empty. False when its reader has gone before: a short recording lies
// in the pipe as a whole, so that no write fails.
bool waitUntilRead(int pipeEnd, const std::function<void()>& whileWaiting) {
  bool readerGone = false;
  while (true) {
    int unread = 0;
    if (ioctl(pipeEnd, FIONREAD, &unread) != 0 || unread == 0) return true;
    if (readerGone) return false;
    pollfd end{.fd = pipeEnd, .events = 0, .revents = 0};
    readerGone = poll(&end, 1, 5) > 0 && (end.revents & POLLERR) != 0;
    whileWaiting();
  }
}

// A file in memory that holds the sound track; -1 on failure.
int soundFile(const SoundTrack& sound) {
  const int descriptor = memfd_create("sound", MFD_CLOEXEC);
  const std::string header = waveHeader(sound.rate, sound.channels, sound.bytesPerSample,
                                        static_cast<std::uint32_t>(sound.samples.size()));
  if (descriptor >= 0 && writeAll(descriptor, header.data(), header.size()) &&
      writeAll(descriptor, sound.samples.data(), sound.samples.size())) {
    return descriptor;
  }
  if (descriptor >= 0) close(descriptor);
  return -1;
}

enum class Limit { bitRate, slices };  // that depends on the size

struct VideoKind {
  const char* ending;
  bool oddSizes;
  Limit limit;
  std::vector<std::string> picture;
  std::vector<std::string> sound;
  std::vector<std::string> container;
};

// Threads are fixed, because the encoders' output depends on their number.
const std::vector<VideoKind>& videoKinds() {
  static const std::vector<VideoKind> kinds{
      // As good as the eye can tell, as far as bitRateLimit() goes.
      {".mp4",
       false,
       Limit::bitRate,
       {"-vf",
        "vflip,scale=out_color_matrix=bt709:out_range=tv",
        "-pix_fmt",
        "yuv420p",
        "-c:v",
        "libx264",
        "-preset",
        "veryfast",
        "-crf",
        "17",
        "-threads",
        "2",
        "-colorspace",
        "bt709",
        "-color_primaries",
        "bt709",
        "-color_trc",
        "bt709",
        "-color_range",
        "tv"},
       {"-c:a", "aac", "-b:a", "256k"},
       {"-movflags", "+faststart", "-f", "mp4"}},
      {".mkv",
       true,
       Limit::slices,
       {"-vf", "vflip", "-pix_fmt", "bgr0", "-c:v", "ffv1", "-level", "3", "-g", "1", "-slicecrc", "1",
        "-threads", "2"},
       {"-c:a", "flac"},
       {"-f", "matroska"}},
  };
  return kinds;
}

const VideoKind* videoKindOf(const std::string& path) {
  for (const VideoKind& kind : videoKinds()) {
    if (std::filesystem::path(path).extension() == kind.ending) return &kind;
  }
  return nullptr;
}

// Film grain takes whatever it gets: without a limit a video of the show grows beyond all use. Bits a second.
long bitRateLimit(const VideoFormat& format) {
  constexpr double bitsPerPixel = 6e6 / (1280 * 720 * 30);
  return std::lround(format.quality * bitsPerPixel * format.width * format.height * format.framesPerSecond);
}

// FFV1 takes a slice of at most 2^27 bits, counting 9 for each pixel of three planes.
int sliceCount(const VideoFormat& format) {
  int across = 2;
  const auto part = [&across](int side) { return long{(side + across - 1) / across}; };
  while (part(format.width) * part(format.height) * 3 * 9 > 1L << 27) ++across;
  return across * across;
}

std::vector<std::string> commandLine(const std::string& path, const VideoFormat& format,
                                     const SoundTrack& sound) {
  // Without -xerror a disk that fills up while the file is closed is no failure to ffmpeg.
  std::vector<std::string> words{"ffmpeg", "-nostdin", "-hide_banner", "-loglevel", "error", "-xerror", "-y"};
  const auto add = [&words](const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
  };
  const VideoKind& kind = *videoKindOf(path);
  add({"-f", "rawvideo", "-pixel_format", "bgra", "-framerate", std::to_string(format.framesPerSecond)});
  add({"-video_size", std::to_string(format.width) + "x" + std::to_string(format.height), "-i", "pipe:0"});
  if (sound.rate > 0) add({"-i", "/dev/fd/" + std::to_string(soundDescriptor)});
  add(kind.picture);
  if (kind.limit == Limit::slices) add({"-slices", std::to_string(sliceCount(format))});
  if (kind.limit == Limit::bitRate) {
    const long limit = bitRateLimit(format);
    add({"-maxrate", std::to_string(limit), "-bufsize", std::to_string(2 * limit)});
  }
  if (sound.rate > 0) add(kind.sound);
  add({"-bitexact"});
  add(kind.container);
  add({path});
  return words;
}

// ffmpeg's own first line says what went wrong; it may hold several.
std::string firstLine(int descriptor) {
  char text[400] = "";
  const ssize_t size = pread(descriptor, text, sizeof text - 1, 0);
  if (size <= 0) return "it said nothing";
  text[size] = '\0';
  text[std::strcspn(text, "\n")] = '\0';
  return text;
}

}  // namespace

bool isVideoName(const std::string& path) {
  return videoKindOf(path) != nullptr;
}

bool takesOddSizes(const std::string& path) {
  return videoKindOf(path)->oddSizes;
}

std::string VideoEncoder::start(const std::string& path, const VideoFormat& format, const SoundTrack& sound) {
  const std::filesystem::path name(path);
  finalPath = path;
  pathOfPart = (name.parent_path() / name.stem()).native() + ".partial" + name.extension().native();
  temporaryPath = hiddenName(pathOfPart);
  std::error_code ignored;
  if (std::filesystem::is_directory(name, ignored))
    return "can't write " + path + ": " + std::strerror(EISDIR);
  ignoreWriteSignals();  // ffmpeg inherits SIGXFSZ ignored, and reports the failed write

  int ends[2];
  const bool hasSound = sound.rate > 0;
  const int track = hasSound ? soundFile(sound) : -1;
  messages = memfd_create("messages", MFD_CLOEXEC);
  if ((hasSound && track < 0) || messages < 0 || pipe2(ends, O_CLOEXEC) != 0) {
    return std::string("no memory or pipe for ffmpeg: ") + std::strerror(errno);
  }
  fcntl(ends[1], F_SETPIPE_SZ, pipeSize);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, messages, STDERR_FILENO);
  if (hasSound) posix_spawn_file_actions_adddup2(&actions, track, soundDescriptor);
  // In a process group of its own an interrupt at the terminal reaches us alone, and ffmpeg can end
  // the file in order.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);
  sigset_t defaults;
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGPIPE);
  posix_spawnattr_setsigdefault(&attributes, &defaults);

  std::vector<std::string> words = commandLine(temporaryPath, format, sound);
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const int error = posix_spawnp(&process, "ffmpeg", &actions, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[0]);
  if (track >= 0) close(track);
  frames = ends[1];
  if (error != 0) {
    process = -1;
    close(frames);
    close(messages);
    return std::string("ffmpeg (Debian package ffmpeg) can't be started: ") + std::strerror(error);
  }
  // Drawing takes longer: ffmpeg works in the gaps that it leaves. It has started no thread yet; those to
  // come take its priority over.
  setpriority(PRIO_PROCESS, static_cast<id_t>(process), encoderNiceness);
  rememberTemporaryFile(temporaryPath, process);
  queue.start(frames, [this] { endStalled(); });
  return {};
}

// Whoever wants to end cannot know that ffmpeg never will.
void VideoEncoder::endStalled() {
  if (!endRequested()) return;
  clockid_t clock;
  timespec used{};
  if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &used) != 0) return;
  const double seconds = static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
  if (lastProgress == 0 || seconds != processTime) {
    processTime = seconds;
    lastProgress = steadySeconds();
  }
  if (steadySeconds() - lastProgress < patience) return;
  killed = true;
  kill(-process, SIGKILL);
}

bool VideoEncoder::write(std::vector<std::byte>& frame) {
  return queue.put(frame);
}

std::string VideoEncoder::finish(Result result) {
  const auto watch = [this] { endStalled(); };
  if (!queue.finish() || !waitUntilRead(frames, watch)) result = Result::failed;
  close(frames);
  int status = 0;
  for (pid_t ended = 0; ended == 0 || (ended < 0 && errno == EINTR);) {
    ended = waitpid(process, &status, WNOHANG);
    if (ended != 0) continue;
    watch();
    poll(nullptr, 0, 5);
  }
  process = -1;
  const std::string said = firstLine(messages);
  close(messages);
  std::string failure;
  if (result != Result::failed && WIFEXITED(status) && WEXITSTATUS(status) == 0) {
    const std::string& path = result == Result::partial ? pathOfPart : finalPath;
    if (std::rename(temporaryPath.c_str(), path.c_str()) != 0) {
      failure = "can't write " + path + ": " + std::strerror(errno);
    }
  } else {
    const std::string end = WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                                : "exit code " + std::to_string(WEXITSTATUS(status));
    failure = "ffmpeg failed on " + finalPath + " (" + end + "): " + (killed ? "it stood still" : said);
  }
  if (!failure.empty()) unlink(temporaryPath.c_str());
  forgetTemporaryFile(temporaryPath);
  return failure;
}

}  // namespace vex
