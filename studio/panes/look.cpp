#include "studio/panes/look.h"

#include <FL/Fl.H>
#include <FL/Fl_Tooltip.H>
#include <FL/fl_draw.H>

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/dialog_window.h"
#include "scenes/scene_tables.h"

namespace vex::studio {

namespace {

double windowScale = 1;

void setFlColour(Fl_Color index, std::uint32_t rgb) {
  Fl::set_color(index, static_cast<uchar>(rgb >> 16), static_cast<uchar>(rgb >> 8), static_cast<uchar>(rgb));
}

// Bytes of UTF-8 characters that go on.
bool goesOn(char c) {
  return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

}  // namespace

std::uint32_t blended(std::uint32_t under, std::uint32_t over, double share) {
  std::uint32_t mixed = 0;
  for (const int shift : {16, 8, 0}) {
    const double a = under >> shift & 255, b = over >> shift & 255;
    mixed |= static_cast<std::uint32_t>(std::lround(a + (b - a) * share)) << shift;
  }
  return mixed;
}

std::uint32_t sceneColour(std::string_view scene) {
  static constexpr std::array<std::uint32_t, 13> hues{0x8E8A7C, 0xC9824A, 0x5E9C76, 0x7C6FB0, 0xB0584F,
                                                      0x4F8FA8, 0xB59A3F, 0x9A5C86, 0x6C9147, 0x4F6FA8,
                                                      0xA8754F, 0x4FA39A, 0x8F5CA8};
  std::size_t i = 0;
  for (const SceneEntry& entry : sceneEntries()) {
    if (entry.name == scene) return hues[i % hues.size()];
    ++i;
  }
  return colour::faint;
}

void prepareLook() {
  prepareDialogs();
  setFlColour(FL_BACKGROUND_COLOR, colour::raised);
  Fl::background(colour::raised >> 16, colour::raised >> 8 & 255, colour::raised & 255);
  Fl::background2(colour::ground >> 16, colour::ground >> 8 & 255, colour::ground & 255);
  Fl::foreground(colour::text >> 16, colour::text >> 8 & 255, colour::text & 255);
  setFlColour(FL_INACTIVE_COLOR, colour::faint);
  Fl::scheme("none");
  setFlColour(FL_SELECTION_COLOR, colour::chosen);  // bright, or the toolkit takes white
  Fl::set_boxtype(FL_UP_BOX, FL_FLAT_BOX);
  Fl::visible_focus(0);
  Fl_Tooltip::color(flColour(colour::edge));
  Fl_Tooltip::textcolor(flColour(colour::text));
  Fl_Tooltip::delay(0.4f);
  setScale(windowScale);
}

double scale() {
  return windowScale;
}

void setScale(double factor) {
  windowScale = std::clamp(factor, 0.7, 3.0);
  FL_NORMAL_SIZE = px(13);
  Fl_Tooltip::size(px(12));
}

int px(double length) {
  return static_cast<int>(std::lround(length * windowScale));
}

void setDrawColour(std::uint32_t rgb) {
  fl_color(static_cast<uchar>(rgb >> 16), static_cast<uchar>(rgb >> 8), static_cast<uchar>(rgb));
}

void useFont(bool bold, double size) {
  fl_font(bold ? FL_HELVETICA_BOLD : FL_HELVETICA, px(size));
}

int lineHeight() {
  return px(22);
}

int textWidth(std::string_view text) {
  return static_cast<int>(std::ceil(fl_width(text.data(), static_cast<int>(text.size()))));
}

void drawText(std::string_view text, int x, int y, int width, int height, Fl_Align align) {
  static constexpr std::string_view dots = "…";
  std::string shown(text);
  int wide = textWidth(shown);
  if (wide > width) {
    std::string_view rest = text;
    while (!rest.empty() && wide > width) {
      do rest.remove_suffix(1);
      while (!rest.empty() && goesOn(text[rest.size()]));
      shown = std::string(rest) + std::string(dots);
      wide = textWidth(shown);
    }
    if (rest.empty()) return;
  }
  const int left = align & FL_ALIGN_RIGHT  ? x + width - wide
                   : align & FL_ALIGN_LEFT ? x
                                           : x + (width - wide) / 2;
  const int baseline = y + (height + fl_height()) / 2 - fl_descent();
  fl_draw(shown.c_str(), static_cast<int>(shown.size()), left, baseline);
}

}  // namespace vex::studio
