#include "production/movements/words.h"
#include "production/textures/storm.h"

namespace vex {

using namespace screen;

namespace {

enum Camera { wide, low, face, crane, socket, far, left, right, fallen, above, landing, hunted };

// --- Words of this world

ScriptParameter number(const char* name, const Curve& curve, double least, double most) {
  return {name, curve, least, most};
}
ScriptParameter text(const char* name, const char* value) {
  Curve curve;
  curve.kind = CurveKind::text;
  curve.text = value;
  return {name, curve, 0, 0};
}
ScriptCall set(const char* function, std::vector<ScriptParameter> parameters) {
  return {"SceneSkull", function, std::move(parameters)};
}

// `eyes` burn, `storm` is the cold light from above.
ScriptCall lights(const Curve& eyes, const Curve& storm) {
  return set("setLights",
             {number("eyes", eyes, 0, 4), number("storm", storm, 0, 4), number("red", 0.55, 0, 1),
              number("green", 0.7, 0, 1), number("blue", 0.85, 0, 1)});
}
ScriptCall lightning(const Curve& rate) {
  return set("setSparkRate", {number("rate", rate, 0, 1)});
}
ScriptCall aim(const char* target, const Curve& rate) {
  return set("setLaser", {text("target", target), number("rate", rate, 0, 1)});
}
ScriptCall beams(const Curve& leftBeam, const Curve& rightBeam) {
  return set("setLaserOpacity", {number("left", leftBeam, 0, 1), number("right", rightBeam, 0, 1)});
}
ScriptCall trail(int crow, double count) {
  return set("setParticleCount", {number("crow", crow, 0, 2), number("count", count, 0, 100)});
}

// The world fills the screen for a while; `start` is where its cameras' shots of twenty seconds are entered.
void addShot(Show& show, const char* name, double bar, double bars, Camera camera, double start,
             double speed = 1) {
  show.part(name, bar, bars, backdrop, {draw(World{.scene = "SceneSkull", .camera = camera})}, start, speed);
}

constexpr int settings = ground + 1;

// --- The crows, laps of which each is shot in a place that its laser can reach.

struct Prey {
  const char* name;
  int number;
  double from;  // of a lap, at the movement's beginning
  double to;    // where it is shot
  const char* aimed;
  const char* shot;  // cues
};
constexpr Prey preys[] = {{"Crow01", 0, 0.02, 0.589, "laser 1", "crow 1 falls"},
                          {"Crow02", 1, 0.80, 0.731, "laser 2", "crow 2 falls"},
                          {"Crow03", 2, 0.35, 0.036, "laser 3", "crow 3 falls"}};

void addPrey(Show& show, const Prey& prey) {
  const double start = skullBar, aimed = barOf(prey.aimed), shot = barOf(prey.shot);
  // One lap's end may lie between.
  const double way = (prey.to > prey.from ? 0 : 1) + prey.to - prey.from;
  Curve flight = slide(prey.from, prey.to);
  if (prey.to < prey.from) {
    const double turn = (1 - prey.from) / way * (shot - start) * beatsPerBar;
    flight = line({{0, prey.from}, {turn, 0.999}, {turn + 0.01, 0}, {partEnd, prey.to}});
  }
  show.part(prey.name, start, shot - start, settings,
            {set("setAnimationState", {text("object", prey.name), number("lap", flight, 0, 0.999)})});

  // Light on the beats of a bar; it holds the crow for a beat when it has hit.
  const double bars = shot - aimed, hold = 0.25;
  show.part("aim", aimed, bars + hold, settings,
            {aim(prey.name, 1), beams(flashes({0, 1, 2, 3, bars * beatsPerBar}, 1, 0.25),
                                      flashes({0, 1, 2, 3, bars * beatsPerBar}, 1, 0.25))});
  show.part("lasers out", shot + hold, 0.5, settings, {aim("", 0)});

  // It falls burning until the ground has it.
  show.part("fall", shot, 2, settings,
            {set("killCrow", {number("crow", prey.number, 0, 2)}), trail(prey.number, 100)});
  // A show that starts later finds it there, not in mid-air.
  show.part("burnt out", shot + 2, 0.5, settings,
            {set("killCrow", {number("crow", prey.number, 0, 2)}), trail(prey.number, 0)}, cueSeconds(2), 0);
}

// Where something stands on the screen, and how high its light is, by beats.
struct Spot {
  double beat, x, y, height;
};

Place through(const std::vector<Spot>& spots) {
  std::vector<CurveDot> x, y, height;
  for (const Spot& spot : spots) {
    x.push_back({spot.beat, spot.x});
    y.push_back({spot.beat, spot.y});
    height.push_back({spot.beat, spot.height});
  }
  return centred(line(x), line(y), line(height));
}

// What burns lights the air about it. Places on the screen follow the fall as each shot sees it.
void addGlows(Show& show) {
  const struct {
    double bar, beats;
    std::vector<Spot> spots;
  } glows[] = {
      {barOf("crow 1 falls"),
       4,
       {{0, -0.1, -0.53, 0.6},
        {1, -0.12, -0.41, 0.6},
        {2, -0.13, -0.25, 0.6},
        {3, -0.14, -0.05, 0.6},
        {4, -0.15, 0.18, 0.6}}},
      {barOf("clouds race"), 2, {{0, -0.56, -0.12, 0.9}, {1, -0.55, 0.35, 0.9}, {2, -0.57, 1, 0.9}}},
      {barOf("crow 2 falls"),
       4,
       {{0, -0.03, 0.04, 0.9}, {1.25, -0.06, -0.1, 1.1}, {2.5, -0.12, -0.15, 1.5}, {4, -0.3, 0, 2.8}}},
      {barOf("crow 3 falls"),
       4,
       {{0, -0.22, -0.68, 0.9},
        {1, -0.3, -0.46, 0.9},
        {2, -0.36, -0.2, 0.9},
        {3, -0.43, 0.12, 0.9},
        {4, -0.48, 0.51, 0.9}}},
  };
  for (const auto& glow : glows)
    for (const char* light : {"light6", "haze_ember"})
      show.add("fire's glow", glow.bar, glow.beats / beatsPerBar, haze,
               Bitmap{.texture = light,
                      .at = through(glow.spots),
                      .alpha = fade(0.1, 0.6, 0.4),
                      .blend = Blend::add});
  // Where a beam has burnt through.
  for (const int hit : {0, 2, 3})
    show.add(
        "hit", glows[hit].bar, 0.25, flash,
        Bitmap{.texture = "light7",
               .at = centred(glows[hit].spots[0].x, glows[hit].spots[0].y, line({{0, 1.7}, {partEnd, 0.5}})),
               .alpha = line({{0, 1}, {partEnd, 0}}),
               .blend = Blend::add},
        Fade{.red = 1, .green = 0.8, .blue = 0.7, .alpha = line({{0, 0.5}, {0.1, 0.15}, {0.25, 0}})});
}

// The sockets blaze while they aim.
void addBlazes(Show& show) {
  const struct {
    double bar, beats;
    std::vector<Spot> left, right;
  } blazes[] = {{skullBar + 6,
                 2,
                 {{0, 0.34, -0.22, 1.4}, {2, 0.47, -0.27, 1.6}},
                 {{0, -0.31, -0.12, 1.4}, {2, -0.34, -0.15, 1.6}}},
                {skullBar + 6.5, 3, {{0, 0.22, 0.17, 0.5}}, {{0, 0.06, 0.19, 0.5}}},
                {skullBar + 9,
                 2,
                 {{0, 0.17, -0.09, 1}, {2, 0.12, -0.08, 1}},
                 {{0, -0.23, -0.02, 1}, {2, -0.28, -0.02, 1}}},
                {skullBar + 9.5, 2, {{0, 0.22, 0.17, 0.5}}, {{0, 0.06, 0.19, 0.5}}},
                {skullBar + 12,
                 2,
                 {{0, 0.53, -0.3, 1.7}, {2, 0.75, -0.41, 2}},
                 {{0, -0.34, -0.17, 1.7}, {2, -0.34, -0.24, 2}}},
                {skullBar + 12.5,
                 2,
                 {{0, 0.08, -0.03, 0.5}, {2, 0.08, -0.02, 1.6}},
                 {{0, -0.05, 0.02, 0.5}, {2, -0.07, 0.02, 1.6}}},
                {skullBar + 13, 1, {{0, 0.04, 0.26, 0.4}}, {{0, -0.09, 0.26, 0.4}}}};
  for (const auto& blaze : blazes)
    for (const auto* spots : {&blaze.left, &blaze.right})
      show.add("blaze", blaze.bar, blaze.beats / beatsPerBar, haze,
               Bitmap{.texture = "light4",
                      .at = through(*spots),
                      .alpha = flashes(everyBeat, 0.9, 0.35),
                      .blend = Blend::add});
}

// The last of it: one socket's fire swallows the picture.
void addInferno(Show& show) {
  const std::vector<Spot> socket{{0, -0.33, -0.13, 0.5}, {1.75, -0.34, -0.17, 1.1}, {3, 0, 0, 8}};
  const double start = skullBar + 15, bars = 0.75;
  for (const char* light : {"light4", "rays_ember", "light7"})
    show.add("inferno", start, bars, flash,
             Bitmap{.texture = light,
                    .at = through(socket),
                    .alpha = light == std::string("light7") ? line({{0, 0}, {1.75, 0.4}, {3, 1}})
                                                            : line({{0, 0.5}, {1.75, 1}}),
                    .blend = Blend::add});
  show.add("white of the eye", start, bars, flash + 1,
           Fade{.red = 1, .green = 0.96, .blue = 0.92, .alpha = line({{0, 0}, {2.4, 0}, {3, 1}})});
}

// --- Storm

// Strokes of lightning on beats from a bar on, each struck again a quarter of a beat later: the sparks, their
// light from behind, and the sky. Between strokes there is none.
void addStrokes(Show& show, double bar, double bars, const std::vector<double>& beats, double eyes) {
  std::vector<double> struck;
  std::vector<CurveDot> white;
  for (const double beat : beats) {
    if (!struck.empty() && struck.back() == beat) struck.pop_back();
    struck.insert(struck.end(), {beat, beat + 0.25});
    // The whole sky is white at most three times in two beats.
    if (!white.empty() && beat - white.back().x < 0.3) continue;
    if (beat > 0) white.push_back({beat - 0.01, 0});
    white.insert(white.end(), {{beat, 0.6}, {beat + 0.1, 0.2}, {beat + 0.3, 0}});
  }
  if (white.empty()) white.push_back({0, 0});
  show.part("storm", bar, bars, settings,
            {lights(flashes(everyBeat, eyes * 1.4, eyes), flashes(struck, 3, 0.45)),
             lightning(flashes(struck, 1))});
  show.add("stroke", bar, bars, flash - 1,
           Bitmap{.texture = "haze_teal",
                  .at = centred(swing(7, -0.5, 0.5), -0.9, 3.4, 1.9),
                  .alpha = flashes(struck, 1, 0),
                  .blend = Blend::add},
           Fade{.red = 0.86, .green = 0.95, .blue = 1, .alpha = line(white)});
}

// A wide faint halo about the bolts, where a shot has them.
void addHalos(Show& show) {
  const struct {
    double bar, bars;
    std::vector<double> beats;
    double x, y;
  } halos[] = {{skullBar, 1.5, {0, 0.25, 3, 3.25, 4, 4.25}, -0.28, -0.62},
               {skullBar, 1.5, {0, 0.25, 3, 3.25, 4, 4.25}, 0.26, -0.60},
               {barOf("spears") + 1, 1, {0, 0.25, 1, 1.25, 1.5, 2, 2.5, 3}, 0.26, -0.44},
               {barOf("clouds race"), 1, {0, 0.25, 1.5, 3}, 0.32, -0.42},
               {barOf("crow 3 falls"), 1, {0, 1.25, 1.5, 2.5}, -0.42, -0.50}};
  for (const auto& halo : halos)
    show.add("halo", halo.bar, halo.bars, haze,
             Bitmap{.texture = "light3",
                    .at = centred(halo.x, halo.y, 1.9, 0.8),
                    .alpha = flashes(halo.beats, 0.26, 0),
                    .blend = Blend::add});
}

void addStorm(Show& show) {
  const double start = skullBar;
  show.add("zenith", start, 16, ground,
           Fade{.red = stormZenith.r, .green = stormZenith.g, .blue = stormZenith.b});
  addStrokes(show, start, 2, {0, 3, 4, 6, 7.25}, 0.8);
  addStrokes(show, barOf("storm"), 2, {0, 2.5, 4, 6, 7, 7.5}, 0.9);
  addStrokes(show, barOf("spears"), 2, {0, 1, 2, 3, 4, 5, 5.25, 6, 6.5, 7, 7.5}, 0.9);
  addStrokes(show, barOf("laser 1"), 2, {4, 6.5}, 1.5);
  addStrokes(show, barOf("clouds race"), 1, {0, 1.5, 3}, 0.9);
  addStrokes(show, barOf("laser 2"), 1, {}, 1.6);
  addStrokes(show, barOf("crow 2 falls"), 2, {0, 2.5, 4, 5, 6, 7, 7.5}, 1.4);
  addStrokes(show, barOf("laser 3"), 2, {4, 5.25, 6.5}, 1.7);
  addStrokes(show, barOf("heart of the storm"), 2, {0, 0.5, 1, 2, 2.5, 3, 4, 4.5, 5, 6, 6.5, 7}, 1.8);
}

void addShots(Show& show) {
  const double start = skullBar;
  addShot(show, "across the plain", start, 1.5, wide, 1, 2.2);
  addShot(show, "face of rock", barOf("lightning"), 0.5, face, 3);
  addShot(show, "over the crown", start + 2, 1, crane, 9.6, 3);
  addShot(show, "under its teeth", start + 3, 1, low, 3, 2);
  addShot(show, "spears from afar", start + 4, 1, Camera::far, 3, 2);
  addShot(show, "spears before", start + 5, 1, right, 1, 2.5);
  addShot(show, "eye 1", start + 6, 0.5, socket, 4, 4);
  addShot(show, "hunt 1", start + 6.5, 1.5, left, 4, 1.5);
  addShot(show, "clouds race", start + 8, 1, low, 12, 2.5);
  addShot(show, "eyes 2", start + 9, 0.5, face, 9, 1.5);
  addShot(show, "hunt 2", start + 9.5, 0.5, left, 5, 1.5);
  addShot(show, "falls towards us", start + 10, 1.25, landing, 8);
  addShot(show, "from the storm's eye", start + 11.25, 0.75, above, 4, 3);
  addShot(show, "eye 3", start + 12, 0.5, socket, 9, 4);
  addShot(show, "hunt 3", start + 12.5, 0.5, hunted, 10);
  addShot(show, "falls before us", start + 13, 1, fallen, 2, 4);
  addShot(show, "heart of the storm", start + 14, 1, low, 15, 2.4);
  addShot(show, "into the eye", start + 15, 0.75, socket, 6, 3.4);
  show.add("struck dumb", start + 15.75, 0.25, curtain - 1, Fade{});
}

}  // namespace

void addSkull(Show& show) {
  addStorm(show);
  addHalos(show);
  addGlows(show);
  addBlazes(show);
  addInferno(show);
  for (const Prey& prey : preys) addPrey(show, prey);
  addShots(show);
}

}  // namespace vex
