#include "models/line_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "models/model_number.h"

namespace vex {

void LineReader::open(std::string newText) {
  text = std::move(newText);
  rewind();
}

void LineReader::rewind() {
  position = 0;
  number = 0;
  first = last = text.data();
}

bool LineReader::next() {
  const char* start = text.data() + position;
  const std::size_t most = std::min<std::size_t>(text.size() - position, modelLineSize - 1);
  const void* feed = std::memchr(start, '\n', most);
  const char* end = feed ? static_cast<const char*>(feed) : start + most;
  const bool continued = position > 0 && text[position - 1] != '\n';
  if (!continued && most > 0) ++number;
  position += static_cast<std::size_t>(end - start) + (feed ? 1 : 0);
  while (start != end && isBlank(*start)) ++start;
  while (start != end && isBlank(end[-1])) --end;
  first = start;
  last = end;
  return first != last;
}

std::string LineReader::normalisedLine() const {
  return normaliseBlanks(line());
}

void LineReader::goTo(const Place& place) {
  position = place.position;
  number = place.number;
  first = place.first;
  last = place.last;
}

std::string normaliseBlanks(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (!isBlank(c)) {
      result += c;
    } else if (result.empty() || result.back() != ' ') {
      result += ' ';
    }
  }
  return result;
}

}  // namespace vex
