#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "authoring/picture_check.h"
#include "base/report.h"
#include "platform/replace_file.h"
#include "scenes/scene_tables.h"
#include "studio/session/session_state.h"

// What a session does by itself, in every frame of the window.

namespace vex::studio {

namespace {

constexpr auto judgedAfter = std::chrono::milliseconds(300);  // without an edit, where it takes long
constexpr auto judgedAtOnce = std::chrono::milliseconds(5);
constexpr auto autosavedAfter = std::chrono::seconds(30);
constexpr const char* compiledName = "test.hvp";

// As the file layer compares them.
bool sameFile(const std::string& a, const std::string& b) {
  const auto same = [](char x, char y) {
    const auto fold = [](char c) {
      return c == '/' ? '\\' : c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    };
    return fold(x) == fold(y);
  };
  return std::ranges::equal(a, b, same);
}

std::vector<Finding> findingsOf(const std::vector<TextProblem>& problems) {
  std::vector<Finding> findings;
  for (const TextProblem& problem : problems)
    findings.push_back({.line = problem.line, .text = problem.text, .hint = {}});
  return findings;
}

}  // namespace

std::string dataName(std::string path) {
  if (path.starts_with("./")) path.erase(0, 2);
  std::ranges::replace(path, '/', '\\');
  return path;
}

void Session::State::load(const std::function<void(int, const char*)>& progress) {
  shownRevision = document->revision();
  loadTrouble.reset();
  loadTrouble = show->load(document->project(), progress);
  opened = true;
  forgetCompiled();
  changed = true;
  if (loadTrouble) {
    tellTrouble(loadTrouble);
  } else {
    tell(Message::Kind::hint, show->soundMessage());
  }
}

// The archive holds anything: all of it, and back to where the show stood.
void Session::State::loadAnew() {
  const double before = show->time();
  load({});
  if (loadTrouble) return;
  tellTrouble(show->seek(before));
  readWaveform();
  if (message.kind == Message::Kind::none)
    tell(Message::Kind::hint, formatted("%s has changed: all was loaded anew.", archiveName));
}

void Session::State::judge() {
  judgedRevision = document->revision();
  changed = true;
  if (!document->problems().empty()) {
    findings = findingsOf(document->problems());
    return;
  }
  const Project& project = document->project();
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
  std::string names = document->project().music;
  for (const ProjectPart& part : document->project().parts)
    for (const ProjectCall& call : part.calls)
      for (const ProjectParameter& parameter : call.parameters)
        if (parameter.type == PARAM_STRING) names += '\n' + parameter.string;
  const std::uint64_t hash = std::hash<std::string>()(names);
  if (hash == namesJudged) return;
  namesJudged = hash;
  const FatalErrorsThrown thrown;
  try {
    dataFindings = checkData(document->project(), sceneEntries());
  } catch (const FatalError& error) {
    dataFindings = {{.text = error.what(), .hint = {}}};
  }
}

void Session::State::readWaveform() {
  waveformOf = document->project().music;
  waveform.read(waveformOf);
}

void Session::State::showEdits() {
  if (document->revision() != seenRevision) {
    seenRevision = document->revision();
    lastEdit = Clock::now();
    holdSelection();
    changed = true;
    textMistake = {};
    if (!document->problems().empty()) {
      const TextProblem& first = document->problems().front();
      textMistake = {Message::Kind::trouble, formatted("Line %d: %s", first.line, first.text.c_str()), {}};
    }
  }
  if (waveformOf != document->project().music) readWaveform();
  if (opened && !loadTrouble && document->problems().empty() && shownRevision != document->revision()) {
    shownRevision = document->revision();
    tellTrouble(show->setProject(document->project()));
  }
  if (judgedRevision == document->revision()) return;
  if (judgedIn > judgedAtOnce && Clock::now() - lastEdit < judgedAfter) return;
  const auto begun = Clock::now();
  judge();
  judgedIn = Clock::now() - begun;
  if (loadTrouble && shownRevision != document->revision()) load({});  // what was wrong may be right now
}

void Session::State::heedFiles() {
  std::vector<std::string> data;
  bool archive = false;
  for (const std::string& path : watch.changed()) {
    if (path == disk.path()) {
      textTouched = true;
    } else if (path == archiveName) {
      archive = true;
    } else {
      data.push_back(dataName(path));
      if (sameFile(data.back(), waveformOf)) readWaveform();
    }
  }
  if ((data.empty() && !archive) || !opened) return;
  namesJudged = 0;
  judgedRevision = never;
  changed = true;
  if (loadTrouble) return load({});  // what was missing may be there now
  if (archive) return loadAnew();
  if (const Trouble trouble = show->reload(data)) return tellTrouble(trouble);
  forgetCompiled();
  tell(Message::Kind::hint,
       formatted("%s was loaded anew%s.", data.front().c_str(), data.size() > 1 ? ", with others" : ""));
}

// Reading the text of a model leaves its compiled form beside it, which is no news.
void Session::State::forgetCompiled() {
  for (const std::string& path : watch.changed()) textTouched = textTouched || path == disk.path();
}

void Session::State::saveOnTheSide() {
  if (questions.asks(Subject::leftText) || Clock::now() - lastAutosave < autosavedAfter) return;
  lastAutosave = Clock::now();
  if (!document->saved() || textGone) tellTrouble(autosave.write(document->text()));
}

bool Session::State::compile() {
  const std::string bytes = compileProjectText(document->text()).bytes;
  if (bytes.empty()) {
    tellTrouble(formatted("The text is saved, but %s stays as it was: the show has mistakes.", compiledName));
    return false;
  }
  if (replaceFile(compiledName, bytes)) return true;
  tellTrouble(formatted("The text is saved, but can't write %s: %s", compiledName, std::strerror(errno)));
  return false;
}

bool Session::update() {
  State& s = *state;
  s.heedFiles();
  if (!s.inGesture && std::exchange(s.textTouched, false)) heedText();
  s.showEdits();
  s.saveOnTheSide();
  if (s.waveform.fresh()) {
    s.changed = true;
    if (!s.waveform.peaks() && !s.waveform.message().empty()) s.tellTrouble(s.waveform.message());
  }
  if (const auto news = s.programs.news())
    s.tell(news->trouble ? Message::Kind::trouble : Message::Kind::hint, news->text);
  return std::exchange(s.changed, false);
}

}  // namespace vex::studio
