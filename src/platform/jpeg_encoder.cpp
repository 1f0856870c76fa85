#include "platform/jpeg_encoder.h"

#include <turbojpeg.h>

namespace vex {

std::vector<std::byte> encodeJpeg(const JpegPixels& pixels, int quality) {
  const tjhandle encoder = tjInitCompress();
  if (encoder == nullptr) return {};
  const bool grey = pixels.channels == 1;
  unsigned char* data = nullptr;
  unsigned long size = 0;
  std::vector<std::byte> result;
  if (tjCompress2(encoder, pixels.rows, pixels.width, 0, pixels.height, grey ? TJPF_GRAY : TJPF_RGB, &data,
                  &size, grey ? TJSAMP_GRAY : TJSAMP_444, quality, TJFLAG_ACCURATEDCT) == 0) {
    const auto* bytes = reinterpret_cast<const std::byte*>(data);
    result.assign(bytes, bytes + size);
  }
  tjFree(data);
  tjDestroy(encoder);
  return result;
}

}  // namespace vex
