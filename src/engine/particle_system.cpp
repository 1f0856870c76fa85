#include "engine/particle_system.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "base/random.h"
#include "base/report.h"
#include "engine/light.h"
#include "engine/mesh.h"

namespace vex {

namespace {

Vector randomVector(float range) {
  const float z = randomSymmetric(range);
  const float y = randomSymmetric(range);
  const float x = randomSymmetric(range);
  return {x, y, z};
}

}  // namespace

void ParticleSystem::addShape(Object3D* object) {
  if (shapeCount == maxShapes) fatalError("no more than 8 shapes allowed!");
  shapes[static_cast<std::size_t>(shapeCount++)] = object;
}

void ParticleSystem::update(float now, float dt) {
  // The fading-out rate lets the shortest possible life end exactly at 0.
  const float fadeInStep = maxAlpha / fadeIn * dt;
  const float fadeOutStep = maxAlpha / (life - fadeIn - lifeVariation) * dt;
  const float fullLife = fadeIn > 0.0f ? life - fadeIn : INFINITY;  // with more left, it still fades in
  const Vector fall = gravity * dt;
  bool anyExpired = false;
  for (Particle& particle : particles) {
    if (!particle.alive) continue;
    particle.position += particle.velocity * dt;
    particle.velocity += fall;
    particle.angle += particle.spin * dt;
    particle.alpha += particle.deathTime - now > fullLife ? fadeInStep : -fadeOutStep;
    anyExpired |= !(particle.deathTime > now);
  }
  if (anyExpired) expire(now);

  // A rate may be beyond all bounds, below 0 or no number: what it leaves behind must not outlast it.
  emitCarry = std::max(0.0f, emitCarry + rate * dt);
  if (emitCarry >= 1.0f) {
    // Never more than maxCount, which fits an int.
    emit(emitCarry < static_cast<float>(maxCount) ? static_cast<int>(emitCarry) : maxCount, now);
    emitCarry = std::isfinite(emitCarry) ? std::fmod(emitCarry, 1.0f) : 0.0f;
  }
}

void ParticleSystem::expire(float now) {
  for (std::size_t i = 0; i < particles.size(); ++i) {
    if (!particles[i].alive || particles[i].deathTime > now) continue;
    particles[i].alive = false;
    --aliveCount;
    freeRecords.push_back(static_cast<std::uint32_t>(i));
    std::push_heap(freeRecords.begin(), freeRecords.end(), std::greater());
  }
}

Particle& ParticleSystem::takeRecord() {
  if (freeRecords.empty()) {
    particles.emplace_back();
    freeRecords.reserve(particles.capacity());  // so that dying never allocates
    return particles.back();
  }
  std::pop_heap(freeRecords.begin(), freeRecords.end(), std::greater());
  Particle& particle = particles[freeRecords.back()];
  freeRecords.pop_back();
  return particle;
}

void ParticleSystem::emit(int n, float now) {
  if (shapeCount <= 0) fatalError("cannot generate particles w/o shapes!");
  n = std::min(n, std::clamp(maxCount, 0, maxParticles) - aliveCount);
  if (n <= 0) return;

  Vector startVelocity = velocity;
  Vector start = offset;
  if (parent) {
    const Matrix orientation = parent->getRotation(now);
    if (followParent) startVelocity = transformPoint(orientation, velocity);
    start = parent->kind == ObjectKind::light
                ? parent->position
                : parent->getWorldPosition() + transformPoint(orientation, offset);
  }
  for (int i = 0; i < n; ++i) {
    Particle& particle = takeRecord();
    particle.alive = true;
    particle.deathTime = now + life + randomSymmetric(lifeVariation);
    particle.alpha = fadeIn > 0.0f ? 0.0f : (particle.deathTime - now) / life * maxAlpha;
    particle.velocity = startVelocity + randomVector(velocitySpread);
    particle.position = start + randomVector(positionSpread);
    particle.shape = shapes[static_cast<std::size_t>(randomNext() % shapeCount)];
    if (particle.shape->kind == ObjectKind::mesh) {
      particle.axis = randomVector(1.0f);
      particle.axis.normalize();
      particle.angle = randomSymmetric(3.14159f);
      particle.spin = std::fabs(randomSymmetric(spinMax - spinMin)) + spinMin;
    }
  }
  aliveCount += n;
}

namespace {

void multiply(Matrix matrix) {
  glMultMatrixf(matrix.toGL());
}

}  // namespace

void ParticleSystem::draw(const Vector& down, const Vector& right, bool lit, float now, float alpha) {
  glMatrixMode(GL_MODELVIEW);
  for (const Particle& particle : particles) {
    if (!particle.alive) continue;
    // Written so that an alpha that is no number counts as 0.
    const float opacity = (particle.alpha > 0.0f ? std::min(particle.alpha, 1.0f) : 0.0f) * alpha;
    Object3D& shape = *particle.shape;
    glPushMatrix();
    if (shape.kind == ObjectKind::mesh) {
      multiply(translation(particle.position));
      multiply(rotation(particle.axis, particle.angle));
      multiply(translation(-shape.position));
      static_cast<Mesh&>(shape).draw(lit, now, opacity);
    } else if (shape.kind == ObjectKind::light) {
      multiply(translation(particle.position - shape.position));
      static_cast<Light&>(shape).drawFlare(down, right, now, opacity);
    }
    glPopMatrix();
  }
}

OwnedArray<ParticleSystem> makeParticleSystems(int n) {
  OwnedArray<ParticleSystem> systems;
  systems.allocate(n);
  for (int i = 0; i < n; ++i) systems[i] = new ParticleSystem;
  return systems;
}

}  // namespace vex
