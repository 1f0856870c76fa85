#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>

#include "authoring/known_call.h"
#include "authoring/project_check.h"
#include "authoring/project_lexer.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr float momentsPerSecond = 30;
constexpr int mostMoments = 300;                // in a stretch in which no part begins or ends
constexpr std::int64_t mostDots = 400'000'000;  // looked at in all

// A call that may paint the ground, ready to be evaluated.
struct Painter {
  const ProjectPart* part;
  ActiveSpan active;
  const FunctionRow* row;
  std::array<std::unique_ptr<Parameter>, maxArguments> parameters;
  std::int64_t dots = 1;

  explicit Painter(const KnownCall& known) : part(known.part), active(known.part->active()), row(known.row) {
    std::size_t slot = 0;
    for (const ProjectParameter& parameter : known.call->parameters) {
      parameters[slot] = std::make_unique<Parameter>();
      fillPlayed(*parameters[slot++], parameter);
      dots += 1 + static_cast<std::int64_t>(parameter.dots.size());
    }
  }

  bool paintsAt(float t) const {
    const float progress = (t - active.begin) / (active.end - active.begin);
    std::array<float, maxArguments> arguments{};
    for (std::size_t i = 0; i < maxArguments && parameters[i]; ++i) {
      if (parameters[i]->type == PARAM_STRING) continue;
      arguments[i] = *static_cast<const float*>(parameters[i]->evaluate(progress));
    }
    return row->ground.paints(arguments);
  }
};

std::vector<Painter> findPainters(const Project& project, std::span<const SceneEntry> tables,
                                  const std::function<bool(const std::string&)>& hasMask) {
  std::map<std::string, bool> masks;
  const auto isMasked = [&](const ProjectParameter& parameter, ArgumentKind kind) {
    if (kind != ArgumentKind::textureName) return false;
    const std::string name = playedText(parameter.string);
    const auto known = masks.find(name);
    return known != masks.end() ? known->second : (masks[name] = hasMask(name));
  };
  std::vector<Painter> painters;
  for (const KnownCall& known : knownCalls(project, tables)) {
    if (!known.row->ground.paints) continue;
    bool masked = false;
    for (std::size_t i = 0; i < known.call->parameters.size(); ++i) {
      masked = masked || isMasked(known.call->parameters[i], known.row->parameters[i].kind);
    }
    if (!masked) painters.emplace_back(known);
  }
  return painters;
}

// The played time cut wherever a part begins or ends.
std::vector<float> findCuts(const Project& project, float start, float total) {
  std::vector<float> cuts{start, total};
  for (const ProjectPart& part : project.parts) {
    for (const float cut : {part.active().begin, part.active().end}) {
      if (cut > start && cut < total) cuts.push_back(cut);
    }
  }
  std::sort(cuts.begin(), cuts.end());
  cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
  return cuts;
}

bool isActive(const ActiveSpan& span, float t) {
  return span.begin <= t && t < span.end;
}

Finding bareSpan(const Project& project, float from, float to) {
  Finding finding{.text = "", .hint = "lay a fadeScreen of alpha 1 on the lowest track"};
  std::string names;
  for (std::size_t i = 0; i < project.parts.size(); ++i) {
    if (!isActive(project.parts[i].active(), from)) continue;
    if (finding.part < 0) {
      finding.part = static_cast<int>(i);
      finding.line = project.parts[i].line;
    }
    names += (names.empty() ? "" : ", ") + quoteText(project.parts[i].name);
  }
  char text[96];
  std::snprintf(text, sizeof text, "no call paints the ground from %g to %g, ", static_cast<double>(from),
                static_cast<double>(to));
  finding.text =
      text + (names.empty() ? "where no part is active" : "where these parts are active: " + names);
  return finding;
}

}  // namespace

std::vector<Finding> checkGround(const Project& project, std::span<const SceneEntry> tables,
                                 const std::function<bool(const std::string& texture)>& hasMask) {
  const auto start = static_cast<float>(project.startTime), total = static_cast<float>(project.totalTime);
  if (!std::isfinite(start) || !std::isfinite(total) || start >= total) return {};
  const std::vector<Painter> painters = findPainters(project, tables, hasMask);
  const std::vector<float> cuts = findCuts(project, start, total);

  std::vector<Finding> findings;
  bool bare = false;
  float bareFrom = start;
  std::int64_t dots = 0;
  const auto stand = [&](float t, bool painted) {
    if (painted && bare) findings.push_back(bareSpan(project, bareFrom, t));
    if (!painted && !bare) bareFrom = t;
    bare = !painted;
  };
  for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
    const float from = cuts[i], length = cuts[i + 1] - from;
    std::vector<const Painter*> active;
    for (const Painter& painter : painters) {
      if (isActive(painter.active, from)) active.push_back(&painter);
    }
    const int moments =
        std::clamp(static_cast<int>(std::min(length * momentsPerSecond, 1e6f)), 1, mostMoments);
    for (int moment = 0; moment < moments; ++moment) {
      const float t = from + length * static_cast<float>(moment) / static_cast<float>(moments);
      stand(t, std::any_of(active.begin(), active.end(), [&](const Painter* painter) {
              dots += painter->dots;
              return painter->paintsAt(t);
            }));
      if (dots < mostDots) continue;
      char text[96];
      std::snprintf(text, sizeof text, "the ground is not checked behind %g: too many curves",
                    static_cast<double>(t));
      findings.push_back({.text = text, .hint = "", .remark = true});
      return findings;
    }
  }
  if (bare) findings.push_back(bareSpan(project, bareFrom, total));
  return findings;
}

}  // namespace vex
