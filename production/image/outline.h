#pragma once

#include <string>
#include <vector>

#include "production/image/image.h"

// Text from outline fonts as closed polygons and as distances to their edges.

namespace vex::image {

struct FontFace {
  const char* file;           // path of the installed font
  const char* debianPackage;  // named when the file is missing
};

extern const FontFace blackletter;     // SIL Open Font Licence
extern const FontFace geometric;       // SIL Open Font Licence
extern const FontFace geometricLight;  // SIL Open Font Licence
extern const FontFace monospaced;      // Bitstream Vera licence

struct OutlineEdge {
  float x0, y0, x1, y1;
};

// A line of text whose baseline runs along y = 0 from x = 0, y down, 1 em high.
struct Lettering {
  std::vector<OutlineEdge> edges;                  // ink by non-zero winding
  float left = 0, right = 0, top = 0, bottom = 0;  // of the ink
};

// `spacing` in em is added after each letter. Fatal: "font %s not found, install the package %s".
Lettering setText(const FontFace& face, const std::string& text, float spacing);

// Moves and stretches; the box is kept in step.
Lettering placed(Lettering text, float scaleX, float scaleY, float x, float y);

// Signed distance to the ink's edge in texels (negative inside) on a grid on which the lettering lies in
// texels.
Field distanceTo(const Lettering& text, int width, int height);

// One glyph in 1-bit rendering: `height` rows of 8 flags, top first, baseline 2 rows above the bottom.
std::vector<bool> renderCell(const FontFace& face, int code, int height);

}  // namespace vex::image
