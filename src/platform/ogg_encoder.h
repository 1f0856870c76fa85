#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace vex {

// Ogg Vorbis file of two channels of equal length (-1 to 1). `quality` runs from 0 to 1. The stream's
// serial number is fixed, so that equal sound gives equal bytes.
// `error` says what went wrong when the result is empty.
std::vector<std::byte> encodeOgg(std::span<const float> left, std::span<const float> right, int sampleRate,
                                 double quality, std::string& error);

// Gives every page of an Ogg stream this serial number and a checksum to match. False, with the bytes
// unchanged, when the bytes are not whole pages from end to end.
bool setOggSerial(std::span<std::byte> file, unsigned serial);

}  // namespace vex
