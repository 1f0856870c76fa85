#include "platform/jpeg_decoder.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>

// Needs the types of stdio before it,
#include <jpeglib.h>

// and the list of messages the library's version.
#include <jerror.h>

namespace vex {

// The library of TurboJPEG beneath its own interface, which says of several warnings only the first: stray
// bytes would hide that the file ends behind them.
struct JpegState {
  jpeg_decompress_struct library{};
  jpeg_error_mgr errors{};
  jpeg_progress_mgr progress{};
  std::jmp_buf giveUp{};
  bool endMarkNeeded = false;  // it alone tells that all pixels were there
  char complaint[JMSG_LENGTH_MAX] = "";
};

namespace {

constexpr int mostScans = 500;  // a hostile file may hold any number

JpegState& stateOf(j_common_ptr library) {
  return *static_cast<JpegState*>(library->client_data);
}

[[noreturn]] void giveUp(j_common_ptr library) {
  std::longjmp(stateOf(library).giveUp, 1);
}

// For the reason that the library has just found.
[[noreturn]] void giveUpOverMessage(j_common_ptr library) {
  library->err->format_message(library, stateOf(library).complaint);
  giveUp(library);
}

// Negative levels are warnings.
void judgeMessage(j_common_ptr library, int level) {
  if (level >= 0) return;
  switch (library->err->msg_code) {
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_ARITH_BAD_CODE:
    case JWRN_MUST_RESYNC:
      giveUpOverMessage(library);
    case JWRN_JPEG_EOF:
      if (stateOf(library).endMarkNeeded) giveUpOverMessage(library);
      break;
    default:
      break;
  }
}

void countScans(j_common_ptr library) {
  if (reinterpret_cast<j_decompress_ptr>(library)->input_scan_number <= mostScans) return;
  std::snprintf(stateOf(library).complaint, JMSG_LENGTH_MAX, "More than %d scans", mostScans);
  giveUp(library);
}

// False where the library gives up, which it does by a jump out of `steps`: nothing there has a destructor.
template <typename Steps>
bool attempt(JpegState& state, Steps steps) {
  if (setjmp(state.giveUp) != 0) return false;
  steps(state.library);
  return true;
}

}  // namespace

void JpegCloser::operator()(JpegState* decoder) const {
  jpeg_destroy_decompress(&decoder->library);
  delete decoder;
}

JpegDecoder openJpegDecoder() {
  JpegDecoder decoder(new JpegState);
  JpegState& state = *decoder;
  state.library.err = jpeg_std_error(&state.errors);
  state.errors.error_exit = giveUpOverMessage;
  state.errors.emit_message = judgeMessage;
  state.library.client_data = &state;  // stays through the creation
  if (!attempt(state, [](auto& library) { jpeg_create_decompress(&library); })) return nullptr;
  state.progress.progress_monitor = countScans;
  state.library.progress = &state.progress;
  return decoder;
}

const char* jpegComplaint(const JpegDecoder& decoder) {
  return decoder->complaint;
}

bool readJpegParameters(const JpegDecoder& decoder, std::span<const std::byte> file,
                        JpegParameters& parameters) {
  JpegState& state = *decoder;
  return attempt(state, [&](auto& library) {
    jpeg_mem_src(&library, reinterpret_cast<const unsigned char*>(file.data()), file.size());
    jpeg_read_header(&library, TRUE);
    state.endMarkNeeded = jpeg_has_multiple_scans(&library) || library.arith_code;
    parameters = {.width = static_cast<int>(library.image_width),
                  .height = static_cast<int>(library.image_height),
                  .channels = library.num_components};
  });
}

bool decodeJpeg(const JpegDecoder& decoder, std::vector<std::uint32_t>& pixels) {
  pixels.clear();
  const jpeg_decompress_struct& header = decoder->library;
  constexpr std::size_t surelyThere = std::size_t{1} << 24;  // more is made room for as it comes
  pixels.reserve(std::min(std::size_t{header.image_width} * header.image_height, surelyThere));
  const bool whole = attempt(*decoder, [&](auto& library) {
    if (library.num_components == 3) library.jpeg_color_space = JCS_YCbCr;
    library.out_color_space = JCS_EXT_RGBA;
    jpeg_start_decompress(&library);
    const std::size_t width = library.output_width;
    while (library.output_scanline < library.output_height) {
      pixels.resize(pixels.size() + width);
      auto* samples = reinterpret_cast<JSAMPLE*>(pixels.data() + pixels.size() - width);
      jpeg_read_scanlines(&library, &samples, 1);
    }
    jpeg_abort_decompress(&library);
  });
  if (!whole) return false;
  // The file begins with the top row.
  const auto width = static_cast<std::ptrdiff_t>(header.image_width);
  auto top = pixels.begin(), bottom = pixels.end() - width;
  for (; top < bottom; top += width, bottom -= width) std::swap_ranges(top, top + width, bottom);
  return true;
}

}  // namespace vex
