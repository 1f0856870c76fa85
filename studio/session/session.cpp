#include "studio/session/session.h"

#include <algorithm>
#include <utility>

#include "base/report.h"
#include "studio/session/session_state.h"

namespace vex::studio {

namespace {

// What the file holds. Fatal: one that cannot be read.
std::string textOf(DiskState& disk) {
  FileText read = disk.read();
  if (read.trouble) fatalError("%s", read.trouble->c_str());
  return std::move(read.text);
}

}  // namespace

Session::State::State(const std::string& file)
    : disk(file), document(std::make_unique<Document>(textOf(disk))), autosave(file) {}

void Session::State::tell(Message::Kind kind, std::string text) {
  message = {text.empty() ? Message::Kind::none : kind, std::move(text), {}};
  changed = true;
}

void Session::State::tellTrouble(const Trouble& trouble) {
  if (trouble) tell(Message::Kind::trouble, loadTrouble.value_or(*trouble));
}

// Only what is there can be chosen.
void Session::State::holdSelection() {
  const auto& parts = document->project().parts;
  const auto within = [](int index, std::size_t count) {
    return index >= 0 && static_cast<std::size_t>(index) < count;
  };
  if (!within(selection.part, parts.size())) {
    selection = {};
    return;
  }
  const auto& calls = parts[static_cast<std::size_t>(selection.part)].calls;
  if (!within(selection.call, calls.size())) {
    selection = {selection.part, -1, -1, -1};
    return;
  }
  const auto& parameters = calls[static_cast<std::size_t>(selection.call)].parameters;
  if (!within(selection.parameter, parameters.size())) {
    selection.parameter = selection.dot = -1;
    return;
  }
  if (!within(selection.dot, parameters[static_cast<std::size_t>(selection.parameter)].dots.size()))
    selection.dot = -1;
}

Session::Session(const std::string& text) : state(std::make_unique<State>(text)) {
  state->watch.addFile(path());
  state->watch.addFolder("data");
  state->watch.addFile(archiveName);
  state->seenRevision = State::never;
  offerLeftText();
}

Session::~Session() = default;

void Session::open(const std::function<void(int, const char*)>& progress) {
  state->load(progress);
}

Document& Session::document() {
  return *state->document;
}
Show& Session::show() {
  return *state->show;
}
const Peaks* Session::peaks() const {
  return state->waveform.peaks();
}

const Selection& Session::selection() const {
  state->holdSelection();
  return state->selection;
}

void Session::select(Selection selection) {
  state->selection = selection;
  state->holdSelection();
  state->changed = true;
}

const ProjectPart* Session::selectedPart() const {
  const int part = selection().part;
  return part < 0 ? nullptr : &state->document->project().parts[static_cast<std::size_t>(part)];
}

const ProjectParameter* Session::selectedParameter() const {
  const ProjectPart* part = selectedPart();
  const Selection& at = state->selection;
  if (!part || at.parameter < 0) return nullptr;
  return &part->calls[static_cast<std::size_t>(at.call)].parameters[static_cast<std::size_t>(at.parameter)];
}

const std::vector<Finding>& Session::findings() const {
  return state->findings;
}

// None while the parts may be others than those that were judged.
const Finding* Session::findingOf(int part) const {
  if (state->judgedRevision != state->document->revision()) return nullptr;
  const auto found = std::ranges::find(state->findings, part, &Finding::part);
  return found == state->findings.end() ? nullptr : &*found;
}

// A question comes first, then trouble, then what is wrong with the text.
const Message& Session::message() const {
  if (const Message* question = state->questions.first()) return *question;
  const bool mistaken = state->textMistake.kind != Message::Kind::none;
  return state->message.kind != Message::Kind::trouble && mistaken ? state->textMistake : state->message;
}

void Session::tell(Message::Kind kind, std::string text) {
  state->tell(kind, std::move(text));
}

void Session::ask(Subject subject, std::string text, std::vector<Message::Answer> answers) {
  state->questions.ask(subject, std::move(text), std::move(answers));
  state->changed = true;
}

void Session::answer(std::size_t index) {
  state->changed = true;
  state->questions.answer(index);
}

void Session::beginGesture(const std::string& name) {
  state->document->beginGesture(name);
  state->inGesture = true;
}

void Session::endGesture() {
  if (std::exchange(state->inGesture, false)) state->document->endGesture();
}

void Session::cancelGesture() {
  if (std::exchange(state->inGesture, false)) state->document->cancelGesture();
  state->changed = true;
}

bool Session::inGesture() const {
  return state->inGesture;
}

bool Session::edit(const Edited& edited) {
  if (edited) {
    if (!state->loadTrouble && !recorded()) tell(Message::Kind::none, "");  // what was told before
  } else {
    tell(Message::Kind::trouble, *edited.refusal);
  }
  state->changed = true;
  return static_cast<bool>(edited);
}

bool Session::editPart(const Edited& edited) {
  if (!edit(edited)) return false;
  if (edited.index >= 0) {
    state->selection.part = edited.index;
    state->holdSelection();
  }
  return true;
}

void Session::undo() {
  const auto name = state->document->undoName();
  if (state->document->undo()) tell(Message::Kind::hint, "Undone: " + name.value_or("") + ".");
}

void Session::redo() {
  const auto name = state->document->redoName();
  if (state->document->redo()) tell(Message::Kind::hint, "Done again: " + name.value_or("") + ".");
}

void Session::seek(double time) {
  const Trouble trouble = state->show->seek(time);
  if (state->opened) state->tellTrouble(trouble);
  state->changed = true;
}

void Session::scrub(double time) {
  const Trouble trouble = state->show->scrub(time);
  if (state->opened) state->tellTrouble(trouble);
  state->changed = true;
}

void Session::togglePlaying() {
  if (state->show->playing()) {
    state->show->pause();
  } else {
    state->tellTrouble(state->show->play());
  }
  state->changed = true;
}

void Session::setLoopBegin() {
  const double now = state->show->time();
  const auto loop = state->show->loop();
  state->show->setLoop(Loop{now, loop && loop->end > now ? loop->end : state->document->project().totalTime});
  state->changed = true;
}

void Session::setLoopEnd() {
  const double now = state->show->time();
  const auto loop = state->show->loop();
  if (now > 0) state->show->setLoop(Loop{loop && loop->begin < now ? loop->begin : 0, now});
  state->changed = true;
}

void Session::clearLoop() {
  state->show->setLoop(std::nullopt);
  state->changed = true;
}

double Session::snapped(double time, double secondsPerPixel, double pixels) const {
  const std::vector<double> targets = snapTargets(state->document->project(), state->selection.part);
  return vex::studio::snapped(time, state->document->tempo(), secondsPerPixel, SnapGrid::zoom, targets,
                              pixels);
}

int Session::watched() const {
  return state->watch.descriptor();
}

}  // namespace vex::studio
