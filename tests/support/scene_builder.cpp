#include "tests/support/scene_builder.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "tests/support/test_scene.h"
#include "timeline/scene_function.h"

namespace vex {

namespace {

Animation twoKeys() {
  return straightPath({}, {30, 0, 0});
}

void name(Object3D& object, const std::string& text) {
  std::snprintf(object.name, objectNameSize, "%s", text.c_str());
}

}  // namespace

void addTrack(Object3D& object) {
  object.addAnimation(twoKeys());
}

void fillScene(Scene& scene, const ModelContents& contents) {
  int i = 0;
  scene.meshes.allocate(static_cast<int>(contents.meshes.size()));
  for (const std::string& text : contents.meshes) {
    Mesh* mesh = scene.meshes[i] = new Mesh;
    name(*mesh, text);
    addTrack(*mesh);
    mesh->position.set(10.0f * static_cast<float>(i++), 1, 2);
    mesh->lit = true;
    mesh->ambient = {0.25f, 0.25f, 0.25f, 1};
    for (const Vector& corner : {Vector(-1, 0, 0), Vector(1, 0, 0), Vector(1, 1, 0), Vector(0, 0, 2)}) {
      Vertex vertex;
      vertex.position = mesh->position + corner;
      vertex.normal.set(0, 0, 1);
      vertex.u = corner.x;
      vertex.v = corner.y;
      mesh->vertices.push_back(vertex);
    }
    mesh->faces = {{{0, 1, 2}, {0, 1, 2}}, {{0, 2, 3}, {0, 2, 3}}};
  }
  i = 0;
  scene.lights.allocate(static_cast<int>(contents.lights.size()));
  for (const std::string& text : contents.lights) {
    Light* light = scene.lights[i] = new Light;
    name(*light, text);
    addTrack(*light);
    light->setTarget(twoKeys());
    light->position.set(static_cast<float>(i), 0, 0);
    light->active = i++ < maxActiveLights;
  }
  scene.viewers.allocate(contents.viewers);
  for (i = 0; i < contents.viewers; ++i) {
    scene.viewers[i] = new Viewer;
    scene.viewers[i]->addAnimation(twoKeys());
    scene.viewers[i]->addTargetAnimation(twoKeys());
  }
}

void addPlainTextures(std::initializer_list<const char*> names) {
  for (const char* texture : names) addWhiteTexture(texture);
}

void callFunction(std::span<const FunctionRow> rows, Scene& scene, const std::string& function, float t,
                  const std::vector<Argument>& arguments) {
  std::array<const void*, maxArguments> slots{};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const Argument& argument = arguments[i];
    slots[i] = argument.text ? static_cast<const void*>(argument.text) : &argument.number;
  }
  for (const FunctionRow& row : rows) {
    if (row.name != function) continue;
    EXPECT_EQ(row.parameters.size(), arguments.size()) << function;
    row.function(&scene, t, slots.data());
    return;
  }
  ADD_FAILURE() << function;
}

std::vector<std::string> namesOf(std::span<const FunctionRow> rows) {
  std::vector<std::string> names;
  for (const FunctionRow& row : rows) names.emplace_back(row.name);
  return names;
}

void expectValues(std::initializer_list<ExpectedValue> values) {
  for (const auto& [what, is, should] : values)
    EXPECT_NEAR(is, should, 1e-5 + 2e-6 * std::abs(should)) << what;
}

Playing playing(const Animation* track) {
  EXPECT_TRUE(track);
  return track ? Playing{track->duration, track->loop} : Playing{};
}

Playing playing(const Object3D& object) {
  return playing(object.track(TrackType::position));
}

}  // namespace vex
