#pragma once

namespace vex {

// The same small world in two kinds of text: the triangle "Tri" at (1, 2, 3), z up, the material "paint"; the
// camera "Cam" at (5, 6, 7), which looks along y, 60 degrees from side to side at 16:9, to 500; the spot
// "Lamp" at (0, 0, 9) of 40 degrees, orange at 0.8. The FBX lamp shines along -y, the other one down.
extern const char* const fbxWorld;
extern const char* const colladaWorld;

}  // namespace vex
