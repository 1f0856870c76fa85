#include "assets/model_reader.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "assets/keyword_table.h"
#include "assets/model_number.h"
#include "assets/model_stream.h"
#include "shell/report.h"

namespace vex {

namespace {

// Files that lack closing braces nest all their objects.
constexpr int maxOpenBlocks = 2048;

// The last line with a keyword: lists repeat theirs.
struct {
  std::string_view word;
  const KeywordEntry* keyword = nullptr;
} lastKeyword;

// Where the values of the current line begin; null until it is known.
const char* values = nullptr;

const KeywordEntry* keywordOfLine(std::string_view line) {
  const std::size_t length = lastKeyword.word.size();
  if (length > 0 && line.size() > length && isBlank(line[length]) &&
      std::memcmp(line.data(), lastKeyword.word.data(), length) == 0) {
    values = line.data() + length;
    return lastKeyword.keyword;
  }
  const KeywordEntry* keyword = findKeyword(line);
  if (!keyword) return nullptr;
  const auto end = std::find_if(line.begin(), line.end(), isBlank);
  values = line.data() + (end - line.begin());
  lastKeyword = {line.substr(0, static_cast<std::size_t>(end - line.begin())), keyword};
  modelReader.keywordFound = true;
  return keyword;
}

const char* lineEnd() {
  const std::string_view line = modelReader.text.line();
  return line.data() + line.size();
}

// Behind the first word.
const char* firstValue() {
  if (!values) {
    const std::string_view line = modelReader.text.line();
    values = std::find_if(line.begin(), line.end(), isBlank);
  }
  return values;
}

bool skipText(const char*& p, std::string_view text) {
  const char* q = p;
  while (q != lineEnd() && isBlank(*q)) ++q;
  if (!std::string_view(q, static_cast<std::size_t>(lineEnd() - q)).starts_with(text)) return false;
  p = q + text.size();
  return true;
}

}  // namespace

void refuseModel(const char* format, ...) {
  char text[messageSize];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  if (readingText())
    fatalError("%s:%d: %s", modelReader.fileName.c_str(), modelReader.text.lineNumber(), text);
  fatalError("%s at 0x%zX: %s", modelReader.fileName.c_str(), modelStream.position, text);
}

void rewindModel() {
  modelReader.text.rewind();
  modelStream.position = 0;
  modelReader.current = {};
  modelReader.code = 0;
  modelReader.blockDepth = 0;
  lastKeyword = {};
  values = nullptr;
}

bool modelEnded() {
  return readingText() ? modelReader.text.atEnd() : modelReader.code == endOfStream;
}

int nextLine() {
  if (readingText()) {
    values = nullptr;
    if (modelReader.text.atEnd()) {
      modelReader.text.clearLine();
      return -1;
    }
    return modelReader.text.next() ? 0 : -1;
  }
  if (modelStream.position == modelStream.bytes.size()) {
    modelReader.code = endOfStream;
    return -1;
  }
  readCommand();
  return modelReader.code == endOfStream ? -1 : 0;
}

void processItem() {
  if (nextLine() != 0) return;
  const KeywordEntry* keyword =
      readingText() ? keywordOfLine(modelReader.text.line()) : keywordOfCode(modelReader.code);
  if (keyword) keyword->handle();
}

void processBlock(BlockEnd end) {
  if (++modelReader.blockDepth > maxOpenBlocks) refuseModel("more than %d blocks are open", maxOpenBlocks);
  if (readingText()) {
    while (!modelEnded()) {
      processItem();
      if (!modelReader.text.beginsWith('}')) continue;
      modelReader.text.clearLine();
      break;
    }
  } else {
    do {
      processItem();
    } while (modelReader.code != endOfBlock && !modelEnded());
    if (modelReader.code == endOfBlock) modelReader.code = 0;
  }
  --modelReader.blockDepth;
  if (end == BlockEnd::recorded) writeLine(endOfBlock);
}

int countBlockEntries() {
  int count = 0;
  if (readingText()) {
    const LineReader::Place place = modelReader.text.place();
    while (!modelReader.text.atEnd()) {
      if (!modelReader.text.next()) continue;
      if (modelReader.text.beginsWith('}')) break;
      ++count;
    }
    modelReader.text.goTo(place);
    return count;
  }
  const std::size_t position = modelStream.position;
  while (nextLine() == 0 && modelReader.code != endOfBlock) ++count;
  modelStream.position = position;
  modelReader.code = 0;
  return count;
}

int scanInt() {
  if (!readingText()) return modelReader.current.integer;
  const char* p = firstValue();
  int value = 0;
  parseNumber(p, lineEnd(), value);
  return value;
}

float scanFloat() {
  if (!readingText()) return modelReader.current.number;
  const char* p = firstValue();
  float value = 0.0f;
  parseNumber(p, lineEnd(), value);
  return value;
}

void scanVector(float (&out)[3]) {
  if (!readingText()) {
    std::copy_n(modelReader.current.vector, 3, out);
    return;
  }
  const char* p = firstValue();
  for (float& value : out) {
    if (!parseNumber(p, lineEnd(), value)) return;
  }
}

const char* scanQuoted() {
  if (!readingText()) return modelReader.current.text;
  static std::string quoted;
  const std::string_view line = modelReader.text.line();
  const std::size_t open = line.find('"');
  const std::size_t close = open == line.npos ? line.npos : line.find('"', open + 1);
  if (close == line.npos) refuseModel("a text in quotes is missing");
  quoted = normaliseBlanks(line.substr(open + 1, close - open - 1));
  return quoted.c_str();
}

const char* scanWord() {
  static std::string word;
  const char* p = firstValue();
  while (p != lineEnd() && isBlank(*p)) ++p;
  if (p == lineEnd()) refuseModel("a word is missing");
  word = normaliseBlanks({p, static_cast<std::size_t>(lineEnd() - p)});
  return word.c_str();
}

void scanIndexed(int count) {
  const char* p = firstValue();
  if (!parseNumber(p, lineEnd(), modelReader.current.integer)) return;
  for (int i = 0; i < count; ++i) {
    if (!parseNumber(p, lineEnd(), modelReader.current.vector[i])) return;
  }
}

void scanFace() {
  const char* p = firstValue();
  if (!parseNumber(p, lineEnd(), modelReader.current.integer)) return;
  if (p != lineEnd() && *p == ':') ++p;
  int corner = 0;
  for (const char* label : {"A:", "B:", "C:"}) {
    if (!skipText(p, label) || !parseNumber(p, lineEnd(), modelReader.current.triple[corner++])) return;
  }
}

void scanTextureFace() {
  const char* p = firstValue();
  if (!parseNumber(p, lineEnd(), modelReader.current.integer)) return;
  for (int& corner : modelReader.current.triple) {
    if (!parseNumber(p, lineEnd(), corner)) return;
  }
}

Vector scannedPoint(const float* v) {
  return readingText() ? toEngineAxes(v) : Vector(v[0], v[1], v[2]);
}

Vector scannedFactors(const float* v) {
  return readingText() ? Vector(v[0], v[2], v[1]) : Vector(v[0], v[1], v[2]);
}

}  // namespace vex
