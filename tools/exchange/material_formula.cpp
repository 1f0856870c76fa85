#include "tools/exchange/material_formula.h"

#include <algorithm>
#include <cmath>

namespace vex {

namespace {

constexpr float mostShine = 128;  // as the GL takes it

}  // namespace

float displayed(float value) {
  value = std::clamp(value, 0.0f, 1.0f);
  return value <= 0.0031308f ? value * 12.92f : 1.055f * std::pow(value, 1 / 2.4f) - 0.055f;
}

float linear(float value) {
  value = std::clamp(value, 0.0f, 1.0f);
  return value <= 0.04045f ? value / 12.92f : std::pow((value + 0.055f) / 1.055f, 2.4f);
}

Colour displayed(const Colour& c) {
  return {displayed(c.r), displayed(c.g), displayed(c.b)};
}

Colour linear(const Colour& c) {
  return {linear(c.r), linear(c.g), linear(c.b)};
}

TextMaterial playersMaterial(const SurfaceOfToday& surface) {
  TextMaterial material;
  material.diffuse = displayed(surface.base);
  material.ambient = surface.unlit ? material.diffuse : displayed(surface.emission);
  material.opacity = std::clamp(surface.opacity, 0.0f, 1.0f);
  material.twoSided = surface.twoSided;
  if (surface.unlit) return material;
  const float rough = std::clamp(surface.rough, 0.0f, 1.0f);
  const float metal = std::clamp(surface.metal, 0.0f, 1.0f);
  const float spread = std::max(rough * rough, 1e-3f);
  material.shine = std::clamp((2 / (spread * spread) - 2) / mostShine, 0.0f, 1.0f);
  material.shineStrength = 1 - rough;
  const auto tinted = [&](float channel) { return (1 - rough) * (1 + (channel - 1) * metal); };
  material.specular = {tinted(material.diffuse.r), tinted(material.diffuse.g), tinted(material.diffuse.b)};
  return material;
}

bool isChrome(const SurfaceOfToday& surface) {
  return surface.metal >= 0.5f && surface.rough <= 0.35f;
}

SurfaceOfToday surfaceOf(const TextMaterial& material) {
  SurfaceOfToday surface;
  surface.base = linear(material.diffuse);
  surface.emission = linear(material.ambient);
  surface.opacity = material.opacity;
  surface.twoSided = material.twoSided;
  surface.rough = std::pow(2 / (material.shine * mostShine + 2), 0.25f);
  if (material.environment) surface.metal = 1, surface.rough = std::min(surface.rough, 0.2f);
  return surface;
}

}  // namespace vex
