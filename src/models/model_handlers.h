#pragma once

// One handler for each keyword of a model, in text and compiled models alike. They run in both passes: each
// reads the values of the current line or command, records them while the stream is written, and in the
// second pass changes the scene.

namespace vex {

void handleScene();
void handleSceneFrameSpeed();
void handleSceneFirstFrame();
void handleSceneLastFrame();
void handleSceneTicksPerFrame();
void handleComment();

void handleMaterialList();
void handleMaterial();
void handleMaterialDiffuse();
void handleMaterialAmbient();
void handleMaterialSpecular();
void handleMaterialShine();
void handleMaterialShineStrength();
void handleMaterialTransparency();
void handleMaterialTwoSided();
void handleMapDiffuse();
void handleBitmap();
void handleMapType();
void handleMaterialRef();

void handleGeomObject();
void handleHelperObject();
void handleHelperClass();
void handleNodeName();
void handleNodeParent();
void handleNodeTm();
void handleTmRow0();
void handleTmPos();
void handleTmScale();

void handleMesh();
void handleMeshNumVertex();
void handleMeshNumFaces();
void handleMeshVertexList();
void handleMeshVertex();
void handleMeshFaceList();
void handleMeshFace();
void handleMeshNumTVertex();
void handleMeshTVertList();
void handleMeshTVert();
void handleMeshTFaceList();
void handleMeshTFace();
void handleMeshNormals();
void handleMeshAnimation();

void handleCameraObject();
void handleCameraSettings();
void handleCameraFar();
void handleCameraFov();

void handleLightObject();
void handleLightType();
void handleLightUseLight();
void handleLightSettings();
void handleLightColor();
void handleLightIntens();
void handleLightFalloff();

void handleTmAnimation();
void handleControlRotTcb();
void handleControlRotTrack();
void handleRotationKey();
void handleControlPosBezier();
void handleControlPosTrack();
void handlePositionKey();
void handleControlScaleBezier();
void handleControlScaleTrack();
void handleScaleKey();
void handleTimeValue();

}  // namespace vex
