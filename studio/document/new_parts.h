#pragma once

#include <string>

#include "studio/document/draft.h"

// Parts that were not there, as Document promises them. Each function gives the new part's index; all throw
// Refusal and may then leave changes in the draft.

namespace vex::studio {

int doublePart(Draft& draft, int part, double pos, int track);
int splitPart(Draft& draft, int part, double time);
int createPart(Draft& draft, double pos, double length, int track, const std::string& scene,
               const std::string& function);

// The name, or where a part has it already the name with the first free number from 2 on: "sky_2". Cut where
// it would become too long.
std::string freeName(const Project& project, const std::string& name);

}  // namespace vex::studio
