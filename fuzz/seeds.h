#pragma once

#include <string>
#include <vector>

#include "tests/support/test_scene.h"

// Files to begin with, one for each way through a reader, and the words of texts.

namespace vex {

std::vector<std::string> projectSeeds();
std::vector<std::string> projectTextSeeds();
std::vector<std::string> projectTextWords();
std::vector<std::string> archiveSeeds();
std::vector<std::string> modelTextSeeds();
std::vector<std::string> modelTextWords();
std::vector<std::string> modelStreamSeeds();
std::vector<std::string> containerSeeds();
std::vector<std::string> stripCacheSeeds();
std::vector<std::string> ballSeeds();
std::vector<std::string> bmpSeeds();
std::vector<std::string> jpegSeeds();
std::vector<std::string> preloadSeeds();
std::vector<std::string> preloadWords();
std::vector<std::string> fontSeeds();
std::vector<std::string> musicSeeds();

// That the strip caches belong to: a fan and a strip, nothing, a lone triangle.
struct StripScene : TestScene {
  StripScene();
};

}  // namespace vex
