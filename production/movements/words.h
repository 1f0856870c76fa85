#pragma once

#include "production/show.h"

// What the movements share: the order of their layers, the seven endings of the title, and a few shots that
// return.

namespace vex {

enum Track {
  ground = 0,
  backdrop = 10,
  far = 30,  // a tunnel's gates take the tracks below it
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

// Bar of a cue.
double barOf(std::string_view cue);

// The title with one of its endings; the middle of its letters lies at (x, y).
screen::Logo vexed(const Curve& size, double x = 0, double y = 0);
screen::Logo vexing(const Curve& size, double x = 0, double y = 0);
screen::Logo vexation(const Curve& size, double x = 0, double y = 0);
screen::Logo vexatious(const Curve& size, double x = 0, double y = 0);
screen::Logo vexer(const Curve& size, double x = 0, double y = 0);
screen::Logo vexillum(const Curve& size, double x = 0, double y = 0);
screen::Logo vexedly(const Curve& size, double x = 0, double y = 0);
screen::Logo glitching(screen::Logo logo, const Curve& glitch, int layers, const Curve& scale);

// Three by three rose windows, the middle one about the middle of the screen, `height` high.
screen::Tiles roseWall(const char* texture, const Curve& height);

// A gate flies past every `beats`, `aspect` times as wide as high; it appears `height` high.
void tunnel(Show& show, const char* texture, double fromBar, double bars, double beats, double aspect = 1,
            double height = 0.35);

// The movements, in order, and what lies over them all.
void addPrologue(Show& show);
void addBox(Show& show);
void addAlien(Show& show);
void addInterludeOne(Show& show);
void addInterludeTwo(Show& show);
void addFinish(Show& show);

}  // namespace vex
