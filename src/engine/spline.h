#pragma once

namespace vex {

// The natural cubic spline (no curvature at both ends) through n dots, at t. x ascends strictly.
// One dot holds everywhere; two dots give a straight line that goes on beyond them; three and more hold
// the end values outside their span.
// Fatal: "calcSpline called with array size 0!"; "Critical error: d[]=0 in calc_spline!\n" for two
// neighbours of equal x among three or more dots.
float calc_spline(const float* x, const float* y, int n, float t);

// The same from three dots on, in two steps for who asks for many t: the equations of the curve do not depend
// on t. `bends` takes n numbers.
void solveSpline(const float* x, const float* y, int n, float* bends);
float splineAt(const float* x, const float* y, const float* bends, int n, float t);

}  // namespace vex
