#include "models/model_stream.h"

#include <bit>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "base/report.h"
#include "models/keyword_table.h"
#include "models/model_reader.h"

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
void takeLittleEndian(Value* values, std::size_t count) {
  expectBytes(count * sizeof(Value));
  std::memcpy(values, modelStream.bytes.data() + modelStream.position, count * sizeof(Value));
  modelStream.position += count * sizeof(Value);
  if constexpr (std::endian::native == std::endian::big) {
    for (std::size_t i = 0; i < count; ++i) {
      values[i] = std::bit_cast<Value>(__builtin_bswap32(std::bit_cast<std::uint32_t>(values[i])));
    }
  }
}

template <typename Value>
Value takeLittleEndian() {
  Value value;
  takeLittleEndian(&value, 1);
  return value;
}

template <typename Value>
std::vector<Value> takeList(std::size_t count) {
  expectBytes(count * sizeof(Value));
  std::vector<Value> values(count);
  takeLittleEndian(values.data(), count);
  return values;
}

void appendLittleEndian(std::uint32_t bits) {
  if constexpr (std::endian::native == std::endian::big) bits = __builtin_bswap32(bits);
  char bytes[sizeof bits];
  std::memcpy(bytes, &bits, sizeof bits);
  modelStream.bytes.append(bytes, sizeof bytes);
}

}  // namespace

bool beginCommand(Command code, std::string_view kinds) {
  if (!modelStream.writing) return false;
  if (modelStream.list != Command::none ||
      (modelStream.keyList && !isKey(code) && code != Command::endOfBlock)) {
    giveUpRecording("a list holds lines of another kind");
    return false;
  }
  if (isKey(code) && !modelStream.keyList) {
    giveUpRecording("a key stands outside its list");
    return false;
  }
  const char* payload = payloadOf(code);
  if (!payload) fatalError("unknown command 0x%X for writeLine", static_cast<unsigned>(code));
  if (!sameKinds(payload, kinds)) {
    fatalError("command 0x%X takes %s, not %.*s", static_cast<unsigned>(code), payload,
               static_cast<int>(kinds.size()), kinds.data());
  }
  writeByte(static_cast<int>(code));
  return true;
}

void writeFloat(float value) {
  if (modelStream.writing) appendLittleEndian(std::bit_cast<std::uint32_t>(value));
}

void writeInt(int value) {
  if (modelStream.writing) appendLittleEndian(static_cast<std::uint32_t>(value));
}

void writeByte(int value) {
  if (modelStream.writing) modelStream.bytes += static_cast<char>(value);
}

void writeString(const char* value) {
  if (!modelStream.writing) return;
  if (std::strlen(value) >= maxStreamText) {
    giveUpRecording("a text is longer than %d characters", maxStreamText - 1);
    return;
  }
  modelStream.bytes.append(value, std::strlen(value) + 1);
}

void beginList(Command code, int size) {
  writeLine(code);
  if (!modelStream.writing) return;
  modelStream.list = code;
  modelStream.listEntries = 0;
  modelStream.listSize = size;
}

bool recordEntry(Command code, int index) {
  if (!modelStream.writing) return false;
  if (modelStream.list != code) {
    giveUpRecording("an entry stands outside its list");
  } else if (index != modelStream.listEntries) {
    giveUpRecording("entry %d of a list stands where %d belongs", index, modelStream.listEntries);
  } else {
    ++modelStream.listEntries;
  }
  return modelStream.writing;
}

void endList() {
  if (!modelStream.writing) return;
  if (modelStream.listEntries != modelStream.listSize) {
    giveUpRecording("a list has %d entries, %d were announced", modelStream.listEntries,
                    modelStream.listSize);
  }
  modelStream.list = Command::none;
  writeLine(Command::endOfBlock);
}

void beginKeys(Command code) {
  writeLine(code);
  modelStream.keyList = true;
}

void endKeys() {
  modelStream.keyList = false;
}

void giveUpRecording(const char* format, ...) {
  if (!modelStream.writing) return;
  char text[messageSize];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  modelStream.obstacle = modelPlace() + ": " + text;
  modelStream.writing = false;
  modelStream.bytes.clear();
  modelStream.list = Command::none;
}

void expectBytes(std::size_t size) {
  const std::size_t left = modelStream.bytes.size() - modelStream.position;
  if (size > left) fatalError("%zu bytes are expected, %zu are left", size, left);
}

float readFloat() {
  return takeLittleEndian<float>();
}

int readInt() {
  return takeLittleEndian<int>();
}

std::vector<float> readFloats(std::size_t count) {
  return takeList<float>(count);
}

std::vector<int> readInts(std::size_t count) {
  return takeList<int>(count);
}

int readByte() {
  expectBytes(1);
  return static_cast<unsigned char>(modelStream.bytes[modelStream.position++]);
}

void readString(char (&text)[256]) {
  int length = 0;
  while (length < maxStreamText && (text[length] = static_cast<char>(readByte())) != '\0') ++length;
  text[length] = '\0';
}

void readCommand() {
  modelReader.code = static_cast<Command>(readByte());
  const char* payload = payloadOf(modelReader.code);
  if (!payload) {
    fatalError("unknown command 0x%X read at 0x%lX", static_cast<unsigned>(modelReader.code),
               static_cast<unsigned long>(modelStream.position));
  }
  ModelValues& current = modelReader.current;
  int ints = 0;
  int floats = 0;
  for (const char* kind = payload; *kind; ++kind) {
    switch (*kind) {
      case 'i':
        (ints == 0 ? current.integer : current.triple[ints - 1]) = readInt();
        ++ints;
        break;
      case 'f':
        current.vector[floats++] = readFloat();
        break;
      case 'm':
        for (float& value : current.matrix) value = readFloat();
        break;
      case 's':
        readString(current.text);
        break;
    }
  }
  if (payload[0] == 'f' && payload[1] == '\0') current.number = current.vector[0];
}

}  // namespace vex
