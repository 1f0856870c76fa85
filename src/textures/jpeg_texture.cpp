#include "textures/jpeg_texture.h"

#include <cstddef>
#include <vector>

#include "base/files.h"
#include "base/report.h"
#include "platform/jpeg_decoder.h"

namespace vex {
namespace {

// As large as the largest picture without compression.
constexpr std::uint64_t maxFileSize = std::uint64_t{portableImageSide} * portableImageSide * 4;

struct JpegFile {
  JpegDecoder decoder;
  std::vector<std::byte> bytes;
  JpegParameters parameters;
};

JpegFile readParameters(int handle, const char* file) {
  JpegFile jpeg{.decoder = openJpegDecoder(), .bytes = {}, .parameters = {}};
  if (!jpeg.decoder) fatalError("ijlInit() failed (texture %s)", file);
  const std::uint64_t size = fileRemaining(handle);
  if (size > maxFileSize) {
    fatalError("texture %s holds %llu bytes, at most %llu are possible", file,
               static_cast<unsigned long long>(size), static_cast<unsigned long long>(maxFileSize));
  }
  jpeg.bytes = fileReadRest<std::vector<std::byte>>(handle);
  if (jpeg.bytes.size() != size) {
    fatalError("texture %s: its %llu bytes cannot be read", file, static_cast<unsigned long long>(size));
  }
  if (!readJpegParameters(jpeg.decoder, jpeg.bytes, jpeg.parameters))
    fatalError("ijlRead(Params) failed (texture %s: %s)", file, jpegComplaint(jpeg.decoder));
  return jpeg;
}

Image decode(const JpegFile& jpeg, const char* file) {
  const JpegParameters& parameters = jpeg.parameters;
  if (parameters.channels != 1 && parameters.channels != 3) {
    fatalError("strange JPEG format (texture %s has %d channels)", file, parameters.channels);
  }
  checkImageSides(file, parameters.width, parameters.height);
  Image image{.width = parameters.width, .height = parameters.height, .pixels = {}};
  if (!decodeJpeg(jpeg.decoder, image.pixels)) {
    fatalError("ijlRead(image) failed (texture %s: %s)", file, jpegComplaint(jpeg.decoder));
  }
  return image;
}

}  // namespace

Image readJpegTexture(const char* file, MaskUse maskUse) {
  const JpegFile jpeg = readParameters(OpenFile(openTexture(file)), file);
  if (!hasTextureSize(file, jpeg.parameters.width, jpeg.parameters.height)) return {};
  Image image = decode(jpeg, file);
  if (maskUse == MaskUse::ignored) return image;

  const std::string maskFile = maskNameOf(file, ".jpg");
  const OpenFile maskHandle(openMask(maskFile.c_str()));
  if (!maskHandle.found()) return image;
  const JpegFile mask = readParameters(maskHandle, maskFile.c_str());
  checkMaskSize(maskFile.c_str(), mask.parameters.width, mask.parameters.height, image);
  applyMask(image, decode(mask, maskFile.c_str()));
  return image;
}

Image readJpegFrame(const char* file) {
  return decode(readParameters(OpenFile(openTexture(file)), file), file);
}

}  // namespace vex
