#pragma once

#include <string>
#include <utility>
#include <vector>

#include "production/show/project_writer.h"
#include "production/song/cues.h"

// The words in which a time line is written: places and curves in beats, one record for each of the
// eight screen-space functions, one for worlds and one for each layer, and a show that collects parts.
//
// Screen: x from -1 (left) to 1, y from -1 (top) to 1; the whole screen is 2 x 2 and 16:9.

namespace vex::show {

// Curves over a part. Times are beats from the part's beginning; negative ones count from its end.
inline constexpr double partEnd = 1e9;
Curve text(std::string value);
Curve file(const std::string& name);  // in the data folder
Curve line(std::vector<CurveDot> dots);
Curve spline(std::vector<CurveDot> dots);
// Swings between `low` and `high`, once in `beats`; begins in the middle, rising, `phase` degrees further on.
Curve swing(double beats, double low, double high, double phase = 0);
// Rises within `in` beats to `level`, falls within the last `out`; 0 beats is a hard edge.
Curve fade(double in, double out, double level = 1);
// Jumps to `level` at each of the beats and dies within half a beat.
Curve flashes(const std::vector<double>& beats, double level, double rest = 0);
// From one size to another at an even pace for the eye (exponential).
Curve zoom(double from, double to, double beats);
// From one place to another at an even pace, in step with a zoom of as many beats.
Curve travel(double from, double to, double beats);
Curve operator*(Curve curve, double factor);
Curve operator+(Curve curve, double constant);
// Where both vary they must have the same kind and times. Fatal: "curves of different times cannot be added".
Curve operator+(const Curve& p, const Curve& q);

struct Place {
  Curve x = -1, y = -1, w = 2, h = 2;  // left upper corner and size
};
// `height` high with `aspect` times that as width on a 16:9 screen, about a middle.
Place centred(const Curve& x, const Curve& y, const Curve& height, double aspect = 1);
// The whole screen and a little beyond its edges, larger by a factor of 1 or more, its middle moved.
Place covering(const Curve& scale, const Curve& x = 0, const Curve& y = 0);

// Apart, for these are common words.
namespace screen {

enum class Blend { over = 0, add = 1, darken = 2 };

// Texture names are given without their folder.
struct Bitmap {
  const char* texture;
  Place at{};
  int frames = 0;  // of consecutive pictures NAME1, NAME2 and so on, drawn by chance
  Curve glitch = 0, alpha = 1;
  Blend blend = Blend::over;
};
// Light: a picture that is added to what is there.
inline Bitmap glow(const char* texture, const Place& at, const Curve& alpha = 1) {
  return {.texture = texture, .at = at, .alpha = alpha, .blend = Blend::add};
}
// Darkens what is there.
inline Bitmap shadow(const Place& at, const Curve& alpha = 1) {
  return {.texture = "shade", .at = at, .alpha = alpha, .blend = Blend::darken};
}
struct Tiles {
  const char* texture;
  Place at{};
  Curve across = 1, down = 1, alpha = 1;
  Blend blend = Blend::over;
};
struct Waves {
  const char* texture;
  Place at{};
  Curve speed = 1, amplitude = 0.03, alpha = 1;
  Blend blend = Blend::over;
};
struct Fade {
  Curve red = 0, green = 0, blue = 0, alpha = 1;
};
struct Movie {
  const char* base;
  Place at{};
  int first = 1, last = 1;
  Curve fps = 12, alpha = 1;
};
struct Viewport {
  Curve x = -1, y = -1, w = 2, h = 2;  // y upwards
};
struct Noise {
  const char* texture;
  double jitterX = 0, jitterY = 0, speedX = 0, speedY = 0;
  Curve alpha = 1;
  double flicker = 0;  // of alpha
  Blend blend = Blend::add;
  double aspect = 9.0 / 16;  // height over width of the window into the tile; this leaves square texels
};
struct Logo {
  const char* ending;  // as in "ed01"
  Curve x = 0, y = 0, size = 1, glitch = 0, alpha = 1, layers = 1, scale = 1, fall = 0.5;
};

// A scene that is seen through one of several cameras, numbered from 0; between two numbers the lower holds.
struct World {
  const char* scene;
  Curve camera = 0;
};

// Cubes that turn over what is there; `field` is the angle of sight in degrees.
struct TurningCubes {
  Curve alpha = 1, field = 80;
  Blend blend = Blend::add;
};

// The layers between and over the worlds. Speeds are in radians a second of scene time; a part that goes on
// where another ended begins at the scene time at which that one ended.
struct Filaments {
  Curve alpha = 1;
  double across = 0.3, up = 0.2, depth = 0.25;
  Blend blend = Blend::add;
};
struct Rays {
  Curve alpha = 1;
  double eyeAcross = 0.5, eyeUp = 0.7, targetAcross = 0.4, targetUp = 0.6;
  Blend blend = Blend::add;
};
struct Mirrors {
  Curve alpha = 1;
  Blend blend = Blend::over;
  Curve speedX = 2, speedY = 2.7, speedZ = 1.6;  // of the waves; these may change
  Curve stillness = 0.5;                         // 0: stretched from a half to one and a half
  Curve wavesX = 0.5, wavesY = 0.6, wavesZ = 0.4;
};
// Before the eye, which stands at (0, 0, 30) and looks along -z.
struct Particles {
  Curve alpha = 1, count = 100;
  Curve spread = 5;  // of the velocities, units a second
  Curve speedX = 0, speedY = 0, speedZ = 0;
  Curve scatter = 20;  // half the side of the cube in which they begin
};
struct Flare {
  const char* texture;  // of the particles, from here on
};

ScriptCall draw(const Bitmap& bitmap);
ScriptCall draw(const Tiles& tiles);
ScriptCall draw(const Waves& waves);
ScriptCall draw(const Fade& fade);
ScriptCall draw(const Movie& movie);
ScriptCall draw(const Viewport& viewport);
ScriptCall draw(const Noise& noise);
ScriptCall draw(const Logo& logo);
ScriptCall draw(const World& world);
ScriptCall draw(const TurningCubes& cubes);
ScriptCall draw(const Filaments& filaments);
ScriptCall draw(const Rays& rays);
ScriptCall draw(const Mirrors& mirrors);
ScriptCall draw(const Particles& particles);
ScriptCall draw(const Flare& flare);

}  // namespace screen

struct Show {
  Script script;

  // Bars may be fractions. Scene time starts at 0 unless `start` says otherwise. Fatal: a call that the
  // scene's own table of functions does not offer, naming the part.
  void part(const char* name, double fromBar, double bars, int track, std::vector<ScriptCall> calls,
            double start = 0, double speed = 1);

  // Each record draws one call or several.
  template <typename... Records>
  void add(const char* name, double fromBar, double bars, int track, const Records&... records) {
    using screen::draw;
    std::vector<ScriptCall> calls;
    (append(calls, draw(records)), ...);
    part(name, fromBar, bars, track, std::move(calls));
  }

 private:
  static void append(std::vector<ScriptCall>& calls, ScriptCall call) { calls.push_back(std::move(call)); }
  static void append(std::vector<ScriptCall>& calls, const std::vector<ScriptCall>& more) {
    calls.insert(calls.end(), more.begin(), more.end());
  }
};

// The preload list: every texture that the script would otherwise load while it runs, with its wrap
// mode; pictures of one glitch stand together. Fatal: "texture %s is used with and without wrap".
std::string preloadList(const Script& script);

}  // namespace vex::show
