#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "scenes/scene_tables.h"
#include "timeline/project_record.h"

namespace vex {

// A call that fits the row of its function: as many parameters, texts and numbers where they belong, no
// curve that ends the show when it is evaluated.
struct KnownCall {
  const ProjectPart* part;
  int partIndex;
  const ProjectCall* call;
  const FunctionRow* row;
};

// In file order.
std::vector<KnownCall> knownCalls(const Project& project, std::span<const SceneEntry> tables);

// How the parameters of a call are put into the places that their names say: index of the one for each place.
// Nothing where the names are not those of the function, each once, or stand in their places already.
std::optional<std::vector<std::size_t>> orderByNames(const ProjectCall& call,
                                                     std::span<const SceneEntry> tables);

bool isTextKind(ArgumentKind kind);

// Whether evaluating it at any progress gives a value and does not end the program.
bool canBeEvaluated(const ProjectParameter& parameter);

inline constexpr int curveMoments = 64;  // of a part at which curves are looked at

// Least and greatest value that a number takes over its part, of a spline at the dots and at evenly spaced
// moments. The curve must be one that can be evaluated.
struct ValueRange {
  float least;
  float greatest;
};
ValueRange valuesOf(const ProjectParameter& parameter);

// The frames of a movie that a call shows.
struct MovieFrames {
  std::int64_t first = 0;  // wide enough for the last frame of a reversed range
  std::int64_t last = 0;
};
MovieFrames framesOf(const KnownCall& known);

inline constexpr int mostMovieFrames = 10000;  // of one call; an archive holds far fewer

}  // namespace vex
