#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/Xrandr.h>

#include <memory>

// RandR's records of the primary screen, held by handles. For platform sources only: the header
// brings all of Xlib.

namespace vex {

template <auto release>
struct Release {
  void operator()(auto* resource) const { release(resource); }
};

using DisplayHandle = std::unique_ptr<Display, Release<XCloseDisplay>>;
using ResourcesHandle = std::unique_ptr<XRRScreenResources, Release<XRRFreeScreenResources>>;
using OutputHandle = std::unique_ptr<XRROutputInfo, Release<XRRFreeOutputInfo>>;
using CrtcHandle = std::unique_ptr<XRRCrtcInfo, Release<XRRFreeCrtcInfo>>;

// A connection of its own to the display that DISPLAY names; null where there is none.
DisplayHandle openDisplay();

// The output marked primary, else the first one that shows something.
struct PrimaryOutput {
  ResourcesHandle resources;
  OutputHandle output;
  CrtcHandle crtc;  // null while the output is off

  explicit operator bool() const { return output != nullptr; }
};

// Without RandR 1.2 or with nothing connected the result is false.
PrimaryOutput findPrimaryOutput(Display* display);

// Null for an id that the server has forgotten.
const XRRModeInfo* findMode(const XRRScreenResources& resources, RRMode id);

// Frames per second; 0 where the server gives no timings.
double modeRate(const XRRModeInfo& mode);

}  // namespace vex
