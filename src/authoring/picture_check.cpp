#include "authoring/picture_check.h"

#include <strings.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <span>
#include <string_view>
#include <vector>

#include "authoring/project_lexer.h"
#include "base/files.h"
#include "base/pak_directory.h"
#include "platform/jpeg_decoder.h"
#include "platform/little_endian.h"
#include "platform/paths.h"
#include "textures/bmp.h"
#include "textures/image.h"
#include "textures/jpeg_texture.h"

namespace vex {

namespace {

constexpr std::size_t headSize = 1 << 18;  // of a picture file; more than what comes before a JPEG's size

std::vector<std::uint8_t> readHead(const std::string& name) {
  const OpenFile file(fileOpen(name.c_str(), "rb"));
  return file.found() ? fileReadRest(file, headSize) : std::vector<std::uint8_t>{};
}

std::optional<PictureSize> jpegSize(const std::vector<std::uint8_t>& head) {
  const JpegDecoder decoder = openJpegDecoder();
  JpegParameters parameters;
  if (!decoder || !readJpegParameters(decoder, std::as_bytes(std::span(head)), parameters))
    return std::nullopt;
  return PictureSize{parameters.width, parameters.height};
}

std::optional<PictureSize> bmpSize(const std::vector<std::uint8_t>& head) {
  if (head.size() < 54) return std::nullopt;
  const auto side = [&](std::size_t offset) {
    return static_cast<std::int32_t>(littleEndian(std::span(head).subspan(offset, 4)));
  };
  return PictureSize{side(18), side(22)};
}

std::optional<PictureSize> sizeOf(const std::string& file) {
  const std::vector<std::uint8_t> head = readHead(file);
  return file.ends_with(".jpg") ? jpegSize(head) : bmpSize(head);
}

// Extension of the file that the texture cache would read; null where there is none.
const char* extensionOf(const std::string& texture) {
  for (const char* extension : {".jpg", ".bmp"}) {
    if (fileExists(texture + extension)) return extension;
  }
  return nullptr;
}

std::string text(PictureSize size) {
  return std::to_string(size.width) + "x" + std::to_string(size.height);
}

bool isPowerOfTwo(int side) {
  return side >= 0 && (side == 0 || std::has_single_bit(static_cast<unsigned>(side)));
}

int nearPowerOfTwo(int side) {
  const auto whole = static_cast<unsigned>(std::clamp(side, 1, portableImageSide));
  const unsigned below = std::bit_floor(whole), above = std::bit_ceil(whole);
  return static_cast<int>(whole - below < above - whole ? below : above);
}

// Larger ones are only remarked on.
PictureFault pixelFault(const std::string& file, PictureSize size) {
  if (std::max(size.width, size.height) > portableImageSide) return {};
  PictureFault fault{refusal([&file] {
    return file.ends_with(".jpg") ? readJpegTexture(file.c_str()) : readBmpTexture(file.c_str());
  })};
  const bool kind = fault.text.find("bpp, must be") != std::string::npos ||
                    fault.text.find("compression") != std::string::npos;
  if (kind)
    fault.hint =
        formatted("ffmpeg -i %s -pix_fmt bgr24 new.bmp makes one that is read", shellPath(file).c_str());
  else if (!fault.text.empty())
    fault.hint = "write it anew from its picture";
  return fault;
}

// What may be meant by a texture that is not there.
std::string missingHint(const std::string& texture) {
  for (const char* read : {".jpg", ".bmp"}) {
    if (texture.size() > 4 && strcasecmp(texture.substr(texture.size() - 4).c_str(), read) == 0 &&
        fileExists(texture))
      return "write " + quoteText(texture.substr(0, texture.size() - 4)) + ", without extension";
  }
  for (const char* other : {".png", ".jpeg", ".tga", ".gif", ".tif", ".tiff", ".webp"}) {
    const std::string file = texture + other;
    if (!fileExists(file)) continue;
    return formatted("%s is not read, ffmpeg -i %s -pix_fmt bgr24 %s.bmp makes one that is",
                     quoteText(file).c_str(), shellPath(file).c_str(),
                     shellPath(file).substr(0, file.size() - std::strlen(other)).c_str());
  }
  if (const std::string inData = "data\\" + texture; extensionOf(inData))
    return "did you mean " + quoteText(inData) + "?";
  return "";
}

}  // namespace

std::optional<PictureSize> textureSize(const std::string& texture) {
  const char* extension = extensionOf(texture);
  return extension ? sizeOf(texture + extension) : std::nullopt;
}

PictureFault textureFault(const std::string& texture) {
  const char* extension = extensionOf(texture);
  if (!extension) {
    return {"texture " + quoteText(texture) + " is missing, neither .jpg nor .bmp is there",
            missingHint(texture)};
  }
  const std::string file = texture + extension;
  const auto size = sizeOf(file);
  if (!size) return {"texture " + quoteText(file) + " cannot be read", "write it anew from its picture"};
  if (!isPowerOfTwo(size->width) || !isPowerOfTwo(size->height)) {
    return {"texture " + quoteText(file) + " is " + text(*size) + ", both sides must be powers of two",
            "scale it, to " + text({nearPowerOfTwo(size->width), nearPowerOfTwo(size->height)}) +
                " for instance"};
  }
  const std::string mask = texture + "_mask" + extension;
  if (!fileExists(mask)) return pixelFault(file, *size);
  const auto maskSize = sizeOf(mask);
  if (!maskSize) return {"mask " + quoteText(mask) + " cannot be read", "write it anew from its picture"};
  if (maskSize == size) return pixelFault(file, *size);
  return {"mask " + quoteText(mask) + " is " + text(*maskSize) + ", its texture " + text(*size),
          "scale one to the size of the other"};
}

std::string shellPath(const std::string& file) {
  return resolvePath(file.c_str());
}

std::string plainRefusal(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  constexpr std::string_view cry = "ARGH! (";
  if (text.starts_with(cry) && text.ends_with(')'))
    return text.substr(cry.size(), text.size() - cry.size() - 1);
  constexpr std::string_view failed = " failed (";
  const std::size_t name = text.find_first_of(" (");
  const std::size_t reason = text.find(failed);
  const bool function = name != text.npos && text[name] == '(' && reason != text.npos && text.ends_with(')');
  if (!function) return text;
  text.pop_back();
  return text.substr(reason + failed.size());
}

std::string sidesRemark(const std::string& texture) {
  const auto size = textureSize(texture);
  if (!size || std::max(size->width, size->height) <= portableImageSide) return "";
  return "texture " + quoteText(texture + extensionOf(texture)) + " is " + text(*size) +
         ", not every GL takes sides beyond " + std::to_string(portableImageSide);
}

bool textureHasMask(const std::string& texture) {
  const char* extension = extensionOf(texture);
  return extension && fileExists(texture + "_mask" + extension);
}

std::string archiveRemark(const std::string& file) {
  const auto place = findFile(file.c_str());
  if (!place) return "";
  const std::string shown = "file name " + quoteText(file);
  if (file.size() >= pakNameSize) {
    return shown + " has " + std::to_string(file.size()) + " characters, an archive takes at most " +
           std::to_string(pakNameSize - 1);
  }
  if (place->handle >= 0) return "";
  const std::filesystem::path path = std::filesystem::path(resolvePath(file.c_str())).lexically_normal();
  if (path.is_absolute() || path.string().starts_with("..")) {
    return shown + " leads out of the folder, an archive holds only what lies below it";
  }
  std::string member = path.string();
  std::replace(member.begin(), member.end(), '/', '\\');
  if (member.starts_with('.') || member.find("\\.") != std::string::npos)
    return shown + " is hidden, an archive leaves it out";
  if (strcasecmp(member.c_str(), file.c_str()) == 0) return "";
  return shown + " is found loose only, an archive holds it as " + quoteText(member);
}

}  // namespace vex
