#include "app/gl_window.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/fatal.h"

namespace vex {

TEST(GlWindow, MissingDisplayIsNamed) {
  setenv("DISPLAY", ":4000000", 1);
  EXPECT_EQ(fatalText([] {
              setUpGl({640, 480, 32}, false);
            }),
            "no X display found (DISPLAY is \":4000000\")");
}

}  // namespace vex
