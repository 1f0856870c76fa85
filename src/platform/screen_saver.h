#pragma once

namespace vex {

// Between the two calls the screen does not blank for want of input. The server undoes the first by
// itself when the process ends. Monitor power settings stay as they are.
void holdBlanking();
void releaseBlanking();

// To be called each frame meanwhile: now and then tells savers that run as programs of their own
// that somebody is here.
void keepAwake();

}  // namespace vex
