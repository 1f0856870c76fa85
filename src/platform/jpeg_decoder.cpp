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
    case TJCS_CMYK:
    case TJCS_YCCK:
      return 4;
    default:
      return 2;
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
  if (file.empty()) return false;
  int subsampling = 0;
  int colourSpace = 0;
  const bool known = tjDecompressHeader3(decoder.get(), bytesOf(file), file.size(), &parameters.width,
                                         &parameters.height, &subsampling, &colourSpace) == 0;
  // The library also fails, with -1, where it has no name for the subsampling or the colours of a header
  // that it has read. Its decoding does not ask for the former.
  if (!known && subsampling >= 0) return false;
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
