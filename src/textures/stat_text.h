#pragma once

// Figures over the picture, in a fixed font on a grid of 60 columns and 30 lines that covers the
// viewport. All of it does nothing while options().showStats is off.

namespace vex {

// Loads the font into the texture cache as "statFont". The file is a raw picture of 8 x 8 characters
// in code order from 0, 8 pixels wide, 3 bytes per pixel, rows from top to bottom; where red is 255
// there is ink. Codes 32 to 127 are used. Fatal: a missing file or one that ends too early.
void loadStatFont(const char* file);

// One line of text up to the first line feed or carriage return, at most 511 characters, its first
// character in cell (column, line); line 0 is the top one. Drawn in normalized device coordinates
// under the current matrices. Characters outside the codes 32 to 127 leave their cell empty.
[[gnu::format(printf, 3, 4)]] void drawText(int column, int line, const char* format, ...);

}  // namespace vex
