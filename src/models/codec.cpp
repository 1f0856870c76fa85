#include "models/codec.h"

#include <array>

namespace vex {

namespace {

constexpr std::array errorTexts{
    "uninitialized zip processing",
    "not enough memory",
    "bad magic header",
    "reserved field or compression method",
    "EOF while processing header",
    "Invalid compressed data",
    "More data to process at close",
    "uncompressed size differs from recorded",
    "bad CRC",
    "write error",
    "generic/internal error",
};

}  // namespace

const char* zipErrorText(int code) {
  return code >= 0 && code < zipInternalError ? errorTexts[static_cast<std::size_t>(code)]
                                              : errorTexts[zipInternalError];
}

}  // namespace vex
