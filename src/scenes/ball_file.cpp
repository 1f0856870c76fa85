#include "scenes/ball_file.h"

#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>

#include "base/files.h"
#include "base/report.h"
#include "platform/little_endian.h"
#include "platform/paths.h"
#include "platform/replace_file.h"

namespace vex {

namespace {

constexpr std::size_t countSize = 4;
constexpr std::size_t ballFields = 7;
constexpr std::size_t fieldSize = 4;
constexpr std::size_t ballSize = ballFields * fieldSize;

using Fields = std::array<float, ballFields>;  // in file order

std::uint32_t wordAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
  return static_cast<std::uint32_t>(littleEndian(bytes.subspan(offset, fieldSize)));
}

}  // namespace

std::vector<Ball> readBallFile(const char* name) {
  const OpenFile file(fileOpenNeeded(name, formatted("Vector balls %s not found!", name)));
  const std::vector<std::uint8_t> bytes = fileReadRest(file);
  if (bytes.size() < countSize) fatalError("%s: ends before the number of balls", name);
  const auto count = static_cast<std::int32_t>(wordAt(bytes, 0));
  const std::size_t held = (bytes.size() - countSize) / ballSize;
  if (count < 0 || static_cast<std::size_t>(count) != held || countSize + held * ballSize != bytes.size()) {
    fatalError("%s: number of balls is %d, does not fit the file's size of %zu bytes", name,
               static_cast<int>(count), bytes.size());
  }
  std::vector<Ball> balls;
  balls.reserve(held);
  for (std::size_t offset = countSize; offset < bytes.size(); offset += ballSize) {
    Fields field;
    for (std::size_t i = 0; i < ballFields; ++i) {
      field[i] = std::bit_cast<float>(wordAt(bytes, offset + i * fieldSize));
      if (std::isfinite(field[i])) continue;
      constexpr std::array fieldNames{"intensity", "red", "green", "blue", "x", "y", "z"};
      fatalError("%s: %s of ball %zu is %g, not a usable number", name, fieldNames[i], balls.size(),
                 static_cast<double>(field[i]));
    }
    balls.push_back({field[0], {field[1], field[2], field[3]}, {field[4], field[5], field[6]}});
  }
  return balls;
}

std::string ballFileBytes(const std::vector<Ball>& balls) {
  std::string bytes;
  appendLittleEndian(bytes, balls.size(), countSize);
  for (const auto& [intensity, colour, position] : balls) {
    const Fields fields{intensity, colour.r, colour.g, colour.b, position.x, position.y, position.z};
    for (const float field : fields)
      appendLittleEndian(bytes, std::bit_cast<std::uint32_t>(field), fieldSize);
  }
  return bytes;
}

void writeBallFile(const char* name, const std::vector<Ball>& balls) {
  if (!replaceFile(resolvePath(name), ballFileBytes(balls)))
    warning("Vector balls %s cannot be written: %s", name, std::strerror(errno));
}

}  // namespace vex
