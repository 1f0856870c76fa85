#include "production/textures/families.h"
#include "production/textures/hell_light.h"

// The box around hell's scene.

namespace vex {

using namespace image;

namespace {

Product face(const char* suffix, SkyFace which) {
  return picture(std::string("hell") + suffix, PictureKind::jpeg, 1.5f,
                 [which](const Settings& settings) { return boxFace(hellLight, which, settings.side(512)); });
}

}  // namespace

Products hellBoxPictures() {
  return {face("top", SkyFace::top),   face("bottom", SkyFace::bottom), face("north", SkyFace::north),
          face("west", SkyFace::west), face("south", SkyFace::south),   face("east", SkyFace::east)};
}

}  // namespace vex
