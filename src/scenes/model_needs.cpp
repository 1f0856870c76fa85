#include "scenes/model_needs.h"

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

std::string needsText(const char* model, const ModelNeeds& needs) {
  if (!model) return {};
  std::string text;
  for (const ObjectKind kind : {ObjectKind::mesh, ObjectKind::light, ObjectKind::none}) {
    std::string names;
    for (const NeededObject& object : needs.objects)
      if (object.kind == kind) names += (names.empty() ? "`" : ", `") + std::string(object.name) + "`";
    if (names.empty()) continue;
    text += (text.empty() ? "" : "; ") +
            std::string(kind == ObjectKind::mesh    ? "meshes "
                        : kind == ObjectKind::light ? "lights "
                                                    : "meshes or lights ") +
            names;
  }
  const auto count = [&](int least, const char* what) {
    if (least > 0)
      text += (text.empty() ? "at least " : "; at least ") + std::to_string(least) + " " +
              (least > 1 ? plural(what) : what);
  };
  count(needs.meshes, "mesh");
  count(needs.lights, "light");
  count(needs.cameras, "camera");
  return "Its model `" + std::string(model) + "` holds: " + text + ".";
}

}  // namespace vex
