#include "fuzz/target.h"

#include <algorithm>
#include <exception>
#include <filesystem>

#include "base/current.h"
#include "base/file_table.h"
#include "base/options.h"
#include "base/report.h"
#include "fuzz/readers.h"
#include "fuzz/seeds.h"
#include "models/model_load.h"
#include "platform/message.h"

namespace vex {

namespace {

constexpr FuzzTarget targets[] = {
    {.name = "project",
     .file = "test.hvp",
     .readers = "src/timeline/project_record.cpp src/timeline/project_file.cpp",
     .read = readProjectBytes,
     .seeds = projectSeeds,
     .mutate = mutateProject},
    {.name = "project-text",
     .file = "show.txt",
     .readers = "src/authoring/project_lexer.cpp src/authoring/project_text_reader.cpp "
                "src/authoring/project_value_reader.cpp",
     .read = readProjectTextBytes,
     .seeds = projectTextSeeds,
     .words = projectTextWords},
    {.name = "archive",
     .file = "vex.pak",
     .readers = "src/base/pak_directory.cpp src/base/pak_archive.cpp src/base/files.cpp",
     .read = readArchiveBytes,
     .seeds = archiveSeeds},
    {.name = "model-text",
     .file = "m.ase",
     .readers = "src/models/line_reader.cpp src/models/model_number.cpp src/models/model_reader.cpp "
                "src/models/geometry_handlers.cpp src/models/object_handlers.cpp "
                "src/models/scene_handlers.cpp src/models/track_handlers.cpp",
     .read = readModelTextBytes,
     .seeds = modelTextSeeds,
     .words = modelTextWords},
    {.name = "model-compiled",
     .file = "m.hv3",
     .readers = "src/models/model_stream.cpp src/models/geometry_handlers.cpp src/models/object_handlers.cpp "
                "src/models/scene_handlers.cpp src/models/track_handlers.cpp",
     .read = readModelStreamBytes,
     .seeds = modelStreamSeeds},
    {.name = "container",
     .file = "m.hv3",
     .readers = "src/models/codec_reader.cpp src/models/container.cpp",
     .read = readContainerBytes,
     .seeds = containerSeeds,
     .mutate = mutateContainer},
    {.name = "strip-cache",
     .file = "SceneTest.hvf",
     .readers = "src/engine/strip_cache.cpp",
     .read = readStripCacheBytes,
     .seeds = stripCacheSeeds},
    {.name = "balls",
     .file = "balls.hvv",
     .readers = "src/scenes/ball_file.cpp",
     .read = readBallBytes,
     .seeds = ballSeeds},
    {.name = "bmp",
     .file = "picture",
     .readers = "src/textures/bmp.cpp src/textures/image.cpp",
     .read = readBmpBytes,
     .seeds = bmpSeeds},
    {.name = "jpeg",
     .file = "picture",
     .readers = "src/textures/jpeg_texture.cpp src/platform/jpeg_decoder.cpp",
     .read = readJpegBytes,
     .seeds = jpegSeeds},
    {.name = "preload-list",
     .file = "used_textures.log",
     .readers = "src/textures/preload_list.cpp",
     .read = readPreloadBytes,
     .seeds = preloadSeeds,
     .words = preloadWords},
    {.name = "stat-font",
     .file = "font.raw",
     .readers = "src/textures/stat_text.cpp",
     .read = readFontBytes,
     .seeds = fontSeeds},
    {.name = "music",
     .file = "music",
     .readers = "src/platform/sound_file.cpp",
     .read = readMusicBytes,
     .seeds = musicSeeds},
};

// While it lives, messages go nowhere.
struct Silence {
  Silence() {
    setMessageSink([](const char*) {});
  }
  ~Silence() { setMessageSink(nullptr); }
};

}  // namespace

std::span<const FuzzTarget> fuzzTargets() {
  return targets;
}

const FuzzTarget* findFuzzTarget(std::string_view name) {
  const auto found = std::ranges::find(targets, name, &FuzzTarget::name);
  return found == std::end(targets) ? nullptr : found;
}

std::string judge(const FuzzTarget& target, std::string_view bytes) {
  const Owned<Options> options;
  const Owned<FileTable> files;
  const Owned<ModelMaterials> materials;
  const Silence silence;
  const FatalErrorsThrown thrown;
  try {
    target.read(bytes);
  } catch (const FatalError& error) {
    const std::string text = error.what();
    return text.find(target.file) == text.npos
               ? "a refusal that does not name " + std::string(target.file) + ": " + text
               : "";
  } catch (const BrokenPromise& promise) {
    return promise.text;
  } catch (const std::exception& error) {
    return std::string("an exception that nobody takes: ") + error.what();
  }
  return "";
}

}  // namespace vex
