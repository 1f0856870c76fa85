#include "platform/offscreen_context.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "platform/gl_context.h"

namespace vex {
namespace {

struct OffscreenContext {
  EGLDisplay display = EGL_NO_DISPLAY;  // once opened, kept until the process ends: its driver stays loaded
  EGLSurface surface = EGL_NO_SURFACE;
  EGLContext context = EGL_NO_CONTEXT;
};

OffscreenContext open;

std::string reason(const char* step) {
  char text[96];
  std::snprintf(text, sizeof text, "%s failed (EGL error 0x%x)", step, static_cast<unsigned>(eglGetError()));
  return text;
}

void* entryPoint(const char* name) {
  return reinterpret_cast<void*>(eglGetProcAddress(name));
}

// A display that needs no server: Mesa's surfaceless platform, otherwise the first device that
// can be initialised.
EGLDisplay openDisplay() {
  const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
  const auto getDisplay =
      reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
  if (getDisplay == nullptr) return EGL_NO_DISPLAY;
  const auto initialised = [&](EGLenum platform, void* native) -> EGLDisplay {
    const EGLDisplay display = getDisplay(platform, native, nullptr);
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr)) return EGL_NO_DISPLAY;
    return display;
  };
  if (listHolds(extensions, "EGL_MESA_platform_surfaceless")) {
    const EGLDisplay display = initialised(EGL_PLATFORM_SURFACELESS_MESA, nullptr);
    if (display != EGL_NO_DISPLAY) return display;
  }
  const auto queryDevices =
      reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
  if (!listHolds(extensions, "EGL_EXT_platform_device") || queryDevices == nullptr) return EGL_NO_DISPLAY;
  std::array<EGLDeviceEXT, 16> devices{};
  EGLint found = 0;
  if (!queryDevices(static_cast<EGLint>(devices.size()), devices.data(), &found)) return EGL_NO_DISPLAY;
  for (EGLint i = 0; i < found; ++i) {
    const EGLDisplay display = initialised(EGL_PLATFORM_DEVICE_EXT, devices[static_cast<std::size_t>(i)]);
    if (display != EGL_NO_DISPLAY) return display;
  }
  return EGL_NO_DISPLAY;
}

std::string openOnDisplay(int width, int height) {
  const EGLint wanted[] = {EGL_SURFACE_TYPE,
                           EGL_PBUFFER_BIT,
                           EGL_RENDERABLE_TYPE,
                           EGL_OPENGL_BIT,
                           EGL_RED_SIZE,
                           8,
                           EGL_GREEN_SIZE,
                           8,
                           EGL_BLUE_SIZE,
                           8,
                           EGL_ALPHA_SIZE,
                           8,
                           EGL_DEPTH_SIZE,
                           24,
                           EGL_STENCIL_SIZE,
                           8,
                           EGL_NONE};
  EGLConfig config = nullptr;
  EGLint count = 0;
  if (!eglBindAPI(EGL_OPENGL_API)) return reason("eglBindAPI");
  if (!eglChooseConfig(open.display, wanted, &config, 1, &count) || count < 1)
    return reason("eglChooseConfig");
  const EGLint size[] = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
  open.surface = eglCreatePbufferSurface(open.display, config, size);
  if (open.surface == EGL_NO_SURFACE) return reason("eglCreatePbufferSurface");
  // Without a version asked for, this is the compatibility profile.
  open.context = eglCreateContext(open.display, config, EGL_NO_CONTEXT, nullptr);
  if (open.context == EGL_NO_CONTEXT) return reason("eglCreateContext");
  if (!eglMakeCurrent(open.display, open.surface, open.surface, open.context))
    return reason("eglMakeCurrent");
  GLint largest[2] = {};
  glGetIntegerv(GL_MAX_VIEWPORT_DIMS, largest);
  if (width > largest[0] || height > largest[1]) {
    return "size " + std::to_string(width) + "x" + std::to_string(height) + " is beyond " +
           std::to_string(largest[0]) + "x" + std::to_string(largest[1]);
  }
  return {};
}

}  // namespace

std::string openOffscreenContext(int width, int height) {
  closeOffscreenContext();
  if (open.display == EGL_NO_DISPLAY) open.display = openDisplay();
  if (open.display == EGL_NO_DISPLAY) return "no EGL display without a window system";
  std::string failure = openOnDisplay(width, height);
  if (!failure.empty()) {
    closeOffscreenContext();
    return failure;
  }
  glContext = {.extensionSupported = extensionListed, .entryPoint = entryPoint};
  return {};
}

void closeOffscreenContext() {
  if (open.display == EGL_NO_DISPLAY) return;
  eglMakeCurrent(open.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  if (open.context != EGL_NO_CONTEXT) eglDestroyContext(open.display, open.context);
  if (open.surface != EGL_NO_SURFACE) eglDestroySurface(open.display, open.surface);
  open = {.display = open.display};
  glContext = {};
}

void readBackBgra(int width, int height, std::vector<std::byte>& pixels) {
  pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
  glPixelStorei(GL_PACK_ALIGNMENT, 4);
  glReadPixels(0, 0, width, height, GL_BGRA, GL_UNSIGNED_BYTE, pixels.data());
}

}  // namespace vex
