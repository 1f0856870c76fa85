#include <benchmark/benchmark.h>
#include <emmintrin.h>

#include <cmath>
#include <vector>

#include "base/random.h"
#include "benchmarks/allocation_count.h"
#include "benchmarks/figure.h"
#include "engine/fluid.h"
#include "engine/light.h"
#include "engine/particle_system.h"
#include "engine/vol_light.h"

namespace vex {
namespace {

constexpr int particleCount = 5000;
constexpr float frameStep = 1.0f / 60.0f;

// Eight systems in their steady state: they emit as many particles as die.
void particleEmission(benchmark::State& state) {
  Light light;
  OwnedArray<ParticleSystem> systems = makeParticleSystems(8);
  for (ParticleSystem* system : systems) {
    system->addShape(&light);
    system->maxCount = particleCount;
    system->rate = 1.1f * particleCount / system->life;  // the most allowed are always alive
  }
  float now = 0.0f;
  const auto runFrame = [&] {
    for (ParticleSystem* system : systems) system->update(now, frameStep);
    now += frameStep;
  };
  for (int frame = 0; frame < 600; ++frame) runFrame();
  const std::uint64_t before = allocationCount();
  for (auto _ : state) runFrame();
  state.counters["allocations"] =
      static_cast<double>(allocationCount() - before) / static_cast<double>(state.iterations());
  int alive = 0;
  for (ParticleSystem* system : systems) alive += system->aliveCount;
  if (alive < 8 * particleCount * 9 / 10) state.SkipWithError("too few particles alive");
}
BENCHMARK(particleEmission);

void particleUpdate(benchmark::State& state) {
  Light light;
  ParticleSystem system;
  system.addShape(&light);
  system.maxCount = particleCount;
  system.fadeIn = 0.5f;
  system.emit(particleCount, 0.0f);
  system.rate = 0.0f;
  for (auto _ : state) {
    system.update(0.25f, frameStep);
    benchmark::DoNotOptimize(system.particles.data());
  }
}
BENCHMARK(particleUpdate);

// What the same motion needs and no more.
struct PackedParticle {
  float x, y, z;
  float velocityX, velocityY, velocityZ;
  float angle, spin;
  float alpha, deathTime;
};

void packedLoop(benchmark::State& state) {
  std::vector<PackedParticle> particles(particleCount);
  for (PackedParticle& p : particles) {
    p.velocityX = randomSymmetric(30.0f);
    p.velocityY = randomSymmetric(30.0f);
    p.velocityZ = randomSymmetric(30.0f);
    p.deathTime = 2.0f + randomSymmetric(0.5f);
  }
  const float gravity[3] = {0.0f, -100.0f, 0.0f};
  float now = 0.25f, life = 2.0f, lifeVariation = 0.5f, fadeIn = 0.5f, maxAlpha = 1.0f;
  for (float* value : {&now, &life, &lifeVariation, &fadeIn, &maxAlpha}) benchmark::DoNotOptimize(*value);
  for (auto _ : state) {
    for (PackedParticle& p : particles) {
      p.x += p.velocityX * frameStep;
      p.y += p.velocityY * frameStep;
      p.z += p.velocityZ * frameStep;
      p.velocityX += gravity[0] * frameStep;
      p.velocityY += gravity[1] * frameStep;
      p.velocityZ += gravity[2] * frameStep;
      p.angle += p.spin * frameStep;
      if (p.deathTime - now > life - fadeIn) {
        p.alpha += maxAlpha / fadeIn * frameStep;
      } else {
        p.alpha -= maxAlpha / (life - fadeIn - lifeVariation) * frameStep;
      }
    }
    benchmark::DoNotOptimize(particles.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(packedLoop);

constexpr int cells = 512;
constexpr int stride = cells + 1;

void makeFluid(Mesh& mesh) {
  convertToFluid(mesh, cells, cells);
  mesh.buildArrays();
  for (int i = 1; i < 10; ++i) {
    push(mesh, 0.1f * static_cast<float>(i), 0.07f * static_cast<float>(i), 0.001f);
  }
}

void fluidStep(benchmark::State& state) {
  Mesh mesh;
  makeFluid(mesh);
  for (auto _ : state) animateFluid(mesh, frameStep);
}
BENCHMARK(fluidStep);

// One step four heights at a time with SSE2, what each row leaves over one by one.
void stepByHand(Mesh& mesh) {
  mesh.heightA.swap(mesh.heightB);
  const float* a = mesh.heightA.data();
  float* b = mesh.heightB.data();
  const auto height = [&](int n) {
    const float v = (a[n - 1] + a[n + 1] + a[n - stride] + a[n + stride] + a[n - stride - 1] +
                     a[n - stride + 1] + a[n + stride - 1] + a[n + stride + 1] + a[n - 2] + a[n + 2] +
                     a[n - 2 * stride] + a[n + 2 * stride]) /
                        6.0f -
                    b[n];
    b[n] = v - v * mesh.damping;
  };
  const __m128 six = _mm_set1_ps(6.0f);
  const __m128 damping = _mm_set1_ps(mesh.damping);
  for (int j = 2; j <= cells - 2; ++j) {
    int n = j * stride + 2;
    const int end = j * stride + cells - 1;
    for (; n + 4 <= end; n += 4) {
      const auto at = [&](int offset) { return _mm_loadu_ps(a + n + offset); };
      __m128 sum = _mm_add_ps(at(-1), at(1));
      sum = _mm_add_ps(_mm_add_ps(sum, at(-stride)), at(stride));
      sum = _mm_add_ps(_mm_add_ps(sum, at(-stride - 1)), at(-stride + 1));
      sum = _mm_add_ps(_mm_add_ps(sum, at(stride - 1)), at(stride + 1));
      sum = _mm_add_ps(_mm_add_ps(sum, at(-2)), at(2));
      sum = _mm_add_ps(_mm_add_ps(sum, at(-2 * stride)), at(2 * stride));
      const __m128 v = _mm_sub_ps(_mm_div_ps(sum, six), _mm_loadu_ps(b + n));
      _mm_storeu_ps(b + n, _mm_sub_ps(v, _mm_mul_ps(v, damping)));
    }
    for (; n < end; ++n) height(n);
  }

  float* positions = mesh.positions.data();
  const int count = stride * stride;
  const __m128 scale = _mm_set1_ps(1000.0f);
  const __m128 level = _mm_set1_ps(mesh.position.y);
  int n = 0;
  for (; n + 4 <= count; n += 4) {
    const __m128 y = _mm_add_ps(_mm_mul_ps(_mm_loadu_ps(b + n), scale), level);
    _mm_store_ss(positions + 3 * n + 1, y);
    _mm_store_ss(positions + 3 * n + 4, _mm_shuffle_ps(y, y, 1));
    _mm_store_ss(positions + 3 * n + 7, _mm_shuffle_ps(y, y, 2));
    _mm_store_ss(positions + 3 * n + 10, _mm_shuffle_ps(y, y, 3));
  }
  for (; n < count; ++n) positions[3 * n + 1] = b[n] * 1000.0f + mesh.position.y;

  float* uvs = mesh.uvs.data();
  const __m128 slope = _mm_set1_ps(50.0f);
  const __m128 width = _mm_set1_ps(cells);
  for (int j = 1; j < cells; ++j) {
    const __m128 rowV = _mm_set1_ps(static_cast<float>(j) / cells);
    __m128 column = _mm_set_ps(4, 3, 2, 1);
    int i = 1;
    for (; i + 4 <= cells; i += 4) {
      const float* h = b + j * stride + i;
      const __m128 slopeX = _mm_sub_ps(_mm_loadu_ps(h + 1), _mm_loadu_ps(h - 1));
      const __m128 slopeZ = _mm_sub_ps(_mm_loadu_ps(h + stride), _mm_loadu_ps(h - stride));
      const __m128 u = _mm_add_ps(_mm_div_ps(column, width), _mm_mul_ps(slopeX, slope));
      const __m128 v = _mm_add_ps(rowV, _mm_mul_ps(slopeZ, slope));
      float* uv = uvs + 2 * (j * stride + i);
      _mm_storeu_ps(uv, _mm_unpacklo_ps(u, v));
      _mm_storeu_ps(uv + 4, _mm_unpackhi_ps(u, v));
      column = _mm_add_ps(column, _mm_set1_ps(4.0f));
    }
    for (; i < cells; ++i) {
      const int at = j * stride + i;
      uvs[2 * at] = static_cast<float>(i) / cells + (b[at + 1] - b[at - 1]) * 50.0f;
      uvs[2 * at + 1] = static_cast<float>(j) / cells + (b[at + stride] - b[at - stride]) * 50.0f;
    }
  }
}

bool nearlyEqual(const std::vector<float>& a, const std::vector<float>& b) {
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!(std::fabs(a[i] - b[i]) <= 1e-5f * std::fmax(1.0f, std::fabs(a[i])))) return false;
  }
  return a.size() == b.size();
}

void fluidStepByHand(benchmark::State& state) {
  Mesh mesh, ours;
  makeFluid(mesh);
  makeFluid(ours);
  for (int step = 0; step < 5; ++step) {
    stepByHand(mesh);
    animateFluid(ours, frameStep);
  }
  if (!nearlyEqual(ours.heightB, mesh.heightB) || !nearlyEqual(ours.positions, mesh.positions) ||
      !nearlyEqual(ours.uvs, mesh.uvs)) {
    state.SkipWithError("the step by hand gives another surface");
    return;
  }
  for (auto _ : state) stepByHand(mesh);
}
BENCHMARK(fluidStepByHand);

void prepareBeams(benchmark::State& state) {
  VolLight light(32);
  light.spotDirection = {1, -2, 3};
  light.range = 100.0f;
  for (float& depth : light.depthBuffer) depth = std::fabs(randomSymmetric(1.0f));
  for (auto _ : state) {
    light.prepareBeams(1.0f);
    benchmark::DoNotOptimize(light.beams.positions.data());
  }
}
BENCHMARK(prepareBeams);

const bool added[] = {
    addFigure({.name = "particle_emission_8x5000_ms",
               .unit = "ms a frame",
               .peer = "none; 8 systems hold 5000 each at 60 Hz",
               .limit = 2,
               .value = [](const Measurements& m) { return m.cpu("particleEmission") * 1e3; }}),
    addFigure({.name = "particle_emission_allocations",
               .unit = "a frame",
               .peer = "none",
               .limit = 0,
               .value = [](const Measurements& m) { return m.counter("particleEmission", "allocations"); }}),
    addFigure({.name = "particles_vs_plain_loop",
               .unit = "ratio",
               .peer = "the same arithmetic over a packed array, 5000 particles",
               .limit = 2.0,
               .value = [](const Measurements& m) { return m.cpu("particleUpdate") / m.cpu("packedLoop"); }}),
    addFigure({.name = "fluid_512_vs_vectorised",
               .unit = "ratio",
               .peer = "the same step written with SSE2 intrinsics",
               .limit = 2.0,
               .value = [](const Measurements& m) { return m.cpu("fluidStep") / m.cpu("fluidStepByHand"); }}),
    addFigure({.name = "beams_32_us",
               .unit = "us",
               .peer = "none; 1025 points from a depth map of 32 x 32",
               .limit = 20,
               .value = [](const Measurements& m) { return m.cpu("prepareBeams") * 1e6; }}),
};

}  // namespace
}  // namespace vex
