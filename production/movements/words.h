#pragma once

#include <functional>

#include "engine/vector.h"
#include "production/show/show.h"

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
  curtain = 120,
};

inline const std::vector<double> everyBeat{0, 1, 2, 3, 4, 5, 6, 7};

// At an even pace over the part.
show::Curve slide(double from, double to);

inline constexpr double blackSeconds = 3.5;  // after the last bar, while the last chord rings out

// Bar of a cue.
double barOf(std::string_view cue);

// Where a place in a world is seen while its camera plays from `start` at `speed`: light that is drawn over a
// world stands where its source is.
struct Sight {
  show::Curve x, y;
  show::Curve unit;  // height of one unit there; 0 behind the eye
};
// The place may move with the scene's time.
Sight onScreen(const StageCamera& camera, double start, double speed, double beats,
               const std::function<Vector(float sceneTime)>& place);
Sight onScreen(const StageCamera& camera, double start, double speed, double beats, const Vector& place);

// An ending of the title and the title before it, both of the same material.
struct Ending {
  const char* texture;
  const char* struck;  // burning white
  double leftBy;       // how far the middle of the whole word lies left of the logo's own middle, in sizes
  const char* vex;
};
inline constexpr const char *copperVex = "vex01", *chromeVex = "vex03", *glassVex = "vex05",
                            *emberVex = "vex07", *struckVex = "vex08";
inline constexpr Ending ation{"end_ation01", "end_ation02", 0.28, copperVex},
    atious{"end_atious01", "end_atious02", 0.22, chromeVex},
    chromeAtion{"chrome_ation", "end_ation02", 0.28, chromeVex},
    chromeEr{"chrome_er", "end_er02", 0.5, chromeVex}, ing{"end_ing01", "end_ing02", 0.43, glassVex},
    illum{"end_illum01", "end_illum02", 0.28, glassVex}, ed{"end_ed01", "end_ed02", 0.5, emberVex},
    er{"end_er01", "end_er02", 0.5, emberVex}, edly{"end_edly01", "end_edly02", 0.38, emberVex};

// Somebody in a hood stands in the door of one world and before the sun of the next.
struct Stand {
  double x = -0.42, y = 0.2, height = 1.7;
};
inline constexpr Stand watcher;

// The title with an ending: the middle of its letters lies at (x, y). Whole until its last beat tears it.
struct Word {
  Ending ending;
  show::Curve size = 1;
  double x = 0, y = 0;
  show::Curve tear = show::line({{0, 0}, {-1, 0}, {-0.98, 0.5}, {show::partEnd, 0.95}});
};
std::vector<show::ScriptCall> draw(const Word& word);
Word vex(const Ending& ending, const show::Curve& size, double x = 0, double y = 0);

// Smoke before the lens, reaching `reach` times as far as the screen.
show::screen::Waves smokeBefore(const char* texture, double reach, double speed, const show::Curve& alpha);

// The movements, in order, and what lies over them all.
void addPrologue(show::Show& show);
void addBox(show::Show& show);
// Its lid comes down once more: open at bar `from`, its letters in it at bar `drawnIn`, shut at bar `shut`.
void addLidCloses(show::Show& show, double from, double drawnIn, double shut, double until);
void addAlien(show::Show& show);
void addInterludeOne(show::Show& show);
void addLaboratory(show::Show& show);
void addInterludeTwo(show::Show& show);
void addSkull(show::Show& show);
void addHell(show::Show& show);
void addWater(show::Show& show);
void addOutro(show::Show& show);
void addFinish(show::Show& show);

}  // namespace vex
