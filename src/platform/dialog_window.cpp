#include "platform/dialog_window.h"

#include <FL/Fl.H>
#include <FL/Fl_RGB_Image.H>
#include <FL/Fl_Window.H>
#include <FL/x.H>

#include <chrono>
#include <clocale>
#include <deque>
#include <vector>

#include "platform/end_request.h"
#include "platform/icon_image.h"
#include "platform/player_window.h"
#include "platform/server_loss.h"
#include "resources/icon.h"

namespace vex {

namespace {

struct Area {
  int x, y, width, height;
};

void setDefaultIcons() {
  constexpr int sizes[] = {16, 32, 48, 64};
  std::deque<std::vector<uchar>> pixels;
  std::deque<Fl_RGB_Image> images;
  std::vector<const Fl_RGB_Image*> pointers;
  for (const int size : sizes) {
    std::vector<uchar>& bytes = pixels.emplace_back();  // red, green, blue, alpha
    for (const std::uint32_t argb : drawIcon(size)) {
      for (const int shift : {16, 8, 0, 24}) bytes.push_back(static_cast<uchar>(argb >> shift));
    }
    pointers.push_back(&images.emplace_back(bytes.data(), size, size, 4));
  }
  Fl_Window::default_icons(pointers.data(), static_cast<int>(pointers.size()));  // copies them
}

// The mode of a covered screen may differ from the one that FLTK saw first: ask the window.
Area coveredArea() {
  Area area{0, 0, Fl::w(), Fl::h()};
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(fl_display, playerWindow.handle, &attributes)) return area;
  Window child;
  XTranslateCoordinates(fl_display, playerWindow.handle, attributes.root, 0, 0, &area.x, &area.y, &child);
  return {area.x, area.y, attributes.width, attributes.height};
}

Area placingArea() {
  if (playerWindow.fullscreen) return coveredArea();
  Area area;
  Fl::screen_work_area(area.x, area.y, area.width, area.height);
  return area;
}

bool isViewable(const Fl_Window& window) {
  XWindowAttributes attributes;
  return XGetWindowAttributes(fl_display, fl_xid(&window), &attributes) && attributes.map_state == IsViewable;
}

// The toolkit's own wait is for the first exposure, which never comes to a window that another one
// covers, a lock screen's for instance.
void waitUntilViewable(const Fl_Window& window) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
  while (!isViewable(window) && !endRequested() && std::chrono::steady_clock::now() < deadline)
    Fl::wait(0.02);
  Fl::check();  // paints it
}

}  // namespace

void prepareDialogs() {
  static bool prepared = false;
  if (prepared) return;
  prepared = true;
  fl_open_display();
  endWithServer();
  std::setlocale(LC_CTYPE, "C");  // the toolkit took the user's, in some of which I and i are no pair
  FL_NORMAL_SIZE = 13;
  Fl::set_font(FL_HELVETICA, " DejaVu Sans");
  Fl::set_font(FL_HELVETICA_BOLD, "BDejaVu Sans");
  Fl::scheme("gtk+");
  Fl::background(0xEE, 0xEA, 0xE1);
  Fl::background2(0xFB, 0xF9, 0xF4);
  Fl::foreground(icon::inkBlack >> 16, icon::inkBlack >> 8 & 255, icon::inkBlack & 255);
  Fl::set_color(FL_SELECTION_COLOR, icon::inkBlack >> 16, icon::inkBlack >> 8 & 255, icon::inkBlack & 255);
  setDefaultIcons();
}

void showDialog(Fl_Window& window) {
  const Area area = placingArea();
  window.position(area.x + (area.width - window.w()) / 2, area.y + (area.height - window.h()) / 2);
  window.box(FL_BORDER_BOX);
  if (playerWindow.fullscreen) window.set_override();
  window.show();
  if (playerWindow.handle) XSetTransientForHint(fl_display, fl_xid(&window), playerWindow.handle);
  waitUntilViewable(window);
  if (playerWindow.fullscreen) {
    XStoreName(fl_display, fl_xid(&window), window.label());  // the toolkit leaves such windows unnamed
    XRaiseWindow(fl_display, fl_xid(&window));
  }
  Fl::flush();
}

KeyboardLoan::KeyboardLoan(Fl_Window& borrower) {
  releaseGrabs();
  XGetInputFocus(fl_display, &lender, &revertTo);
  if (playerWindow.fullscreen) lender = playerWindow.handle;  // had it by a grab, not by focus
  XSetInputFocus(fl_display, fl_xid(&borrower), RevertToPointerRoot, CurrentTime);
  XFlush(fl_display);
}

KeyboardLoan::~KeyboardLoan() {
  // The lender may have gone meanwhile: FLTK's error handler takes the answer.
  XSetInputFocus(fl_display, lender, revertTo, CurrentTime);
  XSync(fl_display, False);
  restoreGrabs();
}

}  // namespace vex
