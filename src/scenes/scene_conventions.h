#pragma once

#include <span>

#include "engine/particle_system.h"
#include "engine/scene.h"
#include "scenes/function_table.h"
#include "scenes/model_needs.h"

// What the scenes share: how they begin, how they address their objects, and the settings that mean the
// same in all of them.

namespace vex {

// Gives the scene its name and its functions and reports that it is being loaded.
void beginScene(Scene& scene, const char* name, std::span<const FunctionRow> functions);

// A scene that owns the systems that scene.particleSystems lists.
struct EmittingScene : Scene {
  OwnedArray<ParticleSystem> ownedSystems;
};

void createParticleSystems(EmittingScene& scene, int count);

// Objects of the model by name, ASCII letter case ignored.
// Fatal: "%s not found in %s", "%s in %s is no mesh" (or no light).
Mesh& findMesh(Scene& scene, const char* name);
Light& findLight(Scene& scene, const char* name);

// Objects of the model by their place in its file.
// Fatal: "Scene %s: mesh[%d] not defined!" (or light, viewer, particle system).
Mesh& meshAt(Scene& scene, int index);
Light& lightAt(Scene& scene, int index);
Viewer& viewerAt(Scene& scene, int index);
ParticleSystem& systemAt(Scene& scene, int index);

// ASCII letter case ignored.
bool isNamed(const Object3D& object, const char* name);
bool nameBeginsWith(const Object3D& object, const char* prefix);

void setAnimParams(const OwnedArray<Mesh>& meshes, float duration, bool loop);
void setAnimParams(const OwnedArray<Viewer>& viewers, float duration, bool loop);

void setFlareTexture(Light& light, const char* texture);
void raiseAmbient(Mesh& mesh, float by);
void setShown(Mesh& mesh, bool shown);

// What a light shows for which no scene sets another.
inline constexpr const char* defaultFlare = "data\\flare_normal";

void setSky(Scene& scene, const SkyTextures& sky);

// The shapes in order; a name given twice is picked twice as often.
void addShapes(Scene& scene, ParticleSystem& system, std::span<const char* const> names);

// `count` particles alive in the long run; fractions are cut off.
void setParticleCount(ParticleSystem& system, float count);

// The camera to render through, from a number that an argument slot holds.
void chooseViewer(Scene& scene, float index);

// The opacity of a layer: that of its first viewer.
void fadeLayer(Scene& scene, float alpha);

// Of all meshes: below 1 opaque, below 2 additive, from 2 on subtractive.
void setLayerBlend(Scene& scene, float mode);

// The camera path that two layers share: an ellipse, 400 wide and 200 high.
Vector orbitingCamera(float seconds);

// Rows that several scenes have.

// Poses an object at a fraction of its animation. One without tracks stays as it is.
void setAnimationState(Scene& scene, float seconds, Arguments arguments);

// Of the scene's first particle system.
void setFirstParticleCount(Scene& scene, float seconds, Arguments arguments);

inline constexpr FunctionParameter cameraParameter{"camera", ArgumentKind::cameraNumber, 0, 15};
inline constexpr FunctionParameter layerAlphaParameter{"alpha", ArgumentKind::number, 0, 1};
inline constexpr FunctionParameter layerBlendParameter{"blend", ArgumentKind::number, 0, 2};
inline constexpr FunctionParameter particleCountParameter{"particles", ArgumentKind::wholeNumber, 0, 300,
                                                          maxParticles};

inline constexpr FunctionParameter cameraParameters[]{cameraParameter};
// Below 0 the object is set free.
inline constexpr FunctionParameter animationStateParameters[]{{"object", ArgumentKind::objectName},
                                                              {"fraction", ArgumentKind::number, -1, 1}};
// At 1 an animation that plays in a loop is back at its begin.
inline constexpr FunctionParameter loopStateParameters[]{{"object", ArgumentKind::objectName},
                                                         {"fraction", ArgumentKind::number, -1, 0.999f}};
inline constexpr FunctionParameter particleCountParameters[]{particleCountParameter};

// The box of a scene with all six faces, or a room that is closed round its cameras, shows nothing else.
inline constexpr GroundRule closedGround{[](std::span<const float>) { return true; },
                                         "it is called: the scene is closed all round"};

// In scenes of which objects play once.
inline constexpr FunctionRow animationStateRow{
    "setAnimationState", sceneFunction<setAnimationState>,
    "Holds an object at a fraction of its animation; below 0 the object moves freely again.",
    animationStateParameters, FunctionRole::sets};

// In scenes of which all objects play in loops.
inline constexpr FunctionRow loopStateRow{"setAnimationState", sceneFunction<setAnimationState>,
                                          animationStateRow.summary, loopStateParameters, FunctionRole::sets};

}  // namespace vex
