#include "production/show/show.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "base/report.h"
#include "scenes/scene_tables.h"

namespace vex::show {

using namespace image;
using namespace song;

namespace {

constexpr double screenAspect = 16.0 / 9;
constexpr int zoomDots = 24;

// Textures are clamped and filtered against a clear border, so that the outer half texel of a picture is half
// gone: what covers the screen reaches this much beyond it.
constexpr double overscan = 1.05;

ScriptParameter number(const Curve& curve, double least = -1000, double most = 1000) {
  return {curve, least, most};
}
ScriptParameter unit(const Curve& curve) {
  return number(curve, 0, 1);
}
ScriptParameter blendMode(screen::Blend blend) {
  return number(static_cast<int>(blend), 0, 2);
}

ScriptCall call(const char* function, std::vector<ScriptParameter> parameters) {
  return {"SceneHelper", function, std::move(parameters)};
}
std::vector<ScriptParameter> placed(const char* texture, const Place& at, std::vector<ScriptParameter> more) {
  std::vector<ScriptParameter> all{{file(texture)}, number(at.x), number(at.y), number(at.w), number(at.h)};
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

// Bends a line where it would leave its bounds, so that it reads as it is played.
void bendAtBounds(ScriptParameter& parameter) {
  if (parameter.curve.kind != CurveKind::linear) return;
  constexpr double touching = 1e-3;  // dots as near as this to a bound need no other one beside them
  std::vector<CurveDot> bent;
  for (const CurveDot& dot : parameter.curve.dots) {
    const CurveDot last = bent.empty() ? dot : bent.back();
    std::vector<CurveDot> crossings;
    for (const double bound : {parameter.least, parameter.most}) {
      const double before = last.y - bound, behind = dot.y - bound;
      if (before * behind >= 0 || std::min(std::fabs(before), std::fabs(behind)) < touching) continue;
      crossings.push_back({std::lerp(last.x, dot.x, (bound - last.y) / (dot.y - last.y)), bound});
    }
    std::sort(crossings.begin(), crossings.end(), [](auto& p, auto& q) { return p.x < q.x; });
    bent.insert(bent.end(), crossings.begin(), crossings.end());
    bent.push_back(dot);
  }
  for (CurveDot& dot : bent) dot.y = std::clamp(dot.y, parameter.least, parameter.most);
  parameter.curve.dots = std::move(bent);
}

// Names the parameters as the scene's own table does.
void nameParameters(ScriptCall& call, const char* part) {
  const SceneEntry* scene = findSceneEntry(sceneEntries(), call.scene);
  const FunctionRow* row = scene ? findFunction(*scene, call.function) : nullptr;
  if (!row)
    fatalError("part %s: there is no function %s.%s", part, call.scene.c_str(), call.function.c_str());
  if (row->parameters.size() != call.parameters.size())
    fatalError("part %s: %s.%s takes %zu parameters, not %zu", part, call.scene.c_str(), row->name,
               row->parameters.size(), call.parameters.size());
  for (std::size_t i = 0; i < call.parameters.size(); ++i) call.parameters[i].name = row->parameters[i].name;
}

// Beats to progress; what a line does behind the part's end is left out.
void settle(Curve& curve, double beats) {
  for (CurveDot& dot : curve.dots) dot.x = dot.x >= partEnd ? 1 : (dot.x < 0 ? beats + dot.x : dot.x) / beats;
  if (curve.kind == CurveKind::sine) curve.cycles = beats / curve.cycles;
  if (curve.kind != CurveKind::linear) return;
  const auto end =
      std::find_if(curve.dots.begin(), curve.dots.end(), [](const CurveDot& d) { return d.x >= 1; });
  if (end != curve.dots.end()) curve.dots.erase(end + 1, curve.dots.end());
}

}  // namespace

Curve text(std::string value) {
  Curve curve(CurveKind::text, {});
  curve.text = std::move(value);
  return curve;
}

Curve file(const std::string& name) {
  return text("data\\" + name);
}

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
  return call(
      "drawBitmap",
      placed(b.texture, b.at, {number(b.frames, 0, 8), unit(b.glitch), unit(b.alpha), blendMode(b.blend)}));
}
ScriptCall draw(const Tiles& t) {
  return call("drawBitmapRepeat",
              placed(t.texture, t.at, {number(t.across), number(t.down), unit(t.alpha), blendMode(t.blend)}));
}
ScriptCall draw(const Waves& w) {
  return call(
      "drawBitmapWave",
      placed(w.texture, w.at, {number(w.speed), number(w.amplitude), unit(w.alpha), blendMode(w.blend)}));
}
ScriptCall draw(const Fade& f) {
  return call("fadeScreen", {unit(f.red), unit(f.green), unit(f.blue), unit(f.alpha)});
}
ScriptCall draw(const Movie& m) {
  return call("drawMovie",
              placed(m.base, m.at, {number(m.first), number(m.last), number(m.fps), unit(m.alpha)}));
}
ScriptCall draw(const Viewport& v) {
  return call("setViewport", {number(v.x, -1, 1), number(v.y, -1, 1), number(v.w, 0, 2), number(v.h, 0, 2)});
}
ScriptCall draw(const Noise& n) {
  return call("drawNoise", {{file(n.texture)},
                            number(n.jitterX),
                            number(n.jitterY),
                            number(n.speedX),
                            number(n.speedY),
                            unit(n.alpha),
                            unit(n.flicker),
                            blendMode(n.blend),
                            number(n.aspect, 0.01, 100)});
}
ScriptCall draw(const Logo& l) {
  return call("drawVexLogo", {{file(l.ending)},
                              number(l.x),
                              number(l.y),
                              number(l.size),
                              unit(l.glitch),
                              unit(l.alpha),
                              number(l.layers, 0, 16),
                              number(l.scale),
                              unit(l.fall)});
}

ScriptCall draw(const World& w) {
  return {w.scene, "animate", {number(w.camera, 0, 15)}};
}

ScriptCall draw(const TurningCubes& c) {
  return {"SceneLayerRotCubes", "animate", {unit(c.alpha), number(c.field, 1, 170), blendMode(c.blend)}};
}
ScriptCall draw(const Filaments& f) {
  return {"SceneLayerWide",
          "animate",
          {unit(f.alpha), number(f.across), number(f.up), number(f.depth), blendMode(f.blend)}};
}
ScriptCall draw(const Rays& r) {
  return {"SceneLayerRays",
          "animate",
          {unit(r.alpha), number(r.eyeAcross), number(r.eyeUp), number(r.targetAcross), number(r.targetUp),
           blendMode(r.blend)}};
}
ScriptCall draw(const Mirrors& m) {
  return {"SceneLayerWobbel",
          "animate",
          {unit(m.alpha), blendMode(m.blend), number(m.speedX), number(m.speedY), number(m.speedZ),
           unit(m.stillness), number(m.wavesX), number(m.wavesY), number(m.wavesZ)}};
}
ScriptCall draw(const Particles& p) {
  return {"SceneLayerParticles",
          "animate",
          {unit(p.alpha), number(p.count, 0, 300), number(p.spread), number(p.speedX), number(p.speedY),
           number(p.speedZ), number(p.scatter)}};
}
ScriptCall draw(const Flare& f) {
  return {"SceneLayerParticles", "loadFlare", {{file(f.texture)}}};
}

}  // namespace screen

void Show::part(const char* name, double fromBar, double bars, int track, std::vector<ScriptCall> calls,
                double start, double speed) {
  for (ScriptCall& one : calls) {
    nameParameters(one, name);
    for (ScriptParameter& parameter : one.parameters) {
      settle(parameter.curve, bars * beatsPerBar);
      bendAtBounds(parameter);
    }
  }
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

}  // namespace vex::show
