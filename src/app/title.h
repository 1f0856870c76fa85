#pragma once

namespace vex {

// Title of the window and of both dialogs.
inline constexpr const char* programTitle = "Vex by Halvane";

}  // namespace vex
