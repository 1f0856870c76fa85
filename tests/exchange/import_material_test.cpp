#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <string>

#include "base/report.h"
#include "platform/jpeg_encoder.h"
#include "platform/png_file.h"
#include "tests/support/exchange_files.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/gltf_text.h"
#include "tests/support/imported.h"
#include "tests/support/temporary_folder.h"
#include "textures/bmp.h"
#include "textures/jpeg_texture.h"
#include "tools/exchange/material_formula.h"

// Materials against values worked out by hand from the formula, textures as the player reads them.

namespace vex {

namespace {

using Pixel = std::array<int, 4>;

std::string png(int width, int height, const std::function<Pixel(int x, int y)>& at) {
  PngPixels pixels{.width = width, .height = height, .rgba = {}};
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      for (const int channel : at(x, y)) pixels.rgba.push_back(static_cast<std::byte>(channel));
  const std::vector<std::byte> bytes = encodePng(pixels);
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

GltfText::Mesh card(int material, bool mapped = true) {
  GltfText::Mesh mesh{.positions = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}},
                      .indices = {0, 1, 2, 0, 2, 3}};
  if (mapped) mesh.uvs = {{0, 1}, {1, 1}, {1, 0}, {0, 0}};
  mesh.material = material;
  return mesh;
}

std::string gltfOf(const std::string& material) {
  GltfText text;
  text.material(material);
  text.mesh(card(0, false));
  text.node(R"("name": "Card", "mesh": 0)");
  return text.str();
}

std::string objOf(const std::string& material) {
  writeFile("paint.mtl", "newmtl paint\n" + material);
  return "mtllib paint.mtl\nusemtl paint\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
}

void expectColour(const ColourAlpha& c, const Colour& wanted, const std::string& what) {
  EXPECT_NEAR(c.r, wanted.r, 1e-4) << what;
  EXPECT_NEAR(c.g, wanted.g, 1e-4) << what;
  EXPECT_NEAR(c.b, wanted.b, 1e-4) << what;
}

}  // namespace

TEST(ImportedMaterials, LookAsTheFormulaSays) {
  const TemporaryFolder folder;
  const float mid = 0.735357f;      // a linear half as displayed
  const float shiny = 30.0f / 128;  // n = 2 / 0.5^4 - 2
  const struct {
    const char* file;
    std::string content;
    Colour diffuse, ambient, specular;
    float opacity, shine, strength;
    bool twoSided;
  } rows[] = {
      {"a.gltf", gltfOf(R"("name": "m")"), {1, 1, 1}, {0, 0, 0}, {0, 0, 0}, 1, 0, 0, false},
      {"a.gltf",
       gltfOf(
           R"("pbrMetallicRoughness": {"baseColorFactor": [0.5, 1, 0, 0.25], "metallicFactor": 0, "roughnessFactor":
                 0.5}, "alphaMode": "BLEND", "doubleSided": true, "emissiveFactor": [0, 0.5, 0])"),
       {mid, 1, 0},
       {0, mid, 0},
       {0.5f, 0.5f, 0.5f},
       0.25f,
       shiny,
       0.5f,
       true},
      {"a.gltf",
       gltfOf(
           R"("pbrMetallicRoughness": {"baseColorFactor": [0.5, 1, 0, 0.25], "metallicFactor": 1, "roughnessFactor":
                 0.2})"),
       {mid, 1, 0},
       {0, 0, 0},
       {0.8f * mid, 0.8f, 0},
       1,
       1,
       0.8f,
       false},
      {"a.fbx", fbxWorld, {0.2f, 0.4f, 0.6f}, {0, 0, 0}, {0.5f, 0.5f, 0.5f}, 0.5f, 0.25f, 1, false},
      {"a.dae", colladaWorld, {0.2f, 0.4f, 0.6f}, {0.1f, 0, 0}, {0.5f, 0.5f, 0.5f}, 1, 0.25f, 1, false},
      {"a.obj",
       objOf("Kd 0.1 0.2 0.3\nKs 0.4 0.5 0.6\nNs 64\nd 0.75\nKe 0.05 0 0\n"),
       {0.1f, 0.2f, 0.3f},
       {0.05f, 0, 0},
       {0.4f, 0.5f, 0.6f},
       0.75f,
       0.5f,
       1,
       false},
  };
  for (const auto& [name, content, diffuse, ambient, specular, opacity, shine, strength, twoSided] : rows) {
    writeFile(name, content);
    ImportedFile file;
    importFile(name, {}, file);
    ASSERT_EQ(file.scene.meshes.count(), 1) << name;
    const Mesh& mesh = *file.scene.meshes[0];
    expectColour(mesh.diffuse, diffuse, std::string(name) + " diffuse");
    expectColour(mesh.ambient, ambient, std::string(name) + " ambient");
    expectColour(mesh.specular, specular, std::string(name) + " specular");
    EXPECT_NEAR(mesh.opacity, opacity, 1e-5) << name;
    EXPECT_NEAR(mesh.shininess, shine, 1e-5) << name;
    EXPECT_NEAR(mesh.shineStrength, strength, 1e-5) << name;
    EXPECT_EQ(mesh.twoSided, twoSided) << name;
  }
}

TEST(ImportedMaterials, MirrorWhatIsMetalAndSmooth) {
  const TemporaryFolder folder;
  const struct {
    double metal, rough;
    bool chrome, mirrors;
  } rows[] = {{1, 0.1, true, true}, {1, 0.1, false, false}, {0.4, 0.1, true, false}, {1, 0.4, true, false}};
  for (const auto& [metal, rough, chrome, mirrors] : rows) {
    writeFile("a.gltf", gltfOf("\"pbrMetallicRoughness\": {\"metallicFactor\": " + std::to_string(metal) +
                               ", \"roughnessFactor\": " + std::to_string(rough) + "}"));
    ImportedFile file;
    importFile("a.gltf", {.chrome = chrome}, file);
    EXPECT_EQ(file.scene.meshes[0]->envMap, mirrors) << metal << " " << rough;
    EXPECT_EQ(file.textureNames,
              mirrors ? std::vector<std::string>{"data\\chrome"} : std::vector<std::string>{});
  }
}

TEST(ImportedMaterials, ShineByThemselvesWhereTheyAreUnlit) {
  const TemporaryFolder folder;
  for (const bool lamp : {false, true}) {
    GltfText text;
    text.material(R"("pbrMetallicRoughness": {"baseColorFactor": [0.5, 1, 0, 1]}, "extensions":
                     {"KHR_materials_unlit": {}})");
    text.mesh(card(0, false));
    text.node(R"("name": "Card", "mesh": 0)");
    if (lamp) {
      text.light(R"("type": "point")");
      text.node(R"("name": "Lamp", "extensions": {"KHR_lights_punctual": {"light": 0}})");
    }
    writeFile("a.gltf", text.str());
    ImportedFile file;
    importFile("a.gltf", {}, file);
    const Mesh& mesh = *static_cast<const Mesh*>(file.scene.find("Card"));
    expectColour(mesh.ambient, {0.735357f, 1, 0}, "ambient");
    expectColour(mesh.diffuse, lamp ? Colour{0, 0, 0} : Colour{0.735357f, 1, 0}, "diffuse");
  }
}

TEST(MaterialFormula, ComesBackFromTheSurfaceOfToday) {
  for (const float shine : {0.0f, 0.1f, 0.5f, 1.0f}) {
    TextMaterial material{.twoSided = shine > 0.2f,
                          .diffuse = {0.1f, 0.5f, 1},
                          .ambient = {0.3f, 0, 0.9f},
                          .shine = shine,
                          .opacity = 1 - shine / 2};
    const TextMaterial back = playersMaterial(surfaceOf(material));
    EXPECT_NEAR(back.diffuse.r, 0.1f, 1e-5);
    EXPECT_NEAR(back.diffuse.g, 0.5f, 1e-5);
    EXPECT_NEAR(back.ambient.b, 0.9f, 1e-5);
    EXPECT_NEAR(back.shine, shine, 1e-4);
    EXPECT_EQ(back.opacity, material.opacity);
    EXPECT_EQ(back.twoSided, material.twoSided);
  }
}

namespace {

std::string texturedGltf(const std::string& picture, const std::string& more,
                         const std::string& name = "Bark Old.01") {
  GltfText text;
  text.texture(picture, picture[1] == 'P' ? "png" : "jpeg", name);
  text.material(R"("name": "m", "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}})" + more);
  text.mesh(card(0));
  text.node(R"("name": "Card", "mesh": 0)");
  return text.str();
}

// Red grows to the right, green downwards, alpha to the right.
Pixel ramp(int x, int y) {
  return {x * 8, y * 8, 64, x * 8};
}

class ImportedTextures : public GlTest {
 protected:
  // Of the textures that the player finds, the first.
  Image import(const std::string& content, const TextureWriting& writing, ImportedFile& file) {
    writeFile("a.gltf", content);
    importFile("a.gltf", {}, file);
    writeTextures(file.textures, writing, file.report);
    if (file.textures.empty()) return {};
    const std::string name = "data\\" + file.textures[0].name;
    return std::filesystem::exists("data/" + file.textures[0].name + ".jpg")
               ? readJpegTexture((name + ".jpg").c_str())
               : readBmpTexture((name + ".bmp").c_str());
  }
  TemporaryFolder folder;
};

std::array<int, 4> pixelAt(const Image& image, int x, int y) {  // from the upper left
  const std::uint32_t pixel =
      image.pixels[static_cast<std::size_t>((image.height - 1 - y) * image.width + x)];
  return {static_cast<int>(pixel & 255), static_cast<int>(pixel >> 8 & 255),
          static_cast<int>(pixel >> 16 & 255), static_cast<int>(pixel >> 24)};
}

}  // namespace

TEST_F(ImportedTextures, KeepTheirPixelsAndTheirAlpha) {
  const std::string picture = png(32, 32, ramp);
  const struct {
    const char* more;
    int left, middle, right;  // alpha at columns 0, 16 and 31
    bool masked;
  } rows[] = {
      {R"(, "alphaMode": "BLEND")", 0, 128, 248, true},
      {R"(, "alphaMode": "MASK", "alphaCutoff": 0.6)", 0, 0, 255, true},
      {R"(, "alphaMode": "MASK", "alphaCutoff": 0.4)", 0, 255, 255, true},
      {"", 255, 255, 255, false},
  };
  for (const auto& [more, left, middle, right, masked] : rows) {
    ImportedFile file;
    const Image image = import(texturedGltf(picture, more), {.folder = ".", .force = true}, file);
    ASSERT_EQ(file.textures.size(), 1u) << more;
    EXPECT_EQ(file.textures[0].name, "bark_old");
    EXPECT_EQ(file.textureNames, std::vector<std::string>{"data\\bark_old"});
    EXPECT_EQ(image.width, 32) << more;
    EXPECT_EQ(std::filesystem::exists("data/bark_old_mask.bmp"), masked) << more;
    EXPECT_EQ(pixelAt(image, 0, 3), (Pixel{0, 24, 64, left})) << more;
    EXPECT_EQ(pixelAt(image, 16, 20), (Pixel{128, 160, 64, middle})) << more;
    EXPECT_EQ(pixelAt(image, 31, 31), (Pixel{248, 248, 64, right})) << more;
    // The upper left corner of the picture is at the card's upper left corner, whose file coordinates are (0,
    // 0).
    for (const Vertex& vertex : file.scene.meshes[0]->vertices) EXPECT_EQ(vertex.v, vertex.position.y);
  }
}

TEST_F(ImportedTextures, AreScaledToPowersOfTwo) {
  const struct {
    int width, height, most, newWidth, newHeight;
    const char* ending;
  } rows[] = {{100, 70, 512, 128, 64, ".jpg"},
              {300, 40, 64, 64, 32, ".bmp"},
              {2, 5, 512, 4, 4, ".bmp"},
              {64, 64, 512, 64, 64, ".bmp"},
              {90, 100, 512, 64, 128, ".jpg"}};
  for (const auto& [width, height, most, newWidth, newHeight, ending] : rows) {
    ImportedFile file;
    const std::string picture = png(width, height, [&](int x, int) {
      return Pixel{x * 255 / width, 100, 200, 255};
    });
    const Image image =
        import(texturedGltf(picture, ""), {.folder = ".", .mostSide = most, .force = true}, file);
    EXPECT_EQ(image.width, newWidth) << width;
    EXPECT_EQ(image.height, newHeight) << width;
    EXPECT_TRUE(std::filesystem::exists(std::string("data/bark_old") + ending)) << width;
    if (width < 4) continue;
    EXPECT_NEAR(pixelAt(image, newWidth / 2, 0)[0], 127, 8) << width;
    EXPECT_NEAR(pixelAt(image, newWidth / 2, 0)[1], 100, 4) << width;
  }
}

TEST_F(ImportedTextures, TakeJpegFilesBesideTheFile) {
  std::vector<unsigned char> rows(128 * 128 * 3);
  for (std::size_t i = 0; i < rows.size(); ++i) rows[i] = i % 3 == 0 ? 200 : i < rows.size() / 2 ? 20 : 120;
  const std::vector<std::byte> bytes = encodeJpeg({rows.data(), 128, 128, 3}, 95);
  writeFile("maps/wood.jpeg", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  GltfText text;
  text.textureAt("maps/wood.jpeg");
  text.material(R"("pbrMetallicRoughness": {"baseColorTexture": {"index": 0}})");
  text.mesh(card(0));
  text.node(R"("name": "Card", "mesh": 0)");
  ImportedFile file;
  const Image image = import(text.str(), {.folder = "."}, file);
  ASSERT_EQ(image.width, 128);
  EXPECT_NEAR(pixelAt(image, 64, 10)[1], 20, 6);
  EXPECT_NEAR(pixelAt(image, 64, 120)[1], 120, 6);
  EXPECT_NEAR(pixelAt(image, 64, 120)[0], 200, 6);
}

TEST_F(ImportedTextures, DoNotOverwriteWhatStands) {
  writeFile("data/bark_old.bmp", "mine");
  const std::string content = texturedGltf(png(32, 32, ramp), "");
  writeFile("a.gltf", content);
  for (const bool force : {false, true}) {
    ImportedFile file;
    importFile("a.gltf", {}, file);
    writeTextures(file.textures, {.folder = ".", .force = force, .dryRun = force}, file.report);
    EXPECT_EQ(readFile("data/bark_old.bmp"), "mine");
    EXPECT_EQ(file.says(Report::Kind::changed, "data/bark_old.bmp stands already and is kept"), !force);
  }
  ImportedFile file;
  import(content, {.folder = ".", .force = true}, file);
  EXPECT_NE(readFile("data/bark_old.bmp"), "mine");
}

TEST_F(ImportedTextures, AreRefusedByName) {
  writeFile("outside.png", png(4, 4, ramp));
  writeFile("in/text.png", "no picture");
  const struct {
    const char* uri;
    const char* why;
  } rows[] = {{"../outside.png", "lies outside the file's folder"},
              {"/etc/passwd", "lies outside the file's folder"},
              {"none.png", "is missing"},
              {"text.png", "is neither PNG nor JPEG"}};
  for (const auto& [uri, why] : rows) {
    GltfText text;
    text.textureAt(uri);
    text.material(R"("name": "m", "pbrMetallicRoughness": {"baseColorTexture": {"index": 0}})");
    text.mesh(card(0));
    text.node(R"("name": "Card", "mesh": 0)");
    writeFile("in/a.gltf", text.str());
    ImportedFile file;
    importFile("in/a.gltf", {}, file);
    EXPECT_TRUE(file.textures.empty()) << uri;
    EXPECT_TRUE(file.says(Report::Kind::left, std::string("texture ") + uri + " of material m: " + why))
        << uri;
  }
  const std::string whole = png(32, 32, ramp);
  ImportedFile file;
  const Image white = import(texturedGltf(whole.substr(0, whole.size() / 2), ""), {.folder = "."}, file);
  EXPECT_TRUE(file.says(Report::Kind::left, "texture bark_old: its picture is damaged"));
  EXPECT_EQ(pixelAt(white, 1, 1), (Pixel{255, 255, 255, 255}));
}

}  // namespace vex
