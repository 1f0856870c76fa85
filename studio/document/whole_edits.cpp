#include "studio/document/whole_edits.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "authoring/project_lexer.h"
#include "studio/document/edit_target.h"
#include "studio/document/text_block.h"

namespace vex::studio {

namespace {

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

void rewriteTime(Draft& draft, const TimePlace& place, double now, double time) {
  if (differ(time, now)) draft.rewrite({timeAt(draft, place, time, place.tempo)}, Reach::whole);
}

const TickPlace& findTick(const Draft& draft, int tick) {
  const std::vector<TickPlace>& ticks = draft.places().ticks;
  if (tick >= 0 && static_cast<std::size_t>(tick) < ticks.size())
    return ticks[static_cast<std::size_t>(tick)];
  throw Refusal{"There is no mark number " + std::to_string(tick + 1) + "."};
}

// A statement in a line of its own behind what ends at the offset.
Replacement lineBehind(const std::string& text, std::size_t offset, const std::string& statement) {
  const std::string end = lineEndOf(text);
  if (!endsItsLine(text, offset)) return {{offset, offset}, end + statement + end};
  const std::size_t next = lineEndBehind(text, offset);
  const bool begun = next > 0 && text[next - 1] != '\n';
  return {{next, next}, begun ? end + statement : statement + end};
}

// Of the comment that begins behind the blanks there; nothing where none does.
TextSpan commentBehind(const std::string& text, std::size_t offset) {
  const std::size_t begin = text.find_first_not_of(" \t", offset);
  if (begin == std::string::npos || text[begin] != '#') return {};
  std::size_t end = std::min(text.find('\n', begin), text.size());
  if (text[end - 1] == '\r') --end;
  return {begin, end};
}

}  // namespace

void setTotalTime(Draft& draft, double seconds) {
  requireNumber("The total time", seconds);
  rewriteTime(draft, draft.places().total, draft.project().totalTime, seconds);
}

void setStartTime(Draft& draft, double seconds) {
  requireNumber("The start time", seconds);
  const TimePlace &start = draft.places().start, &total = draft.places().total;
  if (start.given()) return rewriteTime(draft, start, draft.project().startTime, seconds);
  if (!differ(seconds, draft.project().startTime)) return;
  const std::string time = writeTime(seconds, styleOf(textOf(draft, total)), total.tempo, Precision::shown);
  draft.rewrite({lineBehind(draft.text(), total.end, "start " + time)}, Reach::whole);
}

void setTempo(Draft& draft, double beatsPerMinute) {
  requireNumber("The tempo", beatsPerMinute);
  if (!(beatsPerMinute > 0)) throw Refusal{"A tempo is more than 0 beats a minute."};
  const ProjectPlaces& places = draft.places();
  if (places.tempoNumber.given()) {
    if (differ(beatsPerMinute, places.tempo->beatsPerMinute))
      draft.rewrite({numberAt(draft, places.tempoNumber, beatsPerMinute)}, Reach::whole);
    return;
  }
  // Above the total time: from there on times may be meant in bars.
  const std::string& text = draft.text();
  std::size_t place = text.rfind('\n', places.total.begin) + 1;  // 0 in the first line
  if (place == 0 && text.starts_with(byteOrderMark)) place = byteOrderMark.size();
  draft.rewrite(
      {{{place, place}, "tempo " + writeNumber(beatsPerMinute, 0, Precision::shown) + lineEndOf(text)}},
      Reach::whole);
}

void setMusic(Draft& draft, const std::string& file) {
  requireText("The music's name", file, maxProjectName);
  if (file == draft.project().music) return;
  const TextSpan place = draft.places().music;
  const std::string& text = draft.text();
  if (!place.given()) {
    draft.rewrite({lineBehind(text, draft.places().total.end, "music " + quoteText(file))}, Reach::whole);
  } else if (file.empty()) {
    draft.rewrite({removeBlock(text, {text.rfind("music", place.begin), place.end})}, Reach::whole);
  } else {
    draft.rewrite({{place, quoteText(file)}}, Reach::whole);
  }
}

int addTick(Draft& draft, double time, const std::string& name) {
  requireNumber("The time of a mark", time);
  if (name.find_first_of("\r\n") != std::string::npos) {
    throw Refusal{"The name of a mark stands in one line."};
  }
  const ProjectPlaces& places = draft.places();
  const bool first = places.ticks.empty();
  const TimePlace& pattern = first ? places.total : places.ticks.back();
  const std::size_t behind = first ? places.headEnd : places.ticks.back().end;
  const std::optional<Tempo> tempo = first ? places.tempo : pattern.tempo;
  std::string statement =
      "ticks " + writeTime(time, styleOf(textOf(draft, pattern)), tempo, Precision::shown);
  if (name.find_first_not_of(" \t") != std::string::npos) statement += "  # " + name;
  draft.rewrite({lineBehind(draft.text(), behind, statement)}, Reach::whole);
  return static_cast<int>(draft.places().ticks.size()) - 1;
}

int moveTick(Draft& draft, int tick, double time) {
  const TickPlace& place = findTick(draft, tick);
  requireNumber("The time of a mark", time);
  rewriteTime(draft, place, draft.project().ticks[static_cast<std::size_t>(tick)], time);
  return tick;
}

int removeTick(Draft& draft, int tick) {
  const TickPlace& place = findTick(draft, tick);
  const std::vector<TickPlace>& ticks = draft.places().ticks;
  const auto index = static_cast<std::size_t>(tick);
  const int last = static_cast<int>(ticks.size()) - 2;
  const bool follows = index > 0 && ticks[index - 1].statement == place.statement;
  const bool followed = index + 1 < ticks.size() && ticks[index + 1].statement == place.statement;
  const std::string& text = draft.text();
  if (!follows && !followed) {
    draft.rewrite({removeBlock(text, {place.statement, place.end})}, Reach::whole);
    return std::min(tick, last);
  }
  // With its line or its comment, where it has one.
  const std::size_t indent = indentOf(text, place.begin).size();
  if (indent > 0 && endsItsLine(text, place.end)) {
    draft.rewrite({{{place.begin - indent, lineEndBehind(text, place.end)}, ""}}, Reach::whole);
    return std::min(tick, last);
  }
  const TextSpan comment = commentBehind(text, place.end);
  TextSpan removed{place.begin, comment.given() ? comment.end : place.end};
  const auto isBlank = [&](std::size_t i) { return i < text.size() && (text[i] == ' ' || text[i] == '\t'); };
  if (comment.given() || !followed) {
    while (isBlank(removed.begin - 1)) --removed.begin;
  } else {
    while (isBlank(removed.end)) ++removed.end;
  }
  draft.rewrite({{removed, ""}}, Reach::whole);
  return std::min(tick, last);
}

std::string tickName(const Draft& draft, int tick) {
  const TextSpan comment = commentBehind(draft.text(), findTick(draft, tick).end);
  if (!comment.given()) return "";
  const std::string_view text = textOf(draft, comment);
  const std::size_t begin = text.find_first_not_of("# \t");
  return begin == std::string_view::npos ? "" : std::string(text.substr(begin));
}

}  // namespace vex::studio
