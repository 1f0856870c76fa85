#include "production/textures/families.h"
#include "production/textures/hell_light.h"

// The box around hell's scene.

namespace vex {

namespace {

Product face(const char* suffix, BoxFace which) {
  return picture(std::string("hell") + suffix, PictureKind::jpeg, 1.5f,
                 [which](const Settings& settings) { return boxFace(hellLight, which, settings.side(512)); });
}

}  // namespace

Products hellBoxPictures() {
  return {face("top", BoxFace::top),   face("bottom", BoxFace::bottom), face("north", BoxFace::north),
          face("west", BoxFace::west), face("south", BoxFace::south),   face("east", BoxFace::east)};
}

}  // namespace vex
