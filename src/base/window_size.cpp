#include "base/window_size.h"

namespace vex {

namespace {

int currentWidth = 0;
int currentHeight = 0;

}  // namespace

float windowWidth() {
  return static_cast<float>(currentWidth);
}

float windowHeight() {
  return static_cast<float>(currentHeight);
}

void setWindowSize(int width, int height) {
  currentWidth = width;
  currentHeight = height;
}

}  // namespace vex
