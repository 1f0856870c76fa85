#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <set>
#include <utility>

#include "authoring/known_call.h"
#include "authoring/project_check.h"
#include "authoring/project_lexer.h"
#include "base/files.h"
#include "base/pak_directory.h"
#include "base/report.h"
#include "platform/jpeg_decoder.h"
#include "platform/little_endian.h"
#include "platform/sound_file.h"
#include "scenes/ball_file.h"
#include "textures/bmp.h"
#include "textures/image.h"
#include "textures/jpeg_texture.h"

namespace vex {

namespace {

constexpr double tailSeconds = 0.5;        // of music behind the end of the show
constexpr int mostFrames = 10000;          // of a movie
constexpr int mostMovieFiles = 100'000;    // looked for in all
constexpr std::size_t headSize = 1 << 18;  // of a picture file; more than what comes before a JPEG's size

std::vector<std::uint8_t> readHead(const std::string& name) {
  const OpenFile file(fileOpen(name.c_str(), "rb"));
  return file.found() ? fileReadRest(file, headSize) : std::vector<std::uint8_t>{};
}

struct PictureSize {
  int width, height;
  bool operator==(const PictureSize&) const = default;
};

std::optional<PictureSize> jpegSize(const std::vector<std::uint8_t>& head) {
  const JpegDecoder decoder = openJpegDecoder();
  JpegParameters parameters;
  if (!decoder || !readJpegParameters(decoder, std::as_bytes(std::span(head)), parameters))
    return std::nullopt;
  return PictureSize{parameters.width, parameters.height};
}

std::optional<PictureSize> bmpSize(const std::vector<std::uint8_t>& head) {
  if (head.size() < 54) return std::nullopt;
  const auto side = [&](std::size_t offset) {
    return static_cast<std::int32_t>(littleEndian(std::span(head).subspan(offset, 4)));
  };
  return PictureSize{side(18), side(22)};
}

std::optional<PictureSize> sizeOf(const std::string& file) {
  const std::vector<std::uint8_t> head = readHead(file);
  return file.ends_with(".jpg") ? jpegSize(head) : bmpSize(head);
}

// Extension of the file that the texture cache would read; null where there is none.
const char* extensionOf(const std::string& texture) {
  for (const char* extension : {".jpg", ".bmp"}) {
    if (fileExists(texture + extension)) return extension;
  }
  return nullptr;
}

std::string text(PictureSize size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

bool isPowerOfTwo(int side) {
  return side >= 0 && (side == 0 || std::has_single_bit(static_cast<unsigned>(side)));
}

// Why the player would refuse the file; empty when it would not.
template <typename Read>
std::string refusal(Read read) {
  const FatalErrorsThrown thrown;
  try {
    read();
  } catch (const FatalError& error) {
    std::string text = error.what();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
  }
  return "";
}

// Larger ones are only remarked on.
std::string pixelProblem(const std::string& file, PictureSize size) {
  if (std::max(size.width, size.height) > portableImageSide) return "";
  return refusal([&file] {
    return file.ends_with(".jpg") ? readJpegTexture(file.c_str()) : readBmpTexture(file.c_str());
  });
}

// What is wrong with a texture; empty when nothing is.
std::string textureProblem(const std::string& texture) {
  const char* extension = extensionOf(texture);
  if (!extension) return "texture " + quoteText(texture) + " is missing, neither .jpg nor .bmp is there";
  const std::string file = texture + extension;
  const auto size = sizeOf(file);
  if (!size) return "texture " + quoteText(file) + " cannot be read";
  if (!isPowerOfTwo(size->width) || !isPowerOfTwo(size->height)) {
    return "texture " + quoteText(file) + " is " + text(*size) + ", both sides must be powers of two";
  }
  const std::string mask = texture + "_mask" + extension;
  if (!fileExists(mask)) return pixelProblem(file, *size);
  const auto maskSize = sizeOf(mask);
  if (!maskSize) return "mask " + quoteText(mask) + " cannot be read";
  if (maskSize == size) return pixelProblem(file, *size);
  return "mask " + quoteText(mask) + " is " + text(*maskSize) + ", its texture " + text(*size);
}

// Of texts there is nothing to be said.
std::string contentProblem(const std::string& file) {
  return file.ends_with(".hvv") ? refusal([&file] { readBallFile(file.c_str()); }) : "";
}

// "3, 7 to 9 and 12" of ascending numbers.
std::string listed(const std::vector<std::int64_t>& numbers) {
  std::string list;
  for (std::size_t i = 0; i < numbers.size();) {
    std::size_t last = i;
    while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1) ++last;
    if (i > 0) list += last + 1 == numbers.size() ? " and " : ", ";
    list += std::to_string(numbers[i]);
    if (last > i) list += " to " + std::to_string(numbers[last]);
    i = last + 1;
  }
  return list;
}

struct MovieFrames {
  std::int64_t first = 0;  // wide enough for the last frame of a reversed range
  std::int64_t last = 0;
};

MovieFrames framesOf(const KnownCall& known) {
  MovieFrames frames;
  bool first = true;
  for (std::size_t i = 0; i < known.call->parameters.size(); ++i) {
    if (known.row->parameters[i].kind != ArgumentKind::frameNumber) continue;
    const ValueRange values = valuesOf(known.call->parameters[i]);
    if (first) frames.first = truncateNumber(values.least);
    frames.last = truncateNumber(values.greatest);
    first = false;
  }
  // The player counts upwards from the first frame all the same.
  if (frames.last < frames.first)
    frames.last = frames.first + std::max<std::int64_t>(frames.first - frames.last - 2, 0);
  return frames;
}

std::string movieProblem(const std::string& base, MovieFrames frames, int& lookedFor) {
  const std::string movie = "movie " + quoteText(base);
  const std::string range = std::to_string(frames.first) + " to " + std::to_string(frames.last);
  if (frames.last - frames.first >= mostFrames)
    return movie + " has more than " + std::to_string(mostFrames) + " frames, " + range;
  if (lookedFor > mostMovieFiles) return "";
  lookedFor += static_cast<int>(frames.last - frames.first + 1);
  std::vector<std::int64_t> missing;
  std::string damaged;  // the first of them
  for (std::int64_t frame = frames.first; frame <= frames.last; ++frame) {
    const std::string file = base + std::to_string(frame) + ".jpg";
    if (!fileExists(file)) {
      missing.push_back(frame);
    } else if (damaged.empty()) {
      damaged = refusal([&file] { readJpegFrame(file.c_str()); });
    }
  }
  if (missing.empty()) return damaged;
  return movie + " lacks of its frames " + range + ": " + listed(missing);
}

// The files that a project names, each looked at once, at its first use.
struct DataCheck {
  std::vector<Finding> findings;
  std::set<std::string> looked;
  int movieFiles = 0;

  void report(const KnownCall& known, const ProjectParameter& parameter, const std::string& problem) {
    if (!problem.empty()) findings.push_back({parameter.line, known.partIndex, problem, "", false});
  }

  // A remark where the file exists only loose, because no archive can hold its name.
  void reportName(const KnownCall& known, const ProjectParameter& parameter, const std::string& file) {
    if (file.size() < pakNameSize || !fileExists(file)) return;
    findings.push_back({parameter.line, known.partIndex,
                        "file name " + quoteText(file) + " has " + std::to_string(file.size()) +
                            " characters, an archive takes at most " + std::to_string(pakNameSize - 1),
                        "", true});
  }

  // A remark where the player's GL may refuse the picture; the checking machine has perhaps none.
  void reportSides(const KnownCall& known, const ProjectParameter& parameter, const std::string& texture) {
    const char* extension = extensionOf(texture);
    const auto size = extension ? sizeOf(texture + extension) : std::nullopt;
    if (!size || std::max(size->width, size->height) <= portableImageSide) return;
    findings.push_back({parameter.line, known.partIndex,
                        "texture " + quoteText(texture + extension) + " is " + text(*size) +
                            ", not every GL takes sides beyond " + std::to_string(portableImageSide),
                        "", true});
  }

  void checkTexture(const KnownCall& known, const ProjectParameter& parameter) {
    const std::string name = playedText(parameter.string);
    if (!looked.insert("texture " + name).second) return;
    report(known, parameter, textureProblem(name));
    reportSides(known, parameter, name);
    for (const char* ending : {".jpg", ".bmp", "_mask.jpg", "_mask.bmp"}) {
      reportName(known, parameter, name + ending);
    }
  }

  void checkMovie(const KnownCall& known, const ProjectParameter& parameter) {
    const std::string name = playedText(parameter.string);
    const MovieFrames frames = framesOf(known);
    const std::string use = name + " " + std::to_string(frames.first) + " " + std::to_string(frames.last);
    if (!looked.insert("movie " + use).second) return;
    report(known, parameter, movieProblem(name, frames, movieFiles));
    reportName(known, parameter, name + std::to_string(frames.last) + ".jpg");
  }

  void checkFile(const KnownCall& known, const ProjectParameter& parameter) {
    const std::string name = playedText(parameter.string);
    if (!looked.insert("file " + name).second) return;
    report(known, parameter,
           fileExists(name) ? contentProblem(name) : "file " + quoteText(name) + " is missing");
    reportName(known, parameter, name);
  }

  void checkCall(const KnownCall& known) {
    for (std::size_t i = 0; i < known.call->parameters.size(); ++i) {
      const ProjectParameter& parameter = known.call->parameters[i];
      switch (known.row->parameters[i].kind) {
        case ArgumentKind::textureName:
          checkTexture(known, parameter);
          break;
        case ArgumentKind::movieName:
          checkMovie(known, parameter);
          break;
        case ArgumentKind::fileName:
          checkFile(known, parameter);
          break;
        case ArgumentKind::number:
        case ArgumentKind::wholeNumber:
        case ArgumentKind::frameNumber:
        case ArgumentKind::objectName:
          break;
      }
    }
  }
};

void checkMusic(const Project& project, std::vector<Finding>& findings) {
  const std::string name = playedText(project.music);
  if (name.size() < 2) return;
  const auto source = findFile(name.c_str());
  if (!source) {
    findings.push_back({.text = "music " + quoteText(name) + " is missing", .hint = ""});
    return;
  }
  const SoundFile music = openSoundFile(source->path.c_str(), source->offset, source->size);
  if (!music.decoder) {
    findings.push_back({.text = "music " + quoteText(name) + " cannot be played",
                        .hint = "it takes WAV, OGG, FLAC or MP3 with one or two channels"});
    return;
  }
  const double seconds = static_cast<double>(music.frames) / music.rate;
  if (!(project.totalTime > seconds - tailSeconds)) return;
  char text[128], hint[64];
  std::snprintf(text, sizeof text,
                "total %g, but music %s is %g s long and must last %g s longer than the show",
                project.totalTime, quoteText(name).c_str(), seconds, tailSeconds);
  std::snprintf(hint, sizeof hint, "at most %g", std::floor((seconds - tailSeconds) * 1000) / 1000);
  findings.push_back({.text = text, .hint = hint});
}

}  // namespace

std::vector<Finding> checkData(const Project& project, std::span<const SceneEntry> tables) {
  DataCheck check;
  for (const KnownCall& known : knownCalls(project, tables)) check.checkCall(known);
  if (check.movieFiles > mostMovieFiles) {
    check.findings.push_back(
        {.text = "too many movie frames, not all were looked for", .hint = "", .remark = true});
  }
  checkMusic(project, check.findings);
  return std::move(check.findings);
}

bool textureHasMask(const std::string& texture) {
  const char* extension = extensionOf(texture);
  return extension && fileExists(texture + "_mask" + extension);
}

}  // namespace vex
