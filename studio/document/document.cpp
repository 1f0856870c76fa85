#include "studio/document/document.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

#include "studio/document/call_edits.h"
#include "studio/document/draft.h"
#include "studio/document/new_parts.h"
#include "studio/document/parameter_edits.h"
#include "studio/document/part_edits.h"
#include "studio/document/whole_edits.h"

namespace vex::studio {

namespace {

// What an edit is about, from the part on; the last number is that of the thing that it may move.
using EditTarget = std::vector<int>;

struct Step {
  std::string name;
  std::vector<TextChange> changes;
};

// Edits of one kind on one thing, one behind the other in a gesture, begin anew each time from where the
// first one began: a mouse that goes to and fro leaves no traces.
struct EditRun {
  std::string edit;
  EditTarget original;
  EditTarget now;
  std::size_t firstChange = 0;
};

std::size_t bytesOf(const std::vector<TextChange>& changes) {
  std::size_t bytes = 0;
  for (const TextChange& change : changes) {
    for (const TextChange::Piece& piece : change.pieces)
      bytes += piece.removed.size() + piece.inserted.size();
  }
  return bytes;
}

// The shorter way from the text before the changes to the one behind them; none where these are the same.
std::vector<TextChange> shortened(std::vector<TextChange> changes, const std::string& after) {
  if (changes.empty() || (changes.size() == 1 && changes[0].pieces.size() == 1)) return changes;
  std::string before = after;
  for (auto change = changes.rbegin(); change != changes.rend(); ++change) {
    applyTo(before, inverseOf(*change));
  }
  if (before == after) return {};
  if (changes.size() == 1) return changes;
  TextChange difference = differenceOf(before, after);
  const bool inParts =
      std::ranges::all_of(changes, [](const TextChange& change) { return change.reach == Reach::parts; });
  if (inParts) difference.reach = Reach::parts;
  std::vector<TextChange> one{std::move(difference)};
  return bytesOf(one) < bytesOf(changes) ? one : changes;
}

}  // namespace

struct Document::State {
  struct Gesture {
    std::string name;
    std::size_t firstChange;
  };

  explicit State(std::string text) : draft(text), savedText(std::move(text)) {}

  Draft draft;
  std::string savedText;
  std::vector<Step> done, undone;
  std::vector<Gesture> gestures;
  std::optional<EditRun> run;

  // What has changed since the last step becomes one.
  void finishStep(std::string name) {
    run.reset();
    std::vector<TextChange> changes = shortened(draft.forgetChanges(), draft.text());
    if (changes.empty()) return;
    done.push_back({std::move(name), std::move(changes)});
    undone.clear();
  }

  bool step(std::vector<Step>& from, std::vector<Step>& to) {
    if (!gestures.empty() || from.empty()) return false;
    Step taken = std::move(from.back());
    from.pop_back();
    Step back{std::move(taken.name), {}};
    for (auto change = taken.changes.rbegin(); change != taken.changes.rend(); ++change) {
      back.changes.push_back(inverseOf(*change));
      draft.make(back.changes.back());
    }
    draft.forgetChanges();
    to.push_back(std::move(back));
    return true;
  }

  // Of each of its kinds only the last edit in a row counts; `target` is empty where none follows another.
  Edited edit(const char* name, const EditTarget& target,
              const std::function<int(const EditTarget& target)>& make) {
    if (!draft.problems().empty()) {
      const TextProblem& problem = draft.problems().front();
      return {"line " + std::to_string(problem.line) + ": " + problem.text, -1};
    }
    const bool again = run && !target.empty() && run->edit == name && run->now == target;
    const std::size_t first = again ? run->firstChange : draft.changes().size();
    EditTarget from = again ? run->original : target;
    std::vector<TextChange> before = draft.takeBack(first);
    try {
      const int index = make(from);
      run.reset();
      if (!target.empty()) {
        run = EditRun{name, from, from, first};
        run->now.back() = index;
      }
      if (gestures.empty()) finishStep(name);
      return {std::nullopt, index};
    } catch (const Refusal& refusal) {
      draft.takeBack(first);
      for (TextChange& change : before) draft.make(std::move(change));
      return {refusal.text, -1};
    }
  }

  Edited editOnce(const char* name, const std::function<int()>& make) {
    return edit(name, {}, [&](const EditTarget&) { return make(); });
  }
};

Document::Document(std::string text) : state(std::make_unique<State>(std::move(text))) {}

Document::~Document() = default;

const std::string& Document::text() const {
  return state->draft.text();
}

std::uint64_t Document::revision() const {
  return state->draft.revision();
}

const Project& Document::project() const {
  return state->draft.project();
}

const ProjectPlaces& Document::places() const {
  return state->draft.places();
}

std::optional<Tempo> Document::tempo() const {
  return state->draft.tempo();
}

const std::vector<TextProblem>& Document::problems() const {
  return state->draft.problems();
}

bool Document::saved() const {
  return state->savedText == text();
}

void Document::markSaved() {
  state->savedText = text();
}

void Document::beginGesture(std::string name) {
  state->run.reset();
  state->gestures.push_back({std::move(name), state->draft.changes().size()});
}

void Document::endGesture() {
  if (state->gestures.empty()) return;
  std::string name = std::move(state->gestures.back().name);
  state->gestures.pop_back();
  state->run.reset();
  if (state->gestures.empty()) state->finishStep(std::move(name));
}

void Document::cancelGesture() {
  if (state->gestures.empty()) return;
  state->draft.takeBack(state->gestures.back().firstChange);
  state->gestures.pop_back();
  state->run.reset();
  if (state->gestures.empty()) state->draft.forgetChanges();
}

bool Document::undo() {
  return state->step(state->done, state->undone);
}

bool Document::redo() {
  return state->step(state->undone, state->done);
}

std::optional<std::string> Document::undoName() const {
  if (state->done.empty()) return std::nullopt;
  return state->done.back().name;
}

std::optional<std::string> Document::redoName() const {
  if (state->undone.empty()) return std::nullopt;
  return state->undone.back().name;
}

void Document::replaceText(std::string text, std::string name) {
  state->run.reset();
  state->draft.make(differenceOf(this->text(), text));
  if (state->gestures.empty()) state->finishStep(std::move(name));
}

Edited Document::movePart(int part, double pos, int track) {
  return state->edit("Move part", {part}, [&](const EditTarget& target) {
    return studio::movePart(state->draft, target[0], pos, track);
  });
}

Edited Document::trimStart(int part, double pos) {
  return state->edit("Trim part", {part}, [&](const EditTarget& target) {
    return studio::trimStart(state->draft, target[0], pos);
  });
}

Edited Document::trimEnd(int part, double end) {
  return state->edit("Trim part's end", {part},
                     [&](const EditTarget& target) { return studio::trimEnd(state->draft, target[0], end); });
}

Edited Document::setPartStart(int part, double sceneTime) {
  return state->edit("Set scene time", {part}, [&](const EditTarget& target) {
    return studio::setPartStart(state->draft, target[0], sceneTime);
  });
}

Edited Document::setPartLength(int part, double seconds) {
  return state->edit("Set length", {part}, [&](const EditTarget& target) {
    return studio::setPartLength(state->draft, target[0], seconds);
  });
}

Edited Document::setPartSpeed(int part, double speed) {
  return state->edit("Set speed", {part}, [&](const EditTarget& target) {
    return studio::setPartSpeed(state->draft, target[0], speed);
  });
}

Edited Document::renamePart(int part, const std::string& name) {
  return state->edit("Rename part", {part}, [&](const EditTarget& target) {
    return studio::renamePart(state->draft, target[0], name);
  });
}

Edited Document::doublePart(int part, double pos, int track) {
  return state->editOnce("Double part", [&] { return studio::doublePart(state->draft, part, pos, track); });
}

Edited Document::splitPart(int part, double time) {
  return state->editOnce("Split part", [&] { return studio::splitPart(state->draft, part, time); });
}

Edited Document::removePart(int part) {
  return state->editOnce("Remove part", [&] { return studio::removePart(state->draft, part); });
}

Edited Document::createPart(double pos, double length, int track, const std::string& scene,
                            const std::string& function) {
  return state->editOnce(
      "New part", [&] { return studio::createPart(state->draft, pos, length, track, scene, function); });
}

Edited Document::addCall(int part, const std::string& scene, const std::string& function) {
  return state->editOnce("Add call", [&] { return studio::addCall(state->draft, part, scene, function); });
}

Edited Document::removeCall(CallAt at) {
  return state->editOnce("Remove call", [&] { return studio::removeCall(state->draft, at); });
}

Edited Document::moveCall(CallAt at, int to) {
  return state->edit("Move call", {at.part, at.call}, [&](const EditTarget& target) {
    return studio::moveCall(state->draft, {target[0], target[1]}, to);
  });
}

Edited Document::setConstant(ParameterAt at, double value) {
  return state->edit("Set value", {at.part, at.call, at.parameter}, [&](const EditTarget&) {
    studio::setConstant(state->draft, at, value);
    return at.parameter;
  });
}

Edited Document::setString(ParameterAt at, const std::string& value) {
  return state->edit("Set text", {at.part, at.call, at.parameter}, [&](const EditTarget&) {
    studio::setString(state->draft, at, value);
    return at.parameter;
  });
}

Edited Document::setSine(ParameterAt at, SineField field, double value) {
  const int number = static_cast<int>(field);
  return state->edit("Set sine", {at.part, at.call, at.parameter, number}, [&](const EditTarget&) {
    studio::setSine(state->draft, at, field, value);
    return number;
  });
}

Edited Document::setKind(ParameterAt at, ParameterType kind, double progress) {
  return state->editOnce("Change kind", [&] {
    studio::setKind(state->draft, at, kind, progress);
    return at.parameter;
  });
}

Edited Document::setDot(ParameterAt at, int dot, double x, double y) {
  return state->edit("Move dot", {at.part, at.call, at.parameter, dot},
                     [&](const EditTarget&) { return studio::setDot(state->draft, at, dot, x, y); });
}

Edited Document::addDot(ParameterAt at, double x, double y) {
  return state->editOnce("Add dot", [&] { return studio::addDot(state->draft, at, x, y); });
}

Edited Document::removeDot(ParameterAt at, int dot) {
  return state->editOnce("Remove dot", [&] { return studio::removeDot(state->draft, at, dot); });
}

Edited Document::setTotalTime(double seconds) {
  return state->edit("Set total time", {0}, [&](const EditTarget&) {
    studio::setTotalTime(state->draft, seconds);
    return 0;
  });
}

Edited Document::setStartTime(double seconds) {
  return state->edit("Set start time", {0}, [&](const EditTarget&) {
    studio::setStartTime(state->draft, seconds);
    return 0;
  });
}

Edited Document::setTempo(double beatsPerMinute) {
  return state->edit("Set tempo", {0}, [&](const EditTarget&) {
    studio::setTempo(state->draft, beatsPerMinute);
    return 0;
  });
}

Edited Document::setMusic(const std::string& file) {
  return state->editOnce("Set music", [&] {
    studio::setMusic(state->draft, file);
    return 0;
  });
}

Edited Document::addTick(double time, const std::string& name) {
  return state->editOnce("Add mark", [&] { return studio::addTick(state->draft, time, name); });
}

Edited Document::moveTick(int tick, double time) {
  return state->edit("Move mark", {tick},
                     [&](const EditTarget&) { return studio::moveTick(state->draft, tick, time); });
}

Edited Document::removeTick(int tick) {
  return state->editOnce("Remove mark", [&] { return studio::removeTick(state->draft, tick); });
}

std::string Document::tickName(int tick) const {
  try {
    return studio::tickName(state->draft, tick);
  } catch (const Refusal&) {
    return "";
  }
}

}  // namespace vex::studio
