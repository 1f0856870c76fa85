#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/object3d.h"
#include "engine/owned_array.h"
#include "engine/vector.h"

// Emitters of short-lived copies of a scene's meshes and lights. Particles run on the demo clock: `now` is
// demo time in seconds. All chance comes from the program's one generator, in a fixed order.

namespace vex {

inline constexpr int maxShapes = 8;
inline constexpr int maxParticles = 1'000'000;  // alive in one system, whatever its maxCount

struct Particle {
  Vector position;  // world space
  Vector velocity;  // units a second
  float deathTime = 0.0f;
  float angle = 0.0f;         // of tumbling, in radians; mesh shapes only, like spin and axis
  float spin = 0.0f;          // radians a second
  float alpha = 0.0f;         // clamped to 0..1 when drawn
  Vector axis;                // of length 1
  Object3D* shape = nullptr;  // one of the system's shapes
  bool alive = false;
};

// The values of a system beyond an object's.
struct ParticleValues {
  std::vector<Particle> particles;  // every record ever used, alive or not; records are reused, never removed
  float life = 2.0f;                // seconds; each particle's is up to lifeVariation longer or shorter
  float lifeVariation = 0.5f;
  Vector gravity{0.0f, -100.0f, 0.0f};  // units a second squared
  Vector velocity{0.0f, 100.0f, 0.0f};  // of a new particle, units a second
  float velocitySpread = 30.0f;         // most that chance adds to each component, up or down
  float positionSpread = 0.0f;
  int maxCount = 100;         // most particles alive at once, up to maxParticles
  float rate = 50.0f;         // particles a second
  bool followParent = false;  // turn the velocity by the parent's orientation
  Vector offset;              // of emission, in the parent's orientation; in world space without a parent
  float maxAlpha = 1.0f;
  float fadeIn = 0.0f;      // seconds; 0 or less: born visible
  float spinMin = -3.141f;  // radians a second
  float spinMax = 3.141f;
  int aliveCount = 0;
  int shapeCount = 0;
  std::array<Object3D*, maxShapes> shapes{};  // the scene owns them
  float emitCarry = 0.0f;                     // fractions of particles still to come

 protected:
  std::vector<std::uint32_t> freeRecords;  // indices of the dead, as a heap with the least on top
};

struct ParticleSystem : Object3D, ParticleValues {
  ParticleSystem() { kind = ObjectKind::particleSystem; }

  // Meshes and lights show; objects of other kinds may be shapes but draw nothing.
  // Fatal: "no more than 8 shapes allowed!".
  void addShape(Object3D* object);

  // One frame: moves and fades what is alive, lets die what has outlived itself, emits rate * dt particles.
  void update(float now, float dt);

  // Up to n new particles, as far as maxCount allows; the others are dropped. Each takes the first record
  // that is not alive. Fatal: "cannot generate particles w/o shapes!".
  void emit(int n, float now);

  void expire(float now);  // of every particle whose deathTime has come

  // Draws under the view matrix in the order of the records, without sorting by depth. `down` and `right`
  // are the viewer's screen axes, `lit` says whether the scene has lights; alpha (0 to 1) scales all.
  void draw(const Vector& down, const Vector& right, bool lit, float now, float alpha);

 private:
  Particle& takeRecord();
};

// n systems. A scene keeps the array and lets scene.particleSystems point to its first slot.
OwnedArray<ParticleSystem> makeParticleSystems(int n);

}  // namespace vex
