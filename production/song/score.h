#pragma once

#include <span>

#include "production/song/notation.h"

// The song. The motif is D, E flat, A, G sharp: a half step, a tritone and a half step back. Each
// movement states it in another voice, and it never reaches home until the last stroke adds the A.

namespace vex {

std::span<const DrumLine> drumScore();
std::span<const NoteLine> noteScore();
std::span<const Rewind> rewindScore();

// Value of a curve at a bar, or `otherwise` when there is no curve of that name. Before the first point
// and after the last their values hold.
float curveAt(std::string_view name, double bar, float otherwise);

}  // namespace vex
