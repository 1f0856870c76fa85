#include "studio/document/part_edits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "authoring/project_lexer.h"
#include "studio/document/curve_keeping.h"
#include "studio/document/edit_target.h"
#include "studio/document/text_block.h"

namespace vex::studio {

namespace {

// The value of a key that may be missing.
Replacement keyAt(const Draft& draft, const PartPlace& place, TextSpan PartPlace::*key,
                  const std::string& keyword, const std::string& value) {
  if ((place.*key).given()) return {place.*key, value};
  return {{place.keysEnd, place.keysEnd}, keySeparator(draft, place) + keyword + " " + value};
}

Replacement speedAt(const Draft& draft, const PartPlace& place, double speed) {
  const int decimals = styleOf(textOf(draft, place.speed)).decimals;
  return keyAt(draft, place, &PartPlace::speed, "speed", writeNumber(speed, decimals, Precision::shown));
}

Replacement startAt(const Draft& draft, const PartPlace& place, double sceneTime, Precision precision) {
  const NumberStyle style = styleOf(textOf(draft, place.start));
  return keyAt(draft, place, &PartPlace::start, "start", writeSpan(sceneTime, style, place.tempo, precision));
}

// The part's end, as until or as length.
Replacement endAt(const Draft& draft, const PartTarget& target, double end, Precision precision) {
  const PartPlace& place = target.place;
  if (place.until.given()) return timeAt(draft, place.until, end, place.tempo, precision);
  return spanAt(draft, place.length, end - target.part.pos, place.tempo, precision);
}

void requireOrder(double begin, double end) {
  if (!(begin < end)) throw Refusal{"A part must end behind its beginning."};
}

bool sameRecord(const ProjectPart& a, const ProjectPart& b) {
  const auto bytes = [](const ProjectPart& part) {
    Project project;
    project.parts.push_back(part);
    return encodeProject(project);
  };
  return bytes(a) == bytes(b);
}

bool beginsBefore(const ProjectPart& a, const ProjectPart& b) {
  return a.active().begin < b.active().begin;
}

}  // namespace

std::string keySeparator(const Draft& draft, const PartPlace& place) {
  std::array keys{place.at, place.length, place.until, place.start, place.speed, place.track};
  std::ranges::sort(keys, {}, &TextSpan::begin);
  const auto first = std::ranges::find_if(keys, &TextSpan::given);
  const std::string usual = "  ";
  if (keys.end() - first < 2) return usual;
  const std::string between(textOf(draft, {first->end, (first + 1)->begin}));
  const std::size_t word = between.find_first_not_of(" \t\r\n");
  return word == std::string::npos || word == 0 || between[word] == '#' ? usual : between.substr(0, word);
}

int settlePart(Draft& draft, int part) {
  const std::vector<ProjectPart>& parts = draft.project().parts;
  const auto index = static_cast<std::size_t>(part);
  std::size_t to = index;
  while (to > 0 && beginsBefore(parts[index], parts[to - 1])) --to;
  const Side side = to < index ? Side::before : Side::behind;
  while (side == Side::behind && to + 1 < parts.size() && beginsBefore(parts[to + 1], parts[index])) ++to;
  if (to == index) return part;

  const ProjectPart wanted = parts[index];
  const std::size_t first = draft.changes().size();
  const ProjectPlaces& places = draft.places();
  try {
    draft.rewrite(moveBlock(draft.text(), places.parts[index].whole, places.parts[to].whole, side));
  } catch (const Refusal&) {
    return part;
  }
  if (sameRecord(draft.project().parts[to], wanted)) return static_cast<int>(to);
  draft.takeBack(first);
  return part;
}

int movePart(Draft& draft, int part, double pos, int track) {
  const auto [record, place] = findPart(draft, part);
  requireNumber("The beginning of a part", pos);
  if (track < -128 || track > 127) {
    throw Refusal{"Track " + std::to_string(track) + " does not lie between -128 and 127."};
  }
  std::vector<Replacement> replacements;
  const bool moved = differ(pos, record.pos);
  if (moved) {
    replacements.push_back(timeAt(draft, place.at, pos, place.tempo));
    if (place.until.given()) {
      replacements.push_back(timeAt(draft, place.until, pos + record.length, place.tempo));
    }
  }
  if (track != record.track) {
    replacements.push_back(keyAt(draft, place, &PartPlace::track, "track", std::to_string(track)));
  }
  draft.rewrite(std::move(replacements));
  return moved ? settlePart(draft, part) : part;
}

int trimStart(Draft& draft, int part, double pos) {
  const ProjectPart before = findPart(draft, part).part;
  const double end = before.pos + before.length;
  requireNumber("The beginning of a part", pos);
  requireOrder(pos, end);
  if (!differ(pos, before.pos)) return part;
  {
    const auto [record, place] = findPart(draft, part);
    draft.rewrite({timeAt(draft, place.at, pos, place.tempo)});
  }
  const auto [record, place] = findPart(draft, part);
  std::vector<Replacement> replacements;
  if (place.length.given()) {
    requireOrder(record.pos, end);
    replacements.push_back(spanAt(draft, place.length, end - record.pos, place.tempo, Precision::exact));
  }
  const double start = before.start + (record.pos - before.pos) * before.speed;
  if (differ(start, before.start)) {
    replacements.push_back(startAt(draft, place, start, Precision::exact));
  }
  draft.rewrite(std::move(replacements));
  keepCurves(draft, part, before);
  return settlePart(draft, part);
}

int trimEnd(Draft& draft, int part, double end, Precision precision) {
  const PartTarget target = findPart(draft, part);
  const ProjectPart before = target.part;
  requireNumber("The end of a part", end);
  requireOrder(before.pos, end);
  if (!differ(end, before.pos + before.length)) return part;
  draft.rewrite({endAt(draft, target, end, precision)});
  keepCurves(draft, part, before);
  return part;
}

int setPartStart(Draft& draft, int part, double sceneTime) {
  const auto [record, place] = findPart(draft, part);
  requireNumber("The scene time of a part", sceneTime);
  if (differ(sceneTime, record.start)) {
    draft.rewrite({startAt(draft, place, sceneTime, Precision::shown)});
  }
  return part;
}

int setPartLength(Draft& draft, int part, double seconds) {
  const PartTarget target = findPart(draft, part);
  const ProjectPart before = target.part;
  requireNumber("The length of a part", seconds);
  requireOrder(0, seconds);
  if (!differ(seconds, before.length)) return part;
  draft.rewrite({endAt(draft, target, before.pos + seconds, Precision::shown)});
  stretchCurves(draft, part, before);
  return part;
}

int setPartSpeed(Draft& draft, int part, double speed) {
  const auto [record, place] = findPart(draft, part);
  requireNumber("The speed of a part", speed);
  if (differ(speed, record.speed)) draft.rewrite({speedAt(draft, place, speed)});
  return part;
}

int renamePart(Draft& draft, int part, const std::string& name) {
  const auto [record, place] = findPart(draft, part);
  requireText("The name of a part", name, maxProjectName);
  if (name == record.name) return part;
  const bool bare = !textOf(draft, place.name).starts_with('"');
  draft.rewrite({{place.name, bare ? nameText(name) : quoteText(name)}});
  return part;
}

int removePart(Draft& draft, int part) {
  draft.rewrite({removeBlock(draft.text(), findPart(draft, part).place.whole)});
  return std::min(part, static_cast<int>(draft.project().parts.size()) - 1);
}

}  // namespace vex::studio
