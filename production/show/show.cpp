#include "production/show/show.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "base/report.h"

namespace vex {

namespace {

constexpr double screenAspect = 16.0 / 9;
constexpr int zoomDots = 24;

// Textures are clamped and filtered against a clear border, so that the outer half texel of a picture is half
// gone: what covers the screen reaches this much beyond it.
constexpr double overscan = 1.05;

ScriptParameter text(const char* name, const std::string& value) {
  ScriptParameter parameter{name, {}};
  parameter.curve.kind = CurveKind::text;
  parameter.curve.text = "data\\" + value;
  return parameter;
}
ScriptParameter number(const char* name, const Curve& curve, double least = -1000, double most = 1000) {
  return {name, curve, least, most};
}
ScriptParameter unit(const char* name, const Curve& curve) {
  return number(name, curve, 0, 1);
}
ScriptParameter blendMode(screen::Blend blend) {
  return number("blend", static_cast<int>(blend), 0, 2);
}

ScriptCall call(const char* function, std::vector<ScriptParameter> parameters) {
  return {"SceneHelper", function, std::move(parameters)};
}
std::vector<ScriptParameter> placed(const char* texture, const Place& at, std::vector<ScriptParameter> more) {
  std::vector<ScriptParameter> all{text("texture", texture), number("x", at.x), number("y", at.y),
                                   number("w", at.w), number("h", at.h)};
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

// Beats to progress.
void settle(Curve& curve, double beats) {
  for (CurveDot& dot : curve.dots) dot.x = dot.x >= partEnd ? 1 : (dot.x < 0 ? beats + dot.x : dot.x) / beats;
  if (curve.kind == CurveKind::sine) curve.cycles = beats / curve.cycles;
}

}  // namespace

Curve line(std::vector<CurveDot> dots) {
  return {CurveKind::linear, std::move(dots)};
}

Curve spline(std::vector<CurveDot> dots) {
  return {CurveKind::spline, std::move(dots)};
}

Curve swing(double beats, double low, double high, double phase) {
  Curve curve;
  curve.kind = CurveKind::sine;
  curve.cycles = beats;
  curve.amplitude = (high - low) / 2;
  curve.offset = (high + low) / 2;
  curve.phase = phase;
  return curve;
}

Curve fade(double in, double out, double level) {
  std::vector<CurveDot> dots;
  if (in > 0) dots.push_back({0, 0});
  dots.push_back({in, level});
  if (out > 0) {
    dots.push_back({-out, level});
    dots.push_back({partEnd, 0});
  } else {
    dots.push_back({partEnd, level});
  }
  return line(std::move(dots));
}

Curve flashes(const std::vector<double>& beats, double level, double rest) {
  static constexpr CurveDot decay[]{
      {0, 1}, {0.12, 0.55}, {0.28, 0.18}, {0.48, 0}};  // beats, share of the jump
  static constexpr double jump = 0.01;                 // beats that a rise takes
  std::vector<CurveDot> dots;
  if (beats.empty() || beats.front() > jump) dots.push_back({0, rest});
  for (std::size_t i = 0; i < beats.size(); ++i) {
    const double next = i + 1 < beats.size() ? beats[i + 1] - jump : partEnd;
    if (beats[i] > jump) dots.push_back({beats[i] - jump, rest});
    for (const CurveDot& dot : decay)
      if (beats[i] + dot.x < next) dots.push_back({beats[i] + dot.x, rest + (level - rest) * dot.y});
  }
  return line(std::move(dots));
}

Curve zoom(double from, double to, double beats) {
  std::vector<CurveDot> dots;
  for (int i = 0; i <= zoomDots; ++i) {
    const double share = static_cast<double>(i) / zoomDots;
    dots.push_back({share * beats, from * std::pow(to / from, share)});
  }
  return line(std::move(dots));
}

Curve travel(double from, double to, double beats) {
  std::vector<CurveDot> dots;
  for (int i = 0; i <= zoomDots; ++i) {
    const double share = static_cast<double>(i) / zoomDots;
    dots.push_back({share * beats, from + (to - from) * share});
  }
  return line(std::move(dots));
}

Curve operator*(Curve curve, double factor) {
  curve.value *= factor, curve.amplitude *= factor, curve.offset *= factor;
  for (CurveDot& dot : curve.dots) dot.y *= factor;
  return curve;
}

Curve operator+(Curve curve, double constant) {
  curve.value += constant, curve.offset += constant;
  for (CurveDot& dot : curve.dots) dot.y += constant;
  return curve;
}

Curve operator+(const Curve& p, const Curve& q) {
  if (q.kind == CurveKind::constant) return p + q.value;
  if (p.kind == CurveKind::constant) return q + p.value;
  bool alike = p.kind == q.kind && p.kind != CurveKind::sine && p.dots.size() == q.dots.size();
  Curve sum = p;
  for (std::size_t i = 0; alike && i < p.dots.size(); ++i) {
    alike = p.dots[i].x == q.dots[i].x;
    sum.dots[i].y += q.dots[i].y;
  }
  if (!alike) fatalError("curves of different times cannot be added");
  return sum;
}

Place centred(const Curve& x, const Curve& y, const Curve& height, double aspect) {
  const Curve width = height * (aspect / screenAspect);
  return {x + width * -0.5, y + height * -0.5, width, height};
}

Place covering(const Curve& scale, const Curve& x, const Curve& y) {
  return {x + scale * -overscan, y + scale * -overscan, scale * (2 * overscan), scale * (2 * overscan)};
}

namespace screen {

ScriptCall draw(const Bitmap& b) {
  return call("drawBitmap", placed(b.texture, b.at,
                                   {number("frames", b.frames, 0, 8), unit("glitch", b.glitch),
                                    unit("alpha", b.alpha), blendMode(b.blend)}));
}
ScriptCall draw(const Tiles& t) {
  return call("drawBitmapRepeat", placed(t.texture, t.at,
                                         {number("across", t.across), number("down", t.down),
                                          unit("alpha", t.alpha), blendMode(t.blend)}));
}
ScriptCall draw(const Waves& w) {
  return call("drawBitmapWave", placed(w.texture, w.at,
                                       {number("speed", w.speed), number("amplitude", w.amplitude),
                                        unit("alpha", w.alpha), blendMode(w.blend)}));
}
ScriptCall draw(const Fade& f) {
  return call("fadeScreen",
              {unit("red", f.red), unit("green", f.green), unit("blue", f.blue), unit("alpha", f.alpha)});
}
ScriptCall draw(const Movie& m) {
  return call("drawMovie", placed(m.base, m.at,
                                  {number("first", m.first), number("last", m.last), number("fps", m.fps),
                                   unit("alpha", m.alpha)}));
}
ScriptCall draw(const Viewport& v) {
  return call("setViewport", {number("x", v.x, -1, 1), number("y", v.y, -1, 1), number("width", v.w, 0, 2),
                              number("height", v.h, 0, 2)});
}
ScriptCall draw(const Noise& n) {
  return call("drawNoise",
              {text("texture", n.texture), number("jitter x", n.jitterX), number("jitter y", n.jitterY),
               number("speed x", n.speedX), number("speed y", n.speedY), unit("alpha", n.alpha),
               unit("flicker", n.flicker), blendMode(n.blend), number("aspect", n.aspect, 0.01, 100)});
}
ScriptCall draw(const Logo& l) {
  return call("drawVexLogo",
              {text("ending", l.ending), number("x", l.x), number("y", l.y), number("size", l.size),
               unit("glitch", l.glitch), unit("alpha", l.alpha), number("layers", l.layers, 0, 16),
               number("scale", l.scale), unit("fall", l.fall)});
}

ScriptCall draw(const World& w) {
  return {w.scene, "animate", {number("camera", w.camera, 0, 15)}};
}

ScriptCall draw(const TurningCubes& c) {
  return {"SceneLayerRotCubes",
          "animate",
          {unit("alpha", c.alpha), number("field of view", c.field, 1, 170), blendMode(c.blend)}};
}
ScriptCall draw(const Filaments& f) {
  return {"SceneLayerWide",
          "animate",
          {unit("alpha", f.alpha), number("speed across", f.across), number("speed up", f.up),
           number("speed in depth", f.depth), blendMode(f.blend)}};
}
ScriptCall draw(const Rays& r) {
  return {"SceneLayerRays",
          "animate",
          {unit("alpha", r.alpha), number("eye speed across", r.eyeAcross), number("eye speed up", r.eyeUp),
           number("target speed across", r.targetAcross), number("target speed up", r.targetUp),
           blendMode(r.blend)}};
}
ScriptCall draw(const Mirrors& m) {
  return {"SceneLayerWobbel",
          "animate",
          {unit("alpha", m.alpha), blendMode(m.blend), number("phase speed x", m.speedX),
           number("phase speed y", m.speedY), number("phase speed z", m.speedZ),
           unit("stillness", m.stillness), number("waves along x", m.wavesX),
           number("waves along y", m.wavesY), number("waves along z", m.wavesZ)}};
}
ScriptCall draw(const Particles& p) {
  return {
      "SceneLayerParticles",
      "animate",
      {unit("alpha", p.alpha), number("particle count", p.count, 0, 300), number("velocity spread", p.spread),
       number("velocity x", p.speedX), number("velocity y", p.speedY), number("velocity z", p.speedZ),
       number("position spread", p.scatter)}};
}
ScriptCall draw(const Flare& f) {
  return {"SceneLayerParticles", "loadFlare", {text("texture", f.texture)}};
}

}  // namespace screen

void Show::part(const char* name, double fromBar, double bars, int track, std::vector<ScriptCall> calls,
                double start, double speed) {
  for (ScriptCall& one : calls)
    for (ScriptParameter& parameter : one.parameters) settle(parameter.curve, bars * beatsPerBar);
  script.parts.push_back(
      {name, cueSeconds(fromBar), start, cueSeconds(bars), speed, track, std::move(calls)});
}

namespace {

// What the lights of a scene show, beside the flare that all lights have; loaded when one is first drawn.
struct SceneFlares {
  const char* scene;
  std::vector<const char*> textures;
};
const SceneFlares sceneFlares[] = {
    {"SceneHell", {"flare_shine"}},
    {"SceneIntroBox", {"flare_smoke1", "flare_smoke2", "flare_smoke3", "flare_smoke4"}},
    {"SceneFetus", {"flare_smoke1", "flare_smoke2", "flare_smoke3", "flare_smoke4"}},
    {"SceneSkull",
     {"flare_smoke1", "flare_smoke2", "flare_smoke3", "flare_smoke4", "flare_fire1", "flare_fire2",
      "flare_fire3", "flare_fire4"}},
    {"SceneWater", {"flare_highpass", "flare_particle"}},
    {"SceneLayerParticles", {"flare_shine"}},
    {"SceneOuttro", {"flare_vectorball"}},
};

bool calls(const Script& script, std::string_view scene) {
  for (const ScriptPart& part : script.parts)
    for (const ScriptCall& call : part.calls)
      if (call.scene == scene) return true;
  return false;
}

}  // namespace

std::string preloadList(const Script& script) {
  struct Use {
    std::string name;
    bool wrap;
  };
  std::vector<Use> uses;
  const auto use = [&](const std::string& name, bool wrap) {
    const auto known =
        std::find_if(uses.begin(), uses.end(), [&](const Use& one) { return one.name == name; });
    if (known == uses.end())
      uses.push_back({name, wrap});
    else if (known->wrap != wrap)
      fatalError("texture %s is used with and without wrap", name.c_str());
  };
  for (const ScriptPart& part : script.parts)
    for (const ScriptCall& one : part.calls) {
      if (one.function == "loadFlare") use(one.parameters[0].curve.text, false);
      if (one.function == "preloadFont") use(one.parameters[0].curve.text, false);
      const bool single = one.function == "drawBitmap";
      if (!single && one.function != "drawBitmapRepeat" && one.function != "drawBitmapWave" &&
          one.function != "drawNoise")
        continue;
      const std::string& name = one.parameters[0].curve.text;
      // The frames of a glitch follow the one that is named; their numbers are single digits.
      const int frames = single ? std::max(static_cast<int>(one.parameters[5].curve.value), 1) : 1;
      for (int frame = 0; frame < frames; ++frame)
        use(frame == 0 ? name : name.substr(0, name.size() - 1) + static_cast<char>(name.back() + frame),
            !single);
    }
  use("data\\vex_substract", false);
  use("data\\flare_normal", false);
  for (const auto& [scene, textures] : sceneFlares) {
    if (!calls(script, scene)) continue;
    for (const char* texture : textures) use(std::string("data\\") + texture, false);
  }
  std::string text;
  for (const Use& one : uses) text += one.name + (one.wrap ? " 1\n" : " 0\n");
  return text;
}

}  // namespace vex
