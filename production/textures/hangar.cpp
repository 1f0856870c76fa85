#include "production/image/filter.h"
#include "production/textures/families.h"
#include "production/textures/hangar_light.h"
#include "production/textures/palette.h"

// The hangar around the alien's scene, and what its chrome mirrors.

namespace vex {

namespace {

Product face(const char* suffix, BoxFace which) {
  return picture(
      std::string("monster") + suffix, PictureKind::jpeg, "hangar", 1.5f, [which](const Settings& settings) {
        return boxFace([](const Vector& d) { return hangarLight(d, 1); }, which, settings.side(512));
      });
}

// Chrome shows little but its extremes: what lies between is pressed down.
Colour4 mirroredHangar(const Vector& direction) {
  const Colour4 light = hangarLight(direction, 0);
  const auto contrast = [](float value) { return clamp01(2.1f * value * value + 0.35f * value); };
  return {contrast(light.r), contrast(light.g), contrast(light.b)};
}

}  // namespace

Products hangarPictures() {
  return {
      face("top", BoxFace::top),
      face("bot", BoxFace::bottom),
      face("nor", BoxFace::north),
      face("wes", BoxFace::west),
      face("sou", BoxFace::south),
      face("eas", BoxFace::east),
      picture("chrome", PictureKind::jpeg, "hangar", 1,
              [](const Settings& settings) {
                const int side = settings.side(512);
                return blur(sphereMap(mirroredHangar, lookTowards(-1.25f, -0.08f), side, 2),
                            static_cast<float>(side) / 400, EdgeMode::clamp);
              }),
  };
}

}  // namespace vex
