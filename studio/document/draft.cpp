#include "studio/document/draft.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "timeline/part_dispatcher.h"

namespace vex::studio {

namespace {

bool sameTempo(const std::optional<Tempo>& a, const std::optional<Tempo>& b) {
  if (!a || !b) return !a && !b;
  return a->beatsPerMinute == b->beatsPerMinute && a->beatsPerBar == b->beatsPerBar && a->origin == b->origin;
}

// Every span of the part; those that are not given stay empty.
template <typename Move>
void forEachOffset(PartPlace& part, Move move) {
  const auto span = [&](TextSpan& s) {
    move(s.begin);
    move(s.end);
  };
  for (TextSpan* const s : {&part.whole, &part.name, &part.at, &part.start, &part.length, &part.until,
                            &part.speed, &part.track}) {
    span(*s);
  }
  move(part.keysEnd);
  for (CallPlace& call : part.calls) {
    span(call.whole);
    span(call.scene);
    span(call.function);
    for (ParameterPlace& parameter : call.parameters) {
      span(parameter.whole);
      span(parameter.name);
      span(parameter.value);
      for (TextSpan& number : parameter.sine) span(number);
      for (DotPlace& dot : parameter.dots) {
        span(dot.x);
        span(dot.y);
      }
      span(parameter.bounds);
      for (TextSpan& more : parameter.surplus) span(more);
    }
  }
}

void moveLines(ProjectPart& part, int lines) {
  part.line += lines;
  for (ProjectCall& call : part.calls) {
    call.line += lines;
    for (ProjectParameter& parameter : call.parameters) parameter.line += lines;
  }
}

// Whether a comment or a word before the offset might reach over it.
bool beginsItsLine(const std::string& text, std::size_t offset) {
  while (offset > 0) {
    const char c = text[--offset];
    if (c == '\n') return true;
    if (c != ' ' && c != '\t' && c != '\r') return false;
  }
  return true;
}

// In place of elements first..last those of the other one, which is used up.
template <typename Element>
void splice(std::vector<Element>& all, std::size_t first, std::size_t last, std::vector<Element>& others) {
  const std::size_t same = std::min(last - first, others.size());
  const auto target = all.begin() + static_cast<std::ptrdiff_t>(first);
  const auto rest = others.begin() + static_cast<std::ptrdiff_t>(same);
  const auto behind = std::move(others.begin(), rest, target);
  const auto end = all.begin() + static_cast<std::ptrdiff_t>(last);
  all.erase(behind, end);
  all.insert(all.begin() + static_cast<std::ptrdiff_t>(first + same), std::make_move_iterator(rest),
             std::make_move_iterator(others.end()));
}

// How many bytes are the same from one end on; piece(text, i, n) gives n of them behind i others. In blocks,
// which is much faster.
template <typename Piece>
std::size_t sameBytes(std::string_view a, std::string_view b, Piece piece) {
  const std::size_t most = std::min(a.size(), b.size());
  std::size_t same = 0;
  for (const std::size_t block : {std::size_t{4096}, std::size_t{1}}) {
    while (same + block <= most && piece(a, same, block) == piece(b, same, block)) same += block;
  }
  return same;
}

}  // namespace

TextChange inverseOf(const TextChange& change) {
  TextChange inverse{{}, change.reach};
  std::size_t grown = 0, shrunk = 0;
  for (const TextChange::Piece& piece : change.pieces) {
    inverse.pieces.push_back({piece.offset + grown - shrunk, piece.inserted, piece.removed});
    grown += piece.inserted.size();
    shrunk += piece.removed.size();
  }
  return inverse;
}

void applyTo(std::string& text, const TextChange& change) {
  for (auto piece = change.pieces.rbegin(); piece != change.pieces.rend(); ++piece) {
    text.replace(piece->offset, piece->removed.size(), piece->inserted);
  }
}

TextChange differenceOf(const std::string& before, const std::string& after) {
  if (before == after) return {};
  const std::size_t front = sameBytes(
      before, after, [](std::string_view text, std::size_t i, std::size_t n) { return text.substr(i, n); });
  const auto rest = [front](const std::string& text) { return std::string_view(text).substr(front); };
  const std::size_t back =
      sameBytes(rest(before), rest(after), [](std::string_view text, std::size_t i, std::size_t n) {
        return text.substr(text.size() - i - n, n);
      });
  return {{{front, before.substr(front, before.size() - back - front),
            after.substr(front, after.size() - back - front)}},
          Reach::whole};
}

Draft::Draft(std::string text) : content(std::move(text)) {
  readAll();
}

const ProjectPlaces& Draft::places() const {
  settleShift();
  return noted;
}

const PartPlace& Draft::partPlace(int part) const {
  const auto index = static_cast<std::size_t>(part);
  if (index >= shift.fromPart) settleShift();
  return noted.parts[index];
}

void Draft::settleShift() const {
  if (shift.bytes == 0) return;
  const auto move = [this](std::size_t& offset) {
    if (offset >= shift.fromByte) offset += static_cast<std::size_t>(shift.bytes);
  };
  const auto moveSpan = [&](TextSpan& span) {
    move(span.begin);
    move(span.end);
  };
  // What is not given lies at 0, before every part.
  for (std::size_t i = shift.fromPart; i < noted.parts.size(); ++i) forEachOffset(noted.parts[i], move);
  moveSpan(noted.total);
  moveSpan(noted.start);
  moveSpan(noted.music);
  for (TickPlace& tick : noted.ticks) {
    moveSpan(tick);
    move(tick.statement);
  }
  shift = {};
}

TextSpan Draft::wholePart(std::size_t part) const {
  TextSpan whole = noted.parts[part].whole;
  if (part < shift.fromPart) return whole;
  whole.begin += static_cast<std::size_t>(shift.bytes);
  whole.end += static_cast<std::size_t>(shift.bytes);
  return whole;
}

void Draft::readAll() {
  ReadProjectText all = readProjectText(content);
  found = std::move(all.problems);
  if (!found.empty()) return;
  read = std::move(all.project);
  noted = std::move(all.places);
  firstTempo = all.tempo;
  shift = {};
}

// The piece that is read again begins with the part before the change, which stands as it stood up to there,
// and ends behind a brace or before a part that the change does not touch.
bool Draft::readPartsAgain(std::size_t begin, std::size_t end, std::ptrdiff_t grown,
                           std::ptrdiff_t linesMore) {
  std::size_t first = 0, count = read.parts.size();
  while (count > 0) {
    const std::size_t half = count / 2;
    if (wholePart(first + half).begin >= begin) {
      count = half;
    } else {
      first += half + 1;
      count -= half + 1;
    }
  }
  if (first == 0) return false;
  --first;
  std::size_t last = first + 1;
  while (last < read.parts.size() && wholePart(last).begin < end) ++last;

  const auto offsetNow = [grown](std::size_t offset) { return offset + static_cast<std::size_t>(grown); };
  std::size_t endBefore = wholePart(last - 1).end;
  if (end >= endBefore) {
    endBefore =
        last < read.parts.size() ? wholePart(last).begin : content.size() - static_cast<std::size_t>(grown);
    if (last < read.parts.size() && !beginsItsLine(content, offsetNow(endBefore))) return false;
  }
  const PartPlace &firstPlace = noted.parts[first], &lastPlace = noted.parts[last - 1];
  if (firstPlace.rangesAbove != lastPlace.rangesAbove || !sameTempo(firstPlace.tempo, lastPlace.tempo)) {
    return false;
  }
  auto again = readProjectParts(content, {wholePart(first).begin, offsetNow(endBefore)},
                                read.parts[first].line, noted, first);
  if (!again) return false;
  const std::size_t now = again->parts.size();
  if (read.parts.size() - (last - first) + now >= maxParts) return false;

  if (shift.fromPart != last) settleShift();
  if (shift.bytes == 0) shift.fromByte = endBefore;
  shift.fromPart = first + now;
  shift.bytes += grown;
  splice(read.parts, first, last, again->parts);
  splice(noted.parts, first, last, again->places);
  if (linesMore == 0) return true;
  for (std::size_t i = first + now; i < read.parts.size(); ++i) {
    moveLines(read.parts[i], static_cast<int>(linesMore));
  }
  return true;
}

Reach Draft::apply(const TextChange& change) {
  const auto lines = [](const std::string& bytes) { return std::count(bytes.begin(), bytes.end(), '\n'); };
  std::ptrdiff_t grown = 0, linesMore = 0;
  for (const TextChange::Piece& piece : change.pieces) {
    grown += static_cast<std::ptrdiff_t>(piece.inserted.size()) -
             static_cast<std::ptrdiff_t>(piece.removed.size());
    linesMore += lines(piece.inserted) - lines(piece.removed);
  }
  applyTo(content, change);
  ++changesMade;
  const TextChange::Piece& last = change.pieces.back();
  const bool inParts = change.reach == Reach::parts && found.empty();
  if (inParts &&
      readPartsAgain(change.pieces.front().offset, last.offset + last.removed.size(), grown, linesMore)) {
    return Reach::parts;
  }
  readAll();
  return Reach::whole;
}

void Draft::make(TextChange change) {
  if (change.pieces.empty()) return;
  // The way back of what brought another statement takes it away.
  change.reach = apply(change);
  made.push_back(std::move(change));
}

void Draft::rewrite(std::vector<Replacement> replacements, Reach reach) {
  std::ranges::stable_sort(replacements, {}, [](const Replacement& r) { return r.where.begin; });
  TextChange change{{}, reach};
  for (Replacement& replacement : replacements) {
    const TextSpan where = replacement.where;
    std::string removed = content.substr(where.begin, where.end - where.begin);
    if (removed == replacement.with) continue;
    change.pieces.push_back({where.begin, std::move(removed), std::move(replacement.with)});
  }
  make(std::move(change));
  if (found.empty()) return;
  const std::string problem = found.front().text;
  takeBack(made.size() - 1);
  throw Refusal{problem};
}

std::vector<TextChange> Draft::takeBack(std::size_t first) {
  for (std::size_t i = made.size(); i > first; --i) apply(inverseOf(made[i - 1]));
  std::vector<TextChange> taken(std::make_move_iterator(made.begin() + static_cast<std::ptrdiff_t>(first)),
                                std::make_move_iterator(made.end()));
  made.resize(first);
  return taken;
}

std::vector<TextChange> Draft::forgetChanges() {
  return std::exchange(made, {});
}

}  // namespace vex::studio
