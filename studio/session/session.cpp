#include "studio/session/session.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <map>
#include <set>
#include <span>

#include "base/files.h"
#include "base/pak_archive.h"
#include "base/report.h"
#include "platform/png_file.h"
#include "platform/replace_file.h"
#include "scenes/scene_tables.h"
#include "studio/document/autosave.h"
#include "studio/document/disk_state.h"
#include "studio/document/snapping.h"
#include "studio/session/programs.h"
#include "studio/show/file_watch.h"

namespace vex::studio {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr auto judgedAfter = std::chrono::milliseconds(300);  // without an edit
constexpr auto autosavedAfter = std::chrono::seconds(30);
constexpr const char* compiledName = "test.hvp";

// A name as the file layer writes it, for a path from the run folder.
std::string dataName(std::string path) {
  if (path.starts_with("./")) path.erase(0, 2);
  std::ranges::replace(path, '/', '\\');
  return path;
}

std::vector<std::string> filesOfRunFolder() {
  std::set<std::string> names;
  std::error_code ignored;
  if (fs::exists("vex.pak", ignored)) {
    for (const PakMember& member : listPak("vex.pak")) names.insert(member.name);
  }
  for (const auto& entry : fs::directory_iterator("data", ignored))
    if (entry.is_regular_file(ignored)) names.insert("data\\" + entry.path().filename().string());
  return {names.begin(), names.end()};
}

std::vector<Finding> findingsOf(const std::vector<TextProblem>& problems) {
  std::vector<Finding> findings;
  for (const TextProblem& problem : problems)
    findings.push_back({.line = problem.line, .text = problem.text, .hint = {}});
  return findings;
}

// What the file holds. Fatal: one that cannot be read.
std::string textOf(DiskState& disk) {
  FileText read = disk.read();
  if (read.trouble) fatalError("%s", read.trouble->c_str());
  return std::move(read.text);
}

}  // namespace

struct Session::State {
  explicit State(const std::string& file) : disk(file), document(textOf(disk)), autosave(file) {}

  DiskState disk;
  Document document;
  Autosave autosave;
  Show show;
  Waveform waveform;
  FileWatch watch;
  Programs programs;

  Selection selection;
  std::vector<Finding> findings;
  std::vector<Finding> dataFindings;  // of what lies in the run folder
  Message message;
  bool opened = false;  // what the run folder has was asked for
  Trouble loadTrouble;  // why there is no show
  bool compiles = true;
  bool changed = true;          // since the panes were drawn
  bool asksOfDisk = false;      // which of two texts counts
  bool asksOfAutosave = false;  // whether what was left is taken
  std::uint64_t shownRevision = 0;
  std::uint64_t seenRevision = 0;
  std::uint64_t judgedRevision = ~std::uint64_t{0};
  std::uint64_t namesJudged = 0;  // hash of all texts of the project that name files
  Clock::time_point lastEdit = Clock::now();
  Clock::time_point lastAutosave = Clock::now();

  void holdSelection();
  void judge();
  void judgeData();
  void showEdits();
  void heedFiles();
  void forgetCompiled();
  void tell(Message::Kind kind, std::string text);
  bool textChanged = false;  // on disk, as it seems
  void saveOnTheSide();
  void tellTrouble(const Trouble& trouble);
  bool compile();
};

// A question stays until it is answered.
void Session::State::tell(Message::Kind kind, std::string text) {
  if (message.kind == Message::Kind::question) return;
  message = {kind, std::move(text), {}};
  changed = true;
}

void Session::State::tellTrouble(const Trouble& trouble) {
  if (trouble) tell(Message::Kind::trouble, loadTrouble.value_or(*trouble));
}

// Only what is there can be chosen.
void Session::State::holdSelection() {
  const auto& parts = document.project().parts;
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

void Session::State::judge() {
  judgedRevision = document.revision();
  changed = true;
  if (!document.problems().empty()) {
    findings = findingsOf(document.problems());
    return;
  }
  const Project& project = document.project();
  findings = checkTimeLine(project, sceneEntries());
  judgeData();
  findings.insert(findings.end(), dataFindings.begin(), dataFindings.end());
  const auto ground = checkGround(project, sceneEntries(),
                                  [](const std::string& texture) { return textureHasMask(texture); });
  findings.insert(findings.end(), ground.begin(), ground.end());
  std::ranges::stable_sort(findings, {}, &Finding::remark);
}

// Looks at files only when other ones are named.
void Session::State::judgeData() {
  std::string names = document.project().music;
  for (const ProjectPart& part : document.project().parts)
    for (const ProjectCall& call : part.calls)
      for (const ProjectParameter& parameter : call.parameters)
        if (parameter.type == PARAM_STRING) names += '\n' + parameter.string;
  const std::uint64_t hash = std::hash<std::string>()(names);
  if (hash == namesJudged) return;
  namesJudged = hash;
  const FatalErrorsThrown thrown;
  try {
    dataFindings = checkData(document.project(), sceneEntries());
  } catch (const FatalError& error) {
    dataFindings = {{.text = error.what(), .hint = {}}};
  }
}

void Session::State::showEdits() {
  if (document.revision() != seenRevision) {
    seenRevision = document.revision();
    lastEdit = Clock::now();
    holdSelection();
    changed = true;
  }
  if (opened && document.problems().empty() && shownRevision != document.revision()) {
    shownRevision = document.revision();
    tellTrouble(show.setProject(document.project()));
  }
  if (judgedRevision != document.revision() && Clock::now() - lastEdit >= judgedAfter) judge();
}

void Session::State::heedFiles() {
  std::vector<std::string> data;
  for (const std::string& path : watch.changed()) {
    if (path == disk.path()) {
      textChanged = true;
      continue;
    }
    data.push_back(dataName(path));
    if (data.back() == document.project().music) waveform.read(document.project().music);
  }
  if (data.empty() || !opened) return;
  namesJudged = 0;
  judgedRevision = ~std::uint64_t{0};
  changed = true;
  if (std::exchange(loadTrouble, std::nullopt)) {  // what was missing may be there now
    loadTrouble = show.load(document.project(), {});
    shownRevision = document.revision();
    return loadTrouble ? tellTrouble(loadTrouble) : tell(Message::Kind::hint, "The show is loaded.");
  }
  if (const Trouble trouble = show.reload(data)) return tellTrouble(trouble);
  forgetCompiled();
  tell(Message::Kind::hint,
       formatted("%s was loaded anew%s", data.front().c_str(), data.size() > 1 ? ", with others" : ""));
}

// Reading the text of a model leaves its compiled form beside it, which is no news.
void Session::State::forgetCompiled() {
  for (const std::string& path : watch.changed()) textChanged = textChanged || path == disk.path();
}

void Session::State::saveOnTheSide() {
  if (asksOfAutosave || Clock::now() - lastAutosave < autosavedAfter) return;
  lastAutosave = Clock::now();
  if (document.saved()) return;
  if (const auto trouble = autosave.write(document.text())) tellTrouble(trouble);
}

bool Session::State::compile() {
  const std::string bytes = compileProjectText(document.text()).bytes;
  if (bytes.empty()) {
    tellTrouble(std::string("saved, but ") + compiledName + " stays as it was: the show has mistakes");
    return false;
  }
  if (replaceFile(compiledName, bytes)) return true;
  tellTrouble(formatted("saved, but can't write %s: %s", compiledName, std::strerror(errno)));
  return false;
}

Session::Session(const std::string& text) : state(std::make_unique<State>(text)) {
  State& s = *state;
  s.watch.addFile(s.disk.path());
  s.watch.addFolder("data");
  s.seenRevision = s.document.revision();
  if (const auto left = findAutosave(path())) {
    s.asksOfAutosave = true;
    const auto give = [this] {
      state->asksOfAutosave = false;
      state->autosave.remove();
    };
    ask(fileName() + " was left with changes that were not saved.", {{"Take them",
                                                                      [this, give, text = left->text] {
                                                                        state->document.replaceText(
                                                                            text, "Take what was not saved");
                                                                        give();
                                                                      }},
                                                                     {"Leave them", give}});
  }
}

Session::~Session() = default;

void Session::open(const std::function<void(int, const char*)>& progress) {
  State& s = *state;
  s.shownRevision = s.document.revision();
  s.loadTrouble = s.show.load(s.document.project(), progress);
  s.opened = true;
  s.forgetCompiled();
  tell(Message::Kind::none, "");
  s.tellTrouble(s.loadTrouble);
  if (!s.show.musicName().empty()) s.waveform.read(s.show.musicName());
  if (!s.loadTrouble && !s.show.soundMessage().empty()) tell(Message::Kind::hint, s.show.soundMessage());
  if (!s.document.problems().empty()) {
    const TextProblem& first = s.document.problems().front();
    tell(Message::Kind::trouble, formatted("%s:%d: %s", fileName().c_str(), first.line, first.text.c_str()));
  }
  s.changed = true;
}

Document& Session::document() {
  return state->document;
}
Show& Session::show() {
  return state->show;
}
const Peaks* Session::peaks() const {
  return state->waveform.peaks();
}

const Selection& Session::selection() const {
  return state->selection;
}

void Session::select(Selection selection) {
  state->selection = selection;
  state->holdSelection();
  state->changed = true;
}

const ProjectPart* Session::selectedPart() const {
  state->holdSelection();
  const int part = state->selection.part;
  return part < 0 ? nullptr : &state->document.project().parts[static_cast<std::size_t>(part)];
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

const Finding* Session::findingOf(int part) const {
  const auto found = std::ranges::find(state->findings, part, &Finding::part);
  return found == state->findings.end() ? nullptr : &*found;
}

const Message& Session::message() const {
  return state->message;
}

void Session::tell(Message::Kind kind, std::string text) {
  state->tell(kind, std::move(text));
}

void Session::ask(std::string text, std::vector<Message::Answer> answers) {
  state->message = {Message::Kind::question, std::move(text), std::move(answers)};
  state->changed = true;
}

void Session::answer(std::size_t index) {
  if (index >= state->message.answers.size()) return;
  const Message asked = std::exchange(state->message, {});
  state->changed = true;
  asked.answers[index].act();
}

bool Session::edit(const Edited& edited) {
  if (edited) {
    if (state->message.kind == Message::Kind::trouble) tell(Message::Kind::none, "");
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
  const auto name = state->document.undoName();
  if (state->document.undo()) tell(Message::Kind::hint, "Undone: " + name.value_or(""));
}

void Session::redo() {
  const auto name = state->document.redoName();
  if (state->document.redo()) tell(Message::Kind::hint, "Done again: " + name.value_or(""));
}

void Session::seek(double time) {
  state->tellTrouble(state->show.seek(time));
  state->changed = true;
}

void Session::scrub(double time) {
  state->tellTrouble(state->show.scrub(time));
  state->changed = true;
}

void Session::togglePlaying() {
  if (state->show.playing()) {
    state->show.pause();
  } else {
    state->tellTrouble(state->show.play());
  }
  state->changed = true;
}

void Session::setLoopBegin() {
  const double now = state->show.time();
  const auto loop = state->show.loop();
  state->show.setLoop(Loop{now, loop && loop->end > now ? loop->end : state->show.totalTime()});
  state->changed = true;
}

void Session::setLoopEnd() {
  const double now = state->show.time();
  const auto loop = state->show.loop();
  if (now > 0) state->show.setLoop(Loop{loop && loop->begin < now ? loop->begin : 0, now});
  state->changed = true;
}

void Session::clearLoop() {
  state->show.setLoop(std::nullopt);
  state->changed = true;
}

double Session::snapped(double time, double secondsPerPixel) const {
  const std::vector<double> targets = snapTargets(state->document.project(), state->selection.part);
  return vex::studio::snapped(time, state->document.tempo(), secondsPerPixel, SnapGrid::zoom, targets);
}

std::string Session::fileName() const {
  return fs::path(state->disk.path()).filename().string();
}
std::string Session::path() const {
  return state->disk.path();
}
std::string Session::folder() const {
  return fs::path(state->disk.path()).parent_path().string();
}
bool Session::compilesOnSave() const {
  return state->compiles;
}
void Session::setCompilesOnSave(bool compiles) {
  state->compiles = compiles;
}

// The text's file was written by somebody.
void Session::heedText() {
  State& s = *state;
  if (s.asksOfDisk) return;
  switch (s.disk.change()) {
    case DiskChange::none:
      break;
    case DiskChange::changed:
      if (s.document.saved()) {
        loadFromDisk();
      } else {
        askWhichText();
      }
      break;
    case DiskChange::gone:
      tell(Message::Kind::trouble, fileName() + " is gone from its folder; saving writes it anew.");
      break;
    case DiskChange::unreadable:
      tell(Message::Kind::trouble, fileName() + " cannot be read any more.");
      break;
  }
}

bool Session::save() {
  return write(Overwrite::no);
}

bool Session::write(Overwrite overwrite) {
  State& s = *state;
  const DiskChange change = s.disk.change();
  if (change == DiskChange::changed && overwrite == Overwrite::no) {
    askWhichText();
    return false;
  }
  if (const auto trouble = s.disk.save(s.document.text(), overwrite)) {
    s.tellTrouble(trouble);
    return false;
  }
  s.document.markSaved();
  if (!s.asksOfAutosave) s.autosave.remove();
  if (!s.asksOfAutosave && !s.asksOfDisk) s.message = {};  // what was asked of unsaved changes
  if (!s.compiles || s.compile())
    tell(Message::Kind::hint, fileName() + " is saved" + (s.compiles ? ", and compiled." : "."));
  s.changed = true;
  return true;
}

bool Session::saveAs(const std::string& path) {
  State& s = *state;
  if (const auto trouble = s.disk.saveAs(path, s.document.text(), Overwrite::yes)) {
    s.tellTrouble(trouble);
    return false;
  }
  s.autosave.remove();
  s.autosave = Autosave(s.disk.path());
  s.watch.addFile(s.disk.path());
  s.document.markSaved();
  if (s.compiles) s.compile();
  tell(Message::Kind::hint, "Saved as " + fileName() + ".");
  s.changed = true;
  return true;
}

void Session::loadFromDisk() {
  State& s = *state;
  FileText read = s.disk.read();
  if (read.trouble) return s.tellTrouble(read.trouble);
  s.document.replaceText(std::move(read.text), "Take the file's text");
  s.document.markSaved();
  s.autosave.remove();
  if (s.document.problems().empty()) {
    tell(Message::Kind::hint, fileName() + " was read again.");
  } else {
    const TextProblem& first = s.document.problems().front();
    tell(Message::Kind::trouble, formatted("%s:%d: %s", fileName().c_str(), first.line, first.text.c_str()));
  }
  s.changed = true;
}

void Session::openText(const std::string& path) {
  const auto go = [this, path] {
    State& s = *state;
    DiskState other(fs::absolute(path).string());
    if (FileText read = other.read(); read.trouble) return s.tellTrouble(read.trouble);
    s.autosave.remove();
    s.disk = other;
    s.autosave = Autosave(s.disk.path());
    s.watch.addFile(s.disk.path());
    s.selection = {};
    loadFromDisk();
  };
  if (state->document.saved()) return go();
  ask(fileName() + " has changes that are not saved.", {{"Save, then open",
                                                         [this, go] {
                                                           if (save()) go();
                                                         }},
                                                        {"Open without saving", go},
                                                        {"Stay", [] {}}});
}

void Session::askWhichText() {
  State& s = *state;
  if (std::exchange(s.asksOfDisk, true)) return;
  ask(fileName() + " was changed by another program, too.",
      {{"Keep mine",
        [this] {
          state->asksOfDisk = false;
          write(Overwrite::yes);
        }},
       {"Take theirs",
        [this] {
          state->asksOfDisk = false;
          loadFromDisk();
        }},
       {"Save mine under another name", [this] {
          state->asksOfDisk = false;
          const fs::path mine(path());
          const std::string name =
              (mine.parent_path() / (mine.stem().string() + "-mine" + mine.extension().string())).string();
          if (saveAs(name)) tell(Message::Kind::hint, "Yours is in " + fileName() + " now.");
        }}});
}

std::vector<std::string> Session::textureNames() const {
  std::set<std::string> names;
  for (const std::string& file : filesOfRunFolder()) {
    if (!file.ends_with(".jpg") && !file.ends_with(".bmp")) continue;
    const std::string name = file.substr(0, file.size() - 4);
    if (!name.ends_with("_mask")) names.insert(name);
  }
  return {names.begin(), names.end()};
}

// Frames are numbered behind their movie's name.
std::vector<std::string> Session::movieNames() const {
  std::map<std::string, int> frames;
  for (const std::string& name : textureNames()) {
    const std::size_t digits = name.find_last_not_of("0123456789") + 1;
    if (digits < name.size() && digits > 0) ++frames[name.substr(0, digits)];
  }
  std::vector<std::string> movies;
  for (const auto& [name, count] : frames)
    if (count > 1) movies.push_back(name);
  return movies;
}

std::string Session::firstFrame(const std::string& movie) const {
  std::string first;
  int least = std::numeric_limits<int>::max();
  for (const std::string& name : textureNames()) {
    if (!name.starts_with(movie)) continue;
    int number = 0;
    const char* end = name.data() + name.size();
    const auto [rest, error] = std::from_chars(name.data() + movie.size(), end, number);
    if (error != std::errc() || rest != end || number >= least) continue;
    least = number;
    first = name;
  }
  return first;
}

void Session::saveStill(const std::vector<std::uint32_t>& bgra, int width, int height) {
  if (bgra.empty()) return tell(Message::Kind::trouble, "There is no picture to save.");
  const fs::path text(path());
  const std::string name = formatted("%s-%08.3f.png", text.stem().c_str(), state->show.time());
  const std::string file = (text.parent_path() / name).string();
  std::vector<std::byte> rgb;
  for (int row = height; row-- > 0;)
    for (int column = 0; column < width; ++column) {
      const std::uint32_t pixel = bgra[static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                                       static_cast<std::size_t>(column)];
      for (const int shift : {16, 8, 0}) rgb.push_back(static_cast<std::byte>(pixel >> shift & 255));
    }
  ReplacementFile png(file);
  if (writePng(png, width, height, rgb)) {
    tell(Message::Kind::hint, "The picture is in " + name + ".");
  } else {
    tell(Message::Kind::trouble, formatted("can't write %s: %s", file.c_str(), std::strerror(errno)));
  }
}

void Session::leave() {
  if (!state->asksOfAutosave) state->autosave.remove();
  state->programs.cancelRecording();
}

int Session::watched() const {
  return state->watch.descriptor();
}

void Session::record(Stretch stretch, const std::string& file, int width, int height, int framesPerSecond) {
  State& s = *state;
  std::optional<Loop> from;
  if (stretch == Stretch::toEnd) from = Loop{s.show.time(), s.document.project().totalTime};
  if (stretch == Stretch::loop) {
    from = s.show.loop();
    if (!from) return tell(Message::Kind::trouble, "There is no loop to record; set it with [ and ].");
  }
  s.tellTrouble(s.programs.record({.project = compileProjectText(s.document.text()).bytes,
                                   .file = file,
                                   .stretch = from,
                                   .width = width,
                                   .height = height,
                                   .framesPerSecond = framesPerSecond}));
  s.changed = true;
}

void Session::playInPlayer() {
  State& s = *state;
  Project project = s.document.project();
  project.startTime = s.show.time();
  s.show.pause();
  s.tellTrouble(s.programs.play(encodeProject(project)));
  s.changed = true;
}

std::optional<int> Session::recorded() const {
  return state->programs.recorded();
}
void Session::cancelRecording() {
  state->programs.cancelRecording();
  state->changed = true;
}

bool Session::update() {
  State& s = *state;
  s.heedFiles();
  if (std::exchange(s.textChanged, false)) heedText();
  s.showEdits();
  s.saveOnTheSide();
  if (s.waveform.fresh()) s.changed = true;
  if (const auto told = s.programs.news()) {
    tell(told->trouble ? Message::Kind::trouble : Message::Kind::hint, told->text);
    s.changed = true;
  }
  return std::exchange(s.changed, false);
}

}  // namespace vex::studio
