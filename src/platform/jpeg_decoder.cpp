#include "platform/jpeg_decoder.h"

#include <turbojpeg.h>

namespace vex {
namespace {

const unsigned char* bytesOf(std::span<const std::byte> file) {
  return reinterpret_cast<const unsigned char*>(file.data());
}

int channelCount(int colourSpace) {
  switch (colourSpace) {
    case TJCS_GRAY:
      return 1;
    case TJCS_RGB:
    case TJCS_YCbCr:
      return 3;
    default:
      return 4;
  }
}

}  // namespace

void JpegCloser::operator()(void* decoder) const {
  tjDestroy(decoder);
}

JpegDecoder openJpegDecoder() {
  return JpegDecoder(tjInitDecompress());
}

bool readJpegParameters(const JpegDecoder& decoder, std::span<const std::byte> file,
                        JpegParameters& parameters) {
  int subsampling = 0;
  int colourSpace = 0;
  if (file.empty() || tjDecompressHeader3(decoder.get(), bytesOf(file), file.size(), &parameters.width,
                                          &parameters.height, &subsampling, &colourSpace) != 0) {
    return false;
  }
  parameters.channels = channelCount(colourSpace);
  return true;
}

bool decodeJpeg(const JpegDecoder& decoder, std::span<const std::byte> file, const JpegParameters& parameters,
                std::span<std::uint32_t> pixels) {
  const std::size_t wanted =
      static_cast<std::size_t>(parameters.width) * static_cast<std::size_t>(parameters.height);
  if (pixels.size() < wanted) return false;
  // The library only warns of data that end early; a hostile file may hold any number of scans.
  constexpr int flags = TJFLAG_BOTTOMUP | TJFLAG_ACCURATEDCT | TJFLAG_STOPONWARNING | TJFLAG_LIMITSCANS;
  return tjDecompress2(decoder.get(), bytesOf(file), file.size(),
                       reinterpret_cast<unsigned char*>(pixels.data()), parameters.width, 0,
                       parameters.height, TJPF_RGBA, flags) == 0;
}

}  // namespace vex
