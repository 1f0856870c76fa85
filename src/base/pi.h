#pragma once

namespace vex {

inline constexpr double piToTenDecimals =
    3.1415926536;                           // with which the curves and models of a show are defined
inline constexpr float pi = 3.1415926536f;  // the float next to it, and to all further decimals

}  // namespace vex
