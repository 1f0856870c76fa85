#include "models/keyword_table.h"

#include <strings.h>

#include <cstring>

#include "models/model_handlers.h"
#include "models/model_number.h"

namespace vex {

namespace {

// The blank is a part of the keyword: "*mesh " is not how "*MESH_NUMVERTEX 8" begins.
constexpr auto rows = std::to_array<KeywordEntry>({
    {"*scene ", Command::scene, "", handleScene},
    {"*scene_framespeed ", Command::sceneFrameSpeed, "i", handleSceneFrameSpeed},
    {"*scene_firstframe ", Command::none, "", handleSceneFirstFrame},
    {"*scene_lastframe ", Command::sceneLastFrame, "i", handleSceneLastFrame},
    {"*scene_ticksperframe ", Command::sceneTicksPerFrame, "i", handleSceneTicksPerFrame},
    {"*comment ", Command::comment, "s", handleComment},
    {"*material_list ", Command::materialList, "", handleMaterialList},
    {"*material ", Command::material, "", handleMaterial},
    {"*material_diffuse ", Command::materialDiffuse, "fff", handleMaterialDiffuse},
    {"*material_ambient ", Command::materialAmbient, "fff", handleMaterialAmbient},
    {"*material_specular ", Command::materialSpecular, "fff", handleMaterialSpecular},
    {"*material_shine ", Command::materialShine, "f", handleMaterialShine},
    {"*material_shinestrength ", Command::materialShineStrength, "f", handleMaterialShineStrength},
    {"*material_transparency ", Command::materialTransparency, "f", handleMaterialTransparency},
    {"*material_twosided", Command::materialTwoSided, "", handleMaterialTwoSided},
    {"*map_diffuse ", Command::mapDiffuse, "", handleMapDiffuse},
    {"*bitmap ", Command::bitmap, "s", handleBitmap},
    {"*map_type ", Command::mapType, "i", handleMapType},
    {"*geomobject ", Command::geomObject, "", handleGeomObject},
    {"*helperobject ", Command::helperObject, "", handleHelperObject},
    {"*helper_class ", Command::helperClass, "s", handleHelperClass},
    {"*node_name ", Command::nodeName, "s", handleNodeName},
    {"*node_parent ", Command::nodeParent, "s", handleNodeParent},
    {"*node_tm ", Command::nodeTm, "", handleNodeTm},
    {"*tm_row0 ", Command::tmRow0, "mfff", handleTmRow0},
    {"*tm_pos ", Command::tmPos, "fff", handleTmPos},
    {"*tm_scale ", Command::tmScale, "fff", handleTmScale},
    {"*mesh ", Command::mesh, "", handleMesh},
    {"*mesh_numvertex ", Command::meshNumVertex, "i", handleMeshNumVertex},
    {"*mesh_numfaces ", Command::meshNumFaces, "i", handleMeshNumFaces},
    {"*mesh_vertex_list ", Command::meshVertexList, "", handleMeshVertexList},
    {"*mesh_vertex ", Command::meshVertex, "ifff", handleMeshVertex},
    {"*mesh_face_list ", Command::meshFaceList, "", handleMeshFaceList},
    {"*mesh_face ", Command::meshFace, "iiii", handleMeshFace},
    {"*mesh_numtvertex ", Command::meshNumTVertex, "i", handleMeshNumTVertex},
    {"*mesh_tvertlist ", Command::meshTVertList, "", handleMeshTVertList},
    {"*mesh_tvert ", Command::meshTVert, "iff", handleMeshTVert},
    {"*mesh_tfacelist ", Command::meshTFaceList, "", handleMeshTFaceList},
    {"*mesh_tface ", Command::meshTFace, "iiii", handleMeshTFace},
    {"*mesh_normals ", Command::none, "", handleMeshNormals},
    {"*material_ref ", Command::materialRef, "i", handleMaterialRef},
    {"*cameraobject ", Command::cameraObject, "", handleCameraObject},
    {"*camera_settings ", Command::cameraSettings, "", handleCameraSettings},
    {"*camera_far ", Command::cameraFar, "f", handleCameraFar},
    {"*camera_fov ", Command::cameraFov, "f", handleCameraFov},
    {"*tm_animation ", Command::tmAnimation, "", handleTmAnimation},
    {"*control_rot_tcb ", Command::controlRotTcb, "", handleControlRotTcb},
    {"*control_rot_track ", Command::controlRotTrack, "", handleControlRotTrack},
    {"*control_tcb_rot_key ", Command::controlTcbRotKey, "iffff", handleRotationKey},
    {"*control_rot_sample ", Command::controlRotSample, "iffff", handleRotationKey},
    {"*control_pos_bezier ", Command::controlPosBezier, "", handleControlPosBezier},
    {"*control_pos_track ", Command::controlPosTrack, "", handleControlPosTrack},
    {"*control_bezier_pos_key ", Command::controlBezierPosKey, "ifff", handlePositionKey},
    {"*control_pos_sample ", Command::controlPosSample, "ifff", handlePositionKey},
    {"*control_scale_bezier ", Command::controlScaleBezier, "", handleControlScaleBezier},
    {"*control_scale_track ", Command::controlScaleTrack, "", handleControlScaleTrack},
    {"*control_bezier_scale_key ", Command::controlBezierScaleKey, "ifff", handleScaleKey},
    {"*control_scale_sample ", Command::controlScaleSample, "ifff", handleScaleKey},
    {"*lightobject ", Command::lightObject, "", handleLightObject},
    {"*light_type ", Command::lightType, "i", handleLightType},
    {"*light_uselight ", Command::lightUseLight, "i", handleLightUseLight},
    {"*light_settings ", Command::lightSettings, "", handleLightSettings},
    {"*light_color ", Command::lightColor, "fff", handleLightColor},
    {"*light_intens ", Command::lightIntens, "f", handleLightIntens},
    {"*light_falloff ", Command::lightFalloff, "f", handleLightFalloff},
    {"*mesh_animation ", Command::none, "", handleMeshAnimation},
    {"*timevalue ", Command::none, "", handleTimeValue},
});

constexpr std::uint8_t noRow = 0xff;
constexpr std::size_t slots = 256;

constexpr std::size_t lengthOf(const KeywordEntry& keyword) {
  return std::string_view(keyword.text).size();
}

// The only keyword without a blank at its end.
constexpr std::size_t twoSidedRow = [] {
  std::size_t row = 0;
  while (std::string_view(rows[row].text).ends_with(' ')) ++row;
  return row;
}();

// Of a word without the blank behind it; letter case does not matter.
constexpr std::size_t slotOf(std::string_view word) {
  std::size_t hash = word.size();
  for (const char c : word) hash = (hash ^ static_cast<std::size_t>(c | 0x20)) * 0x9e3779b1;
  return (hash >> 16) % slots;
}

// Rows by the slot of their word; a taken slot passes its row on to the next one.
constexpr std::array<std::uint8_t, slots> rowsByWord = [] {
  std::array<std::uint8_t, slots> taken{};
  taken.fill(noRow);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (row == twoSidedRow) continue;
    std::size_t slot = slotOf(std::string_view(rows[row].text, lengthOf(rows[row]) - 1));
    while (taken[slot] != noRow) slot = (slot + 1) % slots;
    taken[slot] = static_cast<std::uint8_t>(row);
  }
  return taken;
}();

constexpr std::array<std::uint8_t, 256> rowsByCode = [] {
  std::array<std::uint8_t, 256> known{};
  known.fill(noRow);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (rows[row].code != Command::none)
      known[static_cast<std::size_t>(rows[row].code)] = static_cast<std::uint8_t>(row);
  }
  return known;
}();

bool beginsWith(std::string_view line, const KeywordEntry& keyword, std::size_t length) {
  return line.size() >= length && strncasecmp(line.data(), keyword.text, length) == 0;
}

}  // namespace

constinit const std::span<const KeywordEntry> keywords = rows;

const KeywordEntry* findKeyword(std::string_view line) {
  if (line.empty() || line[0] != '*') return nullptr;
  if (beginsWith(line, rows[twoSidedRow], lengthOf(rows[twoSidedRow]))) return &rows[twoSidedRow];
  std::size_t length = 1;
  while (length < line.size() && !isBlank(line[length])) ++length;
  if (length == line.size()) return nullptr;
  const std::string_view word = line.substr(0, length);
  for (std::size_t slot = slotOf(word); rowsByWord[slot] != noRow; slot = (slot + 1) % slots) {
    const KeywordEntry& keyword = rows[rowsByWord[slot]];
    if (lengthOf(keyword) == length + 1 && beginsWith(word, keyword, length)) return &keyword;
  }
  return nullptr;
}

const KeywordEntry* keywordOfCode(Command code) {
  const std::uint8_t row = rowsByCode[static_cast<std::size_t>(code)];
  return row == noRow ? nullptr : &rows[row];
}

const char* payloadOf(Command code) {
  if (code == Command::endOfStream || code == Command::endOfBlock) return "";
  const KeywordEntry* keyword = keywordOfCode(code);
  return keyword ? keyword->payload : nullptr;
}

}  // namespace vex
