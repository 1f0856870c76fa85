#include "studio/document/new_parts.h"

#include <algorithm>
#include <set>
#include <utility>

#include "authoring/project_lexer.h"
#include "studio/document/call_edits.h"
#include "studio/document/curve_keeping.h"
#include "studio/document/edit_target.h"
#include "studio/document/part_edits.h"
#include "studio/document/text_block.h"
#include "timeline/part_dispatcher.h"

namespace vex::studio {

namespace {

// Without the number that freeName() gives.
std::string baseOf(const std::string& name) {
  const std::size_t digits = name.find_last_not_of("0123456789");
  const bool numbered = digits != std::string::npos && digits > 0 && digits + 1 < name.size();
  return numbered && name[digits] == '_' ? name.substr(0, digits) : name;
}

void requireRoom(const Draft& draft) {
  if (draft.project().parts.size() + 1 < maxParts) return;
  throw Refusal{"A project has at most " + std::to_string(maxParts - 1) + " parts."};
}

// Directly behind the part, with a name of its own.
int insertCopy(Draft& draft, int part) {
  requireRoom(draft);
  const auto [record, place] = findPart(draft, part);
  const std::string& text = draft.text();
  std::string lines = indentOf(text, place.whole.begin);
  lines += textOf(draft, {place.whole.begin, place.name.begin});
  const std::string name = freeName(draft.project(), record.name);
  lines += text[place.name.begin] == '"' ? quoteText(name) : nameText(name);
  lines += textOf(draft, {place.name.end, place.whole.end});
  const std::string gap = gapOf(text, blockOf(text, place.whole));
  draft.rewrite({insertBlock(text, lines, gap, place.whole, Side::behind)});
  return part + 1;
}

// How a neighbour writes its keys, the decimals apart; the usual manner without one.
struct PartManner {
  std::string indent = "  ";
  std::string separator = "  ";
  NumberStyle at;
  NumberStyle end;
  bool until = false;
  bool track = false;
};

PartManner mannerOf(const Draft& draft, const PartPlace& place) {
  const std::string indent =
      place.calls.empty() ? "" : indentOf(draft.text(), place.calls.front().whole.begin);
  const bool until = place.until.given();
  return {.indent = indent.empty() ? "  " : indent,
          .separator = keySeparator(draft, place),
          .at = {styleOf(textOf(draft, place.at)).unit},
          .end = {styleOf(textOf(draft, until ? place.until : place.length)).unit},
          .until = until,
          .track = place.track.given()};
}

std::string keysText(const PartManner& manner, const std::optional<Tempo>& tempo, double pos, double length,
                     int track) {
  const std::string end = manner.until
                              ? "until " + writeTime(pos + length, manner.end, tempo, Precision::shown)
                              : "length " + writeSpan(length, manner.end, tempo, Precision::shown);
  std::string text = "at " + writeTime(pos, manner.at, tempo, Precision::shown) + manner.separator + end;
  if (track != 0 || manner.track) text += manner.separator + "track " + std::to_string(track);
  return text;
}

}  // namespace

std::string freeName(const Project& project, const std::string& name) {
  std::set<std::string_view> taken;
  for (const ProjectPart& part : project.parts) taken.insert(part.name);
  if (!taken.contains(name)) return name;
  const std::string base = baseOf(name);
  for (int number = 2;; ++number) {
    const std::string end = "_" + std::to_string(number);
    const std::string numbered = base.substr(0, maxProjectName - end.size()) + end;
    if (!taken.contains(numbered)) return numbered;
  }
}

int doublePart(Draft& draft, int part, double pos, int track) {
  return movePart(draft, insertCopy(draft, part), pos, track);
}

int splitPart(Draft& draft, int part, double time) {
  const ProjectPart& whole = findPart(draft, part).part;
  requireNumber("The time", time);
  if (!differ(time, whole.pos) || !differ(time, whole.pos + whole.length) || time < whole.pos ||
      time > whole.pos + whole.length) {
    throw Refusal{"Part " + quoteText(whole.name) + " is not there at that time."};
  }
  const int second = trimStart(draft, insertCopy(draft, part), time);
  trimEnd(draft, part, findPart(draft, second).part.pos, Precision::exact);
  dropUnseenDots(draft, part);
  dropUnseenDots(draft, second);
  return second;
}

int createPart(Draft& draft, double pos, double length, int track, const std::string& scene,
               const std::string& function) {
  requireNumber("The beginning of a part", pos);
  requireNumber("The length of a part", length);
  if (!(length > 0)) throw Refusal{"A part must end behind its beginning."};
  if (track < -128 || track > 127) {
    throw Refusal{"Track " + std::to_string(track) + " does not lie between -128 and 127."};
  }
  requireRoom(draft);
  const Project& project = draft.project();
  const ProjectPlaces& places = draft.places();
  const auto following = std::ranges::find_if(
      project.parts, [&](const ProjectPart& part) { return static_cast<float>(pos) < part.active().begin; });
  const auto index = static_cast<std::size_t>(following - project.parts.begin());
  const bool alone = project.parts.empty();
  const PartPlace* const neighbour = alone ? nullptr : &places.parts[index > 0 ? index - 1 : 0];
  const PartManner manner = neighbour ? mannerOf(draft, *neighbour) : PartManner{};
  const std::optional<Tempo> tempo = neighbour ? neighbour->tempo : places.tempo;

  const std::string& text = draft.text();
  const std::string end = lineEndOf(text);
  const std::string lines = "part " + quoteText(freeName(project, function)) + " {" + end + manner.indent +
                            keysText(manner, tempo, pos, length, track) + end +
                            newCallText(project, scene, function, manner.indent, end) + end + "}";
  if (neighbour) {
    std::string gap = gapOf(text, blockOf(text, neighbour->whole));
    if (gap.empty() && project.parts.size() == 1) gap = end;
    const Side side = index > 0 ? Side::behind : Side::before;
    draft.rewrite({insertBlock(text, lines, gap, neighbour->whole, side)});
    return static_cast<int>(index);
  }
  const std::size_t behind = lineEndBehind(text, places.headEnd);
  const bool own = endsItsLine(text, places.headEnd);
  const std::size_t place = own ? behind : places.headEnd;
  const bool begun = place > 0 && text[place - 1] != '\n';
  draft.rewrite({{{place, place}, (begun ? end : "") + end + lines + end}});
  return 0;
}

}  // namespace vex::studio
