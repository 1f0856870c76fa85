#include "scenes/scene_intro_box.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/clock.h"
#include "base/report.h"
#include "engine/matrix.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr std::array smokeTextures{"data\\flare_smoke1", "data\\flare_smoke2", "data\\flare_smoke3",
                                   "data\\flare_smoke4"};
constexpr Colour smokeGreen{0, 1, 0.4f};
constexpr std::array logoLayers{"VexLayer01", "VexLayer02", "VexLayer03", "VexLayer04"};

constexpr std::array motions{SceneMotion{MotionOf::cameras, 15, false},
                             SceneMotion{MotionOf::meshes, 15, false},
                             SceneMotion{MotionOf::meshes, 5, false, "VexLayer*"}};

int lightIndex(const Scene& scene, const char* name) {
  int index = 0;
  for (const Light* light : scene.lights) {
    if (isNamed(*light, name)) return index;
    ++index;
  }
  fatalError("%s not found in %s", name, scene.name);
}

void setUpLights(SceneIntroBox& scene) {
  int index = 0;
  for (Light* light : scene.lights) {
    const bool green = index++ % 3 == 0;
    if (isNamed(*light, "Omni01")) {
      light->flareSize = 0;
      continue;
    }
    light->active = false;
    light->flareSize = 25;
    light->flareStrength = green ? 0.2f : -1;
    light->colour = green ? smokeGreen : Colour{1, 1, 1};
  }
}

void setUpSmoke(SceneIntroBox& scene) {
  scene.first = lightIndex(scene, "omni02");
  scene.last = lightIndex(scene, "omni49");
  for (int i = scene.first; i <= scene.last; ++i) {
    Light& smoke = *scene.lights[i];
    smoke.flareStrength = 0;
    smoke.flareSize = 15;
    smoke.colour = smokeGreen;
    setFlareTexture(smoke, smokeTextures[static_cast<std::size_t>(i) % smokeTextures.size()]);
  }
}

void setUpParticleLights(SceneIntroBox& scene) {
  std::size_t texture = 0;
  for (const char* name : {"BlueParticle", "GreenParticle", "WhiteParticle"}) {
    setFlareTexture(findLight(scene, name), smokeTextures[texture++]);
  }
}

void setUpMeshes(SceneIntroBox& scene) {
  for (Mesh* mesh : scene.meshes) {
    mesh->setFixedTime(0);
    if (!nameBeginsWith(*mesh, "VexLayer")) continue;
    mesh->blendMode = BlendMode::additive;
    mesh->opacity = 0;
    mesh->twoSided = true;
    mesh->lit = false;
  }
}

// Exchanges height and depth about the pivot, mirrored; the faces keep facing outwards.
void mirrorLock(Mesh& lock) {
  for (Vertex& vertex : lock.vertices) {
    const float y = vertex.position.y;
    vertex.position.y = lock.position.y - (vertex.position.z - lock.position.z);
    vertex.position.z = lock.position.z - (y - lock.position.y);
  }
  for (int column = 0; column < 3; ++column) lock.baseMatrix.m[2][column] *= -1;
  for (Face& face : lock.faces) std::swap(face.v[0], face.v[1]);
}

// The lid and its lock hang a little open.
void tiltLid(SceneIntroBox& scene) {
  constexpr float tilt = 0.053f;  // radians
  findMesh(scene, "top").baseMatrix *= rotation({1, 0, 0}, tilt);
  findMesh(scene, "lock").baseMatrix *= rotation({1, 0, 0}, -tilt);
}

void setUpFountain(SceneIntroBox& scene) {
  createParticleSystems(scene, 1);
  ParticleSystem& fountain = systemAt(scene, 0);
  constexpr std::array shapes{"BlueParticle", "GreenParticle", "WhiteParticle"};
  addShapes(scene, fountain, shapes);
  fountain.rate = 0;
  fountain.maxCount = 0;
  fountain.velocitySpread = 20;
  fountain.positionSpread = 30;
  fountain.velocity.set(0, 40, 0);
  fountain.life = 3;
  fountain.gravity.set(0, 30, 0);
  fountain.maxAlpha = 1.3f;
  fountain.parent = scene.find("dummy01");
}

void setUp(SceneIntroBox& scene) {
  playMotions(scene, motions);
  setUpLights(scene);
  setUpSmoke(scene);
  setUpParticleLights(scene);
  setUpMeshes(scene);
  mirrorLock(findMesh(scene, "lock"));
  tiltLid(scene);
  setUpFountain(scene);
}

// The smoke drifts about, each light in a rhythm of its own.
void animate(SceneIntroBox& scene, float t, Arguments) {
  for (int i = scene.first; i <= scene.last; ++i) {
    Light& smoke = *scene.lights[i];
    const float own = std::sin(static_cast<float>(i));
    const float u = 3.64f * t + 3.141f * own;
    smoke.flareSize = 15 + 5 * std::sin(5 * t * own);
    smoke.position += Vector(std::sin(u), std::cos(u), 0) * clockDelta();
  }
  scene.render(t);
}

void setVexFog(Scene& scene, float, Arguments arguments) {
  for (int i = 0; i < 4; ++i) {
    Mesh& layer = findMesh(scene, logoLayers[static_cast<std::size_t>(i)]);
    layer.opacity = arguments.number(i);
    layer.setFixedTime(arguments.number(4 + i));
  }
}

// Sends all particles back the way they came, without an end to their lives.
void reverseFountain(ParticleSystem& fountain, float t) {
  constexpr float forever = 10000;  // seconds
  fountain.maxCount = 0;
  fountain.rate = 0;
  fountain.gravity = -fountain.gravity;
  for (Particle& particle : fountain.particles) {
    particle.deathTime = t + forever;
    particle.velocity = -particle.velocity;
  }
}

void reverseSmoke(SceneIntroBox& scene, float t, Arguments) {
  if (!scene.reversed) reverseFountain(systemAt(scene, 0), t);
  scene.reversed = true;
  for (int i = scene.first; i <= scene.last; ++i) {
    Light& smoke = *scene.lights[i];
    const float fall = 3 * std::sin(static_cast<float>(i)) + 7;
    smoke.flareStrength -= clockDelta() / 6;
    smoke.position += Vector(0, -fall * t, 0) * clockDelta();
  }
}

void showVex(SceneIntroBox& scene, float, Arguments arguments) {
  const float level = arguments.number(0);
  const float count = static_cast<float>(scene.last - scene.first + 1);
  for (int i = scene.first; i <= scene.last; ++i) {
    const float strength = level - 0.7f * static_cast<float>(i - scene.first) / count;
    scene.lights[i]->flareStrength = std::clamp(strength, 0.0f, 0.3f);
  }
}

using enum ArgumentKind;

constexpr FunctionParameter layerOpacity(const char* name) {
  return {name, number, 0, 1};
}
constexpr FunctionParameter layerTime(const char* name) {
  return {name, number, 0, 5};
}
constexpr std::array fogParameters{
    layerOpacity("opacity1"), layerOpacity("opacity2"), layerOpacity("opacity3"), layerOpacity("opacity4"),
    layerTime("seconds1"),    layerTime("seconds2"),    layerTime("seconds3"),    layerTime("seconds4")};
constexpr std::array showVexParameters{FunctionParameter{"level", number, 0, 1}};

constexpr std::array functionTable{
    FunctionRow{"animate",
                sceneFunction<animate>,
                "Draws the scene; the smoke drifts. The camera stays as it is.",
                {}},
    animationStateRow,
    FunctionRow{"setParticleCount", sceneFunction<setFirstParticleCount>,
                "Sets how many particles rise from the box.", particleCountParameters, FunctionRole::sets},
    FunctionRow{"setVexFog", sceneFunction<setVexFog>,
                "Shows the four layers of the logo, each at a moment of its animation.", fogParameters,
                FunctionRole::sets},
    FunctionRow{"reverseSmoke",
                sceneFunction<reverseSmoke>,
                "Lets the smoke sink and fade and the particles fly back, once and for all. The longer its "
                "part has run, the faster the smoke sinks.",
                {},
                FunctionRole::sets},
    FunctionRow{"showVex", sceneFunction<showVex>,
                "Lights the smoke along the logo, from its first light to its last.", showVexParameters,
                FunctionRole::sets},
};

constexpr std::array neededObjects{neededMesh("lock"),           neededMesh("top"),
                                   neededMesh("VexLayer01"),     neededMesh("VexLayer02"),
                                   neededMesh("VexLayer03"),     neededMesh("VexLayer04"),
                                   neededLight("Omni02"),        neededLight("Omni49"),
                                   neededLight("BlueParticle"),  neededLight("GreenParticle"),
                                   neededLight("WhiteParticle"), NeededObject{"Dummy01"}};

constexpr std::array neededTextures{
    NeededTexture{.name = "data\\flare_smoke", .function = "animate", .frames = smokeTextures.size()},
    NeededTexture{.name = defaultFlare, .function = "animate", .light = anyLight}};

}  // namespace

constinit const ModelScene<SceneIntroBox> sceneIntroBox{
    .name = "SceneIntroBox",
    .summary =
        "A box with a lid, smoke that forms along the logo, and the logo in four layers. Needs a "
        "ground.",
    .model = "data\\intro_box",
    .functions = functionTable,
    .needs = {.objects = neededObjects, .textures = neededTextures, .motions = motions},
    .setUp = setUp};

}  // namespace vex
