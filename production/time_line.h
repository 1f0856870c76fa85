#pragma once

#include "production/product.h"
#include "production/project_writer.h"

namespace vex {

// The presentation's script, 60 seconds.
Script presentationScript();

Products timeLineFiles();  // test.hvp and used_textures.log
Products musicFile();      // data\vex.ogg

}  // namespace vex
