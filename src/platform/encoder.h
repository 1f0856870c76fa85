#pragma once

#include <sys/types.h>

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "platform/frame_queue.h"

// Video files through ffmpeg: raw frames into a pipe, the sound track from memory.

namespace vex {

struct VideoFormat {
  int width = 0;   // pixels, even for .mp4
  int height = 0;  // likewise
  int framesPerSecond = 0;
  int quality = 1;  // .mp4: bit rates that film grain asks for are held at that many times 6 Mbit/s at 1280 x
                    // 720 and 30 frames a second, in proportion for other formats
};

// Decoded sound: 8 bits unsigned or 16 bits little-endian, channels interleaved.
struct SoundTrack {
  int rate = 0;  // frames a second; 0 is silence
  int channels = 0;
  int bytesPerSample = 0;
  std::span<const std::byte> samples;
};

// Whether the ending of the file name is one that can be written: ".mp4" (H.264 and AAC) or ".mkv"
// (lossless: FFV1 and FLAC).
bool isVideoName(const std::string& path);

// Whether frames of that size fit the kind of video: H.264 halves the resolution of its colours.
bool takesOddSizes(const std::string& path);

// One running ffmpeg. The file is written as .NAME.partial.EXT and takes its own name at the end.
class VideoEncoder {
 public:
  // Empty on success, otherwise why ffmpeg cannot run.
  std::string start(const std::string& path, const VideoFormat& format, const SoundTrack& sound);

  // One frame: width x height pixels of blue, green, red, alpha, rows bottom to top. Leaves a buffer to use
  // again. False when ffmpeg has ended; finish(Result::failed) then says why.
  bool write(std::vector<std::byte>& frame);

  enum class Result { complete, partial, failed };

  // Waits for ffmpeg; after an end request (end_request.h) not for one that stands still. `complete` gives
  // the file its name, `partial` that of partialPath(). Empty on success; otherwise (always after `failed`)
  // what went wrong, and no file is left.
  std::string finish(Result result);

  const std::string& partialPath() const { return pathOfPart; }

 private:
  void endStalled();

  std::string finalPath;
  std::string pathOfPart;  // NAME.partial.EXT
  std::string temporaryPath;
  pid_t process = -1;
  int frames = -1;  // our end of the pipe
  FrameQueue queue;
  int messages = -1;        // ffmpeg's standard error, in memory
  double processTime = 0;   // that ffmpeg had used at the last change, s
  double lastProgress = 0;  // when that was, s
  bool killed = false;      // because it stood still
};

}  // namespace vex
