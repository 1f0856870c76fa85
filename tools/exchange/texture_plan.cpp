#include "tools/exchange/texture_plan.h"

#include <GL/glu.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <span>

#include "base/report.h"
#include "platform/jpeg_decoder.h"
#include "platform/jpeg_encoder.h"
#include "platform/offscreen_context.h"
#include "platform/png_file.h"
#include "platform/replace_file.h"

namespace vex {

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::byte>;

constexpr int mostSourceSide = 16384;
constexpr std::uintmax_t mostSourceBytes = std::uintmax_t{256} << 20;
constexpr int leastSide = 4;  // rows of smaller BMP files would need padding
constexpr int smallSide = 64;
constexpr int jpegQuality = 92;

std::size_t at(int index) {
  return static_cast<std::size_t>(index);
}

Bytes bytesOf(const TexturePlan& plan) {
  if (plan.embedded) {
    const auto* bytes = reinterpret_cast<const std::byte*>(plan.embedded->pcData);
    return {bytes, bytes + plan.embedded->mWidth};
  }
  std::ifstream in(plan.file, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

bool beginsWith(std::span<const std::byte> file, std::initializer_list<unsigned> bytes) {
  return file.size() >= bytes.size() &&
         std::equal(bytes.begin(), bytes.end(), file.begin(),
                    [](unsigned a, std::byte b) { return a == std::to_integer<unsigned>(b); });
}

bool isPng(std::span<const std::byte> file) {
  return beginsWith(file, {0x89, 'P', 'N', 'G'});
}

bool isJpeg(std::span<const std::byte> file) {
  return beginsWith(file, {0xff, 0xd8, 0xff});
}

bool decodePicture(const Bytes& file, PngPixels& pixels) {
  if (isPng(file)) return decodePng(file, mostSourceSide, pixels);
  if (!isJpeg(file)) return false;
  const JpegDecoder decoder = openJpegDecoder();
  JpegParameters parameters;
  if (!decoder || !readJpegParameters(decoder, file, parameters) || parameters.width < 1 ||
      parameters.height < 1 || parameters.width > mostSourceSide || parameters.height > mostSourceSide)
    return false;
  std::vector<std::uint32_t> upward(at(parameters.width) * at(parameters.height));
  if (!decodeJpeg(decoder, upward)) return false;
  pixels.width = parameters.width;
  pixels.height = parameters.height;
  pixels.rgba.resize(upward.size() * 4);
  const std::size_t row = at(pixels.width) * 4;
  for (int y = 0; y < pixels.height; ++y)
    std::memcpy(pixels.rgba.data() + at(y) * row,
                upward.data() + at(pixels.height - 1 - y) * at(pixels.width), row);
  return true;
}

// The nearest power of two, in proportion.
int textureSide(int side, int mostSide) {
  const auto below = static_cast<int>(std::bit_floor(static_cast<unsigned>(side)));
  const int nearest = side * 4 >= below * 6 ? below * 2 : below;
  return std::clamp(nearest, leastSide, mostSide);
}

// The GL's utilities ask the GL how pixels are packed, so that one must be there.
void needGl() {
  static const std::string reason = openOffscreenContext(16, 16);
  if (!reason.empty()) fatalError("no OpenGL to scale textures with: %s", reason.c_str());
}

void scaleTo(PngPixels& pixels, int width, int height) {
  if (pixels.width == width && pixels.height == height) return;
  needGl();
  PngPixels scaled{.width = width, .height = height, .rgba = Bytes(at(width) * at(height) * 4)};
  if (gluScaleImage(GL_RGBA, pixels.width, pixels.height, GL_UNSIGNED_BYTE, pixels.rgba.data(), width, height,
                    GL_UNSIGNED_BYTE, scaled.rgba.data()) != 0)
    fatalError("a picture of %dx%d can't be scaled to %dx%d", pixels.width, pixels.height, width, height);
  pixels = std::move(scaled);
}

void cutAlpha(PngPixels& pixels, float cutoff) {
  for (std::size_t i = 3; i < pixels.rgba.size(); i += 4)
    pixels.rgba[i] = static_cast<float>(std::to_integer<unsigned>(pixels.rgba[i])) >= cutoff * 255.0f
                         ? std::byte{255}
                         : std::byte{0};
}

bool opaqueAllOver(const PngPixels& pixels) {
  for (std::size_t i = 3; i < pixels.rgba.size(); i += 4)
    if (pixels.rgba[i] != std::byte{255}) return false;
  return true;
}

// `channels` bytes a pixel: the first three, or the last one.
std::vector<unsigned char> channelsOf(const PngPixels& pixels, int channels) {
  std::vector<unsigned char> rows;
  rows.reserve(pixels.rgba.size() / 4 * at(channels));
  for (std::size_t i = 0; i < pixels.rgba.size(); i += 4)
    for (int c = 0; c < channels; ++c)
      rows.push_back(std::to_integer<unsigned char>(pixels.rgba[i + (channels == 1 ? 3 : at(c))]));
  return rows;
}

void putNumber(Bytes& bytes, std::uint32_t value, int size) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::byte>(value >> (8 * i)));
}

// 24 bits, as the player reads them: no padding, bottom row first. A grey picture has three equal channels.
Bytes encodeBmp(const PngPixels& pixels, int channels) {
  const std::vector<unsigned char> rows = channelsOf(pixels, channels);
  const auto size = static_cast<std::uint32_t>(pixels.width * pixels.height * 3);
  Bytes file;
  putNumber(file, 0x4d42, 2);
  for (const std::uint32_t word : {54 + size, 0u, 54u, 40u}) putNumber(file, word, 4);
  putNumber(file, static_cast<std::uint32_t>(pixels.width), 4);
  putNumber(file, static_cast<std::uint32_t>(pixels.height), 4);
  putNumber(file, 1, 2);
  putNumber(file, 24, 2);
  for (const std::uint32_t word : {0u, size, 2835u, 2835u, 0u, 0u}) putNumber(file, word, 4);
  for (int y = pixels.height - 1; y >= 0; --y)
    for (int x = 0; x < pixels.width; ++x) {
      const std::size_t pixel = (at(y) * at(pixels.width) + at(x)) * at(channels);
      for (const std::size_t c : {2u, 1u, 0u})
        file.push_back(static_cast<std::byte>(rows[pixel + (channels == 1 ? 0 : c)]));
    }
  return file;
}

Bytes encodePicture(const PngPixels& pixels, int channels, bool bmp) {
  if (bmp) return encodeBmp(pixels, channels);
  const std::vector<unsigned char> rows = channelsOf(pixels, channels);
  return encodeJpeg({rows.data(), pixels.width, pixels.height, channels}, jpegQuality);
}

void writeBytes(const fs::path& path, const Bytes& bytes) {
  if (bytes.empty() ||
      !replaceFile(path.string(), {reinterpret_cast<const char*>(bytes.data()), bytes.size()}))
    fatalError("can't write %s: %s", path.c_str(), std::strerror(errno));
}

// A file of the texture that stands there already; empty when none does.
std::string standing(const fs::path& data, const std::string& name) {
  std::error_code error;
  for (const char* ending : {".jpg", ".bmp", "_mask.jpg", "_mask.bmp"})
    if (fs::exists(data / (name + ending), error)) return "data/" + name + ending;
  return {};
}

void writeTexture(const TexturePlan& plan, const TextureWriting& writing, Report& report) {
  const fs::path data = fs::path(writing.folder) / "data";
  if (const std::string file = standing(data, plan.name); !file.empty() && !writing.force) {
    report.changed("texture " + plan.name + ": " + file +
                   " stands already and is kept (--force writes it anew)");
    return;
  }
  PngPixels pixels;
  if (!decodePicture(bytesOf(plan), pixels)) {
    report.left("texture " + plan.name + ": its picture is damaged or larger than 16384 a side; it is white");
    pixels = {
        .width = leastSide, .height = leastSide, .rgba = Bytes(leastSide * leastSide * 4, std::byte{255})};
  }
  const int width = textureSide(pixels.width, writing.mostSide),
            height = textureSide(pixels.height, writing.mostSide);
  if (width != pixels.width || height != pixels.height)
    report.changed(formatted("texture %s: scaled from %dx%d to %dx%d", plan.name.c_str(), pixels.width,
                             pixels.height, width, height));
  scaleTo(pixels, width, height);
  if (plan.alpha == AlphaUse::cut) cutAlpha(pixels, plan.cutoff);
  const bool masked = plan.alpha != AlphaUse::none && !opaqueAllOver(pixels);
  const bool bmp = width <= smallSide && height <= smallSide;
  const std::string ending = bmp ? ".bmp" : ".jpg";
  report.came(formatted("texture data/%s%s, %dx%d%s", plan.name.c_str(), ending.c_str(), width, height,
                        masked ? " with a mask" : ""));
  if (writing.dryRun) return;
  std::error_code error;
  fs::create_directories(data, error);
  for (const char* old : {".jpg", ".bmp", "_mask.jpg", "_mask.bmp"})
    fs::remove(data / (plan.name + old), error);
  writeBytes(data / (plan.name + ending), encodePicture(pixels, 3, bmp));
  if (masked) writeBytes(data / (plan.name + "_mask" + ending), encodePicture(pixels, 1, bmp));
}

}  // namespace

std::string whyUnreadable(const TexturePlan& plan) {
  if (plan.embedded && plan.embedded->mHeight != 0) return "raw pixels inside the file; PNG and JPEG come in";
  if (!plan.embedded) {
    std::error_code error;
    if (!fs::is_regular_file(plan.file, error)) return "is missing";
    if (fs::file_size(plan.file, error) > mostSourceBytes) return "is larger than 256 MiB";
  }
  char head[4] = {};
  if (plan.embedded) {
    std::memcpy(head, plan.embedded->pcData, std::min<std::size_t>(sizeof head, plan.embedded->mWidth));
  } else {
    std::ifstream(plan.file, std::ios::binary).read(head, sizeof head);
  }
  const auto bytes = std::as_bytes(std::span(head));
  return isPng(bytes) || isJpeg(bytes) ? "" : "is neither PNG nor JPEG";
}

void writeTextures(const std::vector<TexturePlan>& plans, const TextureWriting& writing, Report& report) {
  for (const TexturePlan& plan : plans) writeTexture(plan, writing, report);
}

}  // namespace vex
