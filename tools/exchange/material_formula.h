#pragma once

#include "models/model_text.h"

// What the materials of today's tools and the player's have to do with each other.
//
// A material of today has a base colour c, an opacity, an emission e, a metalness m and a roughness r; its
// colours are linear in light. The player adds up ambient, diffuse and specular light, in colours as they are
// displayed; a highlight shows where the shine strength is above 0.5, and the global ambient light is full,
// so that ambient is what a material emits.
//
//   diffuse        c as displayed
//   ambient        e as displayed
//   opacity        that of the base colour
//   shine          n / 128, at most 1, with n = 2 / r^4 - 2: Blinn's exponent for the facets' spread r^2
//   shineStrength  1 - r
//   specular       (1 - r) * (white mixed with c as displayed, by m)
//
// So a highlight shows up to a roughness of 0.5. What is metal (m >= 0.5) and smooth (r <= 0.35) can have an
// environment map instead of a texture.

namespace vex {

struct SurfaceOfToday {
  Colour base{1, 1, 1};  // linear
  float opacity = 1;
  Colour emission{0, 0, 0};  // linear
  float metal = 0, rough = 1;
  bool twoSided = false;
  bool unlit = false;
};

float displayed(float linear);  // sRGB
float linear(float displayed);
Colour displayed(const Colour& linear);
Colour linear(const Colour& displayed);

// Without names, texture and environment. An unlit surface emits its base colour.
TextMaterial playersMaterial(const SurfaceOfToday& surface);

bool isChrome(const SurfaceOfToday& surface);

// The nearest that a surface of today comes to the player's material: what the formula above makes of it has
// the same diffuse and ambient colours, opacity and shine (down to a roughness of 0.34, where shine ends at
// 1).
SurfaceOfToday surfaceOf(const TextMaterial& material);

}  // namespace vex
