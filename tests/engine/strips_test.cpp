#include "engine/strips.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>

#include "base/random.h"
#include "base/report.h"
#include "production/geometry/forms.h"
#include "tests/support/fatal.h"
#include "tests/support/log_text.h"
#include "tests/support/test_scene.h"

namespace vex {

using namespace geometry;
namespace {

// The method in its plainest form: rounds over all faces.
class PlainStrips {
 public:
  std::vector<StripList> fans, strips;
  std::vector<std::uint32_t> solos;

  explicit PlainStrips(const std::vector<Face>& meshFaces) : faces(meshFaces), used(faces.size()) {
    std::vector<bool> inFan(faces.size());
    for (std::size_t k; (k = firstUnused()) < faces.size();) {
      const auto chain = grow(k, true);
      if (chain.size() < 3) continue;
      makeFan(chain);
      for (const std::size_t face : chain) inFan[face] = true;
    }
    used = inFan;
    for (std::size_t k; (k = firstUnused()) < faces.size();) cut(grow(k, false));
  }

 private:
  const std::vector<Face>& faces;
  std::vector<bool> used;

  std::size_t firstUnused() const {
    return static_cast<std::size_t>(std::find(used.begin(), used.end(), false) - used.begin());
  }

  bool has(std::size_t face, std::uint32_t vertex) const {
    return std::find(faces[face].v.begin(), faces[face].v.end(), vertex) != faces[face].v.end();
  }

  // Faces that name a vertex twice have no neighbours.
  int shared(std::size_t a, std::size_t b) const {
    for (const auto& v : {faces[a].v, faces[b].v}) {
      if (v[0] == v[1] || v[1] == v[2] || v[2] == v[0]) return 0;
    }
    return static_cast<int>(std::ranges::count_if(faces[a].v, [&](auto vertex) { return has(b, vertex); }));
  }

  std::vector<std::size_t> grow(std::size_t k, bool aroundOneVertex) {
    used[k] = true;
    std::vector<std::size_t> chain{k};
    std::vector<std::uint32_t> common(faces[k].v.begin(), faces[k].v.end());
    for (bool added = true; added;) {
      added = false;
      for (std::size_t g = k + 1; g < faces.size(); ++g) {
        if (used[g]) continue;
        const int s = shared(chain.back(), g);
        if (s == 3) {
          throw std::runtime_error("Polygons with same vertices found!\nThis can't be happening!");
        }
        if (s < 2) continue;
        if (aroundOneVertex) {
          if (common.empty()) continue;
          std::erase_if(common, [&](auto vertex) { return !has(g, vertex); });
          if (common.empty()) continue;
        }
        used[g] = true;
        chain.push_back(g);
        added = true;
      }
    }
    return chain;
  }

  void add(StripList& list, std::size_t face, std::uint32_t vertex) const {
    const auto corner = std::find(faces[face].v.begin(), faces[face].v.end(), vertex) - faces[face].v.begin();
    list.vertices.push_back(vertex);
    list.texCoords.push_back(static_cast<std::uint32_t>(faces[face].t[static_cast<std::size_t>(corner)]));
  }

  std::vector<std::uint32_t> outside(std::size_t face, std::vector<std::uint32_t> known) const {
    std::vector<std::uint32_t> rest;
    for (const std::uint32_t vertex : faces[face].v) {
      if (std::ranges::find(known, vertex) == known.end()) rest.push_back(vertex);
    }
    return rest;
  }

  void makeFan(const std::vector<std::size_t>& chain) {
    std::vector<std::uint32_t> pair;
    std::uint32_t free = 0;
    for (const std::uint32_t vertex : faces[chain[0]].v) {
      if (has(chain[1], vertex)) {
        pair.push_back(vertex);
      } else {
        free = vertex;
      }
    }
    if (!has(chain[2], pair[0])) std::swap(pair[0], pair[1]);
    StripList fan;
    for (const std::uint32_t vertex : {pair[0], free, pair[1]}) add(fan, chain[0], vertex);
    for (std::size_t i = 1; i < chain.size(); ++i) {
      const auto rest = outside(chain[i], {pair[0], fan.vertices.end()[-1], fan.vertices.end()[-2]});
      if (rest.size() != 1) throw std::runtime_error("cracking up!!!");
      add(fan, chain[i], rest[0]);
    }
    fans.push_back(fan);
  }

  void cut(const std::vector<std::size_t>& chain) {
    std::size_t i = 0;
    std::size_t r = chain.size();
    while (r > 0) {
      const std::size_t a = chain[i];
      if (r == 1) {
        solos.insert(solos.end(), faces[a].v.begin(), faces[a].v.end());
        return;
      }
      const std::size_t b = chain[i + 1];
      const std::uint32_t lone = outside(a, {faces[b].v.begin(), faces[b].v.end()})[0];
      auto others = outside(a, {lone});
      StripList strip;
      if (r >= 3 && has(chain[i + 2], others[0])) std::swap(others[0], others[1]);
      for (const std::uint32_t vertex : {lone, others[0], others[1]}) add(strip, a, vertex);
      std::size_t j = 1;
      for (; j < r; ++j) {
        const std::uint32_t last = strip.vertices.end()[-1], before = strip.vertices.end()[-2];
        if (!has(chain[i + j], last) || !has(chain[i + j], before)) break;
        add(strip, chain[i + j], outside(chain[i + j], {last, before})[0]);
      }
      strips.push_back(strip);
      i += j;
      r -= j;
    }
  }
};

void expectLists(const std::vector<StripList>& lists, const std::vector<StripList>& expected,
                 const char* what) {
  ASSERT_EQ(lists.size(), expected.size()) << what;
  for (std::size_t i = 0; i < lists.size(); ++i) {
    EXPECT_EQ(lists[i].vertices, expected[i].vertices) << what << ' ' << i;
    EXPECT_EQ(lists[i].texCoords, expected[i].texCoords) << what << ' ' << i;
  }
}

enum class Outcome { split, refused };

Outcome expectPlain(Mesh& mesh) {
  std::unique_ptr<const PlainStrips> plain;
  try {
    plain = std::make_unique<PlainStrips>(mesh.faces);
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(fatalText([&] { stripify(mesh); }), error.what() + std::string(" (mesh )"));
    return Outcome::refused;
  }
  stripify(mesh);
  EXPECT_TRUE(mesh.stripped);
  expectLists(mesh.fans, plain->fans, "fan");
  expectLists(mesh.strips, plain->strips, "strip");
  EXPECT_EQ(mesh.solos, plain->solos);
  return Outcome::split;
}

void shuffle(std::vector<Face>& faces) {
  for (std::size_t i = faces.size(); i > 1; --i) {
    std::swap(faces[i - 1], faces[static_cast<std::size_t>(randomNext()) % i]);
  }
  for (Face& face : faces) std::rotate(face.v.begin(), face.v.begin() + randomNext() % 3, face.v.end());
}

}  // namespace

TEST(Strips, SmallMeshesByHand) {
  struct Case {
    const char* what;
    std::vector<std::array<std::uint32_t, 3>> faces;
    std::vector<std::vector<std::uint32_t>> fans, strips;
    std::vector<std::uint32_t> solos;
  };
  for (const Case& c :
       {Case{"quad", {{0, 1, 2}, {2, 1, 3}}, {}, {{0, 1, 2, 3}}, {}},
        Case{"triangle", {{7, 5, 6}}, {}, {}, {7, 5, 6}},
        Case{"six around a vertex",
             {{0, 1, 2}, {0, 2, 3}, {0, 3, 4}, {0, 4, 5}, {0, 5, 6}, {0, 6, 1}},
             {{0, 1, 2, 3, 4, 5, 6, 1}},
             {},
             {}},
        Case{"two apart", {{0, 1, 2}, {3, 4, 5}}, {}, {}, {0, 1, 2, 3, 4, 5}},
        Case{"doubled vertex", {{0, 1, 2}, {1, 1, 2}, {2, 1, 3}}, {}, {{0, 1, 2, 3}}, {1, 1, 2}},
        Case{"nothing", {}, {}, {}, {}}}) {
    SCOPED_TRACE(c.what);
    Mesh mesh;
    addFaces(mesh, c.faces);
    stripify(mesh);
    const auto vertices = [](const std::vector<StripList>& lists) {
      std::vector<std::vector<std::uint32_t>> result;
      for (const StripList& list : lists) result.push_back(list.vertices);
      return result;
    };
    EXPECT_EQ(vertices(mesh.fans), c.fans);
    EXPECT_EQ(vertices(mesh.strips), c.strips);
    EXPECT_EQ(mesh.solos, c.solos);
  }
}

TEST(Strips, TextureCoordinatesComeFromTheFaceThatBroughtTheVertex) {
  Mesh mesh;
  addFaces(mesh, {{0, 1, 2}, {2, 1, 3}});  // 0 1 2, 3 4 5
  stripify(mesh);
  EXPECT_EQ(mesh.strips.at(0).texCoords, (std::vector<std::uint32_t>{0, 1, 2, 5}));
}

TEST(Strips, GridsEqualThePlainMethod) {
  for (const int columns : {1, 2, 3, 5, 9}) {
    for (const int rows : {1, 2, 4, 7}) {
      for (int order = 0; order < 4; ++order) {
        Mesh mesh;
        makeGrid(mesh, columns, rows, {}, 1.0f, 1.0f);
        if (order > 0) shuffle(mesh.faces);
        numberTexCoords(mesh);
        EXPECT_EQ(expectPlain(mesh), Outcome::split);
      }
    }
  }
}

TEST(Strips, FormsEqualThePlainMethod) {
  std::vector<Surface> forms{sphere(1.0f, 12, 9), bevelledBox({1.0f, 2.0f, 3.0f}, 0.1f, 3),
                             lathe({{0, 0}, {1, 0.5f}, {1, 2}, {0, 3}}, 9)};
  for (const Surface& form : forms) {
    for (const bool shuffled : {false, true}) {
      Mesh mesh;
      std::vector<std::array<std::uint32_t, 3>> faces;
      for (const auto& triangle : form.triangles) {
        faces.push_back({static_cast<std::uint32_t>(triangle.points[0]),
                         static_cast<std::uint32_t>(triangle.points[1]),
                         static_cast<std::uint32_t>(triangle.points[2])});
      }
      addFaces(mesh, faces);
      if (shuffled) shuffle(mesh.faces);
      EXPECT_EQ(expectPlain(mesh), Outcome::split);
    }
  }
}

// Of few vertices, so that most edges have more than two faces and some faces are twins or degenerate.
TEST(Strips, TangledMeshesEqualThePlainMethod) {
  int outcomes[2] = {};
  for (int run = 0; run < 400; ++run) {
    const int vertexCount = 4 + run % 40;
    const int faceCount = 1 + randomNext() % 60;
    std::vector<std::array<std::uint32_t, 3>> faces;
    for (int i = 0; i < faceCount; ++i) {
      std::array<std::uint32_t, 3> v;
      for (std::uint32_t& vertex : v) vertex = static_cast<std::uint32_t>(randomNext() % vertexCount);
      auto sorted = v;
      std::ranges::sort(sorted);
      const auto same = [&](auto other) { return std::ranges::sort(other), other == sorted; };
      if (run % 4 == 0 || std::ranges::none_of(faces, same)) faces.push_back(v);
    }
    Mesh mesh;
    addFaces(mesh, faces);
    ++outcomes[static_cast<int>(expectPlain(mesh))];
    if (HasFailure()) FAIL() << "run " << run;
  }
  EXPECT_GT(outcomes[0], 100);
  EXPECT_GT(outcomes[1], 50);
}

TEST(Strips, ImpossibleMeshesAreRefused) {
  const auto refusal = [](const std::vector<std::array<std::uint32_t, 3>>& faces) {
    return fatalText([&] {
      Mesh mesh;
      std::snprintf(mesh.name, objectNameSize, "Roof");
      addFaces(mesh, faces);
      stripify(mesh);
    });
  };
  EXPECT_EQ(refusal({{0, 1, 2}, {4, 5, 6}, {2, 0, 1}}),
            "Polygons with same vertices found!\nThis can't be happening! (mesh Roof)");
  EXPECT_EQ(refusal({{0, 1, 2}, {0, 1, 3}, {0, 1, 4}, {1, 4, 5}}), "cracking up!!! (mesh Roof)");
}

TEST(Strips, TellWhatTheyFind) {
  EXPECT_EQ(
      logText([] {
        Mesh mesh;
        std::snprintf(mesh.name, objectNameSize, "Roof");
        addFaces(mesh, {{0, 1, 2}, {0, 2, 3}, {0, 3, 4}, {7, 8, 9}, {10, 11, 12}, {11, 12, 13}});
        setLoadingDialog({.show = [](int percent, const char* text) { logPrintf("%d %s", percent, text); },
                          .close = nullptr});
        stripify(mesh);
        mesh.name[0] = '\0';
      }),
      "0 Roof face 0/6\n0 Roof face 3/6\n0 Roof face 4/6\nmesh Roof 1 fans 1 strips 1 solos\n"
      "  destroying mesh \n");
}

}  // namespace vex
