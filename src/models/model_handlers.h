#pragma once

// One handler for each keyword of a model, in text and compiled models alike. They run in both passes: each
// reads the values of the current line or command, records them while the stream is written, and in the
// second pass changes the scene.

namespace vex {

struct ModelLoad;

void handleScene(ModelLoad& load);
void handleSceneFrameSpeed(ModelLoad& load);
void handleSceneFirstFrame(ModelLoad& load);
void handleSceneLastFrame(ModelLoad& load);
void handleSceneTicksPerFrame(ModelLoad& load);
void handleComment(ModelLoad& load);

void handleMaterialList(ModelLoad& load);
void handleMaterial(ModelLoad& load);
void handleMaterialDiffuse(ModelLoad& load);
void handleMaterialAmbient(ModelLoad& load);
void handleMaterialSpecular(ModelLoad& load);
void handleMaterialShine(ModelLoad& load);
void handleMaterialShineStrength(ModelLoad& load);
void handleMaterialTransparency(ModelLoad& load);
void handleMaterialTwoSided(ModelLoad& load);
void handleMapDiffuse(ModelLoad& load);
void handleBitmap(ModelLoad& load);
void handleMapType(ModelLoad& load);
void handleMaterialRef(ModelLoad& load);

void handleGeomObject(ModelLoad& load);
void handleHelperObject(ModelLoad& load);
void handleHelperClass(ModelLoad& load);
void handleNodeName(ModelLoad& load);
void handleNodeParent(ModelLoad& load);
void handleNodeTm(ModelLoad& load);
void handleTmRow0(ModelLoad& load);
void handleTmPos(ModelLoad& load);
void handleTmScale(ModelLoad& load);

void handleMesh(ModelLoad& load);
void handleMeshNumVertex(ModelLoad& load);
void handleMeshNumFaces(ModelLoad& load);
void handleMeshVertexList(ModelLoad& load);
void handleMeshVertex(ModelLoad& load);
void handleMeshFaceList(ModelLoad& load);
void handleMeshFace(ModelLoad& load);
void handleMeshNumTVertex(ModelLoad& load);
void handleMeshTVertList(ModelLoad& load);
void handleMeshTVert(ModelLoad& load);
void handleMeshTFaceList(ModelLoad& load);
void handleMeshTFace(ModelLoad& load);
void handleMeshNormals(ModelLoad& load);
void handleMeshAnimation(ModelLoad& load);

void handleCameraObject(ModelLoad& load);
void handleCameraSettings(ModelLoad& load);
void handleCameraFar(ModelLoad& load);
void handleCameraFov(ModelLoad& load);

void handleLightObject(ModelLoad& load);
void handleLightType(ModelLoad& load);
void handleLightUseLight(ModelLoad& load);
void handleLightSettings(ModelLoad& load);
void handleLightColor(ModelLoad& load);
void handleLightIntens(ModelLoad& load);
void handleLightFalloff(ModelLoad& load);

void handleTmAnimation(ModelLoad& load);
void handleControlRotTcb(ModelLoad& load);
void handleControlRotTrack(ModelLoad& load);
void handleRotationKey(ModelLoad& load);
void handleControlPosBezier(ModelLoad& load);
void handleControlPosTrack(ModelLoad& load);
void handlePositionKey(ModelLoad& load);
void handleControlScaleBezier(ModelLoad& load);
void handleControlScaleTrack(ModelLoad& load);
void handleScaleKey(ModelLoad& load);
void handleTimeValue(ModelLoad& load);

}  // namespace vex
