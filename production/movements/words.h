#pragma once

#include <functional>

#include "engine/vector.h"
#include "production/show.h"

// What the movements share: the order of their layers, the seven endings of the title, and a few shots that
// return.

namespace vex {

struct StageCamera;

enum Track {
  ground = 0,
  backdrop = 10,
  far = 30,
  haze = 40,
  subject = 45,
  smoke = 50,
  front = 60,
  title = 70,
  flash = 80,
  grain = 100,
  vignette = 105,
  letterbox = 110,
  curtain = 120,
};

inline const std::vector<double> everyBeat{0, 1, 2, 3, 4, 5, 6, 7};

// At an even pace over the part.
Curve slide(double from, double to);

inline constexpr double blackSeconds = 3.5;  // after the last bar, while the last chord rings out

// Bar of a cue.
double barOf(std::string_view cue);

// Where a place in a world is seen while its camera plays from `start` at `speed`: light that is drawn over a
// world stands where its source is.
struct Sight {
  Curve x, y;
  Curve unit;  // height of one unit there; 0 behind the eye
};
// The place may move with the scene's time.
Sight onScreen(const StageCamera& camera, double start, double speed, double beats,
               const std::function<Vector(float sceneTime)>& place);
Sight onScreen(const StageCamera& camera, double start, double speed, double beats, const Vector& place);

// An ending of the title.
struct Ending {
  const char* texture;
  double leftBy;  // how far the middle of the whole word lies left of the logo's own middle, in sizes
};
inline constexpr Ending ed{"end_ed01", 0.5}, ing{"end_ing01", 0.43}, ation{"end_ation01", 0.28},
    atious{"end_atious01", 0.22}, er{"end_er01", 0.5}, illum{"end_illum01", 0.28}, edly{"end_edly01", 0.38};

// Somebody in a hood stands in the door of one world and before the sun of the next.
struct Stand {
  double x = -0.42, y = 0.2, height = 1.7;
};
inline constexpr Stand watcher;

// The title with that ending; the middle of its letters lies at (x, y).
screen::Logo vex(const Ending& ending, const Curve& size, double x = 0, double y = 0);
screen::Logo glitching(screen::Logo logo, const Curve& glitch, int layers, const Curve& scale);

// Smoke before the lens, reaching `reach` times as far as the screen.
screen::Waves smokeBefore(const char* texture, double reach, double speed, const Curve& alpha);

// A dark bank behind the title, half as wide again as the word.
screen::Bitmap shadeBehind(const screen::Logo& logo, const Curve& x = 0);

// Three by three rose windows, the middle one about the middle of the screen, `height` high.
screen::Tiles roseWall(const char* texture, const Curve& height);

// The movements, in order, and what lies over them all.
void addPrologue(Show& show);
void addBox(Show& show);
void addAlien(Show& show);
void addInterludeOne(Show& show);
void addLaboratory(Show& show);
void addInterludeTwo(Show& show);
void addSkull(Show& show);
void addHell(Show& show);
void addWater(Show& show);
void addOutro(Show& show);
void addFinish(Show& show);

}  // namespace vex
