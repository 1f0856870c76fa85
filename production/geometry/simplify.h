#pragma once

#include <functional>

#include "production/geometry/surface.h"

namespace vex::geometry {

// The surface with at most so many triangles, small ones where it bends (Garland and Heckbert, "Surface
// simplification using quadric error metrics", 1997). Errors count `weight` times, so that more is left where
// the camera comes close. Open borders stay; mapping is lost.
Surface simplified(
    const Surface& surface, int triangles,
    const std::function<float(const Vector&)>& weight = [](const Vector&) { return 1.0f; });

}  // namespace vex::geometry
