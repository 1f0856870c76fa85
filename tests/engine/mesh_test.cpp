#include "engine/mesh.h"

#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "base/clock.h"
#include "base/random.h"
#include "tests/support/fatal.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/log_text.h"
#include "tests/support/test_scene.h"
#include "tests/support/vectors.h"
#include "textures/gl_setup.h"

namespace vex {
namespace {

// One cell around the origin, of radius sqrt(2).
struct Cell : Mesh {
  Cell() {
    makeGrid(*this, 1, 1, {-1.0f, -1.0f, 0.0f}, 2.0f, 2.0f);
    buildArrays();
  }
};

Vector at(const std::vector<float>& array, std::size_t k) {
  return {array[3 * k], array[3 * k + 1], array[3 * k + 2]};
}

void expectNear(const Vector& v, const Vector& expected, const char* what, std::size_t k) {
  SCOPED_TRACE(testing::Message() << what << ' ' << k);
  expectNear(v, expected, 1e-5);
}

std::array<float, 4> material(GLenum name) {
  std::array<float, 4> values{};
  glGetMaterialfv(GL_FRONT, name, values.data());
  return values;
}

using Colours = std::array<float, 4>;

class MeshDrawing : public GlTest {
 protected:
};

}  // namespace

TEST(Mesh, ArraysAreFlatCopiesAndBuiltOnce) {
  Mesh mesh;
  mesh.position = {10.0f, 0.0f, 0.0f};
  makeGrid(mesh, 2, 1, {10.0f, 0.0f, 3.0f}, 2.0f, 4.0f);
  mesh.buildArrays();
  EXPECT_EQ(mesh.vertexCount, 6u);
  EXPECT_EQ(mesh.faceCount, 4u);
  EXPECT_EQ(mesh.indices, (std::vector<std::uint32_t>{0, 1, 3, 1, 4, 3, 1, 2, 4, 2, 5, 4}));
  EXPECT_EQ(at(mesh.positions, 4), Vector(11.0f, 4.0f, 3.0f));
  EXPECT_EQ(at(mesh.normals, 4), Vector(0.0f, 0.0f, 1.0f));
  EXPECT_EQ(mesh.uvs[2 * 4], 0.5f);
  EXPECT_EQ(mesh.uvs[2 * 4 + 1], 1.0f);
  EXPECT_FLOAT_EQ(mesh.radius, std::sqrt(2.0f * 2 + 4 * 4 + 3 * 3));

  mesh.vertices[4].position.x = 99.0f;
  mesh.position.x = 99.0f;
  mesh.buildArrays();
  EXPECT_EQ(mesh.positions[3 * 4], 11.0f) << "what exists stays";
  EXPECT_FLOAT_EQ(mesh.radius, std::sqrt(89.0f * 89 + 4 * 4 + 3 * 3)) << "the radius is measured anew";
  mesh.position.x = 55.0f;
  mesh.buildArrays();
  EXPECT_FLOAT_EQ(mesh.radius, std::sqrt(45.0f * 45 + 4 * 4 + 3 * 3));
}

TEST(Mesh, EnvironmentMapsNeedNoCoordinates) {
  Mesh mesh;
  mesh.envMap = true;
  makeGrid(mesh, 1, 1, {}, 1.0f, 1.0f);
  mesh.buildArrays();
  EXPECT_TRUE(mesh.uvs.empty());
  EXPECT_EQ(mesh.positions.size(), 12u);
  mesh.wobbleTexture(1.0f, 1.0f, 1.0f);
  EXPECT_TRUE(mesh.uvs.empty());
}

TEST_F(MeshDrawing, HighlightsNeedAllThree) {
  struct Case {
    float shininess, strength, specular;
    bool highlight;
  };
  for (const bool separate : {true, false}) {
    glExtensions.hasSeparateSpecular = separate;
    for (const Case& c : {Case{0.3f, 0.6f, 0.4f, true}, Case{0.3f, 0.6f, 0.3f, false},
                          Case{0.3f, 0.5f, 0.4f, false}, Case{0.0f, 0.6f, 0.4f, false}}) {
      glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, c.highlight ? GL_SINGLE_COLOR : GL_SEPARATE_SPECULAR_COLOR);
      const int before = glInteger(GL_LIGHT_MODEL_COLOR_CONTROL);
      Cell mesh;
      mesh.shininess = c.shininess;
      mesh.shineStrength = c.strength;
      mesh.specular = {c.specular, c.specular, c.specular, 1.0f};
      mesh.draw(true, 0.0f, 1.0f);
      const float shown = c.highlight ? c.specular : 0.0f;
      EXPECT_EQ(material(GL_SPECULAR), (Colours{shown, shown, shown, c.highlight ? 1.0f : 0.0f}));
      if (c.highlight) {
        EXPECT_FLOAT_EQ(material(GL_SHININESS)[0], 38.4f);
      }
      const int control = c.highlight ? GL_SEPARATE_SPECULAR_COLOR : GL_SINGLE_COLOR;
      EXPECT_EQ(glInteger(GL_LIGHT_MODEL_COLOR_CONTROL), separate ? control : before);
    }
  }
}

// The reflected line of sight, as a picture of the whole surroundings on a sphere has it.
TEST_F(MeshDrawing, EnvironmentMapsShowWhatTheSurfaceReflects) {
  for (const GLenum coordinate : {GL_S, GL_T}) {
    glTexGeni(coordinate, GL_TEXTURE_GEN_MODE, GL_OBJECT_LINEAR);
    glDisable(coordinate == GL_S ? GL_TEXTURE_GEN_S : GL_TEXTURE_GEN_T);
  }
  Mesh mesh;
  mesh.envMap = mesh.twoSided = true;
  mesh.texture = addWhiteTexture("surroundings");
  const Vector corners[] = {{-1, -1, -3}, {2, -1, -4}, {1, 2, -5}},
               normals[] = {{0, 0, 1}, {0.6f, 0, 0.8f}, {0, 0.8f, 0.6f}};
  for (std::size_t k = 0; k < 3; ++k) {
    mesh.vertices.push_back({.position = corners[k], .normal = normals[k], .u = 0.9f, .v = 0.9f});
  }
  mesh.faces.push_back({.v = {0, 1, 2}});
  mesh.buildArrays();
  glMatrixMode(GL_PROJECTION);
  glScalef(0.1f, 0.1f, 0.1f);
  const auto triangles = captureFeedback([&] { mesh.draw(false, 0.0f, 1.0f); });
  ASSERT_EQ(triangles.size(), 1u);
  for (std::size_t k = 0; k < 3; ++k) {
    const Vector sight = corners[k] / corners[k].length();
    const Vector reflected = sight - normals[k] * (2 * dot(normals[k], sight)) + Vector(0, 0, 1);
    const float size = 2 * reflected.length();
    EXPECT_NEAR(triangles[0].vertices[k].texture[0], reflected.x / size + 0.5f, 1e-5f);
    EXPECT_NEAR(triangles[0].vertices[k].texture[1], reflected.y / size + 0.5f, 1e-5f);
  }
}

TEST_F(MeshDrawing, AMeshThatLostItsEnvironmentMapDrawsWithoutCoordinates) {
  Mesh mesh;
  mesh.envMap = true;
  mesh.texture = addWhiteTexture("white");
  makeGrid(mesh, 1, 1, {}, 1.0f, 1.0f);
  mesh.buildArrays();
  mesh.envMap = false;
  mesh.draw(false, 0.0f, 1.0f);
  EXPECT_FALSE(glFlag(GL_TEXTURE_COORD_ARRAY));
}

TEST_F(MeshDrawing, LocksItsArraysWherePossible) {
  for (const bool possible : {false, true, true}) {
    glExtensions.hasCompiledArrays = possible;
    Cell mesh;
    mesh.draw(false, 0.0f, 1.0f);
    EXPECT_EQ(glInteger(GL_ARRAY_ELEMENT_LOCK_COUNT_EXT), possible ? 4 : 0);
  }
  Mesh empty;
  empty.buildArrays();
  empty.draw(false, 0.0f, 1.0f);
  EXPECT_EQ(glInteger(GL_ARRAY_ELEMENT_LOCK_COUNT_EXT), 0);
}

TEST_F(MeshDrawing, DrawsTheSideThatRunsCounterClockwise) {
  for (const bool turned : {false, true}) {
    for (const bool twoSided : {false, true}) {
      Cell mesh;
      mesh.texture = addWhiteTexture("white");
      mesh.twoSided = twoSided;
      glLoadIdentity();
      if (turned) glRotatef(180.0f, 0.0f, 1.0f, 0.0f);
      const auto triangles = captureUnclipped([&] { mesh.draw(false, 0.0f, 1.0f); });
      ASSERT_EQ(triangles.size(), turned && !twoSided ? 0u : 2u);
      if (turned) continue;
      for (const auto& triangle : triangles) {
        for (const FeedbackVertex& vertex : triangle.vertices) {
          EXPECT_NEAR(vertex.texture[0], (vertex.x + 1) / 2, 1e-4f);
          EXPECT_NEAR(vertex.texture[1], (vertex.y + 1) / 2, 1e-4f);
        }
      }
    }
  }
}

// The cell as one strip, then as one fan, then as two lone triangles, each of them counter-clockwise.
TEST_F(MeshDrawing, StripsAreCulledTheOtherWayRound) {
  struct Case {
    const char* what;
    std::vector<StripList> fans, strips;
    std::vector<std::uint32_t> solos;
    bool drawn;
  };
  for (const Case& c : {Case{"clockwise strip", {}, {{{0, 2, 1, 3}, {}}}, {}, true},
                        Case{"counter-clockwise strip", {}, {{{0, 1, 2, 3}, {}}}, {}, false},
                        Case{"fan", {{{0, 1, 3, 2}, {}}}, {}, {}, true},
                        Case{"clockwise fan", {{{0, 2, 3, 1}, {}}}, {}, {}, false},
                        Case{"solos", {}, {}, {0, 1, 2, 1, 3, 2}, true},
                        Case{"clockwise solos", {}, {}, {0, 2, 1, 1, 2, 3}, false}}) {
    Cell mesh;
    mesh.stripped = true;
    mesh.fans = c.fans;
    mesh.strips = c.strips;
    mesh.solos = c.solos;
    EXPECT_EQ(captureUnclipped([&] { mesh.draw(false, 0.0f, 1.0f); }).size(), c.drawn ? 2u : 0u) << c.what;
    EXPECT_EQ(glInteger(GL_CULL_FACE_MODE), GL_BACK) << c.what;
  }
}

TEST(Mesh, NormalsOfCounterClockwiseFacesPointInwardsUnlessFlipped) {
  for (const bool flip : {false, true}) {
    Cell mesh;
    for (Vertex& vertex : mesh.vertices) vertex.normal = {5.0f, 5.0f, 5.0f};
    mesh.recomputeNormals(flip);
    for (std::size_t k = 0; k < 4; ++k) {
      expectNear(mesh.vertices[k].normal, {0.0f, 0.0f, flip ? 1.0f : -1.0f}, "record", k);
    }
  }
}

// Two faces that share an edge at a right angle: the shared corners look halfway between them, each
// face with the same weight whatever its size.
TEST(Mesh, NormalsCountEachFaceOnce) {
  clockAdvanceTo(1.0f);
  Mesh mesh;
  const Vector corners[] = {{0, 0, 0}, {0, 1, 0}, {5, 0, 0}, {0, 0, 1}};
  for (const Vector& corner : corners) mesh.vertices.push_back({.position = corner, .normal = {}});
  mesh.faces.push_back({.v = {0, 2, 1}});  // faces +z
  mesh.faces.push_back({.v = {0, 1, 3}});  // faces +x
  mesh.buildArrays();
  mesh.recomputeNormals(true);
  const float half = std::sqrt(0.5f);
  expectNear(mesh.vertices[0].normal, {half, 0.0f, half}, "shared", 0);
  expectNear(mesh.vertices[1].normal, {half, 0.0f, half}, "shared", 1);
  expectNear(mesh.vertices[2].normal, {0.0f, 0.0f, 1.0f}, "lone", 2);
  expectNear(mesh.vertices[3].normal, {1.0f, 0.0f, 0.0f}, "lone", 3);
  EXPECT_EQ(at(mesh.normals, 0), Vector()) << "an undeformed mesh keeps its array";
}

// Two faces on the same three vertices leave them without a normal, exactly: the smallest remainder would be
// normalized to a direction that flickers as the mesh moves.
TEST(Mesh, BackToBackFacesLeaveNoNormal) {
  randomState() = 11;
  const auto anywhere = [] {
    return Vector(randomSymmetric(7.0f), randomSymmetric(0.3f), randomSymmetric(90.0f));
  };
  for (int run = 0; run < 200; ++run) {
    Mesh mesh;
    for (int k = 0; k < 3; ++k) mesh.vertices.push_back({.position = anywhere(), .normal = {}});
    mesh.faces = {{.v = {0, 1, 2}}, {.v = {0, 2, 1}}};
    std::rotate(mesh.faces[1].v.begin(), mesh.faces[1].v.begin() + run % 3, mesh.faces[1].v.end());
    mesh.recomputeNormals(run % 2 == 0);
    for (std::size_t k = 0; k < 3; ++k) ASSERT_EQ(mesh.vertices[k].normal, Vector()) << run << ", " << k;
  }
}

// By amount * distance / radius; a quarter turn about z takes x to -y.
TEST(Mesh, TwistTurnsByTheDistanceAlongTheDirection) {
  clockAdvanceTo(1.0f);
  Mesh mesh;
  mesh.position = {1.0f, 2.0f, 3.0f};
  for (const float height : {0.0f, 2.0f, -2.0f}) {
    mesh.vertices.push_back({.position = {2.0f, 2.0f, 3.0f + height}, .normal = {1.0f, 0.0f, 0.0f}});
  }
  const float radius = std::sqrt(5.0f);
  const float amount = 1.5f;
  mesh.twist({0.0f, 0.0f, 3.0f}, {0.0f, 0.0f, 7.0f}, amount);
  for (std::size_t k = 0; k < 3; ++k) {
    const float height = mesh.vertices[k].position.z - 3.0f;
    const float turn = -height / radius * amount;
    const Vector expected(std::cos(turn), std::sin(turn), 0.0f);
    expectNear(at(mesh.positions, k), expected + Vector(1.0f, 2.0f, 3.0f + height), "position", k);
    expectNear(at(mesh.normals, k), expected, "normal", k);
  }
}

TEST(Mesh, DeformationsOfOneFrameBuildOnEachOther) {
  const auto turned = [](float turn) { return Vector(std::cos(-turn), std::sin(-turn), 1.0f); };
  Mesh mesh;
  mesh.vertices.push_back({.position = {1.0f, 0.0f, 1.0f}, .normal = {1.0f, 0.0f, 0.0f}});
  const float amount = 0.5f * std::sqrt(2.0f);  // half a radian at height 1
  const Vector axis(0.0f, 0.0f, 1.0f);
  struct Case {
    float time;
    int twists;
    float turn;
  };
  // A clock that stands still makes new frames all the same.
  for (const Case& c : {Case{1.0f, 1, 0.5f}, Case{2.0f, 2, 1.0f}, Case{2.0f, 1, 0.5f}, Case{2.0f, 3, 1.5f},
                        Case{3.0f, 1, 0.5f}}) {
    clockAdvanceTo(c.time);
    for (int i = 0; i < c.twists; ++i) mesh.twist(axis, axis, amount);
    expectNear(at(mesh.positions, 0), turned(c.turn), "after twists", static_cast<std::size_t>(c.twists));
    expectNear(at(mesh.normals, 0), turned(0.5f) - Vector(0, 0, 1), "the record's normal, turned once", 0);
    mesh.twist({}, axis, amount);  // no axis, nothing moves
    expectNear(at(mesh.positions, 0), turned(c.turn), "after no axis", 0);
    EXPECT_EQ(mesh.vertices[0].position, Vector(1.0f, 0.0f, 1.0f));
    clockAdvanceTo(c.time);
    mesh.wobbleTexture(1.0f, 1.0f, 1.0f);  // moves no position that a twist could build on
    mesh.twist(axis, axis, amount);
    expectNear(at(mesh.positions, 0), turned(0.5f), "after a moved texture", 0);
  }
}

TEST(Mesh, MorphsBetweenTwoMeshes) {
  clockAdvanceTo(1.0f);
  Cell a, b, mesh;
  for (Vertex& vertex : b.vertices) {
    vertex.position += {10.0f, 20.0f, 30.0f};
    vertex.normal = {1.0f, 0.0f, 0.0f};
  }
  for (std::vector<float>* array : {&mesh.positions, &mesh.normals, &mesh.uvs}) array->clear();
  mesh.morph(a, b, 0.25f);  // builds what it writes to
  ASSERT_EQ(mesh.positions.size(), 12u);
  for (std::size_t k = 0; k < 4; ++k) {
    expectNear(at(mesh.positions, k), a.vertices[k].position + Vector(2.5f, 5.0f, 7.5f), "position", k);
    expectNear(at(mesh.normals, k), {0.25f, 0.0f, 0.75f}, "normal", k);
  }
  Mesh small;
  std::snprintf(small.name, objectNameSize, "small");
  std::snprintf(mesh.name, objectNameSize, "it");
  EXPECT_EQ(fatalText([&] { mesh.morph(a, small, 0.5f); }),
            "mesh it: can't morph 4 vertices from 4 of  to 0 of small");
}

TEST(Mesh, WobbleStretchesEachAxisByItsWave) {
  clockAdvanceTo(1.0f);
  Mesh mesh;
  mesh.position = {1.0f, 1.0f, 1.0f};
  mesh.vertices.push_back({.position = {4.0f, 1.0f, 1.0f}, .normal = {}});  // the radius, 3
  mesh.vertices.push_back({.position = {2.0f, 3.0f, 0.0f}, .normal = {}});
  mesh.vertices.push_back({.position = {1.0f, 1.0f, 1.0f}, .normal = {}});
  mesh.faces.push_back({.v = {0, 1, 2}});
  mesh.wobble(0.1f, 0.2f, 0.3f, 0.25f, 1.0f, 2.0f, 3.0f);
  const auto stretch = [](double d, double phase, double waves) {
    return d * (((std::sin(phase + d / 3 * waves * 6.282) + 1) / 2 + 0.5) * 0.75 + 0.25) + 1;
  };
  for (std::size_t k = 0; k < 3; ++k) {
    const Vector d = mesh.vertices[k].position - mesh.position;
    expectNear(at(mesh.positions, k),
               Vector(static_cast<float>(stretch(d.x, 0.1, 1)), static_cast<float>(stretch(d.y, 0.2, 2)),
                      static_cast<float>(stretch(d.z, 0.3, 3))),
               "position", k);
  }
  // The normals are those of the deformed face, seen from where it runs counter-clockwise.
  Vector outward =
      cross(at(mesh.positions, 1) - at(mesh.positions, 0), at(mesh.positions, 2) - at(mesh.positions, 0));
  outward.normalize();
  for (std::size_t k = 0; k < 3; ++k) expectNear(at(mesh.normals, k), outward, "normal", k);
}

TEST(Mesh, WobblesTextureCoordinatesByIndex) {
  Cell mesh;
  mesh.wobbleTexture(2.0f, 0.5f, 0.75f);
  for (std::size_t k = 0; k < 4; ++k) {
    const double phase = std::cos(static_cast<double>(k)) * 0.75 * 2;
    EXPECT_NEAR(mesh.uvs[2 * k], mesh.vertices[k].u + std::sin(phase) * 0.5, 1e-6);
    EXPECT_NEAR(mesh.uvs[2 * k + 1], mesh.vertices[k].v + std::cos(phase) * 0.5, 1e-6);
  }
}

TEST(Mesh, OfNoExtentIsDeformedWithoutHarm) {
  clockAdvanceTo(1.0f);
  Mesh mesh;
  mesh.position = {1.0f, 2.0f, 3.0f};
  mesh.vertices.push_back({.position = mesh.position, .normal = {}});
  mesh.twist({1, 0, 0}, {1, 0, 0}, 1.0f);
  expectNear(at(mesh.positions, 0), mesh.position, "twist", 0);
  mesh.wobble(1, 1, 1, 0.5f, 1, 1, 1);
  expectNear(at(mesh.positions, 0), mesh.position, "wobble", 0);
}

TEST(Mesh, LogsItsDestruction) {
  for (const bool fluid : {false, true}) {
    EXPECT_EQ(logText([&] {
                Mesh mesh;
                if (fluid) mesh.kind = ObjectKind::fluid;
                std::snprintf(mesh.name, objectNameSize, "Sea");
                mesh.addAnimation(straightPath({}, {}));
              }),
              std::string("    destroying anim\n  destroying ") + (fluid ? "fluid" : "mesh") +
                  " Sea\n    destroying anim\n");
  }
}

}  // namespace vex
