#include "authoring/used_files.h"

#include <cstdint>
#include <string_view>

#include "authoring/known_call.h"
#include "authoring/project_lexer.h"
#include "base/files.h"
#include "base/report.h"
#include "engine/glow_textures.h"
#include "models/model_info.h"
#include "models/model_source.h"
#include "scenes/scene_tables.h"
#include "textures/preload_list.h"
#include "textures/texture_table.h"

namespace vex {

namespace {

struct UsedFiles {
  std::set<std::string> names;

  bool add(std::string name) {
    if (!fileExists(name)) return false;
    names.insert(asUsed(std::move(name)));
    return true;
  }

  void addTexture(const std::string& name) {
    for (const char* extension : {".jpg", ".bmp"}) {
      if (!add(name + extension)) continue;
      add(name + "_mask" + extension);
      return;
    }
  }

  // Path without extension.
  void addModel(const std::string& base) {
    const FatalErrorsThrown thrown;
    try {
      const ModelSource source = chooseSource(base);
      if (!add(source.fileName)) return;
      Scene scene;
      ModelInfo info;
      readModel({source.fileName}, &scene, collectTextureNames(info));
      for (const std::string& texture : info.textures) addTexture(texture);
    } catch (const FatalError&) {
      add(base + ".ase");
      add(base + ".hv3");
    }
  }

  void addMovie(const KnownCall& known, const std::string& base) {
    const auto [first, last] = framesOf(known);
    for (std::int64_t frame = first; frame <= last && frame - first < mostMovieFrames; ++frame)
      add(base + std::to_string(frame) + ".jpg");
  }

  void addFile(const std::string& name) {
    add(name);
    if (!name.ends_with(".ase")) return;
    const std::string stem = name.substr(0, name.size() - 4);
    addModel(stem);
    add(stem + ".hvv");
  }

  void addCall(const KnownCall& known) {
    for (std::size_t i = 0; i < known.call->parameters.size(); ++i) {
      const std::string name = playedText(known.call->parameters[i].string);
      switch (known.row->parameters[i].kind) {
        case ArgumentKind::textureName:
          addTexture(name);
          break;
        case ArgumentKind::movieName:
          addMovie(known, name);
          break;
        case ArgumentKind::fileName:
          addFile(name);
          break;
        case ArgumentKind::number:
        case ArgumentKind::wholeNumber:
        case ArgumentKind::cameraNumber:
        case ArgumentKind::frameNumber:
        case ArgumentKind::objectName:
          break;
      }
    }
    for (const SceneEntry& entry : sceneEntries()) {
      if (entry.name != playedText(known.call->scene)) continue;
      for (const NeededTexture& needed : entry.needs.textures)
        if (needed.function && std::string_view(needed.function) == known.row->name) addTextures(needed);
    }
  }

  void addTextures(const NeededTexture& needed) {
    for (const std::string& name : textureNames(needed)) addTexture(name);
  }

  void addStart() {
    for (const SceneEntry& entry : sceneEntries()) {
      if (entry.model) addModel(entry.model);
      for (const char* sky : entry.needs.sky)
        if (*sky) addTexture(sky);
      for (const NeededTexture& needed : entry.needs.textures)
        if (!needed.function) addTextures(needed);
    }
    for (int glow = 1; glow <= glowCount; ++glow) addTexture(glowTexture(glow));
    if (add(preloadListFile)) {
      for (const PreloadLine& line : readPreloadList()) addTexture(line.name);
    }
    add("data\\font.raw");
  }
};

}  // namespace

std::string asUsed(std::string name) {
  for (char& c : name) c = c == '/' ? '\\' : lowerCase(c);
  return name;
}

std::set<std::string> usedFiles(const Project& project) {
  UsedFiles used;
  used.add("test.hvp");
  used.add(playedText(project.music));
  used.addStart();
  for (const KnownCall& known : knownCalls(project, sceneEntries())) used.addCall(known);
  return std::move(used.names);
}

}  // namespace vex
