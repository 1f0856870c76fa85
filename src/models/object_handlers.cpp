#include <strings.h>

#include <algorithm>
#include <cstring>

#include "base/pi.h"
#include "base/report.h"
#include "models/model_handlers.h"
#include "models/model_reader.h"
#include "models/model_state.h"
#include "models/model_stream.h"
#include "models/model_trace.h"

// Handlers of objects and their nodes, of cameras and of lights.

namespace vex {

namespace {

enum class MeshKind { shown, helper };

void readMeshObject(MeshKind kind) {
  if (modelState.meshIndex + 1 == maxMeshes) fatalError("more than %d meshes", maxMeshes);
  ++modelState.meshIndex;
  *currentCounts() = {};
  modelState.geometricVertices = 0;
  modelState.hasTextureFaces = false;
  modelState.vertices.clear();
  modelState.faces.clear();
  modelState.context = ModelContext::mesh;
  if (Mesh* mesh = currentMesh()) {
    if (kind == MeshKind::shown) {
      mesh->lit = true;
    } else {
      mesh->flags = hiddenFlag;
    }
  }
  processBlock();
  modelState.context = ModelContext::none;
}

void checkName(const char* name, int size) {
  if (std::strlen(name) >= static_cast<std::size_t>(size)) {
    fatalError("name %s is longer than %d characters", name, size - 1);
  }
}

// The pivot's parent must not hang on the object itself.
void setParent(Object3D& object, const char* name) {
  Object3D* parent = modelState.scene->find(name);
  for (const Object3D* ancestor = parent; ancestor; ancestor = ancestor->parent) {
    if (ancestor == &object) fatalError("object %s can't be a parent of itself", name);
  }
  object.parent = parent;
}

// Inside animations a name tells whether camera or light are meant, or their target.
void switchByName(const char* name) {
  if (strcasecmp(name, modelState.cameraName) == 0) {
    if (inContext(ModelContext::lightTarget)) modelState.context = ModelContext::light;
    if (inContext(ModelContext::cameraTarget)) modelState.context = ModelContext::camera;
  }
  if (strcasecmp(name, modelState.targetName) == 0) {
    if (inContext(ModelContext::light)) modelState.context = ModelContext::lightTarget;
    if (inContext(ModelContext::camera)) modelState.context = ModelContext::cameraTarget;
  }
}

void setName(const char* name) {
  switch (modelState.context) {
    case ModelContext::light:
      checkName(name, objectNameSize);
      std::strcpy(modelState.cameraName, name);
      if (Light* light = currentLight()) std::strcpy(light->name, name);
      break;
    case ModelContext::mesh:
      checkName(name, objectNameSize);
      if (Mesh* mesh = currentMesh()) std::strcpy(mesh->name, name);
      break;
    case ModelContext::lightTarget:
    case ModelContext::cameraTarget:
      checkName(name, rememberedNameSize);
      std::strcpy(modelState.targetName, name);
      break;
    case ModelContext::camera:
      checkName(name, rememberedNameSize);
      std::strcpy(modelState.cameraName, name);
      break;
    case ModelContext::sceneHeader:
    case ModelContext::materialList:
    case ModelContext::none:
      break;
  }
}

}  // namespace

void handleGeomObject() {
  trace("geomObject\n");
  writeLine(Command::geomObject);
  readMeshObject(MeshKind::shown);
  trace("geomObject end\n");
}

void handleHelperObject() {
  trace("helper object\n");
  writeLine(Command::helperObject);
  readMeshObject(MeshKind::helper);
  trace("helper object end\n");
}

void handleHelperClass() {
  const char* name = scanQuoted();
  trace("helper class %s\n", name);
  writeLine(Command::helperClass, name);
  Mesh* mesh = currentMesh();
  if (mesh && strncasecmp(name, "skelet", 6) == 0) mesh->flags |= skeletonFlag;
}

void handleNodeName() {
  const char* name = scanQuoted();
  trace("name %s\n", name);
  writeLine(Command::nodeName, name);
  if (modelState.inAnimation) {
    switchByName(name);
  } else {
    setName(name);
  }
}

void handleNodeParent() {
  const char* name = scanQuoted();
  trace("parent %s\n", name);
  writeLine(Command::nodeParent, name);
  if (!filling()) return;
  if (inContext(ModelContext::light)) {
    if (Light* light = currentLight()) setParent(*light, name);
  } else if (inContext(ModelContext::mesh)) {
    if (Mesh* mesh = currentMesh()) setParent(*mesh, name);
  } else {
    fatalError("parent outside light/mesh found");
  }
}

void handleNodeTm() {
  [[maybe_unused]] const bool ofMesh = inContext(ModelContext::mesh);
  trace(ofMesh ? "transformation matrix\n" : "blabla\n");
  writeLine(Command::nodeTm);
  processBlock();
  trace(ofMesh ? "transformation matrix end\n" : "blabla end\n");
  // The next matrix is the target's.
  const Light* light = currentLight();
  if (inContext(ModelContext::camera)) {
    modelState.context = ModelContext::cameraTarget;
  } else if (inContext(ModelContext::light) && (!light || light->spot)) {
    modelState.context = ModelContext::lightTarget;
  }
}

namespace {

struct NodeRows {
  float rotation[3][3] = {};
  float pivot[3] = {};
};

NodeRows readRows() {
  NodeRows rows;
  if (!readingText()) {
    std::memcpy(rows.rotation, modelReader.current.matrix, sizeof rows.rotation);
    scanVector(rows.pivot);
    return rows;
  }
  std::copy_n(scanThree(), 3, rows.rotation[0]);
  for (float(*row)[3] : {&rows.rotation[1], &rows.rotation[2], &rows.pivot}) {
    while (nextLine() != 0 && !modelEnded()) {
    }
    std::copy_n(scanThree(), 3, *row);
  }
  return rows;
}

}  // namespace

void handleTmRow0() {
  if (!inContext(ModelContext::mesh)) return;
  const NodeRows rows = readRows();
  const float(&r)[3][3] = rows.rotation;
  trace("rotation matrix\n");
  for ([[maybe_unused]] const float(&row)[3] : r) trace("%.2f %.2f %.2f\n", row[0], row[1], row[2]);
  trace("pivot %.2f %.2f %.2f\n", rows.pivot[0], rows.pivot[1], rows.pivot[2]);
  writeLine(Command::tmRow0, r[0][0], r[0][1], r[0][2], r[1][0], r[1][1], r[1][2], r[2][0], r[2][1], r[2][2],
            rows.pivot[0], rows.pivot[1], rows.pivot[2]);
  Mesh* mesh = currentMesh();
  if (!mesh) return;

  Matrix inverse;
  for (int row = 0; row < 3; ++row) {
    for (int column = 0; column < 3; ++column) inverse.m[row][column] = r[row][column];
  }
  inverse.m[3][3] = 1.0f;
  inverse.invert();
  // Into the engine's axes: rows 1 and 2 exchanged, one of them negated, likewise the columns, but for the
  // column order of row 0.
  const float(&i)[4][4] = inverse.m;
  const float base[4][4] = {
      {i[0][0], i[0][1], i[0][2], i[0][3]},
      {i[2][0], i[2][2], -i[2][1], i[2][3]},
      {-i[1][0], -i[1][2], i[1][1], -i[1][3]},
      {i[3][0], i[3][1], i[3][2], i[3][3]},
  };
  std::memcpy(mesh->baseMatrix.m, base, sizeof base);
  mesh->position = toEngineAxes(rows.pivot);
}

void handleTmPos() {
  const Vector position = scannedPoint(scanThree());
  trace("position %.2f %.2f %.2f\n", position.x, position.y, position.z);
  writeLine(Command::tmPos, position.x, position.y, position.z);
  Light* light = currentLight();
  Viewer* viewer = currentViewer();
  if (light && inContext(ModelContext::light)) light->position = position;
  if (light && inContext(ModelContext::lightTarget)) light->spotDirection = position - light->position;
  if (viewer && inContext(ModelContext::camera)) viewer->position = position;
  if (viewer && inContext(ModelContext::cameraTarget)) viewer->target = position;
}

void handleTmScale() {
  const Vector factors = scannedFactors(scanThree());
  trace("scale %.2f %.2f %.2f\n", factors.x, factors.y, factors.z);
  writeLine(Command::tmScale, factors.x, factors.y, factors.z);
  Mesh* mesh = currentMesh();
  if (!mesh || !inContext(ModelContext::mesh) || factors == Vector(1.0f, 1.0f, 1.0f)) return;
  modelState.scratchTrack.type = TrackType::scale;
  modelState.scratchTrack.allocKeys(1);
  modelState.scratchTrack.insertKey(0.0f, factors, 0.0f);
  mesh->addAnimation(modelState.scratchTrack);
}

void handleCameraObject() {
  trace("camera object\n");
  writeLine(Command::cameraObject);
  if (++modelState.cameraIndex == maxLightsOrCameras) fatalError("more than %d cameras", maxLightsOrCameras);
  modelState.context = ModelContext::camera;
  processBlock();
  modelState.context = ModelContext::none;
  trace("camera object end\n");
}

void handleCameraSettings() {
  trace("camera settings\n");
  writeLine(Command::cameraSettings);
  modelState.context = ModelContext::camera;
  processBlock();
  trace("camera settings end\n");
}

void handleCameraFar() {
  const float distance = scanFloat();
  trace("far clipping plane %.2f\n", distance);
  writeLine(Command::cameraFar, distance);
  if (Viewer* viewer = currentViewer()) viewer->farPlane = distance;
}

void handleCameraFov() {
  const float radians = scanFloat();
  const auto degrees = static_cast<float>(radians * 180.0 / piToTenDecimals);
  trace("fov %.2f\n", degrees);
  writeLine(Command::cameraFov, radians);
  if (Viewer* viewer = currentViewer()) viewer->fov = degrees;
}

void handleLightObject() {
  trace("light\n");
  writeLine(Command::lightObject);
  if (++modelState.lightIndex == maxLightsOrCameras) fatalError("more than %d lights", maxLightsOrCameras);
  modelState.context = ModelContext::light;
  processBlock();
  modelState.context = ModelContext::none;
  trace("light end\n");
}

void handleLightType() {
  int type = scanInt();
  if (readingText()) {
    const char* word = scanWord();
    if (strncasecmp(word, "omni", 4) == 0) {
      type = 0;
    } else if (strncasecmp(word, "target", 6) == 0) {
      type = 1;
    } else {
      fatalError("unsupported light type %s", word);
    }
  }
  trace(type == 0 ? "pointlight\n" : "spotlight\n");
  writeLine(Command::lightType, type);
  if (Light* light = currentLight()) light->spot = type != 0;
}

void handleLightUseLight() {
  const int use = scanInt();
  trace(use == 1 ? "active\n" : "inactive\n");
  writeLine(Command::lightUseLight, use);
  if (Light* light = currentLight()) light->active = use == 1;
}

void handleLightSettings() {
  trace("light settings\n");
  writeLine(Command::lightSettings);
  processBlock();
  trace("light settings end\n");
}

void handleLightColor() {
  const float(&colour)[3] = scanThree();
  trace("color %.2f %.2f %.2f\n", colour[0], colour[1], colour[2]);
  writeLine(Command::lightColor, colour[0], colour[1], colour[2]);
  if (Light* light = currentLight()) light->colour = {colour[0], colour[1], colour[2]};
}

void handleLightIntens() {
  const float intensity = scanFloat();
  trace("intensity %.2f\n", intensity);
  writeLine(Command::lightIntens, intensity);
  if (Light* light = currentLight()) light->intensity = intensity;
}

void handleLightFalloff() {
  const float angle = scanFloat();
  trace("falloff angle %.2f\n", angle);
  writeLine(Command::lightFalloff, angle);
  if (Light* light = currentLight()) light->coneAngle = angle;
}

}  // namespace vex
