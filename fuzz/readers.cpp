#include "fuzz/readers.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <random>
#include <vector>

#include "authoring/project_text.h"
#include "base/current.h"
#include "base/files.h"
#include "base/options.h"
#include "base/pak_archive.h"
#include "base/report.h"
#include "engine/strips.h"
#include "fuzz/seeds.h"
#include "models/codec.h"
#include "models/container.h"
#include "models/model_load.h"
#include "models/model_loader.h"
#include "platform/little_endian.h"
#include "platform/sound_file.h"
#include "scenes/ball_file.h"
#include "tests/support/codec_members.h"
#include "tests/support/model_files.h"
#include "tests/support/pak_builder.h"
#include "tests/support/temporary_folder.h"
#include "textures/bmp.h"
#include "textures/jpeg_texture.h"
#include "textures/preload_list.h"
#include "textures/stat_text.h"
#include "textures/texture_table.h"
#include "timeline/part_dispatcher.h"
#include "timeline/project_record.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

void promise(bool kept, const char* text) {
  if (!kept) throw BrokenPromise{text};
}

// What has been let pass before must not be refused later.
template <typename Read>
void promiseTaken(const char* what, Read read) {
  try {
    read();
  } catch (const FatalError& error) {
    throw BrokenPromise{std::string(what) + ": " + error.what()};
  }
}

void playProject(const std::string& bytes) {
  writeFile("test.hvp", bytes);
  PartDispatcher player;
  player.names = ProjectNames::taken;
  player.loadProject("test.hvp");
}

// What a model makes of a scene, with the names of its textures.
std::string loadedModel(const ModelSource& source) {
  Scene scene;
  std::vector<std::string> textures;
  current<ModelMaterials>() = {};
  readModel(source, &scene, nameTextures(textures));
  std::string all = dumpScene(scene);
  for (const std::string& texture : textures) all += texture + "\n";
  return all;
}

struct MaskedPicture {
  std::string picture, mask;
};

MaskedPicture splitMask(std::string_view bytes) {
  if (bytes.size() < 2) return {std::string(bytes), ""};
  const auto sizeBytes = std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), 2);
  bytes.remove_prefix(2);
  const std::size_t mask = std::min<std::size_t>(littleEndian(sizeBytes), bytes.size());
  return {std::string(bytes.substr(0, bytes.size() - mask)), std::string(bytes.substr(bytes.size() - mask))};
}

template <typename Read>
void readPicture(std::string_view bytes, const std::string& ending, Read read) {
  const auto [picture, mask] = splitMask(bytes);
  writeFile("picture" + ending, picture);
  fs::remove("picture_mask" + ending);
  if (!mask.empty()) writeFile("picture_mask" + ending, mask);
  const Image image = read(("picture" + ending).c_str());
  promise(
      image.pixels.size() == static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height),
      "an image has other pixels than its sides say");
}

// Every part of a text without problems, as an editor reads what it has changed.
void readPartsAlone(std::string_view bytes) {
  const ReadProjectText read = readProjectText(bytes);
  for (std::size_t i = 0; i < read.project.parts.size(); ++i) {
    const ProjectPart& part = read.project.parts[i];
    const auto alone = readProjectParts(bytes, read.places.parts[i].whole, part.line, read.places, i);
    promise(alone && alone->parts.size() == 1, "a part is none when it is read alone");
    Project before, after;
    before.parts.push_back(part);
    after.parts = alone->parts;
    promise(encodeProject(before) == encodeProject(after), "a part is another one when it is read alone");
  }
}

}  // namespace

void readProjectBytes(std::string_view bytes) {
  const std::string file(bytes);
  const DecodedProject decoded = decodeProject(file, "test.hvp");
  if (decoded.failure.empty()) {
    promise(encodeProject(decoded.project) == file, "a decoded project is encoded in another way");
  }
  playProject(file);
  promise(decoded.failure.empty(), "the player takes a project that the check refuses");
  const CompiledProject again = compileProjectText(writeProjectText(decoded.project));
  promise(again.problems.empty(), "the text of a project has problems");
  promise(again.bytes == file, "the text of a project is compiled to another one");
}

void readProjectTextBytes(std::string_view bytes) {
  const CompiledProject compiled = compileProjectText(bytes);
  for (const TextProblem& problem : compiled.problems) {
    promise(problem.line > 0 && !problem.text.empty(), "a problem lacks line or text");
  }
  if (!compiled.problems.empty()) {
    const TextProblem& first = compiled.problems.front();
    fatalError("show.txt:%d: %s", first.line, first.text.c_str());
  }
  readPartsAlone(bytes);
  promiseTaken("the player refuses what was compiled", [&] { playProject(compiled.bytes); });
}

void readArchiveBytes(std::string_view bytes) {
  writeFile("vex.pak", bytes);
  pakOpen("vex.pak");
  const std::vector<PakMember> members = listPak("vex.pak");
  std::uint64_t sizes = 0;
  for (const PakMember& member : members) sizes += member.size;
  if (sizes > 16 * bytes.size() + 4096) return;  // members that lie over one another only cost time
  for (const PakMember& member : members) {
    if (!fileExists(member.name)) continue;
    const auto place = findFile(member.name);
    promise(place && (place->handle < 0 || place->path == "vex.pak"), "a member lies elsewhere");
    const OpenFile file(fileOpenNeeded(member.name, "vex.pak lacks a member"));
    char line[64];
    for (int i = 0; i < 3 && !fileEof(file); ++i) fileGets(line, sizeof line, file);
    if (fileRemaining(file) > 0) fileGetc(file);
    fileReadRest(file);
    promise(fileRemaining(file) == 0, "a member is not read to its end");
    fileSeek(file, 0, SeekOrigin::start);
    fileSeek(file, 1, SeekOrigin::current);
    fileSeek(file, 0, SeekOrigin::end);
    fileTell(file);
  }
  fileCloseAll();
  fs::remove_all("out");
  if (members.empty()) return;  // no folder is made
  extractPak("vex.pak", "out");
  promiseTaken("what was extracted is not packed again", [] { createPak("again.pak", "out"); });
}

void readModelTextBytes(std::string_view bytes) {
  writeFile("m.ase", bytes);
  fs::remove("m.hv3");
  const std::string text = loadedModel({.fileName = "m.ase", .compiledName = "m.hv3"});
  if (!fs::exists("m.hv3")) return;
  std::string compiled;
  promiseTaken("a compiled model is refused", [&] { compiled = loadedModel({.fileName = "m.hv3"}); });
  promise(compiled == text, "a compiled model gives another scene than its text");
}

void readModelStreamBytes(std::string_view bytes) {
  writeStream("m.hv3", bytes);
  loadedModel({.fileName = "m.hv3"});
}

void readContainerBytes(std::string_view bytes) {
  // First by the codec alone, which takes any framing and says what is wrong by its codes.
  for (const int framing : {anyFraming, gzipFraming}) {
    std::string_view rest = bytes;
    MemberReader member;
    member.open(
        [&rest] {
          if (rest.empty()) return -1;
          const int byte = static_cast<unsigned char>(rest.front());
          rest.remove_prefix(1);
          return byte;
        },
        framing);
    std::array<char, 4096> piece;
    std::int64_t got = 0;
    std::size_t all = 0;
    do {
      got = member.read(piece.data(), piece.size());
      all += piece.size();
    } while (got == std::int64_t{piece.size()} && all < mostUnpacked(bytes.size()));
    member.close();
  }
  writeFile("m.hv3", bytes);
  std::uint32_t word = 0;
  ModelContainer container;
  container.open("m.hv3", ZIP_READ, &word);
  std::vector<char> data(1 << 16);
  while (container.read(data.data(), static_cast<std::uint32_t>(data.size())) == data.size()) {
  }
  container.close();
}

void readStripCacheBytes(std::string_view bytes) {
  writeFile("data/SceneTest.hvf", bytes);
  StripScene scene;
  promise(readStripCache(scene), "the cache is not found");
  fs::remove("data/SceneTest.hvf");
  writeStripCache(scene);
  promise(readFile("data/SceneTest.hvf") == bytes, "a strip cache is written in another way");
}

void readBallBytes(std::string_view bytes) {
  writeFile("balls.hvv", bytes);
  promise(ballFileBytes(readBallFile("balls.hvv")) == bytes, "balls are written in another way");
}

void readBmpBytes(std::string_view bytes) {
  readPicture(bytes, ".bmp", [](const char* file) { return readBmpTexture(file); });
}

void readJpegBytes(std::string_view bytes) {
  readPicture(bytes, ".jpg", [](const char* file) {
    readJpegFrame(file);
    return readJpegTexture(file);
  });
}

void readPreloadBytes(std::string_view bytes) {
  const Owned<TextureTable> textures;
  writeFile("data/a.bmp", bmpSeeds().front().substr(2));
  writeFile("used_textures.log", bytes);
  preloadTextures();
}

void readFontBytes(std::string_view bytes) {
  const Owned<TextureTable> textures;
  options().showStats = true;
  writeFile("font.raw", bytes);
  loadStatFont("font.raw");
}

void readMusicBytes(std::string_view bytes) {
  writeFile("music", "before");
  std::string file = "before";
  writeFile("music", file.append(bytes).append("behind"));
  SoundFile music = openSoundFile("music", 6, static_cast<std::uint32_t>(bytes.size()));
  if (!music.decoder) return;
  std::vector<std::byte> samples(1 << 16);
  for (int piece = 0; piece < 64 && readSound(music, samples) == samples.size(); ++piece) {
  }
  if (music.frames < 1 << 16) seekSound(music, music.frames / 2);
  readSound(music, std::span(samples).first(100));
}

std::string withMask(const std::string& picture, const std::string& mask) {
  return littleEndianBytes(mask.size(), 2) + picture + mask;
}

std::string mutateProject(std::string_view bytes, std::size_t most, unsigned seed, const Mutation& any) {
  std::mt19937 random(seed);
  const auto choose = [&random](std::size_t count) { return random() % count; };
  Project project = decodeProject(bytes, "test.hvp").project;
  if (project.parts.empty() || choose(3) == 0) return "";
  ProjectPart& part = project.parts[choose(project.parts.size())];
  const auto changed = [&](const std::string& text) { return any(text, maxProjectName + 2); };
  switch (choose(4)) {
    case 0:
      part.name = changed(part.name);
      break;
    case 1:
      project.parts.push_back(part);
      break;
    case 2:
      project.music = changed(project.music);
      break;
    default:
      if (part.calls.empty()) return "";
      ProjectCall& call = part.calls[choose(part.calls.size())];
      if (call.parameters.empty() || choose(4) == 0) {
        call.function = changed(call.function);
      } else {
        ProjectParameter& parameter = call.parameters[choose(call.parameters.size())];
        parameter.string = changed(parameter.string);
        parameter.dots.resize(choose(4));
        parameter.type = static_cast<std::int8_t>(choose(5));
      }
  }
  std::string encoded = encodeProject(project);
  return encoded.size() > most ? "" : encoded;
}

std::string mutateContainer(std::string_view bytes, std::size_t most, unsigned seed, const Mutation& any) {
  std::mt19937 random(seed);
  if (bytes.size() < 4 || random() % 2 == 0) return "";
  const Reading reading = readMember(bytes.substr(4), anyFraming, 4096, 0, most);
  if (reading.data.size() > most) return "";
  Member member{.data = any(reading.data, most)};
  member.method = random() % 4 == 0 ? 0 : 8;
  member.descriptor = static_cast<Descriptor>(random() % 3);
  if (member.method == 0) member.descriptor = Descriptor::none;
  std::string file = littleEndianBytes(member.data.size(), 4) + member.bytes();
  return file.size() > most ? "" : file;
}

}  // namespace vex
