#pragma once

#include <FL/Enumerations.H>

#include <string>
#include <string_view>

#include "platform/look.h"

// Colours, sizes and letters of the studio's window: bone on ink, one acid green for what is chosen or moves.

namespace vex::studio {

namespace colour {
inline constexpr std::uint32_t ground = 0x14130F;
inline constexpr std::uint32_t pane = 0x1B1A16;
inline constexpr std::uint32_t raised = 0x282620;
inline constexpr std::uint32_t edge = 0x3A372F;
inline constexpr std::uint32_t faint = 0x6B675B;
inline constexpr std::uint32_t dim = 0xA29C8B;
inline constexpr std::uint32_t text = 0xEAE3D2;
inline constexpr std::uint32_t chosen = 0xB6EE22;
inline constexpr std::uint32_t cursor = 0xFF6A3D;
inline constexpr std::uint32_t trouble = 0xFF5B4A;
inline constexpr std::uint32_t remark = 0xE8B34B;
inline constexpr std::uint32_t wave = 0x6F8F9A;
inline constexpr std::uint32_t loop = 0x36401C;
}  // namespace colour

// `share` of `over` on `under`; 0 to 1.
std::uint32_t blended(std::uint32_t under, std::uint32_t over, double share);

// A steady colour for a scene's name: neighbours of the list of scenes differ.
std::uint32_t sceneColour(std::string_view scene);

// Colours of the toolkit's own widgets. A display must be reachable.
void prepareLook();

// The window's scale: 1 is 13 pixels of letters. The window must be laid out anew after a change.
double scale();
void setScale(double factor);  // held to 0.7 to 3
int px(double length);         // in pixels, of a length at scale 1

void setDrawColour(std::uint32_t rgb);
void useFont(bool bold = false, double size = 13);
int lineHeight();  // of a row of text with its air

// Text within a width, cut with "…" where it is longer; its baseline is centred in the height.
void drawText(std::string_view text, int x, int y, int width, int height, Fl_Align align = FL_ALIGN_LEFT);
int textWidth(std::string_view text);

}  // namespace vex::studio
