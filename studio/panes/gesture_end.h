#pragma once

namespace vex::studio {

// Lets every gesture of the mouse end where the button was let go. By itself the toolkit drops a movement
// that it finds together with the release behind it, as it does when the window was busy: what is dragged
// would stay where it was seen last. Once, before events come.
void endGesturesAtTheMouse();

}  // namespace vex::studio
