#include "scenes/scene_outtro.h"

#include <GL/gl.h>
#include <GL/glu.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "base/clock.h"
#include "base/files.h"
#include "base/pi.h"
#include "base/random.h"
#include "base/report.h"
#include "base/window_size.h"
#include "engine/drawing.h"
#include "models/model_loader.h"
#include "scenes/ball_file.h"
#include "scenes/scene_conventions.h"
#include "textures/flat_drawing.h"
#include "textures/texture_cache.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

template <std::size_t size>
void copyName(char (&to)[size], const char* from) {
  std::snprintf(to, size, "%s", from);
}

// One frame's step. A motion beyond all numbers starts anew, so that one wild speed does not end it for good.
void advance(float& position, float step) {
  position += step;
  if (!std::isfinite(position)) position = 0;
}

// Textured quads over what is there, without depth of their own.
void beginSprites(const char* texture, bool wrap) {
  setUpFlatDrawing();
  glEnable(GL_TEXTURE_2D);
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(getTexture(texture, wrap)));
  glDepthMask(GL_FALSE);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

// --- Scroller

constexpr int glyphsAcross = 20;  // one more is drawn, so that the line reaches both edges
constexpr int glyphCells = 32;

// Cell of a character in the font's column, counted from its bottom.
int glyphCell(char character) {
  constexpr int blank = 31;
  if (character >= 'A' && character <= 'Z') return 95 - character;
  if (character >= 'a' && character <= 'z') return 127 - character;
  switch (character) {
    case '.':
      return 4;
    case ',':
      return 3;
    case '!':
      return 2;
    case '?':
      return 1;
    case '-':
      return 0;
  }
  return blank;
}

void preloadFont(SceneOuttro& scene, float, Arguments arguments) {
  const char* name = arguments.text(0);
  if (std::strcmp(name, scene.fontName) == 0) return;
  getTexture(name, false);
  copyName(scene.fontName, name);
}

void preloadText(SceneOuttro& scene, float, Arguments arguments) {
  const char* name = arguments.text(0);
  if (std::strcmp(name, scene.textName) == 0) return;
  copyName(scene.textName, name);
  const OpenFile file(fileOpenNeeded(name, formatted("Scroller text %s not found!", name)));
  fileSeek(file, 0, SeekOrigin::end);
  const std::int32_t size = fileTell(file);
  fileSeek(file, 0, SeekOrigin::start);
  if (size < 0 || static_cast<std::uint64_t>(size) > fileRemaining(file)) {
    fatalError("Scroller text %s has no usable size", name);
  }
  scene.text = fileReadRest<std::string>(file);
}

char characterAt(const std::string& text, int index) {
  return index < 0 || text.empty() ? ' ' : text[static_cast<std::size_t>(index) % text.size()];
}

void drawScroller(SceneOuttro& scene, float t, Arguments arguments) {
  const float zoom = std::max((arguments.number(1) + 1) * 2 + 1, 1.0f);
  const int mode = arguments.whole(2);
  const float waveSpeed = arguments.number(3) * 10 * pi;
  const float waveLength = arguments.number(4) * 10 / pi;
  const float amplitude = arguments.number(5) * zoom;
  const float middle = arguments.number(6);
  if (!*scene.fontName || !*scene.textName) fatalError("Calling drawScroller w/o font or text!");

  advance(scene.scrollPos, clockDelta() * arguments.number(0) * 10);
  const int first = truncateNumber(scene.scrollPos);
  const float rest = 1 - (scene.scrollPos - static_cast<float>(first));
  const auto height = [&](float place) {
    const float u = t * waveSpeed + (place + rest) / waveLength;
    if (mode == 1) return middle + amplitude * std::sin(u);
    if (mode == 2) return middle + amplitude * 0.5f * (std::sin(u) + std::sin(2 * u));
    return middle;
  };

  beginSprites(scene.fontName, false);
  glColor4f(1, 1, 1, 1);
  glBegin(GL_QUADS);
  for (int i = 0; i <= glyphsAcross; ++i) {
    constexpr float cell = 1.0f / glyphCells;
    const float place = static_cast<float>(i);
    const float bottom = static_cast<float>(glyphCell(characterAt(scene.text, first + i))) * cell;
    const float left = ((place + rest - 1) / glyphsAcross * 2 - 1) * zoom;
    const float right = left + zoom / 10;
    const float leftHeight = height(place), rightHeight = height(place + 1);
    const float half = zoom / 15;
    glTexCoord2f(0, bottom + cell);
    glVertex2f(left, leftHeight + half);
    glTexCoord2f(1, bottom + cell);
    glVertex2f(right, rightHeight + half);
    glTexCoord2f(1, bottom);
    glVertex2f(right, rightHeight - half);
    glTexCoord2f(0, bottom);
    glVertex2f(left, leftHeight - half);
  }
  glEnd();
  glDepthMask(GL_TRUE);
}

// --- Copper bars

constexpr const char* copperTexture = "data\\copperbar";

void showCopperBars(Scene&, float t, Arguments arguments) {
  const int bars = std::min(arguments.whole(0), maxCopperBars);
  if (bars <= 0) return;
  const float waveSpeed = arguments.number(3) * pi;
  const float spacing = arguments.number(4) * 10 / pi;
  const bool doubleWave = arguments.whole(2) == 1;

  beginSprites(copperTexture, true);
  glBegin(GL_QUADS);
  for (int i = bars - 1; i >= 0; --i) {
    const float bar = static_cast<float>(i);
    const float u = t * waveSpeed - bar / spacing;
    const float wave = doubleWave ? 0.5f * (std::sin(u) + std::sin(1.9f * u)) : std::sin(u);
    const float middle = arguments.number(5) * wave;
    const float scale = 1 - (1 - arguments.number(1)) * (bar / static_cast<float>(bars));
    const float bottom = middle - 0.085f * scale, top = middle + 0.085f * scale;
    const float repeats = 1 / scale;
    glColor4f(arguments.number(6) * scale, arguments.number(7) * scale, arguments.number(8) * scale, 1);
    glTexCoord2f(-repeats, 0);
    glVertex2f(-1, bottom);
    glTexCoord2f(repeats, 0);
    glVertex2f(1, bottom);
    glTexCoord2f(repeats, 1);
    glVertex2f(1, top);
    glTexCoord2f(-repeats, 1);
    glVertex2f(-1, top);
  }
  glEnd();
  glDepthMask(GL_TRUE);
}

// --- Balls

void makeBall(Light& light) {
  light.flareStrength = 1;
  light.flareKind = FlareKind::vectorBall;
  light.active = false;
}

// `stem`: the model's name without extension.
void loadBallModel(SceneOuttro& scene, const std::string& stem) {
  loadModel(stem.c_str(), &scene);
  std::vector<Ball> balls;
  for (Light* light : scene.lights) {
    makeBall(*light);
    balls.push_back({light->intensity, light->colour, light->position});
  }
  writeBallFile((stem + ".hvv").c_str(), balls);
}

void loadBalls(SceneOuttro& scene, const char* name) {
  scene.viewers.allocate(1);
  scene.viewers[0] = new Viewer;
  scene.activeLights.fill(-1);
  const std::vector<Ball> balls = readBallFile(name);
  scene.lights.allocate(static_cast<int>(balls.size()));
  int index = 0;
  for (const Ball& ball : balls) {
    Light* light = scene.lights[index] = new Light;
    light->intensity = ball.intensity;
    light->colour = ball.colour;
    light->position = ball.position;
    makeBall(*light);
    std::snprintf(light->name, sizeof light->name, "light%d", index++);
  }
  scene.meshes.allocate(0);
  scene.viewerIndex = 0;
}

void preloadVectorBalls(SceneOuttro& scene, float, Arguments arguments) {
  const char* name = arguments.text(0);
  if (std::strcmp(name, scene.ballFile) == 0) return;
  scene.lights.clear();
  const char* extension = std::strrchr(name, '.');
  if (extension && strcasecmp(extension, ".ase") == 0) {
    loadBallModel(scene, std::string(name, extension));
  } else {
    loadBalls(scene, name);
  }
  copyName(scene.ballFile, name);
}

void showVectorBalls(SceneOuttro& scene, float t, Arguments arguments) {
  glDepthMask(GL_TRUE);
  advance(scene.ballAngle, clockDelta() * arguments.number(1) * 2 * pi);
  for (Light* light : scene.lights) light->flareSize = arguments.number(0);
  const float distance = arguments.number(2);
  Viewer& viewer = viewerAt(scene, 0);
  viewer.position.set(std::sin(scene.ballAngle) * distance, 0, std::cos(scene.ballAngle) * distance);
  viewer.target.set(0, -arguments.number(4) * distance, 0);
  viewer.fov = arguments.number(3);
  scene.render(t);
}

// --- Stars

constexpr int fieldSize = 500;

void drawStars(SceneOuttro& scene, float, Arguments arguments) {
  constexpr float side = fieldSize;
  for (const auto& [axis, slot] : {std::pair{&Vector::x, 0}, {&Vector::y, 1}, {&Vector::z, 2}}) {
    advance(scene.starOffset.*axis, clockDelta() * arguments.number(slot) * side);
  }

  const bool textured = glIsEnabled(GL_TEXTURE_2D);
  setUpFlatDrawing();
  glDisable(GL_TEXTURE_2D);
  glDepthMask(GL_TRUE);  // or the depth would not be cleared
  glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
  glDisable(GL_STENCIL_TEST);
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  gluPerspective(75, static_cast<double>(windowWidth() / windowHeight()), 1, 1000);
  glDepthFunc(GL_ALWAYS);
  glDepthMask(GL_FALSE);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glEnable(GL_POINT_SMOOTH);
  glPointSize(5);
  for (const Vector& star : scene.stars) {
    if (drawingUnseen()) break;
    float z = std::fmod(star.z + scene.starOffset.z, side);
    z += z < 0 ? side + 10 : 10;
    glColor4f(1, 1, 1, 1 - z / (side + 10));
    glPointSize(700 / (z + 50));
    glBegin(GL_POINTS);
    glVertex3f(std::fmod(star.x + scene.starOffset.x, side) - side / 2,
               std::fmod(star.y + scene.starOffset.y, side) - side / 2, -z);
    glEnd();
  }
  glDepthFunc(GL_LESS);
  glDepthMask(GL_TRUE);
  if (textured) glEnable(GL_TEXTURE_2D);
  glLoadIdentity();
}

using enum ArgumentKind;

constexpr std::array fontParameters{FunctionParameter{"font", textureName}};
constexpr std::array textParameters{FunctionParameter{"text", fileName}};
constexpr std::array ballFileParameters{FunctionParameter{"balls", fileName}};
constexpr std::array scrollerParameters{FunctionParameter{"speed", number, -10, 10},
                                        FunctionParameter{"zoom", number, -1, 4},
                                        FunctionParameter{"waveMode", wholeNumber, 0, 2},
                                        FunctionParameter{"waveSpeed", number, -2, 2},
                                        FunctionParameter{"waveLength", number, 0.01f, 10},
                                        FunctionParameter{"amplitude", number, 0, 1},
                                        FunctionParameter{"y", number, -1, 1}};
constexpr std::array copperParameters{FunctionParameter{"bars", wholeNumber, 0, 100, maxCopperBars},
                                      FunctionParameter{"endScale", number, 0.01f, 4},
                                      FunctionParameter{"waveMode", wholeNumber, 0, 1},
                                      FunctionParameter{"waveSpeed", number, -4, 4},
                                      FunctionParameter{"spacing", number, 0.01f, 10},
                                      FunctionParameter{"amplitude", number, 0, 1},
                                      FunctionParameter{"red", number, 0, 1},
                                      FunctionParameter{"green", number, 0, 1},
                                      FunctionParameter{"blue", number, 0, 1}};
constexpr std::array ballParameters{
    FunctionParameter{"ballSize", number, 0, 100}, FunctionParameter{"turns", number, -4, 4},
    FunctionParameter{"distance", number, 1, 10000}, FunctionParameter{"fieldOfView", number, 10, 170},
    FunctionParameter{"cameraHeight", number, -4, 4}};
constexpr std::array starParameters{FunctionParameter{"speedX", number, -4, 4},
                                    FunctionParameter{"speedY", number, -4, 4},
                                    FunctionParameter{"speedZ", number, -4, 4}};

constexpr std::array scrollerLoaders{"preloadFont", "preloadText"};
constexpr std::array ballLoaders{"preloadVectorBalls"};

constexpr std::array functionTable{
    FunctionRow{
        "drawScroller",
        sceneFunction<drawScroller>,
        "Draws a line of text that moves to the left, ten characters a second at speed 1. Zoom -1 fits "
        "20 characters on the screen; waveMode 0 is flat, 1 one wave, 2 two; y counts upwards. Font "
        "and text must have been loaded.",
        scrollerParameters,
        FunctionRole::draws,
        {},
        scrollerLoaders},
    FunctionRow{
        "preloadFont", sceneFunction<preloadFont>,
        "Loads the scroller's font: 32 cells from the bottom up, `-`, `?`, `!`, `,`, `.`, Z down to A "
        "and the blank.",
        fontParameters, FunctionRole::sets},
    FunctionRow{"preloadText", sceneFunction<preloadText>, "Loads the scroller's text.", textParameters,
                FunctionRole::sets},
    FunctionRow{"showCopperBars", sceneFunction<showCopperBars>,
                "Draws bars across the screen, each behind the one before it, shrinking towards endScale; "
                "waveMode 1 is a double wave.",
                copperParameters},
    FunctionRow{"showVectorBalls",
                sceneFunction<showVectorBalls>,
                "Draws the balls through a camera that circles round them (`turns` a second, at `distance`) "
                "and looks "
                "below their middle by cameraHeight times the distance.",
                ballParameters,
                FunctionRole::draws,
                {},
                ballLoaders},
    FunctionRow{"preloadVectorBalls", sceneFunction<preloadVectorBalls>,
                "Loads the balls: the lights of a model (`.ase`, whose ball file is written beside it) or a "
                "ball file (`.hvv`).",
                ballFileParameters, FunctionRole::sets},
    FunctionRow{
        "drawStars", sceneFunction<drawStars>,
        "Draws a field of stars over what is there; at a speed z below 0 they come nearer. Clears the "
        "depth buffer.",
        starParameters},
};

constexpr std::array neededTextures{NeededTexture{copperTexture},
                                    NeededTexture{"data\\flare_vectorball", "showVectorBalls"}};

}  // namespace

SceneOuttro::SceneOuttro() {
  beginScene(*this, sceneOuttro.name, sceneOuttro.functions);
  getTexture(copperTexture, true);
  stars.resize(starCount);
  for (Vector& star : stars) {
    for (float Vector::*axis : {&Vector::x, &Vector::y, &Vector::z}) {
      star.*axis = static_cast<float>(randomNext() % fieldSize);
    }
  }
}

constinit const SceneEntry sceneOuttro{
    .name = "SceneOuttro",
    .summary =
        "The closing effects: a scroller, copper bars, balls and stars. What is preloaded stays until "
        "something\n"
        "else is.",
    .functions = functionTable,
    .construct = []() -> Scene* { return newScene<SceneOuttro>(); },
    .needs = {.cameras = 0, .textures = neededTextures}};

}  // namespace vex
