#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/colour.h"
#include "engine/object3d.h"
#include "engine/vector.h"

// A triangle mesh: the records of its model, a material, and the arrays that GL draws from.

namespace vex {

struct Vertex {
  Vector position;  // world space, as the model gives it; Mesh::current moves it
  Vector normal;
  float u = 0.0f;
  float v = 0.0f;
};

struct Face {
  std::array<std::uint32_t, 3> v{};           // indices of vertices; counter-clockwise seen from outside
  std::array<std::int32_t, 3> t{-1, -1, -1};  // indices of texCoords; -1: none
};

struct TexCoord {
  float u = 0.0f;
  float v = 0.0f;
};

// Also the number of the renderer's pass.
enum class BlendMode : int {
  opaque = 0,
  additive = 1,
  subtractive = 2,
  transparent = 3,  // no depth writes
  untouched = 4,    // drawn last, the blend state left as it was
};

inline constexpr int blendModes = 5;

// One strip or fan: vertex indices and, beside each, the index of the texture coordinate that its face
// gave it (cached with the strip, not drawn). A list of n vertices describes n - 2 triangles.
struct StripList {
  std::vector<std::uint32_t> vertices;  // a fan's hub first
  std::vector<std::uint32_t> texCoords;
};

// The values of a mesh beyond an object's.
struct MeshValues {
  std::vector<Face> faces;
  std::vector<Vertex> vertices;
  std::vector<TexCoord> texCoords;  // the model's texture vertices, indexed by the faces

  bool lit = false;
  float shininess = 0.0f;                       // 0 to 1
  float shineStrength = 0.0f;                   // above 0.5 there is a highlight
  ColourAlpha diffuse{1.0f, 1.0f, 1.0f, 1.0f};  // alpha is rewritten at every draw
  ColourAlpha ambient{0.0f, 0.0f, 0.0f, 1.0f};
  ColourAlpha specular{1.0f, 1.0f, 1.0f, 1.0f};
  BlendMode blendMode = BlendMode::opaque;
  int texture = -1;  // id of the texture cache; -1: untextured
  float opacity = 1.0f;
  bool envMap = false;    // sphere-mapped texture instead of texture coordinates
  float alphaRef = 0.0f;  // fragments of this alpha or less are discarded
  bool twoSided = false;

  // Strips take the place of the index list where they were built (strips.h).
  bool stripped = false;
  std::vector<StripList> fans;
  std::vector<StripList> strips;
  std::vector<std::uint32_t> solos;  // three indices a lone triangle

  std::uint32_t vertexCount = 0;  // counted once, by buildArrays
  float radius = 0.0f;            // largest distance of a vertex from the position

  // Drawing arrays, built once and rewritten in place by the deformations.
  std::vector<float> positions;  // x, y, z
  std::vector<float> uvs;        // u, v; none for environment-mapped meshes
  std::vector<float> normals;    // x, y, z
  std::vector<std::uint32_t> indices;
  std::uint32_t faceCount = 0;

  // Of fluid surfaces, but for lastDeformTime, which all deformations use.
  float pushRadius = 4.0f;
  float damping = 0.05f;
  float lastDeformTime = 0.0f;        // demo time of the last deformation
  std::uint32_t lastDeformFrame = 0;  // frame of the last one that moved positions (clockFrame())
  std::vector<float> heightA, heightB;
  int gridX = 0;
  int gridY = 0;
};

struct Mesh : Object3D, MeshValues {
  Mesh() { kind = ObjectKind::mesh; }
  ~Mesh();  // logs "  destroying mesh %s\n" or "  destroying fluid %s\n"

  // Fills the drawing arrays that do not exist yet and measures the radius.
  void buildArrays();

  // Sets the material and draws under the current matrices. `sceneLit`: whether the scene has lights.
  // `seconds` is the scene time; alpha (0 to 1) scales the opacity.
  void draw(bool sceneLit, float seconds, float alpha);

  // Normals of the vertex records from the faces; they point inwards for counter-clockwise faces unless
  // flipped. Works on the drawing array's positions in a frame that has deformed them.
  void recomputeNormals(bool flip);

  // Deformations write the drawing arrays, never the records' positions. In one frame the second one builds
  // on the first; the next frame starts from the records again.
  void twist(const Vector& axis, Vector direction, float amount);  // amount: radians at the radius
  void morph(const Mesh& a, const Mesh& b, float f);               // equal vertex counts; fatal otherwise
  void wobble(float px, float py, float pz, float amount, float fx, float fy, float fz);
  void wobbleTexture(float a, float b, float c);  // moves the texture coordinates alone

 private:
  void setUpMaterial(bool useLight, float alpha);
  bool deformedThisFrame() const;
  void markDeformed();
};

}  // namespace vex
