#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <set>
#include <utility>

#include "authoring/known_call.h"
#include "authoring/picture_check.h"
#include "authoring/project_check.h"
#include "authoring/project_lexer.h"
#include "base/files.h"
#include "base/report.h"
#include "platform/sound_file.h"
#include "scenes/ball_file.h"
#include "textures/jpeg_texture.h"

namespace vex {

namespace {

constexpr double tailSeconds = 0.5;      // of music behind the end of the show
constexpr int mostMovieFiles = 100'000;  // looked for in all

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

std::string movieProblem(const std::string& base, MovieFrames frames, int& lookedFor) {
  const std::string movie = "movie " + quoteText(base);
  const std::string range = std::to_string(frames.first) + " to " + std::to_string(frames.last);
  if (frames.last - frames.first >= mostMovieFrames)
    return movie + " has more than " + std::to_string(mostMovieFrames) + " frames, " + range;
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

  void report(const KnownCall& known, const ProjectParameter& parameter, const std::string& problem,
              const std::string& hint = "") {
    if (!problem.empty()) findings.push_back({parameter.line, known.partIndex, problem, hint, false});
  }

  void remark(const KnownCall& known, const ProjectParameter& parameter, const std::string& what) {
    if (!what.empty()) findings.push_back({parameter.line, known.partIndex, what, "", true});
  }

  void checkTexture(const KnownCall& known, const ProjectParameter& parameter) {
    const std::string name = playedText(parameter.string);
    if (!looked.insert("texture " + name).second) return;
    const PictureFault fault = textureFault(name);
    report(known, parameter, fault.text, fault.hint);
    remark(known, parameter, sidesRemark(name));
    for (const char* ending : {".jpg", ".bmp", "_mask.jpg", "_mask.bmp"}) {
      remark(known, parameter, archiveRemark(name + ending));
    }
  }

  void checkMovie(const KnownCall& known, const ProjectParameter& parameter) {
    const std::string name = playedText(parameter.string);
    const MovieFrames frames = framesOf(known);
    const std::string use = name + " " + std::to_string(frames.first) + " " + std::to_string(frames.last);
    if (!looked.insert("movie " + use).second) return;
    report(known, parameter, movieProblem(name, frames, movieFiles));
    remark(known, parameter, archiveRemark(name + std::to_string(frames.last) + ".jpg"));
  }

  void checkFile(const KnownCall& known, const ProjectParameter& parameter) {
    const std::string name = playedText(parameter.string);
    if (!looked.insert("file " + name).second) return;
    report(known, parameter,
           fileExists(name) ? contentProblem(name) : "file " + quoteText(name) + " is missing");
    remark(known, parameter, archiveRemark(name));
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
        case ArgumentKind::cameraNumber:
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
  if (const std::string remark = archiveRemark(name); !remark.empty())
    findings.push_back({.text = "music: " + remark, .hint = "", .remark = true});
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

}  // namespace vex
