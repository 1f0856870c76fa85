#include "platform/text_wrap.h"

namespace vex {

namespace {

// Length of the character that starts at text[at], continuation bytes included.
std::size_t characterLength(std::string_view text, std::size_t at) {
  std::size_t length = 1;
  while (at + length < text.size() && (static_cast<unsigned char>(text[at + length]) & 0xC0) == 0x80)
    ++length;
  return length;
}

void wrapLine(std::string_view rest, double width, const std::function<double(std::string_view)>& measure,
              std::vector<std::string>& lines) {
  while (true) {
    std::size_t fits = 0;
    while (fits < rest.size()) {
      const std::size_t next = fits + characterLength(rest, fits);
      if (fits > 0 && measure(rest.substr(0, next)) > width) break;
      fits = next;
    }
    if (fits == rest.size()) {
      lines.emplace_back(rest);
      return;
    }
    const std::size_t blank = rest.rfind(' ', fits);
    const std::size_t cut = blank == std::string_view::npos || blank == 0 ? fits : blank;
    std::string_view head = rest.substr(0, cut);
    while (head.ends_with(' ')) head.remove_suffix(1);
    lines.emplace_back(head);
    rest.remove_prefix(cut);
    while (rest.starts_with(' ')) rest.remove_prefix(1);
    if (rest.empty()) return;
  }
}

}  // namespace

std::vector<std::string> wrapText(std::string_view text, double width,
                                  const std::function<double(std::string_view)>& measure) {
  while (text.ends_with('\n')) text.remove_suffix(1);
  std::vector<std::string> lines;
  for (std::size_t start = 0;;) {
    const std::size_t end = text.find('\n', start);
    wrapLine(text.substr(start, end - start), width, measure, lines);
    if (end == std::string_view::npos) return lines;
    start = end + 1;
  }
}

}  // namespace vex
