#include "models/model_stream.h"

#include <bit>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "base/report.h"
#include "models/keyword_table.h"
#include "models/model_load.h"

namespace vex {

namespace {

bool isKey(Command code) {
  return code == Command::controlRotSample || code == Command::controlPosSample ||
         code == Command::controlScaleSample;
}

bool sameKinds(std::string_view payload, std::string_view kinds) {
  constexpr std::string_view matrix = "fffffffff";
  if (!payload.starts_with('m')) return payload == kinds;
  return kinds.starts_with(matrix) && payload.substr(1) == kinds.substr(matrix.size());
}

template <typename Value>
void takeLittleEndian(ModelLoad& load, Value* values, std::size_t count) {
  expectBytes(load, count * sizeof(Value));
  if (count == 0) return;  // an empty vector has no place to copy to
  std::memcpy(values, load.stream.bytes.data() + load.stream.position, count * sizeof(Value));
  load.stream.position += count * sizeof(Value);
  if constexpr (std::endian::native == std::endian::big) {
    for (std::size_t i = 0; i < count; ++i) {
      values[i] = std::bit_cast<Value>(__builtin_bswap32(std::bit_cast<std::uint32_t>(values[i])));
    }
  }
}

template <typename Value>
Value takeLittleEndian(ModelLoad& load) {
  Value value;
  takeLittleEndian(load, &value, 1);
  return value;
}

template <typename Value>
std::vector<Value> takeList(ModelLoad& load, std::size_t count) {
  expectBytes(load, count * sizeof(Value));
  std::vector<Value> values(count);
  takeLittleEndian(load, values.data(), count);
  return values;
}

void appendLittleEndian(ModelLoad& load, std::uint32_t bits) {
  if constexpr (std::endian::native == std::endian::big) bits = __builtin_bswap32(bits);
  char bytes[sizeof bits];
  std::memcpy(bytes, &bits, sizeof bits);
  load.stream.bytes.append(bytes, sizeof bytes);
}

}  // namespace

bool beginCommand(ModelLoad& load, Command code, std::string_view kinds) {
  if (!load.stream.writing) return false;
  if (load.stream.list != Command::none ||
      (load.stream.keyList && !isKey(code) && code != Command::endOfBlock)) {
    giveUpRecording(load, "a list holds lines of another kind");
    return false;
  }
  if (isKey(code) && !load.stream.keyList) {
    giveUpRecording(load, "a key stands outside its list");
    return false;
  }
  const char* payload = payloadOf(code);
  if (!payload) fatalError("unknown command 0x%X for writeLine", static_cast<unsigned>(code));
  if (!sameKinds(payload, kinds)) {
    fatalError("command 0x%X takes %s, not %.*s", static_cast<unsigned>(code), payload,
               static_cast<int>(kinds.size()), kinds.data());
  }
  writeByte(load, static_cast<int>(code));
  return true;
}

void writeFloat(ModelLoad& load, float value) {
  if (load.stream.writing) appendLittleEndian(load, std::bit_cast<std::uint32_t>(value));
}

void writeInt(ModelLoad& load, int value) {
  if (load.stream.writing) appendLittleEndian(load, static_cast<std::uint32_t>(value));
}

void writeByte(ModelLoad& load, int value) {
  if (load.stream.writing) load.stream.bytes += static_cast<char>(value);
}

void writeString(ModelLoad& load, const char* value) {
  if (!load.stream.writing) return;
  if (std::strlen(value) >= maxStreamText) {
    giveUpRecording(load, "a text is longer than %d characters", maxStreamText - 1);
    return;
  }
  load.stream.bytes.append(value, std::strlen(value) + 1);
}

void beginList(ModelLoad& load, Command code, int size) {
  writeLine(load, code);
  if (!load.stream.writing) return;
  load.stream.list = code;
  load.stream.listEntries = 0;
  load.stream.listSize = size;
}

bool recordEntry(ModelLoad& load, Command code, int index) {
  if (!load.stream.writing) return false;
  if (load.stream.list != code) {
    giveUpRecording(load, "an entry stands outside its list");
  } else if (index != load.stream.listEntries) {
    giveUpRecording(load, "entry %d of a list stands where %d belongs", index, load.stream.listEntries);
  } else {
    ++load.stream.listEntries;
  }
  return load.stream.writing;
}

void endList(ModelLoad& load) {
  if (!load.stream.writing) return;
  if (load.stream.listEntries != load.stream.listSize) {
    giveUpRecording(load, "a list has %d entries, %d were announced", load.stream.listEntries,
                    load.stream.listSize);
  }
  load.stream.list = Command::none;
  writeLine(load, Command::endOfBlock);
}

void beginKeys(ModelLoad& load, Command code) {
  writeLine(load, code);
  load.stream.keyList = true;
}

void endKeys(ModelLoad& load) {
  load.stream.keyList = false;
}

void giveUpRecording(ModelLoad& load, const char* format, ...) {
  if (!load.stream.writing) return;
  char text[messageSize];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  load.stream.obstacle = modelPlace(load) + ": " + text;
  load.stream.writing = false;
  load.stream.bytes.clear();
  load.stream.list = Command::none;
}

void expectBytes(const ModelLoad& load, std::size_t size) {
  const std::size_t left = load.stream.bytes.size() - load.stream.position;
  if (size > left) fatalError("%zu bytes are expected, %zu are left", size, left);
}

float readFloat(ModelLoad& load) {
  return takeLittleEndian<float>(load);
}

int readInt(ModelLoad& load) {
  return takeLittleEndian<int>(load);
}

std::vector<float> readFloats(ModelLoad& load, std::size_t count) {
  return takeList<float>(load, count);
}

std::vector<int> readInts(ModelLoad& load, std::size_t count) {
  return takeList<int>(load, count);
}

int readByte(ModelLoad& load) {
  expectBytes(load, 1);
  return static_cast<unsigned char>(load.stream.bytes[load.stream.position++]);
}

void readString(ModelLoad& load, char (&text)[256]) {
  int length = 0;
  while (length < maxStreamText && (text[length] = static_cast<char>(readByte(load))) != '\0') ++length;
  text[length] = '\0';
}

void readCommand(ModelLoad& load) {
  load.reader.code = static_cast<Command>(readByte(load));
  const char* payload = payloadOf(load.reader.code);
  if (!payload) {
    fatalError("unknown command 0x%X read at 0x%lX", static_cast<unsigned>(load.reader.code),
               static_cast<unsigned long>(load.stream.position));
  }
  ModelValues& current = load.reader.current;
  int ints = 0;
  int floats = 0;
  for (const char* kind = payload; *kind; ++kind) {
    switch (*kind) {
      case 'i':
        (ints == 0 ? current.integer : current.triple[ints - 1]) = readInt(load);
        ++ints;
        break;
      case 'f':
        current.vector[floats++] = readFloat(load);
        break;
      case 'm':
        for (float& value : current.matrix) value = readFloat(load);
        break;
      case 's':
        readString(load, current.text);
        break;
    }
  }
  if (payload[0] == 'f' && payload[1] == '\0') current.number = current.vector[0];
}

}  // namespace vex
