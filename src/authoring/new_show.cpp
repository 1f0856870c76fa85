#include "authoring/new_show.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <functional>
#include <string_view>
#include <system_error>

#include "authoring/project_lexer.h"
#include "base/pi.h"
#include "base/report.h"
#include "engine/glow_textures.h"
#include "models/model_text.h"
#include "platform/little_endian.h"
#include "platform/ogg_encoder.h"
#include "platform/replace_file.h"
#include "scenes/scene_tables.h"
#include "textures/small_type.h"
#include "textures/texture_table.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

// --- Pictures

using Paint =
    std::function<std::array<int, 3>(double x, double y)>;  // red, green, blue from -1 to 1 each way

std::string bmp(int side, const Paint& paint) {
  const auto size = static_cast<std::uint64_t>(3 * side * side);
  std::string bytes = "BM";
  const struct {
    std::uint64_t value;
    int size;
  } fields[] = {{54 + size, 4},
                {0, 4},
                {54, 4},
                {40, 4},
                {static_cast<std::uint64_t>(side), 4},
                {static_cast<std::uint64_t>(side), 4},
                {1, 2},
                {24, 2},
                {0, 4},
                {size, 4},
                {2835, 4},
                {2835, 4},
                {0, 4},
                {0, 4}};
  for (const auto& [value, width] : fields) appendLittleEndian(bytes, value, width);
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      const auto [red, green, blue] = paint((2.0 * column + 1) / side - 1, (2.0 * row + 1) / side - 1);
      for (const int part : {blue, green, red}) bytes += static_cast<char>(std::clamp(part, 0, 255));
    }
  }
  return bytes;
}

Paint plain(int red, int green, int blue) {
  return [=](double, double) { return std::array{red, green, blue}; };
}

// Light that falls off to black at the edge.
std::array<int, 3> glow(double x, double y) {
  const double left = std::max(0.0, 1 - std::hypot(x, y));
  const int value = static_cast<int>(255 * left * left);
  return {value, value, value};
}

// A ball in the light of the upper left, on black.
std::array<int, 3> ball(double x, double y) {
  const double depth = 1 - (x * x + y * y) / 0.8;
  if (depth < 0) return {0, 0, 0};
  const double light = std::max(0.0, 0.7 * std::sqrt(depth) - 0.5 * x + 0.4 * y);
  return {static_cast<int>(240 * light), static_cast<int>(190 * light), static_cast<int>(130 * light)};
}

// In small letters, whatever the scenes write.
std::string inFolder(std::string name) {
  for (char& c : name) c = c == '\\' ? '/' : lowerCase(c);
  return name;
}

DataFile picture(const std::string& name, int side, const Paint& paint) {
  return {inFolder(name) + ".bmp", bmp(side, paint)};
}

constexpr int least = 4;  // side of a plain picture
constexpr int glowSide = 32;

DataFile neutralPicture(const NeededTexture& needed, const std::string& name) {
  const bool flare = name.find("flare") != std::string::npos;
  const int side = needed.side > 0 ? needed.side : flare ? glowSide : least;
  return picture(name, side, flare ? Paint(glow) : plain(255, 255, 255));
}

void addPictures(std::vector<DataFile>& files, const ModelNeeds& needs) {
  for (const char* sky : needs.sky)
    if (*sky) files.push_back(picture(sky, least, plain(14, 18, 26)));
  for (const NeededTexture& needed : needs.textures)
    for (const std::string& name : textureNames(needed)) files.push_back(neutralPicture(needed, name));
}

// --- Models

constexpr float objectSide = 4;
constexpr float ringRadius = 25;

// A small cube, hidden where it is only a place.
TextMesh cube(const std::string& name, const Vector& place, bool hidden) {
  TextMesh mesh{.name = name, .helperClass = hidden ? "Dummy" : "", .pivot = place};
  for (int i = 0; i < 8; ++i) {
    const Vector corner((i & 1) - 0.5f, (i >> 1 & 1) - 0.5f, (i >> 2) - 0.5f);
    mesh.points.push_back(place + corner * objectSide);
  }
  mesh.faces = {{0, 2, 1}, {1, 2, 3}, {4, 5, 6}, {5, 7, 6}, {0, 1, 4}, {1, 5, 4},
                {2, 6, 3}, {3, 6, 7}, {0, 4, 2}, {2, 4, 6}, {1, 3, 5}, {3, 7, 5}};
  mesh.material = 0;
  return mesh;
}

Vector onRing(std::size_t number) {
  const float angle = static_cast<float>(number) * 0.7f;
  return {ringRadius * std::sin(angle), 0, ringRadius * std::cos(angle)};
}

DataFile neutralModel(const SceneEntry& entry) {
  const ModelNeeds& needs = entry.needs;
  TextModel model{.name = entry.name, .lastFrame = 100};
  model.materials = {{.name = "plain", .ambient = {0.2f, 0.2f, 0.2f}}};
  const auto addLight = [&model](const std::string& name) {
    model.lights.push_back({.name = name, .position = Vector(10, 30, 40), .on = model.lights.empty()});
  };
  for (const auto& [name, kind] : needs.objects) {
    if (kind == ObjectKind::light) {
      addLight(name);
    } else {
      model.meshes.push_back(cube(name, onRing(model.meshes.size()), kind == ObjectKind::none));
    }
  }
  const auto lacks = [](const auto& objects, int needed) { return std::ssize(objects) < needed; };
  while (lacks(model.meshes, needs.meshes)) {
    const std::string name = formatted("mesh%zu", model.meshes.size());
    model.meshes.push_back(cube(name, onRing(model.meshes.size()), false));
  }
  while (lacks(model.lights, needs.lights)) addLight(formatted("light%zu", model.lights.size()));
  while (lacks(model.cameras, needs.cameras)) {
    model.cameras.push_back({.name = formatted("camera%zu", model.cameras.size()),
                             .position = Vector(0, 20, 80),
                             .fieldDegrees = 60,
                             .far = 1000});
  }
  return {inFolder(entry.model) + ".ase", writeModelText(model, NumberForm::exact)};
}

// --- Font

// 8 x 8 cells of three bytes each, one below the other.
DataFile statisticsFont() {
  constexpr int cell = 8, cells = 128, left = 1, top = 1, stretched = 2;
  std::string bytes(static_cast<std::size_t>(cells * cell * cell * 3), '\0');
  for (int code = 0; code < cells; ++code) {
    const SmallGlyph* glyph = smallGlyph(static_cast<char>(code));
    if (!glyph) continue;
    for (int row = 0; row < smallTypeHeight; ++row) {
      for (int column = 0; column < stretched * smallTypeWidth; ++column) {
        if (!((*glyph)[static_cast<std::size_t>(row)] >> (2 - column / stretched) & 1)) continue;
        const int at = ((code * cell + top + row) * cell + left + column) * 3;
        bytes.replace(static_cast<std::size_t>(at), 3, 3, '\xff');
      }
    }
  }
  return {"data/font.raw", bytes};
}

}  // namespace

std::vector<DataFile> neutralData() {
  std::vector<DataFile> files{statisticsFont()};
  for (const SceneEntry& entry : sceneEntries()) {
    if (entry.model) files.push_back(neutralModel(entry));
    addPictures(files, entry.needs);
  }
  for (int number = 1; number <= glowCount; ++number)
    files.push_back(picture(glowTexture(number), glowSide, glow));
  files.push_back(picture("data\\first", 64, ball));
  return files;
}

std::string newShowText(const NewShow& show) {
  std::string text =
      "# A show of your own. What a part can call stands in docs/functions.md (vexproject functions prints "
      "it),\n"
      "# all about this text in docs/project-text.md. After a change, in this folder:\n"
      "#   vexproject compile show.txt test.hvp\n"
      "#   vexproject check show.txt --dir .\n"
      "#   vexrecord --contact-sheet sheet.png\n"
      "# or shape it while it runs: vexstudio show.txt\n"
      "\n";
  if (show.tempo) {
    text += formatted("tempo %.6g from %.3f\n", show.tempo->beatsPerMinute, show.tempo->origin);
  } else {
    text += "# Bars and beats, when the music has some: vexproject beats MUSIC\ntempo 120\n";
  }
  text += formatted("total %.6gs\n", show.seconds);
  text += "music " + quoteText(show.music) + "  # at least half a second longer than the show\n";
  text += formatted(
      "\n"
      "# Parameters of these names stay within their bounds.\n"
      "range alpha 0 to 1\n"
      "range blend 0 to 2\n"
      "\n"
      "# In every frame something has to paint the whole screen. A greater track is drawn later, over this.\n"
      "part \"ground\" {\n"
      "  at 0s  length %.6gs  track 0\n"
      "  SceneHelper.fadeScreen(red = 0.03, green = 0.04, blue = 0.07, alpha = 1)\n"
      "}\n"
      "\n"
      "# Curves run from 0 at the beginning of the part to 1 at its end. Blend 1 adds light to what is "
      "there.\n"
      "part \"first\" {\n"
      "  at 1s  until %.6gs  track 20\n",
      show.seconds, show.seconds);
  return text +
         "  SceneHelper.drawBitmap(\n"
         "    texture = \"data\\first\",\n"
         "    x = linear(0 0.1, 1 -0.9),\n"
         "    y = sine(cycles 3, amplitude 0.1, offset -0.6, phase 0),\n"
         "    width = 0.7, height = 1.2, frames = 0, glitch = 0,\n"
         "    alpha = linear(0 0, 2s 1, 0.9 1, 1 0),\n"
         "    blend = 1)\n"
         "}\n";
}

std::string silence(double seconds) {
  constexpr int rate = 8000;
  const std::vector<float> nothing(static_cast<std::size_t>(seconds * rate));
  std::string error;
  const std::vector<std::byte> bytes = encodeOgg(nothing, nothing, rate, 0, error);
  if (!error.empty()) fatalError("can't make a silent sound file: %s", error.c_str());
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void prepareNewFolder(const fs::path& folder) {
  std::error_code error;
  if (fs::exists(folder, error) && !fs::is_directory(folder, error))
    fatalError("%s isn't a folder", folder.c_str());
  if (fs::is_directory(folder, error) && !fs::is_empty(folder, error) && !error)
    fatalError("%s isn't empty: a new show begins in a folder of its own", folder.c_str());
  if (!error || error == std::errc::no_such_file_or_directory) fs::create_directories(folder / "data", error);
  if (error) fatalError("can't make folder %s: %s", folder.c_str(), error.message().c_str());
}

void writeDataFile(const fs::path& folder, const DataFile& file) {
  const fs::path path = folder / file.path;
  if (!replaceFile(path.native(), file.bytes))
    fatalError("can't write %s: %s", path.c_str(), std::strerror(errno));
}

}  // namespace vex
