#pragma once

#include <FL/Fl_Double_Window.H>
#include <FL/Fl_Menu_Bar.H>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "studio/panes/calls_pane.h"
#include "studio/panes/curve_pane.h"
#include "studio/panes/file_chooser.h"
#include "studio/panes/inline_edit.h"
#include "studio/panes/message_bar.h"
#include "studio/panes/picture_pane.h"
#include "studio/panes/time_line_pane.h"
#include "studio/panes/transport_pane.h"
#include "studio/session/settings.h"

namespace vex::studio {

// What can be asked of the studio: an entry of its menus and of the page of keys.
struct Command {
  const char* menu;  // "File/Save"; a leading underscore of the last word draws a line below it
  int shortcut;
  const char* does;  // for the page of keys
  std::function<void()> run;
  std::function<bool()> on = nullptr;  // of a switch: whether it is
};

// The studio's one window: menus, the four panes with borders that can be dragged, the line of messages.
class StudioWindow : public Fl_Double_Window {
 public:
  explicit StudioWindow(Session& shared);

  // Shows it, opens the picture and loads the show; only says so where `trouble` tells why there can be none.
  // Then Fl::run() is all that is left to do.
  void open(const std::string& trouble);

 protected:
  void resize(int x, int y, int width, int height) override;
  int handle(int event) override;
  void draw() override;

 private:
  enum class Border : std::int8_t { none, under, beside, between };  // the picture, it, calls and curve

  Session& session;
  Settings settings;
  std::vector<Command> commands;
  std::vector<int> menuItems;  // of the commands
  Fl_Menu_Bar* menus;
  PicturePane* picture;
  TransportPane* transport;
  CallsPane* calls;
  CurvePane* curve;
  TimeLinePane* timeLine;
  MessageBar* messages;
  InlineEdit* edit;
  double underShare = 0.62;    // of the height, of what lies above the time line
  double besideShare = 0.62;   // of the width, of the picture
  double betweenShare = 0.62;  // of the right side's height, of the calls
  Border dragged = Border::none;
  bool pictureOnly = false;
  int framesUntilPanes = 0;
  FileChooser chooser;

  std::vector<Command> allCommands();
  void fillMenus();
  void showSwitches();
  bool takesKey();
  bool inGesture() const;
  void layOut();
  Border borderAt(int x, int y) const;
  void rescale(double factor);
  void showPictureOnly(bool only);
  void frame();
  void leave();
  void close(bool keepsChanges);
  void updateTitle();
  void redrawPanes();

  void chooseFile(const FileChooser::Question& question, std::function<void(const std::string&)> take);
  void openText();
  void saveAs();
  void recordAsking(Session::Stretch stretch);
  void stepTime(double seconds);
  void stepBeats(double beats);
  void jumpToTick(int direction);
  void addTick();
  void createPart(double time, int track);
  void doublePart();
  void splitPart();
  void moveByTracks(int tracks);
  void removePart();
  void chooseKind(ParameterAt where);
  bool stillSeen(std::uint64_t revision);
  void askOfChanges();
  void listFindings();
  void showKeys();
};

}  // namespace vex::studio
