#include "production/song/notation.h"

#include <charconv>

#include "base/report.h"

namespace vex::song {

namespace {

bool isSpacing(char c) {
  return c == ' ' || c == '|' || c == '\n';
}

struct Stroke {
  char sign;
  float velocity;
};
constexpr Stroke strokes[] = {{'X', 1.0f}, {'x', 0.82f}, {'o', 0.55f}, {'g', 0.28f}, {'r', 0.6f}};

}  // namespace

float readPitch(std::string_view name) {
  constexpr int semitones[] = {9, 11, 0, 2, 4, 5, 7};  // A to G
  std::size_t at = 1;
  if (name.size() < 2 || name[0] < 'A' || name[0] > 'G') {
    fatalError("score: %.*s is no pitch", static_cast<int>(name.size()), name.data());
  }
  int semitone = semitones[name[0] - 'A'];
  if (name[at] == '#')
    ++semitone, ++at;
  else if (name[at] == 'b')
    --semitone, ++at;
  if (at + 1 != name.size() || name[at] < '0' || name[at] > '9') {
    fatalError("score: %.*s is no pitch", static_cast<int>(name.size()), name.data());
  }
  return static_cast<float>(12 * (name[at] - '0' + 1) + semitone);
}

std::vector<DrumHit> readDrums(const DrumLine& line) {
  std::vector<DrumHit> once;
  int step = 0;
  for (const char sign : line.steps) {
    if (isSpacing(sign)) continue;
    const double bar = static_cast<double>(step++) / stepsPerBar;
    if (sign == '.') continue;
    const Stroke* found = nullptr;
    for (const Stroke& stroke : strokes) {
      if (stroke.sign == sign) found = &stroke;
    }
    if (found == nullptr) fatalError("score: %c in bar %d is no drum stroke", sign, line.bar);
    once.push_back({bar, found->velocity});
    if (sign == 'r') once.push_back({bar + 0.5 / stepsPerBar, 0.8f * found->velocity});
  }
  if (step == 0 || step % stepsPerBar != 0) {
    fatalError("score: the drum line in bar %d has %d steps, not whole bars", line.bar, step);
  }
  std::vector<DrumHit> hits;
  for (int time = 0; time < line.times; ++time) {
    for (const DrumHit& hit : once) {
      hits.push_back({line.bar + time * (step / stepsPerBar) + hit.bar, hit.velocity});
    }
  }
  return hits;
}

std::vector<Note> readNotes(const NoteLine& line) {
  std::vector<Note> notes;
  int step = 0;
  float lastPitch = 0;
  std::string_view rest = line.notes;
  while (true) {
    while (!rest.empty() && isSpacing(rest.front())) {
      if (rest.front() == '|' && step % stepsPerBar != 0) {
        fatalError("score: a bar line of the %.*s in bar %d stands at step %d",
                   static_cast<int>(line.instrument.size()), line.instrument.data(), line.bar, step);
      }
      rest.remove_prefix(1);
    }
    if (rest.empty()) break;
    std::size_t size = 0;
    while (size < rest.size() && !isSpacing(rest[size])) ++size;
    const std::string_view word = rest.substr(0, size);
    rest.remove_prefix(size);

    const std::size_t colon = word.find(':');
    std::string_view pitches = word.substr(0, colon);
    std::string_view length = colon == std::string_view::npos ? std::string_view{} : word.substr(colon + 1);
    float velocity = 0.8f;
    if (length.ends_with('!'))
      velocity = 1, length.remove_suffix(1);
    else if (length.ends_with('?'))
      velocity = 0.5f, length.remove_suffix(1);
    int steps = 0;
    const auto [end, problem] = std::from_chars(length.data(), length.data() + length.size(), steps);
    if (problem != std::errc{} || end != length.data() + length.size() || steps <= 0 || steps > 1000) {
      fatalError("score: %.*s in bar %d has no length", static_cast<int>(size), word.data(), line.bar);
    }

    if (pitches != "-") {
      Note note{line.bar + static_cast<double>(step) / stepsPerBar,
                static_cast<double>(steps) / stepsPerBar,
                {},
                0,
                velocity};
      if (pitches.starts_with('~')) {
        note.fromPitch = lastPitch;
        pitches.remove_prefix(1);
      }
      while (true) {
        const std::size_t plus = pitches.find('+');
        note.pitches.push_back(readPitch(pitches.substr(0, plus)));
        if (plus == std::string_view::npos) break;
        pitches.remove_prefix(plus + 1);
      }
      lastPitch = note.pitches.front();
      notes.push_back(std::move(note));
    }
    step += steps;
  }
  if (step == 0 || step % stepsPerBar != 0) {
    fatalError("score: the %.*s in bar %d plays %d steps, not whole bars",
               static_cast<int>(line.instrument.size()), line.instrument.data(), line.bar, step);
  }
  return notes;
}

}  // namespace vex::song
