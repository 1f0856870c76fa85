#include "models/keyword_table.h"

#include <strings.h>

#include <cstring>

#include "models/model_handlers.h"
#include "models/model_number.h"

namespace vex {

// The blank is a part of the keyword: "*mesh " is not how "*MESH_NUMVERTEX 8" begins.
constexpr std::array<KeywordEntry, keywordCount> keywords{{
    {"*scene ", 0x00, handleScene},
    {"*scene_framespeed ", 0x01, handleSceneFrameSpeed},
    {"*scene_firstframe ", notRecorded, handleSceneFirstFrame},
    {"*scene_lastframe ", 0x02, handleSceneLastFrame},
    {"*scene_ticksperframe ", 0x03, handleSceneTicksPerFrame},
    {"*comment ", 0x04, handleComment},
    {"*material_list ", 0x10, handleMaterialList},
    {"*material ", 0x11, handleMaterial},
    {"*material_diffuse ", 0x12, handleMaterialDiffuse},
    {"*material_ambient ", 0x18, handleMaterialAmbient},
    {"*material_specular ", 0x19, handleMaterialSpecular},
    {"*material_shine ", 0x13, handleMaterialShine},
    {"*material_shinestrength ", 0x17, handleMaterialShineStrength},
    {"*material_transparency ", 0x14, handleMaterialTransparency},
    {"*material_twosided", 0x1b, handleMaterialTwoSided},
    {"*map_diffuse ", 0x15, handleMapDiffuse},
    {"*bitmap ", 0x16, handleBitmap},
    {"*map_type ", 0x1a, handleMapType},
    {"*geomobject ", 0x40, handleGeomObject},
    {"*helperobject ", 0x30, handleHelperObject},
    {"*helper_class ", 0x31, handleHelperClass},
    {"*node_name ", 0x20, handleNodeName},
    {"*node_parent ", 0x21, handleNodeParent},
    {"*node_tm ", 0x22, handleNodeTm},
    {"*tm_row0 ", 0x23, handleTmRow0},
    {"*tm_pos ", 0x24, handleTmPos},
    {"*tm_scale ", 0x25, handleTmScale},
    {"*mesh ", 0x41, handleMesh},
    {"*mesh_numvertex ", 0x42, handleMeshNumVertex},
    {"*mesh_numfaces ", 0x43, handleMeshNumFaces},
    {"*mesh_vertex_list ", 0x44, handleMeshVertexList},
    {"*mesh_vertex ", 0x45, handleMeshVertex},
    {"*mesh_face_list ", 0x46, handleMeshFaceList},
    {"*mesh_face ", 0x47, handleMeshFace},
    {"*mesh_numtvertex ", 0x48, handleMeshNumTVertex},
    {"*mesh_tvertlist ", 0x49, handleMeshTVertList},
    {"*mesh_tvert ", 0x4a, handleMeshTVert},
    {"*mesh_tfacelist ", 0x4b, handleMeshTFaceList},
    {"*mesh_tface ", 0x4c, handleMeshTFace},
    {"*mesh_normals ", notRecorded, handleMeshNormals},
    {"*material_ref ", 0x4e, handleMaterialRef},
    {"*cameraobject ", 0x60, handleCameraObject},
    {"*camera_settings ", 0x61, handleCameraSettings},
    {"*camera_far ", 0x62, handleCameraFar},
    {"*camera_fov ", 0x63, handleCameraFov},
    {"*tm_animation ", 0x80, handleTmAnimation},
    {"*control_rot_tcb ", 0x81, handleControlRotTcb},
    {"*control_rot_track ", 0x83, handleControlRotTrack},
    {"*control_tcb_rot_key ", 0x82, handleRotationKey},
    {"*control_rot_sample ", 0x84, handleRotationKey},
    {"*control_pos_bezier ", 0x85, handleControlPosBezier},
    {"*control_pos_track ", 0x87, handleControlPosTrack},
    {"*control_bezier_pos_key ", 0x86, handlePositionKey},
    {"*control_pos_sample ", 0x88, handlePositionKey},
    {"*control_scale_bezier ", 0x89, handleControlScaleBezier},
    {"*control_scale_track ", 0x8b, handleControlScaleTrack},
    {"*control_bezier_scale_key ", 0x8a, handleScaleKey},
    {"*control_scale_sample ", 0x8c, handleScaleKey},
    {"*lightobject ", 0x70, handleLightObject},
    {"*light_type ", 0x71, handleLightType},
    {"*light_uselight ", 0x72, handleLightUseLight},
    {"*light_settings ", 0x73, handleLightSettings},
    {"*light_color ", 0x74, handleLightColor},
    {"*light_intens ", 0x75, handleLightIntens},
    {"*light_falloff ", 0x76, handleLightFalloff},
    {"*mesh_animation ", notRecorded, handleMeshAnimation},
    {"*timevalue ", notRecorded, handleTimeValue},
}};

namespace {

constexpr std::uint8_t noRow = 0xff;
constexpr std::size_t slots = 256;
constexpr std::size_t twoSidedRow = 14;  // the only keyword without a blank at its end

constexpr std::size_t lengthOf(const KeywordEntry& keyword) {
  return std::string_view(keyword.text).size();
}

// Of a word without the blank behind it; letter case does not matter.
constexpr std::size_t slotOf(std::string_view word) {
  std::size_t hash = word.size();
  for (const char c : word) hash = (hash ^ static_cast<std::size_t>(c | 0x20)) * 0x9e3779b1;
  return (hash >> 16) % slots;
}

// Rows by the slot of their word; a taken slot passes its row on to the next one.
constexpr std::array<std::uint8_t, slots> rowsByWord = [] {
  std::array<std::uint8_t, slots> rows{};
  rows.fill(noRow);
  for (std::size_t row = 0; row < keywordCount; ++row) {
    if (row == twoSidedRow) continue;
    std::size_t slot = slotOf(std::string_view(keywords[row].text, lengthOf(keywords[row]) - 1));
    while (rows[slot] != noRow) slot = (slot + 1) % slots;
    rows[slot] = static_cast<std::uint8_t>(row);
  }
  return rows;
}();

constexpr std::array<std::uint8_t, 256> rowsByCode = [] {
  std::array<std::uint8_t, 256> rows{};
  rows.fill(noRow);
  for (std::size_t row = 0; row < keywordCount; ++row) {
    rows[keywords[row].code] = static_cast<std::uint8_t>(row);
  }
  return rows;
}();

bool beginsWith(std::string_view line, const KeywordEntry& keyword, std::size_t length) {
  return line.size() >= length && strncasecmp(line.data(), keyword.text, length) == 0;
}

}  // namespace

const KeywordEntry* findKeyword(std::string_view line) {
  if (line.empty() || line[0] != '*') return nullptr;
  if (beginsWith(line, keywords[twoSidedRow], lengthOf(keywords[twoSidedRow]))) return &keywords[twoSidedRow];
  std::size_t length = 1;
  while (length < line.size() && !isBlank(line[length])) ++length;
  if (length == line.size()) return nullptr;
  const std::string_view word = line.substr(0, length);
  for (std::size_t slot = slotOf(word); rowsByWord[slot] != noRow; slot = (slot + 1) % slots) {
    const KeywordEntry& keyword = keywords[rowsByWord[slot]];
    if (lengthOf(keyword) == length + 1 && beginsWith(word, keyword, length)) return &keyword;
  }
  return nullptr;
}

const KeywordEntry* keywordOfCode(std::uint8_t code) {
  return rowsByCode[code] == noRow ? nullptr : &keywords[rowsByCode[code]];
}

}  // namespace vex
