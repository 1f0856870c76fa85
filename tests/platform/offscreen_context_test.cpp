#include "platform/offscreen_context.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "platform/gl_context.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/run_folder.h"
#include "tests/support/temporary_folder.h"

namespace vex {

TEST(OffscreenContext, OffersWhatTheShowNeeds) {
  ASSERT_EQ(openOffscreenContext(30, 20), "");
  EXPECT_GE(glInteger(GL_DEPTH_BITS), 24);
  EXPECT_GE(glInteger(GL_STENCIL_BITS), 8);
  EXPECT_EQ(glFloats(GL_VIEWPORT), (std::array<float, 4>{0, 0, 30, 20}));
  EXPECT_TRUE(glContext.extensionSupported("GL_ARB_multitexture"));
  EXPECT_FALSE(glContext.extensionSupported("GL_ARB_multitextur"));
  EXPECT_FALSE(glContext.extensionSupported("GL_EXT_none_such"));
  EXPECT_NE(glContext.entryPoint("glActiveTextureARB"), nullptr);
  closeOffscreenContext();
  EXPECT_EQ(glContext.entryPoint, nullptr);
}

TEST(OffscreenContext, ReadsBackBlueFirstAndTheBottomRowFirst) {
  ASSERT_EQ(openOffscreenContext(3, 2), "");
  glClearColor(1, 0, 0, 1);
  glClear(GL_COLOR_BUFFER_BIT);
  glEnable(GL_SCISSOR_TEST);
  glScissor(2, 1, 1, 1);
  glClearColor(0, 1, 1, 0);
  glClear(GL_COLOR_BUFFER_BIT);
  std::vector<std::byte> pixels;
  readBackBgra(3, 2, pixels);
  closeOffscreenContext();
  ASSERT_EQ(pixels.size(), 24u);
  for (std::size_t pixel = 0; pixel < 6; ++pixel) {
    const bool upperRight = pixel == 5;
    EXPECT_EQ(pixels[pixel * 4], std::byte(upperRight ? 255 : 0)) << pixel;
    EXPECT_EQ(pixels[pixel * 4 + 1], std::byte(upperRight ? 255 : 0)) << pixel;
    EXPECT_EQ(pixels[pixel * 4 + 2], std::byte(upperRight ? 0 : 255)) << pixel;
    EXPECT_EQ(pixels[pixel * 4 + 3], std::byte(upperRight ? 0 : 255)) << pixel;
  }
}

TEST(OffscreenContext, SaysWhyThereIsNone) {
  const std::string failure = openOffscreenContext(1 << 20, 16);
  EXPECT_NE(failure, "");
  EXPECT_EQ(glContext.extensionSupported, nullptr);

  // The library without any driver; in a process that has not met EGL yet, and finds all else.
  const TemporaryFolder folder;
  writeRunFolder({.totalTime = 1});
  const Program recorder =
      runProgram("__EGL_VENDOR_LIBRARY_FILENAMES=/none '" VEX_BIN "/vexrecord' --out none.mp4");
  EXPECT_EQ(recorder.exitCode, 255);
  EXPECT_EQ(recorder.errors, "vexrecord: no OpenGL to draw with: no EGL display without a window system\n");
}

}  // namespace vex
