#include "platform/screen_modes.h"

namespace vex {

namespace {

OutputHandle usableOutput(Display* display, XRRScreenResources* resources, RROutput id) {
  OutputHandle output(XRRGetOutputInfo(display, resources, id));
  if (output && (output->connection == RR_Disconnected || output->nmode == 0)) output.reset();
  return output;
}

}  // namespace

DisplayHandle openDisplay() {
  return DisplayHandle(XOpenDisplay(nullptr));
}

PrimaryOutput findPrimaryOutput(Display* display) {
  PrimaryOutput found;
  int eventBase, errorBase, major = 1, minor = 3;
  if (!XRRQueryExtension(display, &eventBase, &errorBase) || !XRRQueryVersion(display, &major, &minor))
    return found;
  if (major == 1 && minor < 3) return found;
  const Window root = DefaultRootWindow(display);
  found.resources.reset(XRRGetScreenResourcesCurrent(display, root));
  if (!found.resources) return found;
  XRRScreenResources* resources = found.resources.get();

  if (const RROutput primary = XRRGetOutputPrimary(display, root)) {
    found.output = usableOutput(display, resources, primary);
  }
  for (int i = 0; i < resources->noutput && !found.output; ++i) {
    found.output = usableOutput(display, resources, resources->outputs[i]);
    if (found.output && !found.output->crtc) found.output.reset();
  }
  if (found.output && found.output->crtc) {
    found.crtc.reset(XRRGetCrtcInfo(display, resources, found.output->crtc));
  }
  return found;
}

const XRRModeInfo* findMode(const XRRScreenResources& resources, RRMode id) {
  for (int i = 0; i < resources.nmode; ++i) {
    if (resources.modes[i].id == id) return &resources.modes[i];
  }
  return nullptr;
}

double modeRate(const XRRModeInfo& mode) {
  double lines = mode.vTotal;
  if (mode.modeFlags & RR_DoubleScan) lines *= 2;
  if (mode.modeFlags & RR_Interlace) lines /= 2;
  const double pixels = mode.hTotal * lines;
  return pixels > 0 ? static_cast<double>(mode.dotClock) / pixels : 0;
}

}  // namespace vex
