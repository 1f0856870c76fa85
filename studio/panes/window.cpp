#include "studio/panes/window.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/report.h"
#include "platform/end_request.h"
#include "studio/panes/chooser.h"
#include "studio/panes/keys_page.h"
#include "studio/panes/look.h"
#include "studio/session/played_curve.h"

namespace vex::studio {

namespace {

constexpr double frameSeconds = 1.0 / 60;
constexpr int borderWidth = 5;
constexpr int framesPerSecondOfVideo = 30;
constexpr int listedFindings = 40;

// Letters of the same height on displays of other resolutions, in quarters.
double desktopScale() {
  float across = 96, down = 96;
  Fl::screen_dpi(across, down);
  return std::clamp(std::round(static_cast<double>(down) / 96 * 4) / 4, 1.0, 2.5);
}

bool isTyping() {
  return dynamic_cast<Fl_Input_*>(Fl::focus()) != nullptr;
}

}  // namespace

StudioWindow::StudioWindow(Session& shared)
    : Fl_Double_Window(1280, 720, "vexstudio"), session(shared), commands(allCommands()) {
  settings.read();
  setScale(settings.number("scale", desktopScale(), 0.7, 3));
  underShare = settings.number("under", underShare, 0.2, 0.85);
  besideShare = settings.number("beside", besideShare, 0.2, 0.85);
  betweenShare = settings.number("between", betweenShare, 0.15, 0.85);
  session.show().setRunIn(settings.number("runIn", 2, 0, 60));
  session.setCompilesOnSave(settings.number("compiles", 1, 0, 1) > 0);
  color(flColour(colour::ground));
  edit = new InlineEdit;
  Fl_Group::remove(edit);
  menus = new Fl_Menu_Bar(0, 0, 10, 10);
  picture = new PicturePane(session);
  transport = new TransportPane(session);
  calls = new CallsPane(session, *edit);
  curve = new CurvePane(session, *edit);
  timeLine = new TimeLinePane(session);
  messages = new MessageBar(session);
  add(edit);  // above all others
  end();
  picture->setAspect(static_cast<Aspect>(settings.number("aspect", 0, 0, 2)));
  timeLine->createPart = [this](double time, int track) { createPart(time, track); };
  timeLine->showPartMenu = [this] {
    switch (chooseEntry({"Split at the cursor", "Double", "Rename", "Delete"})) {
      case 0:
        splitPart();
        break;
      case 1:
        doublePart();
        break;
      case 2:
        calls->renamePart();
        break;
      case 3:
        removePart();
        break;
      default:
        break;
    }
  };
  calls->addCall = [this] {
    const auto seen = session.document().revision();
    const auto function = chooseFunction();
    if (function && stillSeen(seen))
      session.edit(session.document().addCall(session.selection().part, function->first, function->second));
  };
  calls->chooseKind = curve->chooseKind = [this](ParameterAt where) { chooseKind(where); };
  calls->chooseName = [this](ParameterAt where, ArgumentKind kind) {
    const bool movie = kind == ArgumentKind::movieName;
    const ProjectParameter* parameter = session.selectedParameter();
    if (!parameter) return;
    const auto seen = session.document().revision();
    const std::string now = parameter->string;
    const std::vector<std::string> names = movie ? session.movieNames() : session.textureNames();
    const auto pictureOf = [&](const std::string& of) { return movie ? session.firstFrame(of) : of; };
    const auto name = vex::studio::chooseName(movie ? "Movie" : "Picture", names, now, pictureOf);
    if (name && stillSeen(seen)) session.edit(session.document().setString(where, *name));
  };
  calls->chooseMusic = [this] {
    std::vector<std::string> names = session.musicNames();
    names.push_back("none");
    const auto seen = session.document().revision();
    const auto now = std::ranges::find(names, session.document().project().music);
    const int chosen = chooseEntry(names, static_cast<int>(now - names.begin()));
    if (chosen < 0 || !stillSeen(seen)) return;
    const bool none = chosen + 1 == static_cast<int>(names.size());
    session.edit(session.document().setMusic(none ? "" : names[static_cast<std::size_t>(chosen)]));
  };
  messages->listFindings = [this] { listFindings(); };
  fillMenus();
  callback([](Fl_Widget*, void* window) { static_cast<StudioWindow*>(window)->leave(); }, this);
  const int wide = static_cast<int>(settings.number("width", 1280, 640, 16384));
  const int high = static_cast<int>(settings.number("height", 720, 400, 16384));
  size_range(640, 400);
  resize(x(), y(), std::min(wide, Fl::w()), std::min(high, Fl::h()));
}

std::vector<Command> StudioWindow::allCommands() {
  const auto part = [this](auto act) {
    return [this, act] {
      if (session.selectedPart()) act();
    };
  };
  return {
      {"&File/&Open...", FL_CTRL + 'o', "Open another show's text", [this] { openText(); }},
      {"&File/&Save", FL_CTRL + 's', "Save the text, and compile it", [this] { session.save(); }},
      {"&File/Save &as...", FL_CTRL + FL_SHIFT + 's', "Save the text under another name",
       [this] { saveAs(); }},
      {"&File/_&Compile when saving", 0, "Write test.hvp with every save",
       [this] {
         session.setCompilesOnSave(!session.compilesOnSave());
         session.tell(Message::Kind::hint,
                      session.compilesOnSave() ? "Saving compiles, too." : "Saving writes the text alone.");
       },
       [this] { return session.compilesOnSave(); }},
      {"&File/&Record the whole...", FL_CTRL + 'r', "Record a video of the whole show",
       [this] { recordAsking(Session::Stretch::whole); }},
      {"&File/Record the &loop...", FL_CTRL + FL_SHIFT + 'r', "Record a video of the loop",
       [this] { recordAsking(Session::Stretch::loop); }},
      {"&File/Record from the c&ursor...", FL_CTRL + FL_ALT + 'r',
       "Record a video from the cursor to the end", [this] { recordAsking(Session::Stretch::toEnd); }},
      {"&File/Save a s&till", FL_F + 12, "Save the picture as a PNG beside the text",
       [this] { session.saveStill(picture->pixels(), picture->pictureWidth(), picture->pictureHeight()); }},
      {"&File/_&Play in the player", FL_CTRL + 'p', "Play from the cursor in the player",
       [this] { session.playInPlayer(); }},
      {"&File/&Quit", FL_CTRL + 'q', "Leave", [this] { leave(); }},
      {"&Edit/&Undo", FL_CTRL + 'z', "Undo", [this] { session.undo(); }},
      {"&Edit/_&Redo", FL_CTRL + 'y', "Redo", [this] { session.redo(); }},
      {"&Edit/&Rename part", FL_F + 2, "Rename the chosen part", part([this] { calls->renamePart(); })},
      {"&Edit/&Double part", FL_CTRL + 'd', "Double the chosen part, behind itself",
       part([this] { doublePart(); })},
      {"&Edit/S&plit part at the cursor", FL_CTRL + 'k', "Split the chosen part at the cursor",
       part([this] { splitPart(); })},
      {"&Edit/Dele&te part", FL_Delete, "Delete the chosen part", part([this] { removePart(); })},
      {"&Edit/_&New part at the cursor...", FL_CTRL + 'n', "Make a part at the cursor",
       [this] {
         createPart(session.show().time(), session.selectedPart() ? session.selectedPart()->track : 0);
       }},
      {"&Edit/A track &up", FL_CTRL + FL_Up,
       "The chosen part a track up, and there made when it is not there", part([this] { moveByTracks(-1); })},
      {"&Edit/_A track do&wn", FL_CTRL + FL_Down, "The chosen part a track down",
       part([this] { moveByTracks(1); })},
      {"&Edit/Set a &mark", 'm', "Set a mark at the cursor", [this] { addTick(); }},
      {"&Play/&Play or pause", ' ', "Play and pause", [this] { session.togglePlaying(); }},
      {"&Play/To the &beginning", FL_Home, "To the show's beginning",
       [this] { session.seek(session.document().project().startTime); }},
      {"&Play/_To the &end", FL_End, "To the show's last frame",
       [this] { session.seek(session.document().project().totalTime - frameSeconds); }},
      {"&Play/A frame back", FL_Left, "A frame back", [this] { stepTime(-1.0 / framesPerSecondOfVideo); }},
      {"&Play/A frame on", FL_Right, "A frame on", [this] { stepTime(1.0 / framesPerSecondOfVideo); }},
      {"&Play/A beat back", FL_SHIFT + FL_Left, "A beat back, or a second", [this] { stepBeats(-1); }},
      {"&Play/A beat on", FL_SHIFT + FL_Right, "A beat on, or a second", [this] { stepBeats(1); }},
      {"&Play/A bar back", FL_CTRL + FL_Left, "A bar back, or five seconds", [this] { stepBeats(-100); }},
      {"&Play/_A bar on", FL_CTRL + FL_Right, "A bar on, or five seconds", [this] { stepBeats(100); }},
      {"&Play/Mark before", FL_Page_Up, "To the mark before", [this] { jumpToTick(-1); }},
      {"&Play/_Mark behind", FL_Page_Down, "To the mark behind", [this] { jumpToTick(1); }},
      {"&Play/Loop begins here", '[', "The loop begins at the cursor", [this] { session.setLoopBegin(); }},
      {"&Play/Loop ends here", ']', "The loop ends at the cursor", [this] { session.setLoopEnd(); }},
      {"&Play/_No loop", '\\', "No loop", [this] { session.clearLoop(); }},
      {"&Play/Run in before a jump", 0, "Particles and water get two seconds of past before a jump",
       [this] {
         session.show().setRunIn(session.show().runIn() > 0 ? 0 : 2);
         session.tell(Message::Kind::hint,
                      session.show().runIn() > 0
                          ? "Jumps run in for two seconds: particles and water have their past."
                          : "Jumps show what a recording from there begins with.");
       },
       [this] { return session.show().runIn() > 0; }},
      {"&View/Picture alone", FL_F + 11, "The picture fills the window, and back",
       [this] { showPictureOnly(!pictureOnly); }, [this] { return pictureOnly; }},
      {"&View/16:9", 0, "Picture of 16:9", [this] { picture->setAspect(Aspect::wide); },
       [this] { return picture->aspect() == Aspect::wide; }},
      {"&View/4:3", 0, "Picture of 4:3", [this] { picture->setAspect(Aspect::narrow); },
       [this] { return picture->aspect() == Aspect::narrow; }},
      {"&View/_As large as its place", 0, "Picture as large as its place",
       [this] { picture->setAspect(Aspect::window); },
       [this] { return picture->aspect() == Aspect::window; }},
      {"&View/Time line closer", '=', "The time line closer", [this] { timeLine->zoomBy(0.8); }},
      {"&View/Time line farther", '-', "The time line farther", [this] { timeLine->zoomBy(1.25); }},
      {"&View/_The whole time line", '0', "The whole time line", [this] { timeLine->showAll(); }},
      {"&View/Time line back", ',', "Scroll the time line back", [this] { timeLine->scrollBy(-0.25); }},
      {"&View/_Time line on", '.', "Scroll the time line on", [this] { timeLine->scrollBy(0.25); }},
      {"&View/Larger letters", FL_CTRL + '=', "Larger letters", [this] { rescale(1.125); }},
      {"&View/Smaller letters", FL_CTRL + '-', "Smaller letters", [this] { rescale(1 / 1.125); }},
      {"&Help/&Keys", FL_F + 1, "This page", [this] { showKeys(); }},
  };
}

void StudioWindow::fillMenus() {
  menus->clear();
  menuItems.clear();
  menus->box(FL_FLAT_BOX);
  menus->color(flColour(colour::raised));
  menus->textsize(px(13));
  for (Command& command : commands) {
    std::string label = command.menu;
    const std::size_t word = label.rfind('/') + 1;
    const bool line = label[word] == '_';
    if (line) label.erase(word, 1);
    const int flags = (line ? FL_MENU_DIVIDER : 0) | (command.on ? FL_MENU_TOGGLE : 0);
    menuItems.push_back(menus->add(
        label.c_str(), command.shortcut,
        [](Fl_Widget*, void* run) { (*static_cast<std::function<void()>*>(run))(); }, &command.run, flags));
  }
  showSwitches();
}

void StudioWindow::showSwitches() {
  for (std::size_t n = 0; n < commands.size(); ++n) {
    if (!commands[n].on) continue;
    const int flags = menus->mode(menuItems[n]);
    menus->mode(menuItems[n], commands[n].on() ? flags | FL_MENU_VALUE : flags & ~FL_MENU_VALUE);
  }
}

void StudioWindow::open(const std::string& trouble) {
  show();
  wait_for_expose();
  Fl::check();
  session.tell(Message::Kind::hint, "Loading...");
  picture->notice = trouble.empty() ? picture->open() : trouble;
  if (picture->opened()) {
    session.open([this](int, const char* what) {
      session.tell(Message::Kind::hint, std::string("Loading: ") + what);
      messages->redraw();
      Fl::flush();  // no mouse and no keys before all is there
      picture->makeCurrent();
    });
  } else {
    session.tell(Message::Kind::trouble, picture->notice);
  }
  timeLine->showAll();
  Fl::add_timeout(
      frameSeconds, [](void* window) { static_cast<StudioWindow*>(window)->frame(); }, this);
}

void StudioWindow::frame() {
  if (!shown()) return;
  Fl::repeat_timeout(
      frameSeconds, [](void* window) { static_cast<StudioWindow*>(window)->frame(); }, this);
  if (endRequested()) return close(true);
  chooser.update();
  picture->makeCurrent();
  const bool changed = session.update(), playing = session.show().playing();
  if (changed || playing) picture->redrawPicture();
  if (changed) redrawPanes();
  if (!playing) return;
  transport->redraw();
  if (--framesUntilPanes > 0) return;
  framesUntilPanes = 3;  // what stands beside the picture needs no more than twenty a second
  timeLine->follow();
  calls->redraw();
  curve->redraw();
}

void StudioWindow::redrawPanes() {
  updateTitle();
  showSwitches();
  transport->pictureSize = formatted("%d × %d", picture->pictureWidth(), picture->pictureHeight());
  for (Fl_Widget* pane : std::initializer_list<Fl_Widget*>{transport, calls, curve, timeLine, messages})
    pane->redraw();
}

void StudioWindow::updateTitle() {
  copy_label(formatted("%s%s – vexstudio", session.saved() ? "" : "● ", session.fileName().c_str()).c_str());
}

void StudioWindow::resize(int left, int top, int width, int height) {
  Fl_Widget::resize(left, top, width, height);
  Fl_Double_Window::resize(left, top, width, height);
  layOut();
}

void StudioWindow::layOut() {
  edit->close(true);
  const int border = px(borderWidth), menuHeight = px(26), barHeight = px(26), transportHeight = px(28);
  const bool alone = pictureOnly;
  for (Fl_Widget* pane :
       std::initializer_list<Fl_Widget*>{menus, transport, calls, curve, timeLine, messages})
    alone ? pane->hide() : pane->show();
  if (alone) {
    picture->resize(0, 0, w(), h());
  } else {
    const int height = h() - menuHeight - barHeight;
    const int upper = static_cast<int>(height * underShare), left = static_cast<int>(w() * besideShare);
    const int rightTop = static_cast<int>(upper * betweenShare);
    menus->resize(0, 0, w(), menuHeight);
    picture->resize(0, menuHeight, left, upper - transportHeight);
    transport->resize(0, menuHeight + upper - transportHeight, left, transportHeight);
    calls->resize(left + border, menuHeight, w() - left - border, rightTop);
    curve->resize(left + border, menuHeight + rightTop + border, w() - left - border,
                  upper - rightTop - border);
    timeLine->resize(0, menuHeight + upper + border, w(), height - upper - border);
    messages->resize(0, h() - barHeight, w(), barHeight);
  }
  redrawPanes();
  picture->redrawPicture();
  redraw();
}

void StudioWindow::draw() {
  Fl_Double_Window::draw();
}

StudioWindow::Border StudioWindow::borderAt(int mouseX, int mouseY) const {
  if (pictureOnly) return Border::none;
  const int reach = px(borderWidth);
  if (mouseY >= timeLine->y() - reach - 1 && mouseY < timeLine->y()) return Border::under;
  if (mouseY < timeLine->y() && mouseY > menus->h()) {
    if (mouseX >= calls->x() - reach - 1 && mouseX < calls->x()) return Border::beside;
    if (mouseX >= calls->x() && mouseY >= curve->y() - reach - 1 && mouseY < curve->y())
      return Border::between;
  }
  return Border::none;
}

bool StudioWindow::inGesture() const {
  return session.inGesture() || dragged != Border::none;
}

// The menus have keys before the panes do, but for one who types; while the mouse drags something only Escape
// counts.
bool StudioWindow::takesKey() {
  const int key = Fl::event_key();
  if (inGesture()) {
    if (key != FL_Escape) return true;
    calls->cancel();
    curve->cancel();
    timeLine->cancel();
    return true;
  }
  if (isTyping()) {
    // Commands of files take what is typed, too.
    if (!Fl::event_ctrl() || (key != 's' && key != 'q' && key != 'p' && key != 'r' && key != 'o'))
      return false;
    edit->close(true);
  }
  if (Fl::event_alt() && key >= '1' && key <= '9' && !session.message().answers.empty()) {
    session.answer(static_cast<std::size_t>(key - '1'));
    return true;
  }
  if (key == FL_Escape) {
    if (pictureOnly) showPictureOnly(false);
    return true;
  }
  if (key == FL_Delete && Fl::focus() == curve && session.selection().dot >= 0) return false;  // the curve's
  return menus->test_shortcut() != nullptr;
}

int StudioWindow::handle(int event) {
  switch (event) {
    case FL_KEYBOARD:
    case FL_SHORTCUT:
      if (takesKey()) return 1;
      break;
    case FL_MOVE: {
      const Border border = borderAt(Fl::event_x(), Fl::event_y());
      if (border != Border::none) {
        cursor(border == Border::beside ? FL_CURSOR_WE : FL_CURSOR_NS);
        return 1;
      }
      break;
    }
    case FL_PUSH:
      if (edit->visible() && !Fl::event_inside(edit)) edit->close(true);
      dragged = borderAt(Fl::event_x(), Fl::event_y());
      if (dragged != Border::none) return 1;
      break;
    case FL_DRAG: {
      if (dragged == Border::none) break;
      const double height = h() - menus->h() - messages->h();
      if (dragged == Border::under) underShare = std::clamp((Fl::event_y() - menus->h()) / height, 0.2, 0.85);
      if (dragged == Border::beside)
        besideShare = std::clamp(static_cast<double>(Fl::event_x()) / w(), 0.2, 0.85);
      if (dragged == Border::between)
        betweenShare = std::clamp((Fl::event_y() - menus->h()) / (height * underShare), 0.15, 0.85);
      layOut();
      return 1;
    }
    case FL_RELEASE:
      if (std::exchange(dragged, Border::none) != Border::none) return 1;
      break;
    default:
      break;
  }
  return Fl_Double_Window::handle(event);
}

void StudioWindow::rescale(double factor) {
  setScale(scale() * factor);
  fillMenus();
  layOut();
}

void StudioWindow::showPictureOnly(bool only) {
  pictureOnly = only;
  layOut();
}

void StudioWindow::close(bool keepsChanges) {
  settings.set("under", underShare);
  settings.set("beside", besideShare);
  settings.set("between", betweenShare);
  settings.set("scale", scale());
  settings.set("width", w());
  settings.set("height", h());
  settings.set("aspect", static_cast<int>(picture->aspect()));
  settings.set("runIn", session.show().runIn());
  settings.set("compiles", session.compilesOnSave());
  settings.write();
  picture->makeCurrent();
  session.leave(keepsChanges);
  hide();
}

void StudioWindow::leave() {
  edit->close(true);
  if (pictureOnly) showPictureOnly(false);
  if (session.recorded()) {
    return session.ask(Subject::recording, "A recording runs.",
                       {{"Stop it and leave",
                         [this] {
                           session.cancelRecording();
                           if (session.saved())
                             close(false);
                           else
                             askOfChanges();
                         }},
                        {"Stay", [] {}}});
  }
  if (session.saved()) return close(false);
  askOfChanges();
}

void StudioWindow::askOfChanges() {
  session.ask(Subject::unsaved, session.fileName() + " has changes that are not saved.",
              {{"Save and leave",
                [this] {
                  if (session.save()) close(false);
                }},
               {"Leave without them", [this] { close(false); }},
               {"Stay", [] {}}});
}

void StudioWindow::openText() {
  chooseFile({FileChooser::Kind::open, "Open a show's text", "Shows\t*.txt", session.folder(), ""},
             [this](const std::string& file) { session.openText(file); });
}

void StudioWindow::chooseFile(const FileChooser::Question& question,
                              std::function<void(const std::string&)> take) {
  if (const auto refusal = chooser.ask(question, std::move(take)))
    session.tell(Message::Kind::trouble, *refusal);
}

void StudioWindow::saveAs() {
  chooseFile({FileChooser::Kind::save, "Save the show's text as", "Shows\t*.txt", session.folder(),
              session.fileName()},
             [this](const std::string& file) { session.saveAs(file); });
}

void StudioWindow::recordAsking(Session::Stretch stretch) {
  chooseFile({FileChooser::Kind::save, "Record to", "Videos\t*.{mp4,mkv}", session.folder(), "show.mp4"},
             [this, stretch](const std::string& file) {
               const bool narrow = picture->aspect() == Aspect::narrow;
               session.record(stretch, file, narrow ? 960 : 1280, 720, framesPerSecondOfVideo);
             });
}

void StudioWindow::stepTime(double seconds) {
  session.seek(session.show().time() + seconds);
  timeLine->follow();
}

// 100 stands for a bar.
void StudioWindow::stepBeats(double beats) {
  const auto tempo = session.document().tempo();
  const bool bar = std::abs(beats) == 100;
  const double sign = beats < 0 ? -1 : 1, now = session.show().time();
  if (!tempo) return stepTime(sign * (bar ? 5 : 1));
  const double step = tempo->seconds(bar ? 1 : 0, bar ? 0 : 1), place = (now - tempo->origin) / step;
  // To the next line, not a step on from between two.
  const double next = sign > 0 ? std::floor(place + 1e-3) + 1 : std::ceil(place - 1e-3) - 1;
  stepTime(tempo->origin + next * step - now);
}

void StudioWindow::jumpToTick(int direction) {
  const double now = session.show().time();
  std::optional<double> best;
  for (const double tick : session.document().project().ticks) {
    const double ahead = (tick - now) * direction;
    if (ahead > 1e-3 && (!best || ahead < (*best - now) * direction)) best = tick;
  }
  if (!best)
    return session.tell(Message::Kind::hint, direction > 0 ? "No mark lies behind the cursor."
                                                           : "No mark lies before the cursor.");
  stepTime(*best - now);
}

void StudioWindow::addTick() {
  const double time = session.show().time();
  session.tell(Message::Kind::hint, "Type the mark's name, or only Enter; Escape sets none.");
  edit->open(
      messages->x() + px(8), messages->y() - px(30), px(320), px(26), "",
      [this, time](const std::string& name) { session.edit(session.document().addTick(time, name)); }, true);
}

void StudioWindow::createPart(double time, int track) {
  const auto seen = session.document().revision();
  const auto function = chooseFunction();
  if (!function || !stillSeen(seen)) return;
  const auto tempo = session.document().tempo();
  session.editPart(session.document().createPart(time, tempo ? tempo->seconds(2, 0) : 4, track,
                                                 function->first, function->second));
}

void StudioWindow::doublePart() {
  const ProjectPart* part = session.selectedPart();
  if (part)
    session.editPart(
        session.document().doublePart(session.selection().part, part->pos + part->length, part->track));
}

void StudioWindow::splitPart() {
  session.editPart(session.document().splitPart(session.selection().part, session.show().time()));
}

void StudioWindow::moveByTracks(int tracks) {
  const ProjectPart* part = session.selectedPart();
  const int track = std::clamp(part->track + tracks, -128, 127);
  if (session.editPart(session.document().movePart(session.selection().part, part->pos, track)))
    timeLine->reveal(session.selection().part);
}

void StudioWindow::removePart() {
  const int part = session.selection().part;
  session.select({});
  session.editPart(session.document().removePart(part));
  session.select({});
}

void StudioWindow::chooseKind(ParameterAt where) {
  const ProjectParameter* parameter = session.selectedParameter();
  if (!parameter || parameter->type == PARAM_STRING) return;
  const auto seen = session.document().revision();
  const int now = parameter->type;
  const double progress = std::clamp(progressAt(*session.selectedPart(), session.show().time()), 0.0, 1.0);
  const int kind = chooseEntry({"constant", "linear", "spline", "sine"}, now);
  if (kind >= 0 && kind != now && stillSeen(seen))
    session.edit(session.document().setKind(where, static_cast<ParameterType>(kind), progress));
}

// The text may have been changed by others while a menu was open.
bool StudioWindow::stillSeen(std::uint64_t revision) {
  if (session.document().revision() == revision) return true;
  session.tell(Message::Kind::trouble, "The text changed meanwhile; nothing was taken.");
  return false;
}

void StudioWindow::listFindings() {
  const std::vector<Finding> findings = session.findings();
  std::vector<std::string> entries;
  for (const Finding& finding : findings) {
    if (entries.size() == listedFindings) break;
    std::string text = formatted("%s%s%s%s", finding.remark ? "remark: " : "", finding.text.c_str(),
                                 finding.hint.empty() ? "" : "; ", finding.hint.c_str());
    entries.push_back(std::move(text));
  }
  if (entries.empty()) return;
  const auto seen = session.document().revision();
  const int chosen = chooseEntry(entries);
  if (chosen < 0 || !stillSeen(seen)) return;
  const Finding& finding = findings[static_cast<std::size_t>(chosen)];
  session.tell(finding.remark ? Message::Kind::hint : Message::Kind::trouble,
               entries[static_cast<std::size_t>(chosen)]);
  const auto& parts = session.document().project().parts;
  if (finding.part < 0 || static_cast<std::size_t>(finding.part) >= parts.size()) return;
  session.select({finding.part, 0, -1, -1});
  session.seek(parts[static_cast<std::size_t>(finding.part)].pos);
  timeLine->reveal(finding.part);
}

void StudioWindow::showKeys() {
  showKeysPage(commands);
}

}  // namespace vex::studio
