#include <GL/gl.h>
#include <fnmatch.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

#include "app/contact_sheet.h"
#include "base/report.h"
#include "base/window_size.h"
#include "engine/scene.h"
#include "models/model_info.h"
#include "models/model_loader.h"
#include "platform/encoder.h"
#include "platform/end_request.h"
#include "platform/offscreen_context.h"
#include "platform/png_file.h"
#include "platform/replace_file.h"
#include "platform/standard_streams.h"
#include "scenes/scene_tables.h"
#include "textures/gl_setup.h"
#include "textures/texture_cache.h"
#include "tools/command_line.h"
#include "tools/exchange/export.h"
#include "tools/exchange/import.h"
#include "tools/exchange/report.h"
#include "tools/exchange/source_file.h"
#include "tools/exchange/texture_plan.h"

namespace {

constexpr vex::Contained contained[] = {{"RapidJSON", "MIT"}};

constexpr const char* usage =
    "Usage: vexmodel info FILE [options]     say what a model (.ase or .hv3) holds\n"
    "         --json                         as one JSON object\n"
    "         --geometry                     with the positions, normals, uvs and indices of each mesh\n"
    "         --at SECONDS                   with the transforms at this time\n"
    "       vexmodel compile FILE.ase        write the compiled form FILE.hv3 beside it\n"
    "       vexmodel view FILE --out FILE.png [options]\n"
    "                                        draw a model as the player does\n"
    "         --camera N                     through the model's camera N (default 0); a model without\n"
    "                                        cameras is shown from eight sides\n"
    "         --at SECONDS                   at this time (default 0)\n"
    "         --bare                         its form alone: grey facets under a lamp beside the eye\n"
    "         --hide NAME,NAME...            without these meshes and lights; spark* are all of a beginning\n"
    "         --pose NAME=SECONDS,...        these meshes at times of their own\n"
    "         --size WxH                     size of the picture in pixels (default 1280x720)\n"
    "       vexmodel turntable FILE --out FILE.mp4 [options]\n"
    "                                        six seconds round a model, in which its tracks play once;\n"
    "                                        --bare, --hide, --pose and --size as for view; .mkv is "
    "lossless\n"
    "       vexmodel check FILE --scene NAME say which objects and cameras a scene lacks in a model\n"
    "       vexmodel import FILE OUT.ase [options]\n"
    "                                        make a model of a .gltf, .glb, .fbx, .dae or .obj file\n"
    "         --dir RUNDIR                   textures go to RUNDIR/data (default: the data folder of "
    "OUT.ase)\n"
    "         --fps N                        frames a second that motion is sampled at (default 30)\n"
    "         --scale S                      units a unit of the file (default 1)\n"
    "         --up y|z                       the file's axis that points up (default: what the file says, or "
    "y)\n"
    "         --only NAME,NAME...            these nodes with all below them; Rock* are all of a beginning\n"
    "         --max-side N                   of textures, in pixels (default 512)\n"
    "         --rest                         skinned and morphing meshes as they rest\n"
    "         --chrome                       what is metal and smooth mirrors the texture data\\chrome\n"
    "         --force                        over textures that stand there already\n"
    "         --dry-run                      only say what would come in\n"
    "         --json                         say it as one JSON object\n"
    "       vexmodel export FILE OUT.glb     make a binary glTF file of a model, for other tools\n"
    "         --json                         say what went out as one JSON object\n"
    "       vexmodel --help                  show this text\n"
    "       vexmodel --version               show version, libraries and licences\n"
    "\n"
    "Textures are files of the folder data: the one that FILE lies in, or else the one beside FILE.\n"
    "A second of a track is its whole length. Exit codes: 0 done, 2 wrong usage, 130 interrupted, 255 "
    "refused.\n";

constexpr int maxSide = 8192;

struct Pose {
  std::string mesh;  // pattern of names
  float seconds;
};

struct Request {
  std::string command;
  std::string file;
  std::string out;
  std::string scene;
  vex::ImportOptions import;
  vex::TextureWriting textures;
  vex::JsonContent content;
  bool json = false;
  int camera = 0;
  bool cameraGiven = false;
  bool bare = false;
  std::vector<std::string> hidden;  // patterns of names
  std::vector<Pose> poses;
  int width = 1280;
  int height = 720;
};

using Options = std::vector<vex::Option>;

void addDrawing(Options& options, const vex::CommandLine& line, Request& request) {
  options.insert(
      options.end(),
      {
          {"--out", [&](auto& value) { request.out = value; }},
          {"--bare", [&](auto&) { request.bare = true; }, true},
          {"--hide", [&](auto& value) { request.hidden = vex::splitAtCommas(value); }},
          {"--pose",
           [&](auto& value) {
             for (const std::string& pose : vex::splitAtCommas(value)) {
               const std::size_t equals = std::min(pose.rfind('='), pose.size());
               const std::string_view seconds =
                   std::string_view(pose).substr(std::min(equals + 1, pose.size()));
               request.poses.push_back({pose.substr(0, equals), line.number("--pose", seconds, 0.0f, 1e6f)});
             }
           }},
          {"--size",
           [&](auto& value) {
             std::tie(request.width, request.height) = line.size("--size", value, 1, maxSide);
           }},
      });
}

void addImport(Options& options, const vex::CommandLine& line, Request& request) {
  options.insert(
      options.end(),
      {
          {"--dir", [&](auto& value) { request.textures.folder = value; }},
          {"--fps",
           [&](auto& value) { request.import.framesPerSecond = line.number("--fps", value, 1, 1000); }},
          {"--scale", [&](auto& value) { request.import.scale = line.number("--scale", value, 1e-6, 1e6); }},
          {"--up",
           [&](auto& value) {
             if (value != "y" && value != "z") line.refuse("--up " + value + ": y or z is expected");
             request.import.up = value == "z" ? vex::UpAxis::z : vex::UpAxis::y;
           }},
          {"--only", [&](auto& value) { request.import.only = vex::splitAtCommas(value); }},
          {"--max-side",
           [&](auto& value) {
             request.textures.mostSide = line.number("--max-side", value, 4, 16384);
             if (!std::has_single_bit(static_cast<unsigned>(request.textures.mostSide)))
               line.refuse("--max-side: a power of two is expected");
           }},
          {"--rest", [&](auto&) { request.import.atRest = true; }, true},
          {"--chrome", [&](auto&) { request.import.chrome = true; }, true},
          {"--force", [&](auto&) { request.textures.force = true; }, true},
          {"--dry-run", [&](auto&) { request.textures.dryRun = true; }, true},
      });
}

Request parse(const vex::CommandLine& line) {
  Request request;
  request.command = line.first();
  const auto commanded = [&](std::string_view command) { return request.command == command; };
  const bool info = commanded("info"), view = commanded("view"), turntable = commanded("turntable");
  const bool check = commanded("check"), import = commanded("import"),
             exchange = import || commanded("export");
  if (!info && !view && !turntable && !check && !exchange && !commanded("compile")) {
    line.parse({});  // for help
    line.refuse();
  }

  Options options;
  if (view || turntable) addDrawing(options, line, request);
  if (import) addImport(options, line, request);
  if (info || exchange) options.push_back({"--json", [&](auto&) { request.json = true; }, true});
  if (info) options.push_back({"--geometry", [&](auto&) { request.content.geometry = true; }, true});
  if (info || view) {
    options.push_back(
        {"--at", [&](auto& value) { request.content.seconds = line.number("--at", value, -1e6f, 1e6f); }});
  }
  if (view) {
    options.push_back({"--camera", [&](auto& value) {
                         request.camera = line.number("--camera", value, 0, std::numeric_limits<int>::max());
                         request.cameraGiven = true;
                       }});
  }
  if (check) options.push_back({"--scene", [&](auto& value) { request.scene = value; }});

  const std::vector<std::string> words = line.parse(options);
  if (words.size() < 2 || words.size() > (exchange ? 3 : 2)) line.refuse();
  request.file = words[1];
  if (words.size() > 2) request.out = words[2];
  if (!import && vex::canBeImported(request.file)) {
    vex::fatalError("%s is a file of another tool: vexmodel import makes a model of it",
                    request.file.c_str());
  }
  if (view && request.out.empty()) line.refuse("view lacks --out FILE.png");
  if (turntable && !vex::isVideoName(request.out)) line.refuse("turntable lacks --out FILE.mp4 (or .mkv)");
  if (check && request.scene.empty()) line.refuse("check lacks --scene NAME");
  if (exchange && request.out.empty())
    line.refuse(request.command + (import ? " lacks OUT.ase" : " lacks OUT.glb"));
  if ((request.content.geometry || (info && request.content.seconds)) && !request.json) {
    line.refuse("--geometry and --at belong to --json");
  }
  return request;
}

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// Goes where the file and its textures have the names that the loader takes: to the folder that the file's
// folder data is in, or else to the file's own. The name has no dot but that of its extension.
std::string enterFolder(const std::string& file) {
  namespace fs = std::filesystem;
  std::error_code error;
  const fs::path path = fs::absolute(file, error).lexically_normal();
  const fs::path folder = path.parent_path();
  const bool inData = lowered(folder.filename().string()) == "data";
  const fs::path target = inData ? folder.parent_path() : folder;
  if (chdir(target.c_str()) != 0) {
    vex::fatalError("%s: can't go to folder %s: %s", file.c_str(), target.c_str(), std::strerror(errno));
  }
  const std::string name = path.filename().string();
  return inData ? folder.filename().string() + "\\" + name : name;
}

bool hasExtension(const std::string& file, std::string_view extension) {
  return lowered(file.substr(file.size() - std::min(file.size(), extension.size()))) == extension;
}

void printOut(const std::string& text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    vex::fatalError("can't write standard output: %s", std::strerror(errno));
  }
}

void info(const Request& request) {
  const std::string name = enterFolder(request.file);
  vex::ModelInfo info{
      .compiled = hasExtension(name, ".hv3"), .textures = {}, .missingTextures = {}, .longTextures = {}};
  vex::Scene scene;
  vex::readModel({name}, &scene, vex::collectTextureNames(info));
  printOut(request.json ? vex::modelAsJson(info, scene, request.content) : vex::modelAsText(info, scene));
}

void compile(const std::string& file) {
  if (!hasExtension(file, ".ase")) vex::fatalError("%s isn't the text of a model (.ase)", file.c_str());
  const std::string name = enterFolder(file);
  vex::ModelInfo info;
  vex::Scene scene;
  // Nothing is written of a text that is refused.
  const std::string obstacle =
      vex::readModel({name, name.substr(0, name.find('.')) + ".hv3"}, &scene, vex::collectTextureNames(info));
  if (!obstacle.empty()) {
    vex::fatalError("%s can't be compiled: %s", file.c_str(), obstacle.c_str());
  }
}

// Centre and radius of all that is shown.
struct Ball {
  vex::Vector centre;
  float radius = 1.0f;
};

// At all the times.
Ball surround(vex::Scene& scene, std::initializer_list<float> times) {
  std::vector<vex::Vector> points;
  for (const float seconds : times) {
    for (vex::Mesh* mesh : scene.meshes) {
      if (mesh->hidden()) continue;
      const vex::Matrix matrix = mesh->getMatrix(seconds);
      for (const vex::Vertex& vertex : mesh->vertices) {
        points.push_back(vex::transformPoint(matrix, vertex.position));
      }
    }
  }
  if (points.empty()) return {};
  vex::Vector least = points[0];
  vex::Vector most = points[0];
  for (const vex::Vector& p : points) {
    least = {std::min(least.x, p.x), std::min(least.y, p.y), std::min(least.z, p.z)};
    most = {std::max(most.x, p.x), std::max(most.y, p.y), std::max(most.z, p.z)};
  }
  Ball ball{.centre = (least + most) * 0.5f};
  ball.radius = 0.0f;
  for (const vex::Vector& p : points) ball.radius = std::max(ball.radius, (p - ball.centre).length());
  return ball;
}

// A model is worth a look before all its textures are there.
int loadPresentTexture(const char* name, bool wrap) {
  if (vex::textureExists(name)) return vex::getTexture(name, wrap);
  static std::set<std::string> missing;
  if (missing.insert(name).second) {
    std::fprintf(stderr, "vexmodel: texture %s is missing, drawn without it\n", name);
  }
  return -1;
}

void loadScene(const std::string& file, vex::Scene& scene) {
  vex::readModel({enterFolder(file)}, &scene, loadPresentTexture);
  scene.prepare(false);
  for (vex::Light* light : scene.lights) {
    if (!vex::textureExists(light->flareTexture)) light->flareStrength = 0.0f;
  }
  scene.collectActiveLights();
}

// Does something with all objects whose names a pattern fits. Fatal where it fits none.
template <typename... Arrays>
void forNamed(const Request& request, const std::string& pattern, const auto& act, Arrays&... arrays) {
  bool found = false;
  const auto look = [&](auto& array) {
    for (auto* object : array) {
      if (fnmatch(pattern.c_str(), object->name, 0) != 0) continue;
      act(*object);
      found = true;
    }
  };
  (look(arrays), ...);
  if (!found) vex::fatalError("%s has nothing of the name %s", request.file.c_str(), pattern.c_str());
}

void hideAndPose(const Request& request, vex::Scene& scene) {
  const auto hide = []<typename Kind>(Kind& object) {
    object.flags |= vex::hiddenFlag;
    if constexpr (std::is_same_v<Kind, vex::Light>) {
      object.active = false;
      object.flareStrength = 0.0f;
    }
  };
  for (const std::string& name : request.hidden) forNamed(request, name, hide, scene.meshes, scene.lights);
  for (const auto& [name, seconds] : request.poses) {
    forNamed(
        request, name, [seconds](vex::Mesh& mesh) { mesh.setFixedTime(seconds); }, scene.meshes);
  }
  scene.collectActiveLights();
}

// Leaves nothing of the meshes but their forms, and one lamp.
void makeBare(vex::Scene& scene) {
  glShadeModel(GL_FLAT);
  glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
  for (vex::Mesh* mesh : scene.meshes) {
    mesh->texture = -1;
    mesh->envMap = false;
    mesh->lit = true;
    mesh->shininess = 0.0f;
    mesh->diffuse = {0.75f, 0.75f, 0.75f, 1.0f};
    mesh->ambient = {0.12f, 0.12f, 0.12f, 1.0f};
  }
  scene.lights.allocate(1);
  auto* lamp = scene.lights[0] = new vex::Light;
  lamp->active = true;
  lamp->flareStrength = 0.0f;
  scene.collectActiveLights();
}

// To the left of the eye and above it, by half the way to what it looks at.
void placeLamp(vex::Scene& scene, float seconds) {
  vex::Viewer& viewer = *scene.getViewer();
  viewer.getMatrix(seconds);
  const float half = (viewer.target - viewer.position).length() * 0.5f;
  scene.lights[0]->position = viewer.position - (viewer.right + viewer.down) * half;
}

void draw(vex::Scene& scene, const Request& request, float seconds) {
  if (request.bare) placeLamp(scene, seconds);
  glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  scene.render(seconds);
}

constexpr int sides = 8;
constexpr float turntableFov = 60.0f;  // three quarters of it upright

// A camera that goes round a ball, a little above its middle.
class Orbit {
 public:
  Orbit(vex::Scene& scene, const Request& request, const Ball& shown) : ball(shown) {
    scene.viewers.allocate(1);
    viewer = scene.viewers[0] = new vex::Viewer;
    scene.viewerIndex = 0;
    viewer->fov = turntableFov;
    // Far enough for the ball to fit into the narrower angle, and for the near plane at 1.
    const double upright = static_cast<double>(turntableFov) * 0.75 * std::acos(-1.0) / 360.0;
    const double across = std::atan(std::tan(upright) * request.width / request.height);
    const auto radius = static_cast<double>(std::max(ball.radius, 0.001f));
    distance = radius / std::sin(std::min(upright, across)) * 1.05 + 1.0;
    viewer->farPlane = static_cast<float>(distance + radius * 2.0 + 1.0);
    viewer->target = ball.centre;
  }

  void turnTo(double degrees) {
    const double angle = degrees * std::acos(-1.0) / 180.0;
    const double height = 0.35;  // of the distance: a little from above
    const double flat = std::sqrt(1.0 - height * height);
    viewer->position =
        ball.centre + vex::Vector(static_cast<float>(std::sin(angle) * flat), static_cast<float>(height),
                                  static_cast<float>(std::cos(angle) * flat)) *
                          static_cast<float>(distance);
  }

 private:
  Ball ball;
  vex::Viewer* viewer;
  double distance;
};

vex::ContactSheet drawSides(vex::Scene& scene, const Request& request, float seconds) {
  Orbit orbit(scene, request, surround(scene, {seconds}));
  vex::ContactSheet sheet(sides, request.width, request.height);
  std::vector<std::byte> pixels;
  for (int side = 0; side < sides; ++side) {
    const double degrees = side * 360.0 / sides;
    orbit.turnTo(degrees);
    draw(scene, request, seconds);
    vex::readBackBgra(request.width, request.height, pixels);
    sheet.add(degrees, pixels);
  }
  return sheet;
}

bool writePicture(vex::ReplacementFile& file, const Request& request) {
  std::vector<std::byte> bgra;
  vex::readBackBgra(request.width, request.height, bgra);
  std::vector<std::byte> rgb;
  rgb.reserve(bgra.size() / 4 * 3);
  const auto rowSize = static_cast<std::size_t>(request.width) * 4;
  for (std::size_t row = bgra.size(); row > 0; row -= rowSize) {
    for (std::size_t pixel = row - rowSize; pixel < row; pixel += 4) {
      rgb.insert(rgb.end(), {bgra[pixel + 2], bgra[pixel + 1], bgra[pixel]});
    }
  }
  return vex::writePng(file, request.width, request.height, rgb);
}

// The model as the options ask for it, and a GL to draw it with.
void openScene(const Request& request, vex::Scene& scene) {
  const std::string reason = vex::openOffscreenContext(request.width, request.height);
  if (!reason.empty()) vex::fatalError("no OpenGL to draw with: %s", reason.c_str());
  vex::setWindowSize(request.width, request.height);
  vex::setUpGlState();
  glViewport(0, 0, request.width, request.height);
  loadScene(request.file, scene);
  hideAndPose(request, scene);
  if (request.bare) makeBare(scene);
}

void turntable(const Request& request) {
  constexpr int framesPerSecond = 30;
  constexpr int frames = 6 * framesPerSecond;
  const std::string out = std::filesystem::absolute(request.out).string();  // the working folder changes
  if (!vex::takesOddSizes(out) && (request.width % 2 != 0 || request.height % 2 != 0))
    vex::fatalError("%s: a picture of %dx%d has odd sides, .mkv takes them", request.out.c_str(),
                    request.width, request.height);
  vex::Scene scene;
  openScene(request, scene);
  vex::VideoEncoder encoder;
  const std::string failure = encoder.start(
      out,
      {.width = request.width, .height = request.height, .framesPerSecond = framesPerSecond, .quality = 2},
      {});
  if (!failure.empty()) vex::fatalError("%s", failure.c_str());
  Orbit orbit(scene, request, surround(scene, {0.0f, 0.25f, 0.5f, 0.75f, 1.0f}));
  auto result = vex::VideoEncoder::Result::complete;
  std::vector<std::byte> pixels;
  for (int frame = 0; frame < frames; ++frame) {
    orbit.turnTo(360.0 * frame / frames);
    draw(scene, request, static_cast<float>(frame) / frames);
    vex::readBackBgra(request.width, request.height, pixels);
    if (encoder.write(pixels)) continue;
    result = vex::VideoEncoder::Result::failed;
    break;
  }
  const std::string ending = encoder.finish(result);
  if (!ending.empty()) vex::fatalError("%s: %s", request.out.c_str(), ending.c_str());
}

void view(const Request& request) {
  vex::ReplacementFile file(std::filesystem::absolute(request.out).string());  // the working folder changes
  if (!file.stream()) vex::fatalError("can't write %s: %s", request.out.c_str(), std::strerror(errno));
  vex::Scene scene;
  openScene(request, scene);
  const float seconds = request.content.seconds.value_or(0.0f);
  const int cameras = scene.viewers.count();
  if (request.cameraGiven && request.camera >= cameras) {
    vex::fatalError("%s has no camera %d, only %d of them", request.file.c_str(), request.camera, cameras);
  }
  bool written = false;
  if (cameras == 0) {
    written = drawSides(scene, request, seconds).write(file);
  } else {
    scene.viewerIndex = request.camera;
    draw(scene, request, seconds);
    written = writePicture(file, request);
  }
  if (!written) vex::fatalError("can't write %s: %s", request.out.c_str(), std::strerror(errno));
}

void checkForScene(const Request& request) {
  const vex::SceneEntry* entry = vex::findSceneEntry(vex::sceneEntries(), request.scene);
  if (!entry || !entry->model) {
    std::string names;
    for (const vex::SceneEntry& known : vex::sceneEntries())
      if (known.model) names += (names.empty() ? "" : ", ") + std::string(known.name);
    vex::fatalError("%s is no scene that is built around a model; these are: %s", request.scene.c_str(),
                    names.c_str());
  }
  vex::ModelInfo info;
  vex::Scene scene;
  vex::readModel({enterFolder(request.file)}, &scene, vex::collectTextureNames(info));
  const std::vector<std::string> lacking = vex::lackingIn(scene, entry->needs);
  if (lacking.empty()) {
    printOut(request.file + ": holds all that " + entry->name + " asks for; the scene takes it as " +
             entry->model + "\n");
    return;
  }
  std::string text;
  for (const std::string& what : lacking) text += (text.empty() ? "" : ", ") + what;
  vex::fatalError("%s lacks for %s: %s", request.file.c_str(), entry->name, text.c_str());
}

// The folder that the data folder of a model's text is in.
std::string runFolderOf(const std::string& file) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::absolute(file).lexically_normal().parent_path();
  return (lowered(folder.filename().string()) == "data" ? folder.parent_path() : folder).string();
}

void import(const Request& request) {
  if (!hasExtension(request.out, ".ase"))
    vex::fatalError("%s isn't the text of a model (.ase)", request.out.c_str());
  vex::Report report;
  const vex::SourceFile source = vex::readSource(request.file, report);
  vex::Imported imported = vex::importScene(source, request.import, report);
  imported.model.name = std::filesystem::path(request.out).stem().string();
  vex::TextureWriting textures = request.textures;
  if (textures.folder.empty()) textures.folder = runFolderOf(request.out);
  if (!textures.dryRun &&
      !vex::replaceFile(request.out, vex::writeModelText(imported.model, vex::NumberForm::exact)))
    vex::fatalError("can't write %s: %s", request.out.c_str(), std::strerror(errno));
  vex::writeTextures(imported.textures, textures, report);
  printOut(request.json ? vex::reportAsJson(report) : vex::reportAsText(report));
}

void exportModel(const Request& request) {
  if (!hasExtension(request.out, ".glb"))
    vex::fatalError("%s isn't a binary glTF file (.glb)", request.out.c_str());
  const std::string out = std::filesystem::absolute(request.out).string();  // the working folder changes
  vex::Report report;
  vex::ModelInfo info;
  vex::Scene scene;
  vex::readModel({enterFolder(request.file)}, &scene, vex::collectTextureNames(info));
  if (!vex::replaceFile(out, vex::exportGlb(scene, info.textures, report)))
    vex::fatalError("can't write %s: %s", request.out.c_str(), std::strerror(errno));
  printOut(request.json ? vex::reportAsJson(report) : vex::reportAsText(report));
}

}  // namespace

int main(int argc, char** argv) {
  vex::openStandardStreams();
  vex::endAtSignals();
  const Request request = parse({"vexmodel", usage, argc, argv, contained});
  if (request.command == "info") info(request);
  if (request.command == "compile") compile(request.file);
  if (request.command == "view") view(request);
  if (request.command == "turntable") turntable(request);
  if (request.command == "check") checkForScene(request);
  if (request.command == "export") exportModel(request);
  if (request.command == "import") return vex::runGuarded(request.file, [&request] { import(request); });
  return 0;
}
