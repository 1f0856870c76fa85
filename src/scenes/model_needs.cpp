#include "scenes/model_needs.h"

#include <array>
#include <string_view>

#include "base/report.h"
#include "scenes/scene_conventions.h"

namespace vex {

namespace {

const char* wordFor(ObjectKind kind) {
  return kind == ObjectKind::mesh ? "mesh" : kind == ObjectKind::light ? "light" : "mesh or light";
}

template <typename Objects>
bool holds(const Objects& objects, const char* name) {
  for (const auto* object : objects)
    if (isNamed(*object, name)) return true;
  return false;
}

std::string plural(const std::string& what) {
  return what + (what.ends_with('h') ? "es" : "s");
}

void countLacking(std::vector<std::string>& lacking, const char* what, int there, int needed) {
  if (there < needed)
    lacking.push_back(plural(what) + ": " + std::to_string(there) + ", at least " + std::to_string(needed));
}

}  // namespace

std::vector<std::string> lackingIn(const Scene& scene, const ModelNeeds& needs) {
  std::vector<std::string> lacking;
  for (const auto& [name, kind] : needs.objects) {
    // The first of a name counts, whatever it is; a light hides behind a mesh.
    const bool mesh = holds(scene.meshes, name);
    const bool light = !mesh && holds(scene.lights, name);
    const bool fits = kind == ObjectKind::mesh ? mesh : kind == ObjectKind::light ? light : mesh || light;
    if (!fits) lacking.push_back(std::string(wordFor(kind)) + " " + name);
  }
  countLacking(lacking, "mesh", scene.meshes.count(), needs.meshes);
  countLacking(lacking, "light", scene.lights.count(), needs.lights);
  countLacking(lacking, "camera", scene.viewers.count(), needs.cameras);
  return lacking;
}

std::vector<std::string> textureNames(const NeededTexture& needed) {
  if (needed.frames == 1) return {needed.name};
  std::vector<std::string> names;
  for (int frame = 1; frame <= needed.frames; ++frame)
    names.push_back(formatted("%s%0*d", needed.name, needed.digits, frame));
  return names;
}

void playMotions(Scene& scene, std::span<const SceneMotion> motions) {
  const auto isMeant = [](const Object3D& object, const char* name) {
    if (!name) return true;
    const std::string_view pattern(name);
    if (!pattern.ends_with('*')) return isNamed(object, name);
    return nameBeginsWith(object, std::string(pattern.substr(0, pattern.size() - 1)).c_str());
  };
  const auto play = [&isMeant](const auto& objects, const SceneMotion& motion) {
    for (auto* object : objects)
      if (isMeant(*object, motion.name)) object->setAnimParams(motion.seconds, motion.loops);
  };
  for (const SceneMotion& motion : motions) {
    switch (motion.of) {
      case MotionOf::meshes:
        play(scene.meshes, motion);
        break;
      case MotionOf::lights:
        play(scene.lights, motion);
        break;
      case MotionOf::cameras:
        setAnimParams(scene.viewers, motion.seconds, motion.loops);
        break;
    }
  }
}

namespace {

// Rows of a Markdown table with two columns.
struct NeedRows {
  std::string text;

  void add(const std::string& what, const std::string& values) {
    if (!values.empty()) text += "| " + what + " | " + values + " |\n";
  }
};

void append(std::string& list, const std::string& item) {
  list += (list.empty() ? "" : ", ") + item;
}

std::string quoted(const std::string& name) {
  return "`" + name + "`";
}

void addObjects(NeedRows& rows, const ModelNeeds& needs) {
  for (const ObjectKind kind : {ObjectKind::mesh, ObjectKind::light, ObjectKind::none}) {
    std::string names;
    for (const NeededObject& object : needs.objects)
      if (object.kind == kind) append(names, quoted(object.name));
    rows.add(kind == ObjectKind::mesh    ? "meshes of these names"
             : kind == ObjectKind::light ? "lights of these names"
                                         : "meshes (or helpers) or lights of these names",
             names);
  }
  std::string counts;
  const auto count = [&counts](int least, const char* what) {
    if (least > 0) append(counts, std::to_string(least) + " " + (least > 1 ? plural(what) : what));
  };
  count(needs.meshes, "mesh");
  count(needs.lights, "light");
  count(needs.cameras, "camera");
  rows.add("at least", counts);
}

std::string textureText(const NeededTexture& needed) {
  const std::vector<std::string> names = textureNames(needed);
  std::string text = quoted(names.front());
  if (names.size() > 1) text += " to " + quoted(names.back().substr(std::string(needed.name).size()));
  if (needed.side > 0) text += formatted(" (%d x %d)", needed.side, needed.side);
  if (needed.function) text += std::string(" for ") + needed.function;
  if (needed.light && needed.light != anyLight) text += " if there is a light " + quoted(needed.light);
  if (needed.light == anyLight) text += " if there are other lights";
  if (needed.unless) text += std::string(" without ") + needed.unless;
  return text;
}

void addTextures(NeedRows& rows, const ModelNeeds& needs) {
  constexpr std::array sides{"top", "bottom", "north", "west", "south", "east"};
  std::string sky, start, later;
  for (std::size_t i = 0; i < sides.size(); ++i)
    if (*needs.sky[i]) append(sky, std::string(sides[i]) + " " + quoted(needs.sky[i]));
  for (const NeededTexture& needed : needs.textures)
    append(needed.function ? later : start, textureText(needed));
  rows.add("sky textures", sky);
  rows.add("textures at the start", start);
  rows.add("textures in calls", later);
}

void addMotions(NeedRows& rows, const ModelNeeds& needs) {
  std::string text;
  for (const auto& [of, seconds, loops, name] : needs.motions) {
    const char* all = of == MotionOf::meshes ? "meshes" : of == MotionOf::lights ? "lights" : "cameras";
    append(text, (name ? quoted(name) : std::string(all)) +
                     formatted(" %g s %s", static_cast<double>(seconds), loops ? "in a loop" : "once"));
  }
  rows.add("motions last", text);
}

}  // namespace

std::string needsText(const char* model, const ModelNeeds& needs) {
  NeedRows rows;
  if (model)
    rows.add("model", quoted(std::string(model) + ".ase") + " or " + quoted(std::string(model) + ".hv3"));
  if (model) addObjects(rows, needs);
  addTextures(rows, needs);
  addMotions(rows, needs);
  return rows.text.empty() ? "" : "| Needs | |\n|---|---|\n" + rows.text;
}

}  // namespace vex
