#include "models/model_reader.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/report.h"
#include "models/keyword_table.h"
#include "models/model_number.h"
#include "models/model_stream.h"

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

// Where the block counted last ends, so that lists within lists are counted once.
struct BlockEndPlace {
  std::size_t position = 0;  // behind the end
  std::size_t items = 0;     // before it
} countedEnd;

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

// Of the block that the current line or command has opened, without moving on.
BlockEndPlace findBlockEnd() {
  BlockEndPlace end{.items = modelReader.items};
  if (readingText()) {
    const LineReader::Place place = modelReader.text.place();
    while (!modelReader.text.atEnd()) {
      if (!modelReader.text.next()) continue;
      if (modelReader.text.beginsWith('}')) break;
      ++end.items;
    }
    end.position = modelReader.text.place().position;
    modelReader.text.goTo(place);
    return end;
  }
  const std::size_t position = modelStream.position;
  const std::size_t items = modelReader.items;
  while (nextLine() == 0 && modelReader.code != Command::endOfBlock) ++end.items;
  end.position = modelStream.position;
  modelStream.position = position;
  modelReader.items = items;
  modelReader.code = Command::none;
  return end;
}

bool skipText(const char*& p, std::string_view text) {
  const char* q = p;
  while (q != lineEnd() && isBlank(*q)) ++q;
  if (!std::string_view(q, static_cast<std::size_t>(lineEnd() - q)).starts_with(text)) return false;
  p = q + text.size();
  return true;
}

}  // namespace

std::string modelPlace() {
  const char* file = modelReader.fileName.c_str();
  return readingText() ? formatted("%s:%d", file, modelReader.text.lineNumber())
                       : formatted("%s at 0x%zX", file, modelStream.position);
}

void rewindModel() {
  modelReader.text.rewind();
  modelStream.position = 0;
  modelReader.current = {};
  modelReader.code = Command::none;
  modelReader.blockDepth = 0;
  modelReader.items = 0;
  countedEnd = {};
  lastKeyword = {};
  values = nullptr;
}

bool modelEnded() {
  return readingText() ? modelReader.text.atEnd() : modelReader.code == Command::endOfStream;
}

int nextLine() {
  if (readingText()) {
    values = nullptr;
    if (modelReader.text.atEnd()) {
      modelReader.text.clearLine();
      return -1;
    }
    if (!modelReader.text.next()) return -1;
    ++modelReader.items;
    return 0;
  }
  if (modelStream.position == modelStream.bytes.size()) {
    modelReader.code = Command::endOfStream;
    return -1;
  }
  readCommand();
  ++modelReader.items;
  return modelReader.code == Command::endOfStream ? -1 : 0;
}

void processItem() {
  if (nextLine() != 0) return;
  if (!readingText()) {
    if (const KeywordEntry* keyword = keywordOfCode(modelReader.code)) keyword->handle();
    return;
  }
  const char* line = nullptr;
  const KeywordEntry* rowAbove = nullptr;
  while (modelReader.text.line().data() != line) {
    line = modelReader.text.line().data();
    const KeywordEntry* keyword = keywordOfLine(modelReader.text.line());
    if (!keyword || (rowAbove && keyword <= rowAbove)) return;
    keyword->handle();
    rowAbove = keyword;
  }
}

void processBlock(BlockEnd end) {
  if (++modelReader.blockDepth > maxOpenBlocks) fatalError("more than %d blocks are open", maxOpenBlocks);
  if (readingText()) {
    while (!modelEnded()) {
      processItem();
      if (modelReader.text.beginsWith('}')) break;
    }
    modelReader.text.clearLine();
  } else {
    do {
      processItem();
    } while (modelReader.code != Command::endOfBlock && !modelEnded());
    if (modelReader.code == Command::endOfBlock) modelReader.code = Command::none;
  }
  --modelReader.blockDepth;
  if (end == BlockEnd::recorded) writeLine(Command::endOfBlock);
}

void skipBlock() {
  int depth = 1;
  while (!modelEnded()) {
    if (nextLine() != 0) continue;
    if (modelReader.text.beginsWith('}') && --depth == 0) break;
    if (modelReader.text.line().back() == '{') ++depth;
  }
  modelReader.text.clearLine();
}

int countBlockEntries() {
  const std::size_t position = readingText() ? modelReader.text.place().position : modelStream.position;
  if (position >= countedEnd.position || modelReader.items > countedEnd.items) countedEnd = findBlockEnd();
  return static_cast<int>(countedEnd.items - modelReader.items);
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

const float (&scanThree())[3] {
  scanVector(modelReader.current.three);
  return modelReader.current.three;
}

const char* scanQuoted() {
  if (!readingText()) return modelReader.current.text;
  static std::string quoted;
  const std::string_view line = modelReader.text.line();
  const std::size_t open = line.find('"');
  const std::size_t close = open == line.npos ? line.npos : line.find('"', open + 1);
  if (close == line.npos) fatalError("a text in quotes is missing");
  quoted = normaliseBlanks(line.substr(open + 1, close - open - 1));
  return quoted.c_str();
}

const char* scanWord() {
  static std::string word;
  const char* p = firstValue();
  while (p != lineEnd() && isBlank(*p)) ++p;
  if (p == lineEnd()) fatalError("a word is missing");
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
