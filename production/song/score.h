#pragma once

#include <span>

#include "production/song/notation.h"

// The song. The motif is D, E flat, A, G sharp: a half step, a tritone and a half step back. Each
// movement states it in another voice, and it never reaches home until the last bar adds the A.

namespace vex {

std::span<const DrumLine> drumScore();
std::span<const NoteLine> noteScore();
std::span<const CurvePoint> curveScore();

// Brightness of an instrument at a bar; 0.5 without a curve.
float brightnessAt(std::string_view instrument, double bar);

}  // namespace vex
