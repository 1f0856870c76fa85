#include "engine/particle_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

#include "base/random.h"
#include "engine/light.h"
#include "engine/mesh.h"
#include "tests/support/fatal.h"
#include "tests/support/vectors.h"

namespace vex {
namespace {

// The symmetric draw that a value of the generator gives.
double chance(int value, double range) {
  return (value % 10000 - 5000) / 5000.0 * range;
}

// The generator's first values, worked out with a pocket calculator's recurrence: from state 1 on,
// state * 214013 + 2531011 modulo 2^32, bits 16 to 30.
constexpr int draws[] = {41,   18467, 6334,  26500, 19169, 15724, 11478, 29358, 26962, 24464,
                         5705, 28145, 23281, 16827, 9961,  491,   2995,  11942, 4827,  5436};

TEST(ParticleSystem, DrawsInTheGivenOrder) {
  Mesh mesh;
  Light light;
  ParticleSystem system;
  system.positionSpread = 2.0f;
  system.offset = {100, 200, 300};
  system.addShape(&mesh);
  system.addShape(&light);
  randomState() = 1;
  system.emit(2, 7.0f);

  ASSERT_EQ(system.particles.size(), 2u);
  const Particle& first = system.particles[0];
  EXPECT_TRUE(first.alive);
  EXPECT_NEAR(first.deathTime, 9 + chance(draws[0], 0.5), 1e-5);
  EXPECT_NEAR(first.alpha, (2 + chance(draws[0], 0.5)) / 2, 1e-5);
  expectNear(first.velocity, chance(draws[3], 30), 100 + chance(draws[2], 30), chance(draws[1], 30));
  expectNear(first.position, 100 + chance(draws[6], 2), 200 + chance(draws[5], 2), 300 + chance(draws[4], 2));
  EXPECT_EQ(first.shape, &mesh);  // 29358 is even
  const double x = chance(draws[10], 1);
  const double y = chance(draws[9], 1);
  const double z = chance(draws[8], 1);
  const double length = std::sqrt(x * x + y * y + z * z);
  expectNear(first.axis, x / length, y / length, z / length);
  EXPECT_NEAR(first.angle, chance(draws[11], 3.14159), 1e-5);
  EXPECT_NEAR(first.spin, std::fabs(chance(draws[12], 6.282)) - 3.141, 1e-5);

  const Particle& second = system.particles[1];
  EXPECT_NEAR(second.deathTime, 9 + chance(draws[13], 0.5), 1e-5);
  expectNear(second.velocity, chance(draws[16], 30), 100 + chance(draws[15], 30), chance(draws[14], 30));
  expectNear(second.position, 100 + chance(draws[19], 2), 200 + chance(draws[18], 2),
             300 + chance(draws[17], 2));
}

// A light draws no axis, angle and spin: its successor starts with the eighth value after its own first.
TEST(ParticleSystem, DrawsNoTumblingForLights) {
  Light light;
  ParticleSystem system;
  system.addShape(&light);
  randomState() = 1;
  system.emit(2, 0.0f);
  EXPECT_NEAR(system.particles[1].deathTime, 2 + chance(draws[8], 0.5), 1e-5);
}

TEST(ParticleSystem, ChoosesShapesByTheRestOfADraw) {
  Light lights[3];
  ParticleSystem system;
  for (Light& light : lights) system.addShape(&light);
  randomState() = 1;
  system.emit(2, 0.0f);
  EXPECT_EQ(system.particles[0].shape, &lights[draws[7] % 3]);
  EXPECT_EQ(system.particles[1].shape, &lights[draws[15] % 3]);
}

TEST(ParticleSystem, StartsWhereItsParentIs) {
  Light light;
  light.position = {1, 2, 3};
  Mesh moved;  // a quarter turn about y through its rotation track, and a move that was drawn earlier
  Animation turn;
  turn.type = TrackType::rotation;
  turn.frameLength = 10.0f;
  turn.allocKeys(1);
  turn.insertKey(0.0f, {0, 1, 0}, 1.5707963f);
  moved.addAnimation(turn);
  moved.worldPosition = {10, 20, 30};

  // This frame turns by minus the angle: x goes to z, z to -x.
  const struct {
    const char* name;
    Object3D* parent;
    bool follow;
    Vector position;
    Vector velocity;
  } cases[] = {
      {"no parent", nullptr, true, {5, 6, 7}, {100, 0, 0}},
      {"light", &light, false, {1, 2, 3}, {100, 0, 0}},
      {"turned mesh", &moved, false, {10 - 7, 20 + 6, 30 + 5}, {100, 0, 0}},
      {"turned mesh followed", &moved, true, {10 - 7, 20 + 6, 30 + 5}, {0, 0, 100}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    Light shape;
    ParticleSystem system;
    system.parent = row.parent;
    system.followParent = row.follow;
    system.offset = {5, 6, 7};
    system.velocity = {100, 0, 0};
    system.velocitySpread = 0.0f;
    system.addShape(&shape);
    system.emit(1, 0.0f);
    expectNear(system.particles[0].position, row.position.x, row.position.y, row.position.z);
    expectNear(system.particles[0].velocity, row.velocity.x, row.velocity.y, row.velocity.z);
  }
}

TEST(ParticleSystem, MovesWithTheOldVelocity) {
  Mesh mesh;
  ParticleSystem system;
  system.rate = 0.0f;
  system.velocity = {10, 20, 30};
  system.velocitySpread = 0.0f;
  system.gravity = {0, -8, 4};
  system.addShape(&mesh);
  system.emit(1, 0.0f);
  Particle& particle = system.particles[0];
  particle.angle = 1.0f;
  particle.spin = 2.0f;
  system.update(0.5f, 0.5f);
  expectNear(particle.position, 5, 10, 15);
  expectNear(particle.velocity, 10, 16, 32);
  EXPECT_FLOAT_EQ(particle.angle, 2.0f);
  system.update(0.75f, 0.25f);
  expectNear(particle.position, 7.5, 14, 23);
  EXPECT_FLOAT_EQ(particle.angle, 2.5f);
}

TEST(ParticleSystem, FadesInAndOut) {
  const struct {
    const char* name;
    float life, variation, fadeIn, maxAlpha;
    float death;                // of the particle, born at 0
    std::vector<float> alphas;  // at birth and after each quarter of a second
  } cases[] = {
      {"in and out", 2, 0, 0.5f, 1, 2, {0, 0.5f, 0.5f - 1 / 6.0f, 0.5f - 2 / 6.0f, 0}},
      {"in for a bright system", 2, 0, 1, 3, 2, {0, 0.75f, 1.5f, 2.25f, 1.5f}},
      {"out only, life as given", 2, 0.5f, 0, 1, 2, {1, 1 - 1 / 6.0f, 1 - 2 / 6.0f, 0.5f}},
      {"out only, the longest life", 2, 0.5f, 0, 1, 2.5f, {1.25f, 1.25f - 1 / 6.0f, 1.25f - 2 / 6.0f, 0.75f}},
      {"a negative time of fading in", 2, 0, -2, 1, 2, {1, 1 - 1 / 16.0f, 1 - 2 / 16.0f}},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.name);
    Light light;
    ParticleSystem system;
    system.rate = 0.0f;
    system.life = row.death;
    system.lifeVariation = 0.0f;
    system.fadeIn = row.fadeIn;
    system.maxAlpha = row.maxAlpha * row.death / row.life;  // makes alpha at birth that of the longer life
    system.addShape(&light);
    system.emit(1, 0.0f);
    system.life = row.life;
    system.lifeVariation = row.variation;
    system.maxAlpha = row.maxAlpha;
    for (std::size_t i = 0; i < row.alphas.size(); ++i) {
      if (i > 0) system.update(0.25f * static_cast<float>(i), 0.25f);
      EXPECT_NEAR(system.particles[0].alpha, row.alphas[i], 1e-5) << "after " << i << " steps";
    }
  }
}

TEST(ParticleSystem, CarriesFractionsFromFrameToFrame) {
  const struct {
    float rate, dt;
    std::vector<int> alive;  // after each frame
    float carry;
  } cases[] = {
      {2.5f, 0.1f, {0, 0, 0, 1, 1, 1, 1, 2}, 0.0f},
      {14.0f, 0.125f, {1, 3, 5, 7, 8, 10}, 0.5f},
      {100.0f, 0.125f, {10, 10}, 0.0f},  // beyond the 10 allowed: dropped, not carried
      {108.0f, 0.125f, {10, 10}, 0.0f},
      {109.0f, 0.125f, {10, 10}, 0.25f},  // 13.625, then 0.625 + 13.625
      {0.0f, 0.125f, {0, 0}, 0.0f},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.rate);
    Light light;
    ParticleSystem system;
    system.life = 1000.0f;
    system.maxCount = 10;
    system.rate = row.rate;
    system.addShape(&light);
    for (const int alive : row.alive) {
      system.update(0.0f, row.dt);
      EXPECT_EQ(system.aliveCount, alive);
    }
    EXPECT_FLOAT_EQ(system.emitCarry, row.carry);
  }
}

TEST(ParticleSystem, KeepsNearItsSteadyState) {
  Light light;
  ParticleSystem system;
  system.addShape(&light);
  randomState() = 1;
  int frame = 0;
  const auto runTo = [&](int end) {
    for (; frame < end; ++frame) {
      system.update(static_cast<float>(frame) / 64.0f, 1.0f / 64.0f);
      ASSERT_LE(system.aliveCount, 100);
    }
  };
  runTo(64);
  EXPECT_NEAR(system.aliveCount, 50, 1);
  runTo(160);
  for (; frame < 640; runTo(frame + 16)) EXPECT_GE(system.aliveCount, 85);
  EXPECT_LE(system.particles.size(), 100u);
}

TEST(ParticleSystem, LetsTheLivingGoOnWithoutACount) {
  Light light;
  ParticleSystem system;
  system.addShape(&light);
  system.update(0.0f, 0.5f);
  EXPECT_EQ(system.aliveCount, 25);
  system.maxCount = 0;
  system.rate = 0.0f;
  system.update(0.5f, 0.5f);
  EXPECT_EQ(system.aliveCount, 25);
  system.update(2.5f, 0.5f);
  EXPECT_EQ(system.aliveCount, 0);
}

TEST(ParticleSystem, CountsBelowNothingEmitNothing) {
  Light light;
  ParticleSystem system;
  system.addShape(&light);
  system.emit(3, 0.0f);
  for (const int count : {-1, std::numeric_limits<int>::min()}) {
    system.maxCount = count;
    system.emit(2, 0.0f);
    system.update(0.5f, 0.5f);
    EXPECT_EQ(system.aliveCount, 3);
  }
}

// A scene off the screen does not update: the next step moves by that frame's step only, and whatever
// outlived itself goes at once. A particle dies at its very time.
TEST(ParticleSystem, FreezesBetweenUpdates) {
  Light light;
  ParticleSystem system;
  system.rate = 0.0f;
  system.lifeVariation = 0.0f;
  system.velocitySpread = 0.0f;
  system.addShape(&light);
  system.emit(3, 0.0f);
  system.particles[1].deathTime = 100.0f;
  system.particles[2].deathTime = 50.0f;
  system.update(50.0f, 0.01f);
  EXPECT_FALSE(system.particles[0].alive);
  EXPECT_TRUE(system.particles[1].alive);
  EXPECT_FALSE(system.particles[2].alive);
  EXPECT_EQ(system.aliveCount, 1);
  expectNear(system.particles[1].position, 0, 1, 0);
}

// Each new particle takes the first record that is not alive, found here by looking.
TEST(ParticleSystem, ReusesTheFirstDeadRecord) {
  Light light;
  ParticleSystem system;
  system.maxCount = 60;
  system.lifeVariation = 1.5f;
  system.addShape(&light);
  randomState() = 1;
  std::size_t reused = 0;
  for (int frame = 0; frame < 400; ++frame) {
    const float now = 0.05f * static_cast<float>(frame);
    system.expire(now);
    for (int i = 0; i < frame % 5; ++i) {
      const auto dead = std::find_if(system.particles.begin(), system.particles.end(),
                                     [](const Particle& particle) { return !particle.alive; });
      const auto expected = static_cast<std::size_t>(dead - system.particles.begin());
      const std::size_t records = system.particles.size();
      const int alive = system.aliveCount;
      system.emit(1, now);
      if (alive == system.maxCount) continue;
      if (expected < records) ++reused;
      ASSERT_TRUE(system.particles[expected].alive);
      ASSERT_GT(system.particles[expected].deathTime, now);
      ASSERT_EQ(system.particles.size(), std::max(records, expected + 1));
    }
    ASSERT_EQ(system.aliveCount, std::count_if(system.particles.begin(), system.particles.end(),
                                               [](const Particle& particle) { return particle.alive; }));
  }
  EXPECT_GT(reused, 400u);
}

TEST(ParticleSystem, RefusesTooManyShapesAndNone) {
  Light light;
  ParticleSystem system;
  EXPECT_EQ(fatalText([&] { system.update(0.0f, 0.02f); }), "cannot generate particles w/o shapes!");
  for (int i = 0; i < 8; ++i) system.addShape(&light);
  EXPECT_EQ(fatalText([&] { system.addShape(&light); }), "no more than 8 shapes allowed!");
}

TEST(ParticleSystem, HoldsAMillionAtMost) {
  Light light;
  ParticleSystem system;
  system.addShape(&light);
  system.maxCount = 2'000'000'000;
  system.emit(2, 0.0f);
  system.rate = 1e30f;
  system.update(0.0f, 1.0f);
  EXPECT_EQ(system.aliveCount, maxParticles);
  EXPECT_EQ(system.particles.size(), 1'000'000u);
}

TEST(ParticleSystem, EmitsAgainAfterAnyRate) {
  constexpr float infinity = std::numeric_limits<float>::infinity();
  for (const float wild : {infinity, -infinity, std::numeric_limits<float>::quiet_NaN(), 1e30f, -1e30f}) {
    Light light;
    ParticleSystem system;
    system.addShape(&light);
    system.life = 0.25f;
    system.lifeVariation = 0.0f;
    for (const float rate : {wild, 0.0f, 8.0f}) {
      system.rate = rate;
      system.update(rate == 8.0f ? 10.0f : 0.0f, 0.5f);
    }
    EXPECT_EQ(system.aliveCount, 4) << wild;
  }
}

// The dying make room for the new, and these have not moved yet.
TEST(ParticleSystem, LetsDieBeforeItEmits) {
  Light light;
  ParticleSystem system;
  system.addShape(&light);
  system.maxCount = 3;
  system.lifeVariation = 0.0f;
  system.emit(3, 0.0f);
  system.update(2.0f, 0.02f);
  EXPECT_EQ(system.aliveCount, 1);
  EXPECT_TRUE(system.particles[0].alive);
  EXPECT_EQ(system.particles[0].position, Vector());
  EXPECT_EQ(system.particles[0].deathTime, 4.0f);
}

// One that dies at no number is dead: it would take its place for good.
TEST(ParticleSystem, LetsDieWhatHasNoTimeToDie) {
  Light light;
  ParticleSystem system;
  system.addShape(&light);
  system.rate = 0.0f;
  system.emit(1, 0.0f);
  system.particles[0].deathTime = std::numeric_limits<float>::quiet_NaN();
  system.update(0.0f, 0.02f);
  EXPECT_EQ(system.aliveCount, 0);
}

TEST(ParticleSystem, ComesInArraysThatEndInNull) {
  const OwnedArray<ParticleSystem> systems = makeParticleSystems(3);
  EXPECT_EQ(systems.count(), 3);
  EXPECT_EQ(systems[2]->kind, ObjectKind::particleSystem);
}

}  // namespace
}  // namespace vex
