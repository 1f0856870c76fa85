#include "models/model_reader.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "base/report.h"
#include "models/keyword_table.h"
#include "models/model_load.h"
#include "models/model_number.h"

namespace vex {

namespace {

// Files that lack closing braces nest all their objects.
constexpr int maxOpenBlocks = 2048;

const KeywordEntry* keywordOfLine(ModelLoad& load, std::string_view line) {
  const std::size_t length = load.reader.lastKeyword.word.size();
  if (length > 0 && line.size() > length && isBlank(line[length]) &&
      std::memcmp(line.data(), load.reader.lastKeyword.word.data(), length) == 0) {
    load.reader.values = line.data() + length;
    return load.reader.lastKeyword.keyword;
  }
  const KeywordEntry* keyword = findKeyword(line);
  if (!keyword) return nullptr;
  const auto end = std::find_if(line.begin(), line.end(), isBlank);
  load.reader.values = line.data() + (end - line.begin());
  load.reader.lastKeyword = {line.substr(0, static_cast<std::size_t>(end - line.begin())), keyword};
  load.reader.keywordFound = true;
  return keyword;
}

const char* lineEnd(const ModelLoad& load) {
  const std::string_view line = load.reader.text.line();
  return line.data() + line.size();
}

// Behind the first word.
const char* firstValue(ModelLoad& load) {
  if (!load.reader.values) {
    const std::string_view line = load.reader.text.line();
    load.reader.values = std::find_if(line.begin(), line.end(), isBlank);
  }
  return load.reader.values;
}

// Of the block that the current line or command has opened, without moving on.
ModelReader::BlockEndPlace findBlockEnd(ModelLoad& load) {
  ModelReader::BlockEndPlace end{.items = load.reader.items};
  if (readingText(load)) {
    const LineReader::Place place = load.reader.text.place();
    while (!load.reader.text.atEnd()) {
      if (!load.reader.text.next()) continue;
      if (load.reader.text.beginsWith('}')) break;
      ++end.items;
    }
    end.position = load.reader.text.place().position;
    load.reader.text.goTo(place);
    return end;
  }
  const std::size_t position = load.stream.position;
  const std::size_t items = load.reader.items;
  while (nextLine(load) == 0 && load.reader.code != Command::endOfBlock) ++end.items;
  end.position = load.stream.position;
  load.stream.position = position;
  load.reader.items = items;
  load.reader.code = Command::none;
  return end;
}

bool skipText(ModelLoad& load, const char*& p, std::string_view text) {
  const char* q = p;
  while (q != lineEnd(load) && isBlank(*q)) ++q;
  if (!std::string_view(q, static_cast<std::size_t>(lineEnd(load) - q)).starts_with(text)) return false;
  p = q + text.size();
  return true;
}

}  // namespace

std::string modelPlace(const ModelLoad& load) {
  const char* file = load.source.fileName.c_str();
  return readingText(load) ? formatted("%s:%d", file, load.reader.text.lineNumber())
                           : formatted("%s at 0x%zX", file, load.stream.position);
}

void rewindModel(ModelLoad& load) {
  load.reader.text.rewind();
  load.stream.position = 0;
  load.reader.current = {};
  load.reader.code = Command::none;
  load.reader.blockDepth = 0;
  load.reader.items = 0;
  load.reader.countedEnd = {};
  load.reader.lastKeyword = {};
  load.reader.values = nullptr;
}

bool modelEnded(const ModelLoad& load) {
  return readingText(load) ? load.reader.text.atEnd() : load.reader.code == Command::endOfStream;
}

int nextLine(ModelLoad& load) {
  if (readingText(load)) {
    load.reader.values = nullptr;
    if (load.reader.text.atEnd()) {
      load.reader.text.clearLine();
      return -1;
    }
    if (!load.reader.text.next()) return -1;
    ++load.reader.items;
    return 0;
  }
  if (load.stream.position == load.stream.bytes.size()) {
    load.reader.code = Command::endOfStream;
    return -1;
  }
  readCommand(load);
  ++load.reader.items;
  return load.reader.code == Command::endOfStream ? -1 : 0;
}

void processItem(ModelLoad& load) {
  if (nextLine(load) != 0) return;
  if (!readingText(load)) {
    if (const KeywordEntry* keyword = keywordOfCode(load.reader.code)) keyword->handle(load);
    return;
  }
  const char* line = nullptr;
  const KeywordEntry* rowAbove = nullptr;
  while (load.reader.text.line().data() != line) {
    line = load.reader.text.line().data();
    const KeywordEntry* keyword = keywordOfLine(load, load.reader.text.line());
    if (!keyword || (rowAbove && keyword <= rowAbove)) return;
    keyword->handle(load);
    rowAbove = keyword;
  }
}

void processBlock(ModelLoad& load, BlockEnd end) {
  if (++load.reader.blockDepth > maxOpenBlocks) fatalError("more than %d blocks are open", maxOpenBlocks);
  if (readingText(load)) {
    while (!modelEnded(load)) {
      processItem(load);
      if (load.reader.text.beginsWith('}')) break;
    }
    load.reader.text.clearLine();
  } else {
    do {
      processItem(load);
    } while (load.reader.code != Command::endOfBlock && !modelEnded(load));
    if (load.reader.code == Command::endOfBlock) load.reader.code = Command::none;
  }
  --load.reader.blockDepth;
  if (end == BlockEnd::recorded) writeLine(load, Command::endOfBlock);
}

void skipBlock(ModelLoad& load) {
  int depth = 1;
  while (!modelEnded(load)) {
    if (nextLine(load) != 0) continue;
    if (load.reader.text.beginsWith('}') && --depth == 0) break;
    if (load.reader.text.line().back() == '{') ++depth;
  }
  load.reader.text.clearLine();
}

int countBlockEntries(ModelLoad& load) {
  const std::size_t position = readingText(load) ? load.reader.text.place().position : load.stream.position;
  if (position >= load.reader.countedEnd.position || load.reader.items > load.reader.countedEnd.items)
    load.reader.countedEnd = findBlockEnd(load);
  return static_cast<int>(load.reader.countedEnd.items - load.reader.items);
}

int scanInt(ModelLoad& load) {
  if (!readingText(load)) return load.reader.current.integer;
  const char* p = firstValue(load);
  int value = 0;
  parseNumber(p, lineEnd(load), value);
  return value;
}

float scanFloat(ModelLoad& load) {
  if (!readingText(load)) return load.reader.current.number;
  const char* p = firstValue(load);
  float value = 0.0f;
  parseNumber(p, lineEnd(load), value);
  return value;
}

void scanVector(ModelLoad& load, float (&out)[3]) {
  if (!readingText(load)) {
    std::copy_n(load.reader.current.vector, 3, out);
    return;
  }
  const char* p = firstValue(load);
  for (float& value : out) {
    if (!parseNumber(p, lineEnd(load), value)) return;
  }
}

const float (&scanThree(ModelLoad& load))[3] {
  scanVector(load, load.reader.current.three);
  return load.reader.current.three;
}

const char* scanQuoted(ModelLoad& load) {
  if (!readingText(load)) return load.reader.current.text;
  const std::string_view line = load.reader.text.line();
  const std::size_t open = line.find('"');
  const std::size_t close = open == line.npos ? line.npos : line.find('"', open + 1);
  if (close == line.npos) fatalError("a text in quotes is missing");
  load.reader.scanned = normaliseBlanks(line.substr(open + 1, close - open - 1));
  return load.reader.scanned.c_str();
}

const char* scanWord(ModelLoad& load) {
  const char* p = firstValue(load);
  while (p != lineEnd(load) && isBlank(*p)) ++p;
  if (p == lineEnd(load)) fatalError("a word is missing");
  load.reader.scanned = normaliseBlanks({p, static_cast<std::size_t>(lineEnd(load) - p)});
  return load.reader.scanned.c_str();
}

void scanIndexed(ModelLoad& load, int count) {
  const char* p = firstValue(load);
  if (!parseNumber(p, lineEnd(load), load.reader.current.integer)) return;
  for (int i = 0; i < count; ++i) {
    if (!parseNumber(p, lineEnd(load), load.reader.current.vector[i])) return;
  }
}

void scanFace(ModelLoad& load) {
  const char* p = firstValue(load);
  if (!parseNumber(p, lineEnd(load), load.reader.current.integer)) return;
  if (p != lineEnd(load) && *p == ':') ++p;
  int corner = 0;
  for (const char* label : {"A:", "B:", "C:"}) {
    if (!skipText(load, p, label) || !parseNumber(p, lineEnd(load), load.reader.current.triple[corner++]))
      return;
  }
}

void scanTextureFace(ModelLoad& load) {
  const char* p = firstValue(load);
  if (!parseNumber(p, lineEnd(load), load.reader.current.integer)) return;
  for (int& corner : load.reader.current.triple) {
    if (!parseNumber(p, lineEnd(load), corner)) return;
  }
}

Vector scannedPoint(const ModelLoad& load, const float* v) {
  return readingText(load) ? toEngineAxes(v) : Vector(v[0], v[1], v[2]);
}

Vector scannedFactors(const ModelLoad& load, const float* v) {
  return readingText(load) ? Vector(v[0], v[2], v[1]) : Vector(v[0], v[1], v[2]);
}

}  // namespace vex
