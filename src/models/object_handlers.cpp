#include <strings.h>

#include <algorithm>
#include <cstring>

#include "base/fatal_place.h"
#include "base/pi.h"
#include "base/report.h"
#include "models/model_handlers.h"
#include "models/model_load.h"

// Handlers of objects and their nodes, of cameras and of lights.

namespace vex {

namespace {

enum class MeshKind { shown, helper };

void readMeshObject(ModelLoad& load, MeshKind kind) {
  if (load.meshIndex + 1 == maxMeshes) fatalError("more than %d meshes", maxMeshes);
  ++load.meshIndex;
  *currentCounts(load) = {};
  load.geometricVertices = 0;
  load.hasTextureFaces = false;
  load.vertices.clear();
  load.faces.clear();
  load.context = ModelContext::mesh;
  if (Mesh* mesh = currentMesh(load)) {
    if (kind == MeshKind::shown) {
      mesh->lit = true;
    } else {
      mesh->flags = hiddenFlag;
    }
  }
  processBlock(load);
  load.context = ModelContext::none;
}

void checkName(const char* name, int size) {
  if (std::strlen(name) >= static_cast<std::size_t>(size)) {
    fatalError("name %s is longer than %d characters", name, size - 1);
  }
}

// The pivot's parent must not hang on the object itself.
void setParent(ModelLoad& load, Object3D& object, const char* name) {
  Object3D* parent = load.scene->find(name);
  for (const Object3D* ancestor = parent; ancestor; ancestor = ancestor->parent) {
    if (ancestor == &object) fatalError("object %s can't be a parent of itself", name);
  }
  object.parent = parent;
}

// Inside animations a name tells whether camera or light are meant, or their target.
void switchByName(ModelLoad& load, const char* name) {
  if (strcasecmp(name, load.cameraName) == 0) {
    if (inContext(load, ModelContext::lightTarget)) load.context = ModelContext::light;
    if (inContext(load, ModelContext::cameraTarget)) load.context = ModelContext::camera;
  }
  if (strcasecmp(name, load.targetName) == 0) {
    if (inContext(load, ModelContext::light)) load.context = ModelContext::lightTarget;
    if (inContext(load, ModelContext::camera)) load.context = ModelContext::cameraTarget;
  }
}

void setName(ModelLoad& load, const char* name) {
  switch (load.context) {
    case ModelContext::light:
      checkName(name, objectNameSize);
      std::strcpy(load.cameraName, name);
      if (Light* light = currentLight(load)) std::strcpy(light->name, name);
      break;
    case ModelContext::mesh:
      checkName(name, objectNameSize);
      if (Mesh* mesh = currentMesh(load)) std::strcpy(mesh->name, name);
      break;
    case ModelContext::lightTarget:
    case ModelContext::cameraTarget:
      checkName(name, rememberedNameSize);
      std::strcpy(load.targetName, name);
      break;
    case ModelContext::camera:
      checkName(name, rememberedNameSize);
      std::strcpy(load.cameraName, name);
      break;
    case ModelContext::sceneHeader:
    case ModelContext::materialList:
    case ModelContext::none:
      break;
  }
}

}  // namespace

void handleGeomObject(ModelLoad& load) {
  trace(load, "geomObject\n");
  writeLine(load, Command::geomObject);
  readMeshObject(load, MeshKind::shown);
  trace(load, "geomObject end\n");
}

void handleHelperObject(ModelLoad& load) {
  trace(load, "helper object\n");
  writeLine(load, Command::helperObject);
  readMeshObject(load, MeshKind::helper);
  trace(load, "helper object end\n");
}

void handleHelperClass(ModelLoad& load) {
  const char* name = scanQuoted(load);
  trace(load, "helper class %s\n", name);
  writeLine(load, Command::helperClass, name);
  Mesh* mesh = currentMesh(load);
  if (mesh && strncasecmp(name, "skelet", 6) == 0) mesh->flags |= skeletonFlag;
}

void handleNodeName(ModelLoad& load) {
  const char* name = scanQuoted(load);
  trace(load, "name %s\n", name);
  writeLine(load, Command::nodeName, name);
  if (load.inAnimation) {
    switchByName(load, name);
  } else {
    setName(load, name);
  }
}

void handleNodeParent(ModelLoad& load) {
  const char* name = scanQuoted(load);
  trace(load, "parent %s\n", name);
  writeLine(load, Command::nodeParent, name);
  if (!filling(load)) return;
  if (inContext(load, ModelContext::light)) {
    if (Light* light = currentLight(load)) setParent(load, *light, name);
  } else if (inContext(load, ModelContext::mesh)) {
    if (Mesh* mesh = currentMesh(load)) setParent(load, *mesh, name);
  } else {
    fatalError("parent outside light/mesh found");
  }
}

void handleNodeTm(ModelLoad& load) {
  [[maybe_unused]] const bool ofMesh = inContext(load, ModelContext::mesh);
  trace(load, ofMesh ? "transformation matrix\n" : "blabla\n");
  writeLine(load, Command::nodeTm);
  processBlock(load);
  trace(load, ofMesh ? "transformation matrix end\n" : "blabla end\n");
  // The next matrix is the target's.
  const Light* light = currentLight(load);
  if (inContext(load, ModelContext::camera)) {
    load.context = ModelContext::cameraTarget;
  } else if (inContext(load, ModelContext::light) && (!light || light->spot)) {
    load.context = ModelContext::lightTarget;
  }
}

namespace {

struct NodeRows {
  float rotation[3][3] = {};
  float pivot[3] = {};
};

NodeRows readRows(ModelLoad& load) {
  NodeRows rows;
  if (!readingText(load)) {
    std::memcpy(rows.rotation, load.reader.current.matrix, sizeof rows.rotation);
    scanVector(load, rows.pivot);
    return rows;
  }
  std::copy_n(scanThree(load), 3, rows.rotation[0]);
  for (float(*row)[3] : {&rows.rotation[1], &rows.rotation[2], &rows.pivot}) {
    while (nextLine(load) != 0 && !modelEnded(load)) {
    }
    std::copy_n(scanThree(load), 3, *row);
  }
  return rows;
}

}  // namespace

void handleTmRow0(ModelLoad& load) {
  if (!inContext(load, ModelContext::mesh)) return;
  const NodeRows rows = readRows(load);
  const float(&r)[3][3] = rows.rotation;
  trace(load, "rotation matrix\n");
  for ([[maybe_unused]] const float(&row)[3] : r) trace(load, "%.2f %.2f %.2f\n", row[0], row[1], row[2]);
  trace(load, "pivot %.2f %.2f %.2f\n", rows.pivot[0], rows.pivot[1], rows.pivot[2]);
  writeLine(load, Command::tmRow0, r[0][0], r[0][1], r[0][2], r[1][0], r[1][1], r[1][2], r[2][0], r[2][1],
            r[2][2], rows.pivot[0], rows.pivot[1], rows.pivot[2]);
  Mesh* mesh = currentMesh(load);
  if (!mesh) return;

  const FatalPlace place([mesh] { return std::string("rotation of mesh ") + mesh->name; });
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

void handleTmPos(ModelLoad& load) {
  const Vector position = scannedPoint(load, scanThree(load));
  trace(load, "position %.2f %.2f %.2f\n", position.x, position.y, position.z);
  writeLine(load, Command::tmPos, position.x, position.y, position.z);
  Light* light = currentLight(load);
  Viewer* viewer = currentViewer(load);
  if (light && inContext(load, ModelContext::light)) light->position = position;
  if (light && inContext(load, ModelContext::lightTarget)) light->spotDirection = position - light->position;
  if (viewer && inContext(load, ModelContext::camera)) viewer->position = position;
  if (viewer && inContext(load, ModelContext::cameraTarget)) viewer->target = position;
}

void handleTmScale(ModelLoad& load) {
  const Vector factors = scannedFactors(load, scanThree(load));
  trace(load, "scale %.2f %.2f %.2f\n", factors.x, factors.y, factors.z);
  writeLine(load, Command::tmScale, factors.x, factors.y, factors.z);
  Mesh* mesh = currentMesh(load);
  if (!mesh || !inContext(load, ModelContext::mesh) || factors == Vector(1.0f, 1.0f, 1.0f)) return;
  load.scratchTrack.type = TrackType::scale;
  load.scratchTrack.allocKeys(1);
  load.scratchTrack.insertKey(0.0f, factors, 0.0f);
  mesh->addAnimation(load.scratchTrack);
}

void handleCameraObject(ModelLoad& load) {
  trace(load, "camera object\n");
  writeLine(load, Command::cameraObject);
  if (++load.cameraIndex == maxLightsOrCameras) fatalError("more than %d cameras", maxLightsOrCameras);
  load.context = ModelContext::camera;
  processBlock(load);
  load.context = ModelContext::none;
  trace(load, "camera object end\n");
}

void handleCameraSettings(ModelLoad& load) {
  trace(load, "camera settings\n");
  writeLine(load, Command::cameraSettings);
  load.context = ModelContext::camera;
  processBlock(load);
  trace(load, "camera settings end\n");
}

void handleCameraFar(ModelLoad& load) {
  const float distance = scanFloat(load);
  trace(load, "far clipping plane %.2f\n", distance);
  writeLine(load, Command::cameraFar, distance);
  if (Viewer* viewer = currentViewer(load)) viewer->farPlane = distance;
}

void handleCameraFov(ModelLoad& load) {
  const float radians = scanFloat(load);
  const auto degrees = static_cast<float>(radians * 180.0 / piToTenDecimals);
  trace(load, "fov %.2f\n", degrees);
  writeLine(load, Command::cameraFov, radians);
  if (Viewer* viewer = currentViewer(load)) viewer->fov = degrees;
}

void handleLightObject(ModelLoad& load) {
  trace(load, "light\n");
  writeLine(load, Command::lightObject);
  if (++load.lightIndex == maxLightsOrCameras) fatalError("more than %d lights", maxLightsOrCameras);
  load.context = ModelContext::light;
  processBlock(load);
  load.context = ModelContext::none;
  trace(load, "light end\n");
}

void handleLightType(ModelLoad& load) {
  int type = scanInt(load);
  if (readingText(load)) {
    const char* word = scanWord(load);
    if (strncasecmp(word, "omni", 4) == 0) {
      type = 0;
    } else if (strncasecmp(word, "target", 6) == 0) {
      type = 1;
    } else {
      fatalError("unsupported light type %s", word);
    }
  }
  trace(load, type == 0 ? "pointlight\n" : "spotlight\n");
  writeLine(load, Command::lightType, type);
  if (Light* light = currentLight(load)) light->spot = type != 0;
}

void handleLightUseLight(ModelLoad& load) {
  const int use = scanInt(load);
  trace(load, use == 1 ? "active\n" : "inactive\n");
  writeLine(load, Command::lightUseLight, use);
  if (Light* light = currentLight(load)) light->active = use == 1;
}

void handleLightSettings(ModelLoad& load) {
  trace(load, "light settings\n");
  writeLine(load, Command::lightSettings);
  processBlock(load);
  trace(load, "light settings end\n");
}

void handleLightColor(ModelLoad& load) {
  const float(&colour)[3] = scanThree(load);
  trace(load, "color %.2f %.2f %.2f\n", colour[0], colour[1], colour[2]);
  writeLine(load, Command::lightColor, colour[0], colour[1], colour[2]);
  if (Light* light = currentLight(load)) light->colour = {colour[0], colour[1], colour[2]};
}

void handleLightIntens(ModelLoad& load) {
  const float intensity = scanFloat(load);
  trace(load, "intensity %.2f\n", intensity);
  writeLine(load, Command::lightIntens, intensity);
  if (Light* light = currentLight(load)) light->intensity = intensity;
}

void handleLightFalloff(ModelLoad& load) {
  const float angle = scanFloat(load);
  trace(load, "falloff angle %.2f\n", angle);
  writeLine(load, Command::lightFalloff, angle);
  if (Light* light = currentLight(load)) light->coneAngle = angle;
}

}  // namespace vex
