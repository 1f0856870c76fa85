#pragma once

#include <string>

#include "tests/support/project_builder.h"

// Run folders for tests of the whole program: every file that start-up asks for, as small as it may be.

namespace vex {

// Loose files below the working folder: the project, one-colour textures (white) and the scenes' models.
void writeRunFolder(const ProjectData& project);

// A part that fills the screen with a colour.
PartData fillPart(const std::string& name, double pos, double length, double red, double green, double blue);

// A parameter of constant value, and one of a string.
ParameterData constant(const std::string& name, double value);
ParameterData text(const std::string& name, const std::string& value);

}  // namespace vex
