#pragma once

#include <functional>

#include "production/geometry/bake.h"
#include "production/image/environment.h"
#include "production/making/product.h"
#include "production/models/stage.h"

// The sea of the water world in pieces. The water lies at y = 0, its bed, which nobody sees through, below;
// the moon stands behind, towards -z.

namespace vex::water {

inline constexpr float loopSeconds = 15, lightSeconds = 10;
inline constexpr float bedHeight = -6;
inline constexpr float skyRadius = 2450;

// The place of the one light that falls on what is not painted with its own: behind the cameras, far up. A
// surface shows as much of its picture as it faces this light.
inline const Vector lampPlace(-300, 1500, 900);

// --- What lives in it: a serpent whose neck, back and tail rise out of the water, modelled looking towards
// +z; not mapped. It turns about a point above it: where that point is less far up than the farthest of the
// body less 100, the water ripples round it.

enum BeingPart { hide, membrane, spine, eyeBall, tooth, maw };
inline const Vector beingPivot(0, 188, -20);
inline constexpr float beingReach = 281;  // the farthest of it from there
geometry::Surface being();
image::Colour4 beingColour(const geometry::BakePoint& p);
// Where a modelled place of it is at a time of the loop.
Vector beingPlace(const Vector& modelled, float t);

// --- Cameras and what they look at.

std::vector<StageCamera> cameras();
inline const Vector rayFoot(-56, 0, -60);  // behind the being, so that it stands dark before it
inline const Vector moonPlace = Vector(-0.165f, 0.100f, -0.96f) * 2500;  // on the sky

// --- Stacks, needles and an arch.

geometry::Surface rocks();
image::Colour4 rockColour(const geometry::BakePoint& p);
// How far a place of the sea lies off the nearest of them, below 0 inside.
float rockShore(const Vector& place);
// How much of them, 0 or 1 and between, a look meets that leaves the sea at a place along `way` (level, of
// length 1), rising by `slope`.
float rockMirrored(const Vector& place, const Vector& way, float slope);

// --- Sky and bed meet in one haze at the horizon.

geometry::Surface skyDome();
geometry::Surface seaBed();
image::Canvas skyPicture(const Settings& settings);  // of both
// Haze, moon and clouds towards a direction, without the lamp.
image::Colour4 skyColour(const Vector& direction);

// --- Pictures of light. All add; what lies at their borders is black.

image::Canvas lightPicture(const Settings& settings);  // on the waves, and gathered below them
image::Canvas rayPicture(const Settings& settings);    // black at both sides, repeats upwards

}  // namespace vex::water
