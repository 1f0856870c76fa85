#include "models/model_stream.h"

#include <array>
#include <bit>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "base/report.h"
#include "models/model_reader.h"

namespace vex {

namespace {

// The values of each command: i a number of 32 bits, f a float, m a matrix of 9 floats, s a text. Null: no
// such command.
constexpr std::array<const char*, 256> payloads = [] {
  std::array<const char*, 256> table{};
  const auto set = [&table](std::initializer_list<int> codes, const char* payload) {
    for (const int code : codes) table[static_cast<std::size_t>(code)] = payload;
  };
  set({0x00, 0x10, 0x11, 0x15, 0x1b, 0x22, 0x30, 0x40, 0x41, 0x44, 0x46, 0x49,        0x4b,
       0x60, 0x61, 0x70, 0x73, 0x80, 0x81, 0x83, 0x85, 0x87, 0x89, 0x8b, endOfStream, endOfBlock},
      "");
  set({0x01, 0x02, 0x03, 0x1a, 0x42, 0x43, 0x48, 0x4e, 0x71, 0x72}, "i");
  set({0x04, 0x16, 0x20, 0x21, 0x31}, "s");
  set({0x13, 0x14, 0x17, 0x62, 0x63, 0x75, 0x76}, "f");
  set({0x12, 0x18, 0x19, 0x24, 0x25, 0x74}, "fff");
  set({0x23}, "mfff");
  set({0x45, 0x86, 0x88, 0x8a, 0x8c}, "ifff");
  set({0x47, 0x4c}, "iiii");
  set({0x4a}, "iff");
  set({0x82, 0x84}, "iffff");
  return table;
}();

constexpr int commentCode = 0x04;

bool isKey(int code) {
  return code == 0x84 || code == 0x88 || code == 0x8c;
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

void writeLine(int code, ...) {
  if (!modelStream.writing) return;
  if (modelStream.list >= 0 || (modelStream.keyList && !isKey(code) && code != endOfBlock)) {
    giveUpRecording("a list holds lines of another kind");
    return;
  }
  if (isKey(code) && !modelStream.keyList) {
    giveUpRecording("a key stands outside its list");
    return;
  }
  const char* payload = code >= 0 && code < 256 ? payloads[static_cast<std::size_t>(code)] : nullptr;
  if (!payload) fatalError("unknown command 0x%X for writeLine", static_cast<unsigned>(code));
  writeByte(code);
  std::va_list values;
  va_start(values, code);
  for (const char* kind = payload; *kind; ++kind) {
    if (*kind == 'i') writeInt(va_arg(values, int));
    if (*kind == 's') {
      const char* text = va_arg(values, const char*);
      // A stamp is compared as far as it goes.
      if (code != commentCode && std::strlen(text) >= maxStreamText) {
        giveUpRecording("a text is longer than %d characters", maxStreamText - 1);
      }
      writeString(text);
    }
    const int floats = *kind == 'm' ? 9 : *kind == 'f' ? 1 : 0;
    for (int i = 0; i < floats; ++i) writeFloat(static_cast<float>(va_arg(values, double)));
  }
  va_end(values);
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
  modelStream.bytes.append(value, strnlen(value, maxStreamText - 1));
  modelStream.bytes += '\0';
}

void beginList(int code, int size) {
  writeLine(code);
  if (!modelStream.writing) return;
  modelStream.list = code;
  modelStream.listEntries = 0;
  modelStream.listSize = size;
}

bool recordEntry(int code, int index) {
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
  modelStream.list = -1;
  writeLine(endOfBlock);
}

void beginKeys(int code) {
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
  modelStream.list = -1;
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
  modelReader.code = static_cast<std::uint8_t>(readByte());
  const char* payload = payloads[modelReader.code];
  if (!payload) {
    fatalError("unknown command 0x%X read at 0x%lX", modelReader.code,
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
