#pragma once

#include "production/making/product.h"
#include "production/show/project_writer.h"

namespace vex {

// The presentation's script: the pictures of the sections that the show plays.
show::Script presentationScript();

Products timeLineFiles();  // test.hvp and used_textures.log

}  // namespace vex
