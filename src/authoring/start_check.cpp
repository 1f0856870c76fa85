#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "authoring/known_call.h"
#include "authoring/nearest_name.h"
#include "authoring/picture_check.h"
#include "authoring/project_check.h"
#include "authoring/project_lexer.h"
#include "base/files.h"
#include "engine/glow_textures.h"
#include "models/model_info.h"
#include "models/model_loader.h"
#include "models/model_source.h"
#include "platform/paths.h"
#include "scenes/scene_conventions.h"
#include "textures/preload_list.h"
#include "textures/texture_cache.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

constexpr const char* statisticsFont = "data\\font.raw";

// The model of a scene as the player would load it.
struct LoadedModel {
  std::string file;
  Scene scene;
  bool loaded = false;
};

std::string readAs(const std::string& file, Scene& scene, ModelInfo& info) {
  return refusal([&] { readModel({file}, &scene, collectTextureNames(info)); });
}

bool sameKeys(const Animation* a, const Animation* b) {
  if (!a || !b) return a == b;
  return a->keyTime == b->keyTime && a->keyX == b->keyX && a->keyY == b->keyY && a->keyZ == b->keyZ &&
         a->keyAngle == b->keyAngle;
}

bool sameTracks(const Object3D& a, const Object3D& b) {
  for (const TrackType type : {TrackType::scale, TrackType::rotation, TrackType::position})
    if (!sameKeys(a.track(type), b.track(type))) return false;
  return true;
}

// Of two scenes that are the same at rest.
bool sameMotion(const Scene& a, const Scene& b) {
  for (int i = 0; i < a.meshes.count(); ++i)
    if (!sameTracks(*a.meshes[i], *b.meshes[i])) return false;
  for (int i = 0; i < a.lights.count(); ++i) {
    if (!sameTracks(*a.lights[i], *b.lights[i])) return false;
    if (!sameKeys(a.lights[i]->target.get(), b.lights[i]->target.get())) return false;
  }
  for (int i = 0; i < a.viewers.count(); ++i) {
    const Viewer &left = *a.viewers[i], &right = *b.viewers[i];
    if (!sameKeys(left.positionTrack.get(), right.positionTrack.get()) ||
        !sameKeys(left.targetTrack.get(), right.targetTrack.get()))
      return false;
  }
  return true;
}

// A text that was changed under the comment by which its compiled form is known: the old form is played.
bool isOutdated(const std::string& base, const std::string& compiled) {
  std::error_code error;
  const auto when = [&error](const std::string& file) {
    return std::filesystem::last_write_time(resolvePath(file.c_str()), error);
  };
  const std::string text = formatted("%s.ase", base.c_str());
  const auto textWritten = when(text), compiledWritten = when(compiled);
  if (error || textWritten <= compiledWritten) return false;
  Scene ofText, ofCompiled;
  ModelInfo textInfo, compiledInfo;
  if (!readAs(text, ofText, textInfo).empty() || !readAs(compiled, ofCompiled, compiledInfo).empty())
    return false;
  JsonContent all;
  all.geometry = true;
  return modelAsJson(textInfo, ofText, all) != modelAsJson(compiledInfo, ofCompiled, all) ||
         !sameMotion(ofText, ofCompiled);
}

bool lightsFit(const Scene& scene, const NeededTexture& needed, const ModelNeeds& needs) {
  if (!needed.light) return true;
  if (needed.light == anyLight) {
    const auto named = std::ranges::count(needs.objects, ObjectKind::light, &NeededObject::kind);
    return scene.lights.count() > std::max<int>(needs.lights, static_cast<int>(named));
  }
  for (const Light* light : scene.lights)
    if (isNamed(*light, needed.light)) return true;
  return false;
}

std::vector<std::string_view> objectNames(const Scene& scene) {
  std::vector<std::string_view> names;
  for (const Mesh* mesh : scene.meshes) names.emplace_back(mesh->name);
  for (const Light* light : scene.lights) names.emplace_back(light->name);
  return names;
}

std::string nameOf(const KnownCall& known, std::size_t slot) {
  const ProjectCall& call = *known.call;
  return playedText(call.parameters[slot].name) + " of " + playedText(call.scene) + "." + known.row->name;
}

class StartCheck {
 public:
  StartCheck(const Project& project, std::span<const SceneEntry> entries)
      : tables(entries), calls(knownCalls(project, entries)) {}

  std::vector<Finding> run() {
    for (const SceneEntry& entry : tables) checkModel(entry);
    for (const SceneEntry& entry : tables) checkStartTextures(entry);
    for (int glow = 1; glow <= glowCount; ++glow) checkTexture("start of the show", glowTexture(glow));
    checkPreloadList();
    if (!fileExists(statisticsFont)) {
      report({.text = "statistics font " + quoteText(statisticsFont) + " is missing",
              .hint = "with \"Show stats\" the show does not begin",
              .remark = true,
              .place = "start of the show"});
    }
    for (const KnownCall& known : calls) checkCall(known);
    return std::move(findings);
  }

 private:
  std::span<const SceneEntry> tables;
  std::vector<KnownCall> calls;
  std::map<std::string, LoadedModel> models;  // by scene
  std::set<std::string> looked;
  std::vector<Finding> findings;

  void report(Finding finding) { findings.push_back(std::move(finding)); }

  // At its first use; `where` is what asks for it.
  void checkTexture(const std::string& place, std::string name, const std::string& where = "") {
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (!looked.insert(name).second) return;
    const PictureFault fault = textureFault(name);
    const std::string hint =
        fault.hint.empty() ? "it is loaded at the start, whatever is called" : fault.hint;
    if (!fault.text.empty()) report({.text = fault.text + where, .hint = hint, .place = place});
    if (const std::string sides = sidesRemark(name); !sides.empty())
      report({.text = sides, .hint = "", .remark = true, .place = place});
  }

  void checkModel(const SceneEntry& entry) {
    if (!entry.model) return;
    LoadedModel& model = models[entry.name];
    const std::string base = entry.model;
    const std::string scenes = std::string("vexproject scenes ") + entry.name + " says what it must hold";
    std::string problem = refusal([&] { model.file = chooseSource(base).fileName; });
    if (problem.empty() && !fileExists(model.file)) {
      return report(
          {.text = std::string("the model of ") + entry.name + " is missing, neither .ase nor .hv3 is there",
           .hint = "every show loads it; " + scenes,
           .place = base});
    }
    ModelInfo info;
    if (problem.empty()) problem = readAs(model.file, model.scene, info);
    if (!problem.empty()) {
      return report({.text = problem, .hint = scenes, .place = base});
    }
    model.loaded = true;
    std::string lacking;
    for (const std::string& what : lackingIn(model.scene, entry.needs))
      lacking += (lacking.empty() ? "" : ", ") + what;
    if (!lacking.empty())
      report({.text = std::string("lacks for ") + entry.name + ": " + lacking,
              .hint = scenes,
              .place = model.file});
    int on = 0;
    for (const Light* light : model.scene.lights) on += light->active ? 1 : 0;
    if (on > maxActiveLights) {
      report({.text = formatted("%d lights are on, at most %d are possible", on, maxActiveLights),
              .hint = "but for those that the scene itself puts out, more end the show",
              .remark = true,
              .place = model.file});
    }
    for (const std::string& name : info.longTextures) {
      report({.text = "texture name " + quoteText(name) + " has " + std::to_string(name.size()) +
                      " characters, at most " + std::to_string(textureNameSize - 1) + " are possible",
              .hint = "",
              .place = model.file});
    }
    for (const std::string& name : info.textures) {
      if (name.size() < textureNameSize) checkTexture(model.file, name, ", a material names it");
    }
    if (model.file.ends_with(".hv3") && isOutdated(base, model.file)) {
      report({.text = formatted(
                  "%s.ase is newer and not the same, but this is played: its comment stayed as it was",
                  entry.model),
              .hint = formatted("vexmodel compile %s.ase, in the run folder", shellPath(entry.model).c_str()),
              .place = model.file});
    }
  }

  void checkStartTextures(const SceneEntry& entry) {
    const auto model = models.find(entry.name);
    for (const char* sky : entry.needs.sky)
      if (*sky) checkTexture(entry.name, sky);
    for (const NeededTexture& needed : entry.needs.textures) {
      const bool fits = model == models.end() || lightsFit(model->second.scene, needed, entry.needs);
      if (needed.function || !fits) continue;
      for (const std::string& name : textureNames(needed)) checkTexture(entry.name, name);
    }
  }

  void checkPreloadList() {
    for (const auto& [number, blank, name, wrap] : readPreloadList()) {
      const std::string place = formatted("%s:%d", preloadListFile, number);
      if (!name.empty()) {
        checkTexture(place, name);
      } else if (!blank) {
        report({.text = "a line of two fields is expected: the texture, and 1 where it repeats or 0",
                .hint = "the line is ignored",
                .remark = true,
                .place = place});
      }
    }
  }

  bool isCalled(std::string_view scene, std::string_view function) const {
    return std::any_of(calls.begin(), calls.end(), [&](const KnownCall& known) {
      return playedText(known.call->scene) == scene && known.row->name == function;
    });
  }

  // What the function loads when it is first called.
  void checkCallTextures(const KnownCall& known, const SceneEntry& entry, const LoadedModel* model) {
    for (const NeededTexture& needed : entry.needs.textures) {
      if (!needed.function || std::string_view(needed.function) != known.row->name) continue;
      if (needed.unless && isCalled(entry.name, needed.unless)) continue;
      if (model && !lightsFit(model->scene, needed, entry.needs)) continue;
      for (const std::string& name : textureNames(needed)) {
        if (!looked.insert("call " + name).second) continue;
        PictureFault fault = textureFault(name);
        const auto size = textureSize(name);
        if (fault.text.empty() && needed.side > 0 && size && size->width != needed.side) {
          fault = {formatted("texture %s is %dx%d, must be %dx%d", quoteText(name).c_str(), size->width,
                             size->height, needed.side, needed.side),
                   "scale it"};
        }
        if (fault.text.empty()) continue;
        report({known.call->line, known.partIndex,
                fault.text + ", " + entry.name + "." + known.row->name + " shows it", fault.hint});
      }
    }
  }

  void checkCamera(const KnownCall& known, std::size_t slot, const LoadedModel& model) {
    const ProjectParameter& parameter = known.call->parameters[slot];
    const ValueRange values = valuesOf(parameter);
    const int least = truncateNumber(values.least), most = truncateNumber(values.greatest);
    const int cameras = model.scene.viewers.count();
    if (cameras == 0 || (least >= 0 && most < cameras)) return;
    report({parameter.line, known.partIndex,
            formatted("%s is %d, %s has %s", nameOf(known, slot).c_str(), least < 0 ? least : most,
                      model.file.c_str(),
                      cameras == 1 ? "one camera" : formatted("%d cameras", cameras).c_str()),
            formatted("the first is 0, the last %d; with another the show ends", cameras - 1)});
  }

  void checkObject(const KnownCall& known, std::size_t slot, const LoadedModel& model) {
    const ProjectParameter& parameter = known.call->parameters[slot];
    const std::string name = playedText(parameter.string);
    if (name.empty() && known.row->parameters[slot].mayBeEmpty) return;
    const std::vector<std::string_view> names = objectNames(model.scene);
    const auto isIt = [&name](std::string_view other) { return sameTextureName(other, name); };
    if (std::any_of(names.begin(), names.end(), isIt)) return;
    const std::string_view near = nearestName(name, names);
    report({parameter.line, known.partIndex,
            nameOf(known, slot) + " is " + quoteText(name) + ", " + model.file + " has no such object",
            near.empty() ? "vexmodel info lists its objects; without one the show ends"
                         : "did you mean " + std::string(near) + "?"});
  }

  void checkCall(const KnownCall& known) {
    const SceneEntry& entry = *findSceneEntry(tables, playedText(known.call->scene));
    const auto found = models.find(entry.name);
    const LoadedModel* model = found != models.end() && found->second.loaded ? &found->second : nullptr;
    if (model || !entry.model) checkCallTextures(known, entry, model);
    if (!model) return;
    for (std::size_t slot = 0; slot < known.row->parameters.size(); ++slot) {
      const ArgumentKind kind = known.row->parameters[slot].kind;
      if (kind == ArgumentKind::cameraNumber) checkCamera(known, slot, *model);
      if (kind == ArgumentKind::objectName) checkObject(known, slot, *model);
    }
  }
};

}  // namespace

std::vector<Finding> checkStart(const Project& project, std::span<const SceneEntry> tables) {
  return StartCheck(project, tables).run();
}

}  // namespace vex
