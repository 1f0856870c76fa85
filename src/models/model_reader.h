#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "engine/vector.h"
#include "models/command.h"
#include "models/line_reader.h"

// What text and compiled models have in common: the walk over lines or commands, and the scanners that
// give a handler the values of the current one.

namespace vex {

struct KeywordEntry;
struct ModelLoad;

enum class ModelFormat { text, compiled };

// Of the current line or command. Of several values on a line of text, those that it lacks are those in their
// places in the last line of the same form that had them, 0 before the first one.
struct ModelValues {
  int integer = 0;
  int triple[3] = {};
  float number = 0.0f;
  float vector[4] = {};
  float three[3] = {};   // of the last line of three numbers
  float matrix[9] = {};  // rows 0 to 2, three values each
  char text[256] = "";
};

struct ModelReader {
  ModelFormat format = ModelFormat::text;
  LineReader text;
  ModelValues current;
  Command code = Command::none;  // of the current command
  bool keywordFound = false;     // in this text
  int blockDepth = 0;
  std::size_t items = 0;  // lines (but for empty ones) or commands read

  // Of text models.
  const char* values = nullptr;  // where those of the current line begin; null until it is known
  std::string scanned;           // the text or word scanned last
  struct {
    std::string_view word;
    const KeywordEntry* keyword = nullptr;
  } lastKeyword;  // of the last line with a keyword: lists repeat theirs

  // Where the block counted last ends, so that lists within lists are counted once.
  struct BlockEndPlace {
    std::size_t position = 0;  // behind the end
    std::size_t items = 0;     // before it
  } countedEnd;
};

// File and line, or file and place in the stream.
std::string modelPlace(const ModelLoad& load);

// Back to the beginning of the model.
void rewindModel(ModelLoad& load);

// 0, or -1 for no line: an empty one, or the end.
int nextLine(ModelLoad& load);

// Reads the next line or command and calls its handler. Where a handler has read on, the rows of the keyword
// table below its own see the line that it leaves.
void processItem(ModelLoad& load);

// Items until the block ends; the end of the model ends all blocks. The end is recorded unless the
// beginning was not. Fatal: too many open blocks.
enum class BlockEnd { recorded, left };
void processBlock(ModelLoad& load, BlockEnd end = BlockEnd::recorded);

// Passes over the lines of a block of text and of all blocks inside.
void skipBlock(ModelLoad& load);

// Lines up to the end of the block, without moving on.
int countBlockEntries(ModelLoad& load);

// Whether no item is left.
bool modelEnded(const ModelLoad& load);

int scanInt(ModelLoad& load);
float scanFloat(ModelLoad& load);
void scanVector(ModelLoad& load, float (&out)[3]);  // what the line lacks is not written
// Three numbers, until the next line; what the line lacks is that of the last line of three numbers.
const float (&scanThree(ModelLoad& load))[3];
// Both valid until the next scan. Fatal: a line without a text in quotes.
const char* scanQuoted(ModelLoad& load);
const char* scanWord(ModelLoad& load);  // of text models only

// "%s %d %f %f ..." of a text line into current.integer and the first `count` of current.vector.
void scanIndexed(ModelLoad& load, int count);
// "%s %d: A: %d B: %d C: %d" into current.integer and current.triple; the first colon may be missing.
void scanFace(ModelLoad& load);
// "%s %d %d %d %d" likewise.
void scanTextureFace(ModelLoad& load);

// From the axes of text models, x right, y into the picture, z up.
inline Vector toEngineAxes(const float* v) {
  return {v[0], v[2], -v[1]};
}

// The three numbers scanned last, as a place or an axis and as factors of a scale. Compiled models have the
// engine's axes already.
Vector scannedPoint(const ModelLoad& load, const float* v);
Vector scannedFactors(const ModelLoad& load, const float* v);

}  // namespace vex
