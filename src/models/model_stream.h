#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "models/command.h"

// The compiled form of a model: one command for each line of its text that has a keyword, and the lists of
// vertices and faces as bare numbers. A command is a code byte and its values; models/keyword_table.cpp has
// the table.

namespace vex {

struct ModelLoad;

inline constexpr int maxStreamText = 255;  // bytes of a text with its terminator

struct ModelStream {
  std::string bytes;
  std::size_t position = 0;  // of reading
  bool writing = false;
  bool complete = false;  // all commands of a text are in `bytes`
  std::string obstacle;   // why writing was given up; empty: it was not

  // The list that is being recorded: its code (none: no list), entries written, entries expected.
  Command list = Command::none;
  int listEntries = 0;
  int listSize = 0;
  bool keyList = false;  // a list of keys is being recorded
};

// Appended while the stream is written.
void writeFloat(ModelLoad& load, float value);
void writeInt(ModelLoad& load, int value);
void writeByte(ModelLoad& load, int value);
void writeString(ModelLoad& load, const char* value);

// Appends the command while the stream is written, and tells whether its values belong behind it. `kinds` are
// those of the values: i, f, s.
// Fatal: "unknown command 0x%X for writeLine"; values of other kinds than the command's.
bool beginCommand(ModelLoad& load, Command code, std::string_view kinds);

inline void writeValue(ModelLoad& load, int value) {
  writeInt(load, value);
}
inline void writeValue(ModelLoad& load, float value) {
  writeFloat(load, value);
}
inline void writeValue(ModelLoad& load, const char* value) {
  writeString(load, value);
}

// A command and its values, in the order of the table, while the stream is written.
template <typename... Values>
void writeLine(ModelLoad& load, Command code, Values... values) {
  static_assert(((std::is_same_v<Values, int> || std::is_same_v<Values, float> ||
                  std::is_same_v<Values, const char*>)&&...));
  constexpr char kinds[] = {(std::is_same_v<Values, int>     ? 'i'
                             : std::is_same_v<Values, float> ? 'f'
                                                             : 's')...,
                            '\0'};
  if (beginCommand(load, code, kinds)) (writeValue(load, values), ...);
}

// A list of numbers follows the list's code. Lists that do not give each entry once and in order cannot be
// expressed; recording is given up then.
void beginList(ModelLoad& load, Command code, int size);
// Whether entry `index` of the list can be written now.
bool recordEntry(ModelLoad& load, Command code, int index);
void endList(ModelLoad& load);
// A list of keys holds keys only: each counts as one when the list is read back.
void beginKeys(ModelLoad& load, Command code);
void endKeys(ModelLoad& load);
[[gnu::format(printf, 2, 3)]] void giveUpRecording(ModelLoad& load, const char* format, ...);

// The next command into the reader's code and current.
// Fatal: "unknown command 0x%X read at 0x%lX"; a stream that ends inside.
void readCommand(ModelLoad& load);

float readFloat(ModelLoad& load);
int readInt(ModelLoad& load);
int readByte(ModelLoad& load);
// A list of numbers at once.
std::vector<float> readFloats(ModelLoad& load, std::size_t count);
std::vector<int> readInts(ModelLoad& load, std::size_t count);
void readString(ModelLoad& load, char (&text)[256]);

// Fatal: fewer bytes left.
void expectBytes(const ModelLoad& load, std::size_t size);

}  // namespace vex
