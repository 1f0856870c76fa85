#include "textures/stat_text.h"

#include <GL/gl.h>

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "base/files.h"
#include "base/options.h"
#include "base/report.h"
#include "textures/flat_drawing.h"
#include "textures/gl_setup.h"
#include "textures/texture_cache.h"

namespace vex {
namespace {

constexpr const char* fontTexture = "statFont";
constexpr int firstCode = 32;
constexpr int lastCode = 127;
constexpr int glyphSide = 8;  // texels
constexpr std::size_t bytesPerPixel = 3;
constexpr std::size_t bytesPerGlyph = glyphSide * glyphSide * bytesPerPixel;
constexpr std::size_t glyphBytes = (lastCode - firstCode + 1) * bytesPerGlyph;
constexpr int fontHeight = 1024;  // texels, a power of two above the 768 in use
constexpr float glyphHeight = 8.0f / fontHeight;
constexpr float columnsPerHalf = 30.0f;
constexpr int lines = 30;
constexpr float linesPerHalf = 15.0f;

void drawGlyph(int code, int column, int line) {
  const float top = static_cast<float>(code - firstCode) / 128.0f;
  const float bottom = top + glyphHeight;
  const float left = static_cast<float>(column) / columnsPerHalf - 1;
  const float right = static_cast<float>(column + 1) / columnsPerHalf - 1;
  const float lower = static_cast<float>(lines - 1 - line) / linesPerHalf - 1;
  const float upper = static_cast<float>(lines - line) / linesPerHalf - 1;
  glTexCoord2f(0, bottom);
  glVertex2f(left, lower);
  glTexCoord2f(1, bottom);
  glVertex2f(right, lower);
  glTexCoord2f(1, top);
  glVertex2f(right, upper);
  glTexCoord2f(0, top);
  glVertex2f(left, upper);
}

}  // namespace

void loadStatFont(const char* file) {
  if (!options().showStats) return;
  const OpenFile font(fileOpenNeeded(file, formatted("statistics font %s not found", file)));
  constexpr std::size_t skipped = firstCode * bytesPerGlyph;
  if (fileRemaining(font) < skipped + glyphBytes) {
    fatalError("statistics font %s holds %llu bytes, %zu are needed", file,
               static_cast<unsigned long long>(fileRemaining(font)), skipped + glyphBytes);
  }
  fileSeek(font, skipped, SeekOrigin::start);
  std::array<std::uint8_t, glyphBytes> bytes{};
  fileRead(bytes.data(), 1, bytes.size(), font);

  TextureEntry entry;
  entry.width = glyphSide;
  entry.height = fontHeight;
  entry.pixels.resize(std::size_t{glyphSide} * fontHeight);
  for (std::size_t i = 0; i < bytes.size() / bytesPerPixel; ++i) {
    if (bytes[i * bytesPerPixel] == 255) entry.pixels[i] = packPixel(255, 0, 0, 255);
  }
  addTexture(std::move(entry), fontTexture, false);
}

void drawText(int column, int line, const char* format, ...) {
  if (!options().showStats) return;
  if (glExtensions.textureUnits > 1) glExtensions.glActiveTextureARB(GL_TEXTURE0);
  glEnable(GL_TEXTURE_2D);
  char text[messageSize];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);

  setUpFlatDrawing();
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glDepthFunc(GL_ALWAYS);
  glColor3f(1, 1, 1);
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(getTexture(fontTexture, false)));
  glBegin(GL_QUADS);
  for (int i = 0; text[i] != '\0' && text[i] != '\r' && text[i] != '\n'; ++i) {
    const int code = static_cast<unsigned char>(text[i]);
    if (code >= firstCode && code <= lastCode) drawGlyph(code, column + i, line);
  }
  glEnd();
  glDepthFunc(GL_LEQUAL);
}

}  // namespace vex
