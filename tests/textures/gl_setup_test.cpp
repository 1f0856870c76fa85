#include "textures/gl_setup.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "base/options.h"
#include "platform/gl_context.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/temporary_folder.h"

namespace vex {

namespace {

const char* missing = "";  // the extension that the context is made to deny

bool supportedButMissing(const char* name) {
  const std::string list = std::string(reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS))) + " ";
  return std::strcmp(name, missing) != 0 && list.find(std::string(name) + " ") != std::string::npos;
}

}  // namespace

class GlSetup : public GlTest {};

TEST_F(GlSetup, StateIsTheSameWhateverWasBefore) {
  glDrawBuffer(GL_NONE);
  glDisable(GL_DEPTH_TEST);
  glShadeModel(GL_FLAT);
  glDisable(GL_BLEND);
  glDepthFunc(GL_GREATER);
  glLineWidth(1.0f);
  glEnable(GL_COLOR_MATERIAL);
  setUpGlState();
  EXPECT_EQ(glInteger(GL_DRAW_BUFFER), GL_BACK);
  EXPECT_TRUE(glFlag(GL_DEPTH_TEST));
  EXPECT_EQ(glInteger(GL_SHADE_MODEL), GL_SMOOTH);
  EXPECT_TRUE(glFlag(GL_BLEND));
  EXPECT_EQ(glInteger(GL_DEPTH_FUNC), GL_LEQUAL);
  EXPECT_EQ(glFloats(GL_LINE_WIDTH)[0], 2.0f);
  EXPECT_FALSE(glFlag(GL_COLOR_MATERIAL));
}

TEST_F(GlSetup, LogNamesRendererVendorVersionAndExtensions) {
  const TemporaryFolder folder;
  options().showStats = true;
  setUpGlState();
  const auto text = [](GLenum name) { return std::string(reinterpret_cast<const char*>(glGetString(name))); };
  const std::string whole = text(GL_RENDERER) + " from " + text(GL_VENDOR) + " ver " + text(GL_VERSION) +
                            "\n" + text(GL_EXTENSIONS) + "\n";
  ASSERT_GT(whole.size(), 511u);
  EXPECT_EQ(readFile("Demo.log"), whole.substr(0, 510) + "\n");
}

TEST_F(GlSetup, ProbeFindsWhatTheContextOffers) {
  glContext.extensionSupported = supportedButMissing;
  for (const char* name :
       {"", "GL_ARB_multitexture", "GL_EXT_separate_specular_color", "GL_EXT_compiled_vertex_array"}) {
    missing = name;
    probeExtensions();
    const bool units = std::strcmp(name, "GL_ARB_multitexture") != 0;
    const bool arrays = std::strcmp(name, "GL_EXT_compiled_vertex_array") != 0;
    EXPECT_EQ(glExtensions.hasMultitexture, units) << name;
    EXPECT_EQ(glExtensions.textureUnits, units ? glInteger(GL_MAX_TEXTURE_UNITS_ARB) : 1) << name;
    EXPECT_EQ(glExtensions.glActiveTextureARB != nullptr, units) << name;
    EXPECT_EQ(glExtensions.hasSeparateSpecular, std::strcmp(name, "GL_EXT_separate_specular_color") != 0)
        << name;
    EXPECT_EQ(glExtensions.hasCompiledArrays, arrays) << name;
    EXPECT_EQ(glExtensions.glLockArraysEXT != nullptr && glExtensions.glUnlockArraysEXT != nullptr, arrays)
        << name;
  }
}

TEST_F(GlSetup, LoadedEntryPointsDoWhatTheyAreNamedFor) {
  probeExtensions();
  ASSERT_GT(glExtensions.textureUnits, 1);
  glExtensions.glActiveTextureARB(GL_TEXTURE1_ARB);
  glExtensions.glClientActiveTextureARB(GL_TEXTURE1_ARB);
  EXPECT_EQ(glInteger(GL_ACTIVE_TEXTURE_ARB), GL_TEXTURE1_ARB);
  EXPECT_EQ(glInteger(GL_CLIENT_ACTIVE_TEXTURE_ARB), GL_TEXTURE1_ARB);
  glExtensions.glMultiTexCoord2fARB(GL_TEXTURE1_ARB, 0.25f, 0.75f);
  EXPECT_EQ(glFloats(GL_CURRENT_TEXTURE_COORDS), (std::array<float, 4>{0.25f, 0.75f, 0, 1}));
  glExtensions.glActiveTextureARB(GL_TEXTURE0_ARB);
  glExtensions.glClientActiveTextureARB(GL_TEXTURE0_ARB);
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

}  // namespace vex
