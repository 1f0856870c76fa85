#include "scenes/scene_helper.h"

#include <GL/gl.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <string>

#include "base/files.h"
#include "base/random.h"
#include "base/window_size.h"
#include "engine/drawing.h"
#include "scenes/scene_conventions.h"
#include "scenes/word_endings.h"
#include "textures/flat_drawing.h"
#include "textures/image.h"
#include "textures/texture_cache.h"
#include "timeline/scene_function.h"

namespace vex {
namespace {

// On screen: x to the right, y up.
struct Point {
  float x, y;
};

struct Corner {
  Point texture;
  Point place;
};

// x, y (upwards) of the upper left corner and size, as slots `first` to `first` + 3 give them.
struct Frame {
  float x, y, w, h;

  Frame(Arguments arguments, int first)
      : x(arguments.number(first)),
        y(-arguments.number(first + 1)),
        w(arguments.number(first + 2)),
        h(arguments.number(first + 3)) {}
};

void beginOverlay() {
  setUpFlatDrawing();
  glDepthMask(GL_FALSE);
  glDepthFunc(GL_ALWAYS);
}

void endOverlay() {
  glDepthFunc(GL_LESS);
  glDepthMask(GL_TRUE);
}

// Below 1 ordinary transparency, below 2 additive, from 2 on darkening.
void setBlend(float mode) {
  if (mode < 1) {
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  } else if (mode < 2) {
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  } else {
    glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_COLOR);
  }
}

void bindTexture(int id) {
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(id));
}

// Between glBegin(GL_QUADS) and glEnd().
void sendQuad(const std::array<Corner, 4>& corners) {
  for (const Corner& corner : corners) {
    glTexCoord2f(corner.texture.x, corner.texture.y);
    glVertex2f(corner.place.x, corner.place.y);
  }
}

void drawQuad(const std::array<Corner, 4>& corners) {
  if (drawingUnseen()) return;
  glBegin(GL_QUADS);
  sendQuad(corners);
  glEnd();
}

void drawFrame(const Frame& frame, float repeatAcross, float repeatDown) {
  const float right = frame.x + frame.w;
  const float bottom = frame.y - frame.h;
  drawQuad({{{{0, repeatDown}, {frame.x, frame.y}},
             {{repeatAcross, repeatDown}, {right, frame.y}},
             {{repeatAcross, 0}, {right, bottom}},
             {{0, 0}, {frame.x, bottom}}}});
}

bool glitchHappens(float probability) {
  return static_cast<float>(randomNext() % 100) / 100.0f < probability;
}

void drawBitmap(Scene&, float, Arguments arguments) {
  int texture = getTexture(arguments.text(0), false);
  const int frames = arguments.whole(5);
  if (frames > 0 && glitchHappens(arguments.number(6))) texture += randomNext() % frames;
  bindTexture(texture);
  glColor4f(1, 1, 1, arguments.number(7));
  beginOverlay();
  setBlend(arguments.number(8));
  drawFrame(Frame(arguments, 1), 1, 1);
  endOverlay();
}

void drawBitmapRepeat(Scene&, float, Arguments arguments) {
  bindTexture(getTexture(arguments.text(0), true));
  glColor4f(1, 1, 1, arguments.number(7));
  beginOverlay();
  setBlend(arguments.number(8));
  drawFrame(Frame(arguments, 1), arguments.number(5), arguments.number(6));
  endOverlay();
}

void drawBitmapWave(Scene&, float t, Arguments arguments) {
  constexpr int cells = 16;
  constexpr float cell = 1.0f / cells;
  constexpr float waveStep = 0.39269876f;  // pi / 8: one full wave over the rectangle
  const Frame frame(arguments, 1);
  const float phase = t * arguments.number(5);
  const float amplitude = arguments.number(6);
  std::array<float, cells + 1> rowSway;     // sideways
  std::array<float, cells + 1> columnSway;  // up and down
  for (int i = 0; i <= cells; ++i) {
    const float angle = static_cast<float>(i) * waveStep;
    rowSway[static_cast<std::size_t>(i)] = amplitude * std::sin(angle + phase);
    columnSway[static_cast<std::size_t>(i)] = amplitude * std::cos(angle + 0.77f * phase);
  }
  const auto corner = [&](int column, int row) {
    const float across = static_cast<float>(column) * cell;
    const float up = static_cast<float>(row) * cell;
    return Corner{
        {across + rowSway[static_cast<std::size_t>(row)], up + columnSway[static_cast<std::size_t>(column)]},
        {frame.x + across * frame.w, frame.y - (1 - up) * frame.h}};
  };

  bindTexture(getTexture(arguments.text(0), true));
  glColor4f(1, 1, 1, arguments.number(7));
  beginOverlay();
  setBlend(arguments.number(8));
  glBegin(GL_QUADS);
  for (int row = 0; row < cells; ++row) {
    for (int column = 0; column < cells; ++column) {
      sendQuad({corner(column, row), corner(column + 1, row), corner(column + 1, row + 1),
                corner(column, row + 1)});
    }
  }
  glEnd();
  endOverlay();
}

void fadeScreen(Scene&, float, Arguments arguments) {
  const float alpha = arguments.number(3);
  if (alpha <= 0) return;
  glDisable(GL_TEXTURE_2D);
  beginOverlay();
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glColor4f(arguments.number(0), arguments.number(1), arguments.number(2), alpha);
  drawQuad({{{{0, 0}, {-1, -1}}, {{0, 1}, {-1, 1}}, {{1, 1}, {1, 1}}, {{1, 0}, {1, -1}}}});
  endOverlay();
}

// Times below 0 play backwards from the last frame. With the last frame before the first, the remainder has
// as many values as there are frames between them: times from 0 on play those that follow the first.
int movieFrameAt(float time, float framesPerSecond, int first, int last) {
  const float frame = time * framesPerSecond;
  const float count = static_cast<float>(last - first + 1);
  const int offset = truncateNumber(std::fmod(std::fabs(frame), count));
  return frame >= 0 ? first + offset : last - offset;
}

void drawMovie(Scene&, float t, Arguments arguments) {
  const char* base = arguments.text(0);
  const int first = arguments.whole(5);
  const int last = arguments.whole(6);
  char file[movieFrameNameSize * 2];
  std::snprintf(file, sizeof file, "%s%d.jpg", base, movieFrameAt(t, arguments.number(7), first, last));
  if (drawingUnseen()) {
    const OpenFile refused(openTexture(file));  // where it is missing
    return;
  }
  bindTexture(setMovieFrame(base, file));
  glColor4f(1, 1, 1, arguments.number(8));
  beginOverlay();
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  drawFrame(Frame(arguments, 1), 1, 1);
  endOverlay();
}

// y counts upwards here.
void setViewport(Scene&, float, Arguments arguments) {
  const float width = windowWidth();
  const float height = windowHeight();
  glViewport(truncateNumber((arguments.number(0) + 1) * width / 2),
             truncateNumber((arguments.number(1) + 1) * height / 2),
             truncateNumber(width * arguments.number(2) / 2),
             truncateNumber(height * arguments.number(3) / 2));
}

void drawNoise(Scene&, float t, Arguments arguments) {
  const float alpha = arguments.number(5) + randomSymmetric(arguments.number(6));
  const float across = randomSymmetric(arguments.number(1)) + arguments.number(3) * t * 2;
  const float down = randomSymmetric(arguments.number(2)) + arguments.number(4) * t * 2;
  const float aspect = arguments.number(8);
  const float halfWidth = aspect > 1 ? 0.5f / aspect : 0.5f;
  const float halfHeight = aspect > 0 && aspect <= 1 ? aspect / 2 : 0.5f;

  bindTexture(getTexture(arguments.text(0), true));
  glColor4f(1, 1, 1, alpha);
  beginOverlay();
  setBlend(arguments.number(7));
  drawQuad({{{{across - halfWidth, down - halfHeight}, {-1, 1}},
             {{across + halfWidth, down - halfHeight}, {1, 1}},
             {{across + halfWidth, down + halfHeight}, {1, -1}},
             {{across - halfWidth, down + halfHeight}, {-1, -1}}}});
  glBlendFunc(GL_ONE, GL_ZERO);
  endOverlay();
}

constexpr const char* logoBacking = "data\\vex_substract";

// The shape behind the logo; each edge sways at a speed of its own.
void drawLogoBacking(Point centre, float size, float t) {
  const float left = centre.x - 1.2f * size + std::sin(1.47f * t) * size / 10;
  const float right = centre.x + 1.2f * size + std::cos(1.27f * t) * size / 10;
  const float top = centre.y + size / 3 + std::sin(1.83f * t) * size / 20;
  const float bottom = centre.y - size / 3 + std::cos(1.65f * t) * size / 20;
  drawQuad(
      {{{{0, 1}, {left, top}}, {{1, 1}, {right, top}}, {{1, 0}, {right, bottom}}, {{0, 0}, {left, bottom}}}});
}

// A word between `left` and `right`, all coordinates scaled about the screen's centre.
void drawLogoWord(float left, float right, Point centre, float size, float scale) {
  const float top = (centre.y + size / 4) * scale;
  const float bottom = (centre.y - size / 4) * scale;
  left *= scale;
  right *= scale;
  drawQuad(
      {{{{0, 1}, {left, top}}, {{1, 1}, {right, top}}, {{1, 0}, {right, bottom}}, {{0, 0}, {left, bottom}}}});
}

// First frame, or, at a glitch, a random one of `frames` loaded one after the other.
int logoTexture(const char* firstFrame, int frames, float glitchProbability) {
  const int texture = getTexture(firstFrame, false);
  return glitchHappens(glitchProbability) ? texture + randomNext() % frames : texture;
}

void drawVexLogo(Scene&, float t, Arguments arguments) {
  const char* ending = arguments.text(0);
  const Point centre{arguments.number(1), -arguments.number(2)};
  const float size = arguments.number(3);
  const float glitchProbability = arguments.number(4);
  float alpha = arguments.number(5);
  const int layers = std::min(arguments.whole(6), maxLogoLayers);

  beginOverlay();
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glColor4f(1, 1, 1, alpha);
  bindTexture(getTexture(logoBacking, false));
  drawLogoBacking(centre, size, t);

  glBlendFunc(GL_SRC_ALPHA, GL_ONE);
  const std::string title = logoFrameName(titleTextureStem, 1);
  float scale = 1;
  for (int layer = 0; layer < layers; ++layer) {
    glColor4f(1, 1, 1, alpha);
    bindTexture(logoTexture(title.c_str(), titleFrames, glitchProbability));
    drawLogoWord(centre.x - size, centre.x - 0.33f * size, centre, size, scale);
    bindTexture(logoTexture(ending, wordEndingFrames, glitchProbability));
    drawLogoWord(centre.x - 0.5f * size, centre.x + size, centre, size, scale);
    scale *= arguments.number(7);
    alpha *= arguments.number(8);
  }
  endOverlay();
}

using enum ArgumentKind;

constexpr FunctionParameter textureParameter{"texture", textureName};
constexpr FunctionParameter x{"x", number, -1, 1};
constexpr FunctionParameter y{"y", number, -1, 1};
// A rectangle may fly past or reach far beyond the screen; below 0 its sides mirror the picture.
constexpr FunctionParameter left{"x", number, -16, 16};
constexpr FunctionParameter top{"y", number, -16, 16};
constexpr FunctionParameter width{"width", number, -16, 16};
constexpr FunctionParameter height{"height", number, -16, 16};
constexpr FunctionParameter glitch{"glitch", number, 0, 1};
constexpr FunctionParameter opacity{"alpha", number, 0, 1};
constexpr FunctionParameter blendMode{"blend", number, 0, 2};

constexpr std::array bitmapParameters{
    textureParameter, left,    top,      width, height, FunctionParameter{"frames", wholeNumber, 0, 8},
    glitch,           opacity, blendMode};
constexpr std::array repeatParameters{textureParameter,
                                      left,
                                      top,
                                      width,
                                      height,
                                      FunctionParameter{"repeatX", number, 0, 64},
                                      FunctionParameter{"repeatY", number, 0, 64},
                                      opacity,
                                      blendMode};
constexpr std::array waveParameters{textureParameter,
                                    left,
                                    top,
                                    width,
                                    height,
                                    FunctionParameter{"speed", number, -4, 4},
                                    FunctionParameter{"amplitude", number, 0, 0.1f},
                                    opacity,
                                    blendMode};
constexpr std::array fadeParameters{FunctionParameter{"red", number, 0, 1},
                                    FunctionParameter{"green", number, 0, 1},
                                    FunctionParameter{"blue", number, 0, 1}, opacity};
constexpr std::array movieParameters{FunctionParameter{"base", movieName},
                                     left,
                                     top,
                                     width,
                                     height,
                                     FunctionParameter{"first", frameNumber, 0, 9999},
                                     FunctionParameter{"last", frameNumber, 0, 9999},
                                     FunctionParameter{"fps", number, 0, 60},
                                     opacity};
constexpr std::array viewportParameters{x, y, FunctionParameter{"width", number, 0, 2},
                                        FunctionParameter{"height", number, 0, 2}};
constexpr std::array noiseParameters{textureParameter,
                                     FunctionParameter{"jitterX", number, 0, 1},
                                     FunctionParameter{"jitterY", number, 0, 1},
                                     FunctionParameter{"scrollX", number, -10, 10},
                                     FunctionParameter{"scrollY", number, -10, 10},
                                     opacity,
                                     FunctionParameter{"alphaJitter", number, 0, 1},
                                     blendMode,
                                     FunctionParameter{"aspect", number, 0.01f, 100}};
constexpr std::array logoParameters{FunctionParameter{"ending", textureName},
                                    x,
                                    y,
                                    FunctionParameter{"size", number, 0, 2},
                                    glitch,
                                    opacity,
                                    FunctionParameter{"layers", wholeNumber, 0, 32, maxLogoLayers},
                                    FunctionParameter{"scale", number, 0, 4},
                                    FunctionParameter{"falloff", number, 0, 1}};

constexpr float quarterPixel = 0.0003f;  // of a wide screen, for sums that round

bool isOpaque(float alpha) {
  constexpr float halfStep = 0.5f / 255;  // what eight bits cannot tell from 1
  return alpha >= 1 - halfStep;
}

bool coversScreen(float from, float size) {
  return std::min(from, from + size) <= -1 + quarterPixel && std::max(from, from + size) >= 1 - quarterPixel;
}

// By slots 1 to 4 of the functions that draw into a rectangle.
bool coversScreen(std::span<const float> arguments) {
  return coversScreen(arguments[1], arguments[3]) && coversScreen(arguments[2], arguments[4]);
}

constexpr GroundRule bitmapGround{
    [](std::span<const float> p) { return coversScreen(p) && isOpaque(p[7]) && p[8] < 1; },
    "the rectangle covers the screen, alpha is 1 and blend 0"};
constexpr GroundRule fadeGround{[](std::span<const float> p) { return isOpaque(p[3]); }, "alpha is 1"};
constexpr GroundRule movieGround{[](std::span<const float> p) { return coversScreen(p) && isOpaque(p[8]); },
                                 "the rectangle covers the screen and alpha is 1"};
constexpr GroundRule noiseGround{
    [](std::span<const float> p) { return isOpaque(p[5] - std::fabs(p[6])) && p[7] < 1; },
    "alpha less alphaJitter is 1 and blend 0"};

constexpr std::array functionTable{
    FunctionRow{"drawBitmap", sceneFunction<drawBitmap>,
                "Draws a texture into a rectangle; now and then (`glitch` is the probability) one "
                "of `frames` textures that were loaded one after the other.",
                bitmapParameters, FunctionRole::draws, bitmapGround},
    FunctionRow{"drawBitmapRepeat", sceneFunction<drawBitmapRepeat>,
                "Tiles a rectangle with a texture, so many times across and down.", repeatParameters,
                FunctionRole::draws, bitmapGround},
    FunctionRow{"drawBitmapWave", sceneFunction<drawBitmapWave>,
                "Draws a texture into a rectangle, its rows swaying sideways and its columns up and down.",
                waveParameters, FunctionRole::draws, bitmapGround},
    FunctionRow{"fadeScreen", sceneFunction<fadeScreen>,
                "Fills the screen with a colour; nothing happens at alpha 0.", fadeParameters,
                FunctionRole::draws, fadeGround},
    FunctionRow{"drawMovie", sceneFunction<drawMovie>,
                "Draws frame after frame of a numbered series of JPEG files (`data\\fire` and 7 make "
                "`data\\fire7.jpg`) into a rectangle, over and over; backwards at scene times below 0.",
                movieParameters, FunctionRole::draws, movieGround},
    FunctionRow{
        "setViewport", sceneFunction<setViewport>,
        "Sends all further drawing to a rectangle of the window, until it is set again: -1, -1, 2, 2 is the "
        "whole window. Its y counts upwards.",
        viewportParameters, FunctionRole::sets},
    FunctionRow{"drawNoise", sceneFunction<drawNoise>,
                "Fills the screen with a window onto a tiled texture that scrolls and jumps about at random; "
                "aspect is "
                "its width by its height.",
                noiseParameters, FunctionRole::draws, noiseGround},
    FunctionRow{"drawVexLogo", sceneFunction<drawVexLogo>,
                "Draws the title word and an ending over a swaying shape, echoed in layers, each larger by "
                "`scale` and "
                "fainter by `falloff`; the ending is named by its frame 01.",
                logoParameters},
};

constexpr auto neededTextures = [] {
  std::array<NeededTexture, wordEndings.size() + 2> needed{};
  needed[0] = {.name = titleTextureStem, .frames = titleFrames, .digits = logoFrameDigits};
  for (std::size_t i = 0; i < wordEndings.size(); ++i) {
    needed[i + 1] = {
        .name = wordEndings[i].textureStem, .frames = wordEndingFrames, .digits = logoFrameDigits};
  }
  needed.back() = {.name = logoBacking, .function = "drawVexLogo"};
  return needed;
}();

void loadFrames(const char* stem, int frames) {
  for (int frame = 1; frame <= frames; ++frame) getTexture(logoFrameName(stem, frame).c_str(), false);
}

}  // namespace

SceneHelper::SceneHelper() {
  beginScene(*this, sceneHelper.name, sceneHelper.functions);
  // One after the other, so that the frames of a word have consecutive ids.
  loadFrames(titleTextureStem, titleFrames);
  for (const WordEnding& ending : wordEndings) loadFrames(ending.textureStem, wordEndingFrames);
}

constinit const SceneEntry sceneHelper{
    .name = "SceneHelper",
    .summary =
        "Drawing in two dimensions, over and between the other scenes. The screen reaches from -1 "
        "to 1 both\n"
        "ways; x counts to the right, y downwards, and a rectangle hangs from its upper left "
        "corner: -1, -1,\n"
        "2, 2 is the whole screen. Blend 0 is ordinary transparency, 1 adds, 2 darkens and "
        "ignores alpha.",
    .functions = functionTable,
    .construct = []() -> Scene* { return newScene<SceneHelper>(); },
    .needs = {.cameras = 0, .textures = neededTextures}};

}  // namespace vex
