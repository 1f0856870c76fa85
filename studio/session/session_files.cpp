#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <limits>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "base/pak_archive.h"
#include "base/report.h"
#include "platform/png_file.h"
#include "platform/replace_file.h"
#include "studio/session/session_state.h"

// What a session has to do with files: the text and who else writes it, names of the run folder, pictures,
// videos.

namespace vex::studio {

namespace {

namespace fs = std::filesystem;

// STEM ENDING EXTENSION, with a number before the extension where that is taken.
fs::path freeName(const fs::path& folder, const std::string& stem, const std::string& ending,
                  const std::string& extension) {
  std::error_code ignored;
  fs::path free = folder / (stem + ending + extension);
  for (int n = 2; n < 10000 && fs::exists(fs::symlink_status(free, ignored)); ++n)
    free = folder / (stem + ending + formatted("-%d", n) + extension);
  return free;
}

std::vector<std::string> filesOfRunFolder() {
  std::set<std::string> names;
  std::error_code ignored;
  if (fs::exists(archiveName, ignored)) {
    const FatalErrorsThrown thrown;
    try {
      for (const PakMember& member : listPak(archiveName)) names.insert(member.name);
    } catch (const FatalError&) {  // told when the show was loaded
    }
  }
  for (const auto& entry : fs::recursive_directory_iterator("data", ignored))
    if (entry.is_regular_file(ignored)) names.insert(dataName(entry.path().string()));
  return {names.begin(), names.end()};
}

}  // namespace

std::string Session::fileName() const {
  return fs::path(path()).filename().string();
}
std::string Session::path() const {
  return state->disk.path();
}
std::string Session::folder() const {
  return fs::path(path()).parent_path().string();
}
bool Session::compilesOnSave() const {
  return state->compiles;
}
void Session::setCompilesOnSave(bool compiles) {
  state->compiles = compiles;
}

bool Session::saved() const {
  return state->document->saved() && !state->textGone;
}

// What an earlier run of the studio left of this text.
void Session::offerLeftText() {
  const auto left = findAutosave(path());
  if (!left) return;
  ask(Subject::leftText, fileName() + " was left with changes that were not saved.",
      {{"Take them",
        [this, text = left->text] {
          state->document->replaceText(text, "Take what was not saved");
          state->autosave.remove();
        }},
       {"Leave them", [this] { state->autosave.remove(); }}});
}

// The text's file was written by somebody.
void Session::heedText() {
  State& s = *state;
  const DiskChange change = s.disk.change();
  s.textGone = change == DiskChange::gone;
  s.changed = true;
  switch (change) {
    case DiskChange::none:
      s.questions.withdraw(Subject::twoTexts);
      break;
    case DiskChange::changed:
      if (s.document->saved()) {
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

void Session::askWhichText() {
  // Only what the file holds now may be overwritten, should "mine" be the answer.
  const auto keepMine = [this, seen = readText(path()).text] {
    State& s = *state;
    if (const FileText now = s.disk.read(); now.text != seen && !now.missing) return askWhichText();
    write();
  };
  ask(Subject::twoTexts, fileName() + " was changed by another program, too.",
      {{"Keep mine", keepMine},
       {"Take theirs", [this] { loadFromDisk(); }},
       {"Save mine under another name", [this] { saveUnderFreeName(); }}});
}

void Session::saveUnderFreeName() {
  const fs::path mine(path());
  const fs::path free =
      freeName(mine.parent_path(), mine.stem().string(), "-mine", mine.extension().string());
  if (saveAs(free.string(), Overwrite::no))
    tell(Message::Kind::hint, "Yours is in " + fileName() + ", and that is what you shape from now on.");
}

bool Session::save() {
  if (state->disk.change() != DiskChange::changed) return write();
  askWhichText();
  return false;
}

// Over what the disk is known to hold.
bool Session::write() {
  State& s = *state;
  if (const auto trouble = s.disk.save(s.document->text())) {
    s.tellTrouble(trouble);
    return false;
  }
  s.document->markSaved();
  s.textGone = false;
  s.questions.withdraw(Subject::unsaved);
  if (!s.questions.asks(Subject::leftText)) s.autosave.remove();
  if (!s.compiles || s.compile())
    tell(Message::Kind::hint, fileName() + (s.compiles ? " is saved and compiled." : " is saved."));
  s.changed = true;
  return true;
}

bool Session::saveAs(const std::string& file, Overwrite overwrite) {
  State& s = *state;
  if (const auto trouble = s.disk.saveAs(file, s.document->text(), overwrite)) {
    s.tellTrouble(trouble);
    return false;
  }
  if (!s.questions.asks(Subject::leftText)) s.autosave.remove();
  s.autosave = Autosave(path());
  s.watch.addFile(path());
  s.questions.withdraw(Subject::twoTexts);
  s.questions.withdraw(Subject::unsaved);
  s.document->markSaved();
  s.textGone = false;
  if (!s.compiles || s.compile()) tell(Message::Kind::hint, "Saved as " + fileName() + ".");
  s.changed = true;
  return true;
}

void Session::loadFromDisk() {
  State& s = *state;
  FileText read = s.disk.read();
  if (read.trouble) return s.tellTrouble(read.trouble);
  s.document->replaceText(std::move(read.text), "Take the file's text");
  s.document->markSaved();
  s.textGone = false;
  s.questions.withdraw(Subject::twoTexts);
  if (!s.questions.asks(Subject::leftText)) s.autosave.remove();
  tell(Message::Kind::hint, fileName() + " was read again.");
}

void Session::openText(const std::string& file) {
  const auto go = [this, file] {
    State& s = *state;
    DiskState other(fs::absolute(file).string());
    FileText read = other.read();
    if (read.trouble) return s.tellTrouble(read.trouble);
    if (!s.questions.asks(Subject::leftText)) s.autosave.remove();
    s.questions = {};
    s.disk = other;
    s.document = std::make_unique<Document>(std::move(read.text));
    s.autosave = Autosave(path());
    s.watch.addFile(path());
    s.selection = {};
    s.textGone = false;
    s.shownRevision = s.seenRevision = s.judgedRevision = State::never;
    tell(Message::Kind::hint, fileName() + " is open, with the same run folder.");
    offerLeftText();
  };
  if (saved()) return go();
  ask(Subject::unsaved, fileName() + " has changes that are not saved.",
      {{"Save, then open",
        [this, go] {
          if (save()) go();
        }},
       {"Open without saving", go},
       {"Stay", [] {}}});
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

std::vector<std::string> Session::musicNames() const {
  std::vector<std::string> names;
  for (const std::string& file : filesOfRunFolder())
    for (const char* extension : {".ogg", ".wav", ".flac", ".mp3", ".aiff"})
      if (file.ends_with(extension)) names.push_back(file);
  return names;
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
  const std::string stem = formatted("%s-%08.3f", text.stem().c_str(), state->show->time());
  const fs::path free = freeName(text.parent_path(), stem, "", ".png");
  const std::string file = free.string(), name = free.filename().string();
  std::vector<std::byte> rgb;
  rgb.reserve(bgra.size() * 3);
  for (std::size_t row = static_cast<std::size_t>(height); row-- > 0;) {
    for (std::size_t column = 0; column < static_cast<std::size_t>(width); ++column) {
      const std::uint32_t pixel = bgra[row * static_cast<std::size_t>(width) + column];
      for (const int shift : {16, 8, 0}) rgb.push_back(static_cast<std::byte>(pixel >> shift & 255));
    }
  }
  ReplacementFile png(file);
  if (writePng(png, width, height, rgb)) {
    tell(Message::Kind::hint, "The picture is in " + name + ".");
  } else {
    tell(Message::Kind::trouble, formatted("can't write %s: %s", file.c_str(), std::strerror(errno)));
  }
}

void Session::record(Stretch stretch, const std::string& file, int width, int height, int framesPerSecond) {
  State& s = *state;
  if (!s.document->problems().empty())
    return tell(Message::Kind::trouble, "There is nothing to record: the text has mistakes.");
  std::optional<Loop> from;
  if (stretch == Stretch::toEnd) from = Loop{s.show->time(), s.document->project().totalTime};
  if (stretch == Stretch::loop) {
    from = s.show->loop();
    if (!from) return tell(Message::Kind::trouble, "There is no loop to record; [ and ] set it.");
  }
  s.tellTrouble(s.programs.record({.project = compileProjectText(s.document->text()).bytes,
                                   .file = file,
                                   .stretch = from,
                                   .width = width,
                                   .height = height,
                                   .framesPerSecond = framesPerSecond}));
  s.changed = true;
}

void Session::playInPlayer() {
  State& s = *state;
  Project project = s.document->project();
  project.startTime = s.show->time();
  s.show->pause();
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

void Session::leave(bool keepsChanges) {
  State& s = *state;
  if (keepsChanges && !saved()) s.autosave.write(s.document->text());
  if (!keepsChanges && !s.questions.asks(Subject::leftText)) s.autosave.remove();
  s.programs.cancelRecording();
  s.show.reset();
}

}  // namespace vex::studio
