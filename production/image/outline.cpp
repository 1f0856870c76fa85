#include "production/image/outline.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <memory>

#include "base/report.h"

namespace vex::image {

const FontFace blackletter{"/usr/share/fonts/truetype/blankenburg/Blankenburg_UNZ1A.ttf",
                           "fonts-blankenburg"};
const FontFace geometric{"/usr/share/fonts/opentype/league-spartan/LeagueSpartan-Regular.otf",
                         "fonts-league-spartan"};
const FontFace geometricLight{"/usr/share/fonts/opentype/league-spartan/LeagueSpartan-Light.otf",
                              "fonts-league-spartan"};
const FontFace monospaced{"/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Bold.ttf", "fonts-dejavu-core"};

namespace {

constexpr int curveSteps = 12;

// A library for each use: FreeType's objects must not be shared between the workers.
struct OpenFace {
  FT_Library library = nullptr;
  FT_Face face = nullptr;

  explicit OpenFace(const FontFace& font) {
    if (FT_Init_FreeType(&library) != 0) fatalError("FreeType does not start");
    if (FT_New_Face(library, font.file, 0, &face) != 0)
      fatalError("font %s not found, install the package %s", font.file, font.debianPackage);
  }
  OpenFace(const OpenFace&) = delete;
  OpenFace& operator=(const OpenFace&) = delete;
  ~OpenFace() {
    FT_Done_Face(face);
    FT_Done_FreeType(library);
  }
};

// Collects an outline's curves as short edges; font units divided by the em.
struct Pen {
  std::vector<OutlineEdge>& edges;
  float unit, x;
  float startX = 0, startY = 0, lastX = 0, lastY = 0;

  float across(const FT_Vector* p) const { return x + static_cast<float>(p->x) * unit; }
  float down(const FT_Vector* p) const { return -static_cast<float>(p->y) * unit; }
  void lineTo(float toX, float toY) {
    edges.push_back({lastX, lastY, toX, toY});
    lastX = toX, lastY = toY;
  }
  void close() {
    if (lastX != startX || lastY != startY) lineTo(startX, startY);
  }
};

int moveTo(const FT_Vector* to, void* user) {
  Pen& pen = *static_cast<Pen*>(user);
  pen.close();
  pen.startX = pen.lastX = pen.across(to);
  pen.startY = pen.lastY = pen.down(to);
  return 0;
}

int lineTo(const FT_Vector* to, void* user) {
  Pen& pen = *static_cast<Pen*>(user);
  pen.lineTo(pen.across(to), pen.down(to));
  return 0;
}

int conicTo(const FT_Vector* control, const FT_Vector* to, void* user) {
  Pen& pen = *static_cast<Pen*>(user);
  const float x0 = pen.lastX, y0 = pen.lastY;
  for (int i = 1; i <= curveSteps; ++i) {
    const float t = static_cast<float>(i) / curveSteps, s = 1 - t;
    pen.lineTo(s * s * x0 + 2 * s * t * pen.across(control) + t * t * pen.across(to),
               s * s * y0 + 2 * s * t * pen.down(control) + t * t * pen.down(to));
  }
  return 0;
}

int cubicTo(const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* user) {
  Pen& pen = *static_cast<Pen*>(user);
  const float x0 = pen.lastX, y0 = pen.lastY;
  for (int i = 1; i <= curveSteps; ++i) {
    const float t = static_cast<float>(i) / curveSteps, s = 1 - t;
    const float a = s * s * s, b = 3 * s * s * t, c = 3 * s * t * t, d = t * t * t;
    pen.lineTo(a * x0 + b * pen.across(first) + c * pen.across(second) + d * pen.across(to),
               a * y0 + b * pen.down(first) + c * pen.down(second) + d * pen.down(to));
  }
  return 0;
}

void measure(Lettering& text) {
  text.left = text.top = 1e9f;
  text.right = text.bottom = -1e9f;
  for (const OutlineEdge& edge : text.edges) {
    text.left = std::min(text.left, edge.x0);
    text.right = std::max(text.right, edge.x0);
    text.top = std::min(text.top, edge.y0);
    text.bottom = std::max(text.bottom, edge.y0);
  }
}

}  // namespace

Lettering setText(const FontFace& face, const std::string& text, float spacing) {
  const OpenFace open(face);
  const float unit = 1.0f / static_cast<float>(open.face->units_per_EM);
  FT_Outline_Funcs functions{};
  functions.move_to = moveTo;
  functions.line_to = lineTo;
  functions.conic_to = conicTo;
  functions.cubic_to = cubicTo;
  Lettering result;
  float x = 0;
  FT_UInt previous = 0;
  for (const char letter : text) {
    const FT_UInt glyph =
        FT_Get_Char_Index(open.face, static_cast<FT_ULong>(static_cast<unsigned char>(letter)));
    if (FT_Load_Glyph(open.face, glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) != 0)
      fatalError("font %s has no letter %c", face.file, letter);
    FT_Vector kerning{};
    if (previous != 0) FT_Get_Kerning(open.face, previous, glyph, FT_KERNING_UNSCALED, &kerning);
    x += static_cast<float>(kerning.x) * unit;
    Pen pen{result.edges, unit, x};
    FT_Outline_Decompose(&open.face->glyph->outline, &functions, &pen);
    pen.close();
    x += static_cast<float>(open.face->glyph->advance.x) * unit + spacing;
    previous = glyph;
  }
  measure(result);
  return result;
}

Lettering placed(Lettering text, float scaleX, float scaleY, float x, float y) {
  for (OutlineEdge& edge : text.edges)
    edge = {edge.x0 * scaleX + x, edge.y0 * scaleY + y, edge.x1 * scaleX + x, edge.y1 * scaleY + y};
  measure(text);
  return text;
}

Field distanceTo(const Lettering& text, int width, int height) {
  Field field(width, height);
  for (int row = 0; row < height; ++row)
    for (int column = 0; column < width; ++column) {
      const float x = static_cast<float>(column) + 0.5f, y = static_cast<float>(row) + 0.5f;
      float nearest = 1e12f;
      int winding = 0;
      for (const OutlineEdge& edge : text.edges) {
        const float dx = edge.x1 - edge.x0, dy = edge.y1 - edge.y0;
        const float length = dx * dx + dy * dy;
        const float t =
            length > 0 ? std::clamp(((x - edge.x0) * dx + (y - edge.y0) * dy) / length, 0.0f, 1.0f) : 0.0f;
        const float px = x - edge.x0 - t * dx, py = y - edge.y0 - t * dy;
        nearest = std::min(nearest, px * px + py * py);
        if ((edge.y0 <= y) != (edge.y1 <= y) && edge.x0 + (y - edge.y0) / dy * dx > x)
          winding += dy > 0 ? 1 : -1;
      }
      field.at(column, row) = winding != 0 ? -std::sqrt(nearest) : std::sqrt(nearest);
    }
  return field;
}

std::vector<bool> renderCell(const FontFace& face, int code, int height) {
  std::vector<bool> cell(static_cast<std::size_t>(8 * height), false);
  const OpenFace open(face);
  FT_Set_Pixel_Sizes(open.face, 0, static_cast<FT_UInt>(height));
  if (FT_Load_Char(open.face, static_cast<FT_ULong>(code), FT_LOAD_RENDER | FT_LOAD_TARGET_MONO) != 0)
    return cell;
  const FT_GlyphSlot slot = open.face->glyph;
  for (int row = 0; row < static_cast<int>(slot->bitmap.rows); ++row)
    for (int column = 0; column < static_cast<int>(slot->bitmap.width); ++column) {
      const unsigned char byte = slot->bitmap.buffer[row * slot->bitmap.pitch + column / 8];
      const int x = slot->bitmap_left + column + 1, y = height - 2 - slot->bitmap_top + row;
      if ((byte >> (7 - column % 8) & 1) != 0 && x >= 0 && x < 8 && y >= 0 && y < height)
        cell[static_cast<std::size_t>(y * 8 + x)] = true;
    }
  return cell;
}

}  // namespace vex::image
