#pragma once

#include <string>
#include <string_view>

#include "fuzz/target.h"

// What the targets read, each as its FuzzTarget says.

namespace vex {

void readProjectBytes(std::string_view bytes);
void readProjectTextBytes(std::string_view bytes);
void readArchiveBytes(std::string_view bytes);
void readModelTextBytes(std::string_view bytes);
void readModelStreamBytes(std::string_view bytes);  // the stream, which is packed with all sums right
void readContainerBytes(std::string_view bytes);
void readStripCacheBytes(std::string_view bytes);
void readBallBytes(std::string_view bytes);
void readBmpBytes(std::string_view bytes);   // as withMask() has it
void readJpegBytes(std::string_view bytes);  // likewise
void readPreloadBytes(std::string_view bytes);
void readFontBytes(std::string_view bytes);
void readMusicBytes(std::string_view bytes);

std::string mutateProject(std::string_view bytes, std::size_t most, unsigned seed, const Mutation& any);
std::string mutateContainer(std::string_view bytes, std::size_t most, unsigned seed, const Mutation& any);

// A picture and its mask as one: the mask's size in two bytes, lowest first, the picture, the mask.
std::string withMask(const std::string& picture, const std::string& mask = "");

}  // namespace vex
