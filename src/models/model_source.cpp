#include "models/model_source.h"

#include <strings.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "base/files.h"
#include "base/report.h"
#include "models/container.h"
#include "models/model_load.h"
#include "platform/paths.h"
#include "platform/replace_file.h"

namespace vex {

namespace {

constexpr std::uint64_t maxTextSize = std::numeric_limits<std::int32_t>::max();

// Up to the first `most` bytes of the file; false when it does not exist.
bool readBytes(const std::string& name, std::uint64_t most, std::string& bytes) {
  const OpenFile file(fileOpen(name.c_str(), "rb"));
  if (!file.found()) return false;
  const std::uint64_t size = fileRemaining(file);
  if (size > maxTextSize) fatalError("%s is longer than %llu bytes", name.c_str(), 0ull + maxTextSize);
  bytes = fileReadRest<std::string>(file, most);
  return true;
}

// The text's comment as the stamp of its compiled form has it. False: its second line has none.
bool readTextStamp(const std::string& head, std::string& stamp) {
  LineReader lines;
  lines.open(head);
  lines.next();
  if (lines.atEnd() || !lines.next()) return false;
  const std::string line = lines.normalisedLine();
  const std::size_t blank = line.find(' ');
  if (blank == line.npos || line.size() < blank + 3) return false;
  stamp = line.substr(blank + 2, line.size() - blank - 3);
  return true;
}

// The stream begins with the comment: a code, then the text.
std::string_view compiledStamp(std::string_view stream) {
  const std::string_view text = stream.substr(std::min<std::size_t>(stream.size(), 1), maxStreamText);
  return text.substr(0, text.find('\0'));
}

// From the first dot on, as all of a model's names have one.
std::string_view extensionOf(std::string_view name) {
  const std::size_t dot = name.find('.');
  return dot == name.npos ? std::string_view{} : name.substr(dot);
}

bool sameText(std::string_view a, std::string_view b) {
  return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

// The stream of a compiled file. Empty, or says why it cannot be read where that is reported.
std::string readCompiled(const std::string& name, ZipFailure onFailure, std::string& stream) {
  constexpr std::uint32_t piece = 1 << 20;
  std::uint32_t length = 0;
  ModelContainer container;
  container.open(name.c_str(), ZIP_READ, &length, onFailure);
  // In pieces: the header word may promise far more than there is.
  stream.clear();
  stream.reserve(
      static_cast<std::size_t>(std::min<std::uint64_t>(length, mostUnpacked(container.fileSize()))));
  bool ended = false;
  while (stream.size() < length && !ended) {
    const std::size_t done = stream.size();
    const auto wanted = static_cast<std::uint32_t>(std::min<std::size_t>(length - done, piece));
    stream.resize(done + wanted);
    const std::uint32_t size = container.read(stream.data() + done, wanted);
    stream.resize(done + size);
    ended = size < wanted;
  }
  // A word that is too small is no failure of the container, but where there is a text that is the better
  // source.
  char surplus = 0;
  const bool cutOff = onFailure == ZipFailure::reported && !ended && container.read(&surplus, 1) == 1;
  std::string problem = container.close();
  if (problem.empty() && ended) {
    problem = name + ": only " + std::to_string(stream.size()) + " of " + std::to_string(length) +
              " bytes left to read";
  }
  if (problem.empty() && cutOff) {
    problem = name + ": more than the " + std::to_string(length) + " bytes of its header word";
  }
  return problem;
}

void noteFailedWriting(ModelLoad& load) {
  trace(load, "writing %s failed, maybe write protected...\n", load.source.compiledName.c_str());
  load.stream.obstacle = load.source.compiledName + " can't be written";
}

void prepareText(ModelLoad& load) {
  const char* name = load.source.fileName.c_str();
  std::string bytes;
  if (!readBytes(load.source.fileName, maxTextSize, bytes)) {
    if (!load.source.compiledName.empty()) refuseUnreadable(load.source.compiledName);
    refuseUnreadable(load.source.fileName);
    fatalError("File %s not found", name);
  }
  if (bytes.empty()) fatalError("%s is empty", name);
  if (bytes.starts_with("\xff\xfe") || bytes.starts_with("\xfe\xff")) {
    fatalError("%s is UTF-16 text, models are ASCII", name);
  }
  load.reader.text.open(std::move(bytes));
  if (load.source.compiledName.empty()) return;
  trace(load, "ase format (writing %s while reading)\n", load.source.compiledName.c_str());
  // Creates the temporary file only: the old compiled form stays until the new one is complete.
  load.stream.writing = ReplacementFile(resolvePath(load.source.compiledName.c_str())).stream() != nullptr;
  if (!load.stream.writing) noteFailedWriting(load);
}

void prepareCompiled(ModelLoad& load) {
  const char* name = load.source.fileName.c_str();
  trace(load, "hv3 format\n");
  load.stream.bytes = std::move(load.source.data);
  if (!load.stream.bytes.empty()) return;
  if (!fileExists(load.source.fileName)) refuseUnreadable(load.source.fileName);
  if (!fileExists(load.source.fileName)) fatalError("File %s not found", name);
  const std::string problem = readCompiled(load.source.fileName, ZipFailure::fatal, load.stream.bytes);
  if (!problem.empty()) fatalError("%s", problem.c_str());
  if (load.stream.bytes.empty()) fatalError("%s is empty", name);
}

}  // namespace

ModelSource chooseSource(const std::string& base) {
  const std::string compiled = base + ".hv3";
  const ModelSource text{base + ".ase", compiled.substr(0, compiled.find('.')) + ".hv3"};
  if (!fileExists(compiled)) return text;
  std::string head;
  if (!readBytes(text.fileName, 2 * modelLineSize, head)) return {compiled};
  // The stamp of a damaged file is worth nothing, and its text makes it anew.
  std::string data;
  if (const std::string problem = readCompiled(compiled, ZipFailure::reported, data); !problem.empty()) {
    logPrintf("%s, the text is read\n", problem.c_str());
    return text;
  }
  std::string textStamp;
  if (!readTextStamp(head, textStamp)) return text;
  // Longer comments are recorded cut off.
  if (!sameText(compiledStamp(data), textStamp.substr(0, maxStreamText - 1))) return text;
  return {.fileName = compiled, .data = std::move(data)};
}

void prepareSource(ModelLoad& load) {
  const std::string_view extension = extensionOf(load.source.fileName);
  if (sameText(extension, ".ase")) {
    load.reader.format = ModelFormat::text;
    prepareText(load);
  } else if (sameText(extension, ".hv3")) {
    load.reader.format = ModelFormat::compiled;
    prepareCompiled(load);
  } else {
    fatalError("unknown 3d format (%s)", load.source.fileName.c_str());
  }
}

void endRecording(ModelLoad& load) {
  if (load.stream.bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
    giveUpRecording(load, "the compiled form is too long");
  }
  // It may announce less than the longer text.
  if (load.claimed > mostClaimed(load.stream.bytes.size())) {
    giveUpRecording(load, "more is announced than lists hold");
  }
  load.stream.complete = load.stream.writing;
  load.stream.writing = false;
}

namespace {

void writeStream(ModelLoad& load) {
  auto length = static_cast<std::uint32_t>(load.stream.bytes.size());
  ModelContainer container;
  container.open(load.source.compiledName.c_str(), ZIP_WRITE, &length, ZipFailure::reported);
  container.write(load.stream.bytes.data(), length);
  const std::string problem = container.close();
  if (problem.empty()) return;
  noteFailedWriting(load);
  load.stream.obstacle += ": " + problem;
}

}  // namespace

void saveStream(ModelLoad& load) {
  if (load.stream.complete) writeStream(load);
  if (!load.stream.obstacle.empty()) {
    logPrintf("%s, no compiled form is kept\n", load.stream.obstacle.c_str());
  }
}

}  // namespace vex
