#include <GL/gl.h>
#include <fnmatch.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
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
#include "tools/exchange/export.h"
#include "tools/exchange/import.h"
#include "tools/exchange/report.h"
#include "tools/exchange/source_file.h"
#include "tools/exchange/texture_plan.h"

namespace {

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
    "\n"
    "Textures are files of the folder data: the one that FILE lies in, or else the one beside FILE.\n"
    "A second of a track is its whole length. Exit codes: 0 done, 2 wrong usage, 130 interrupted, 255 "
    "refused.\n";

constexpr int maxSide = 8192;

[[noreturn]] void refuseUsage(const std::string& message) {
  if (!message.empty()) std::fprintf(stderr, "vexmodel: %s\n", message.c_str());
  std::fputs(usage, stderr);
  std::exit(2);
}

// The whole text as a number within the range; anything else is wrong usage.
template <typename Number>
Number parse(const std::string& option, std::string_view text, Number least, Number most) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !(value >= least && value <= most)) {
    refuseUsage(option + " " + std::string(text) + ": a number from " + std::to_string(least) + " to " +
                std::to_string(most) + " is expected");
  }
  return value;
}

struct Pose {
  std::string mesh;  // pattern of names
  float seconds;
};

struct CommandLine {
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

std::vector<std::string> splitAtCommas(std::string_view text) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start <= text.size(); start += parts.back().size() + 1) {
    parts.emplace_back(text.substr(start, std::min(text.find(',', start), text.size()) - start));
  }
  return parts;
}

void parsePoses(CommandLine& line, std::string_view text) {
  for (const std::string& pose : splitAtCommas(text)) {
    const std::size_t equals = std::min(pose.rfind('='), pose.size());
    const std::string_view seconds = std::string_view(pose).substr(std::min(equals + 1, pose.size()));
    line.poses.push_back({pose.substr(0, equals), parse("--pose", seconds, 0.0f, 1e6f)});
  }
}

void parseSize(CommandLine& line, std::string_view text) {
  const std::size_t cross = std::min(text.find('x'), text.size());
  line.width = parse("--size", text.substr(0, cross), 1, maxSide);
  line.height = parse("--size", text.substr(std::min(cross + 1, text.size())), 1, maxSide);
}

vex::UpAxis parseUp(const std::string& axis) {
  if (axis != "y" && axis != "z") refuseUsage("--up " + axis + ": y or z is expected");
  return axis == "z" ? vex::UpAxis::z : vex::UpAxis::y;
}

// Takes an option of import; false when it is none. `value` gives the argument that follows.
bool parseImportOption(CommandLine& line, const std::string& argument, const auto& value) {
  if (argument == "--dir") {
    line.textures.folder = value();
  } else if (argument == "--fps") {
    line.import.framesPerSecond = parse("--fps", value(), 1, 1000);
  } else if (argument == "--scale") {
    line.import.scale = parse("--scale", value(), 1e-6, 1e6);
  } else if (argument == "--up") {
    line.import.up = parseUp(value());
  } else if (argument == "--only") {
    line.import.only = splitAtCommas(value());
  } else if (argument == "--max-side") {
    line.textures.mostSide = parse("--max-side", value(), 4, 16384);
    if (line.textures.mostSide & (line.textures.mostSide - 1))
      refuseUsage("--max-side: a power of two is expected");
  } else if (argument == "--rest") {
    line.import.atRest = true;
  } else if (argument == "--chrome") {
    line.import.chrome = true;
  } else if (argument == "--force") {
    line.textures.force = true;
  } else if (argument == "--dry-run") {
    line.textures.dryRun = true;
  } else {
    return false;
  }
  return true;
}

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
  CommandLine line;
  if (arguments.empty()) refuseUsage("");
  line.command = arguments[0];
  const bool info = line.command == "info";
  const bool view = line.command == "view";
  const bool turntable = line.command == "turntable";
  const bool draws = view || turntable;
  const bool check = line.command == "check";
  const bool import = line.command == "import";
  const bool exchange = import || line.command == "export";
  if (!info && !draws && !check && !exchange && line.command != "compile") refuseUsage("");
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const auto value = [&]() -> const std::string& {
      if (i + 1 == arguments.size()) refuseUsage(argument + " lacks its value");
      return arguments[++i];
    };
    if (import && parseImportOption(line, argument, value)) {
    } else if ((info || exchange) && argument == "--json") {
      line.json = true;
    } else if (info && argument == "--geometry") {
      line.content.geometry = true;
    } else if ((info || view) && argument == "--at") {
      line.content.seconds = parse("--at", value(), -1e6f, 1e6f);
    } else if (check && argument == "--scene") {
      line.scene = value();
    } else if (draws && argument == "--out") {
      line.out = value();
    } else if (view && argument == "--camera") {
      line.camera = parse("--camera", value(), 0, std::numeric_limits<int>::max());
      line.cameraGiven = true;
    } else if (draws && argument == "--bare") {
      line.bare = true;
    } else if (draws && argument == "--hide") {
      line.hidden = splitAtCommas(value());
    } else if (draws && argument == "--pose") {
      parsePoses(line, value());
    } else if (draws && argument == "--size") {
      parseSize(line, value());
    } else if (line.file.empty() && !argument.starts_with("-")) {
      line.file = argument;
    } else if (exchange && line.out.empty() && !argument.starts_with("-")) {
      line.out = argument;
    } else {
      refuseUsage("");
    }
  }
  if (line.file.empty()) refuseUsage("");
  if (view && line.out.empty()) refuseUsage("view lacks --out FILE.png");
  if (turntable && !vex::isVideoName(line.out)) refuseUsage("turntable lacks --out FILE.mp4 (or .mkv)");
  if (check && line.scene.empty()) refuseUsage("check lacks --scene NAME");
  if (exchange && line.out.empty())
    refuseUsage(line.command + (import ? " lacks OUT.ase" : " lacks OUT.glb"));
  if ((line.content.geometry || (info && line.content.seconds)) && !line.json) {
    refuseUsage("--geometry and --at belong to --json");
  }
  return line;
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

void info(const CommandLine& line) {
  const std::string name = enterFolder(line.file);
  vex::ModelInfo info{
      .compiled = hasExtension(name, ".hv3"), .textures = {}, .missingTextures = {}, .longTextures = {}};
  vex::Scene scene;
  vex::readModel({name}, &scene, vex::collectTextureNames(info));
  printOut(line.json ? vex::modelAsJson(info, scene, line.content) : vex::modelAsText(info, scene));
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
void forNamed(const CommandLine& line, const std::string& pattern, const auto& act, Arrays&... arrays) {
  bool found = false;
  const auto look = [&](auto& array) {
    for (auto* object : array) {
      if (fnmatch(pattern.c_str(), object->name, 0) != 0) continue;
      act(*object);
      found = true;
    }
  };
  (look(arrays), ...);
  if (!found) vex::fatalError("%s has nothing of the name %s", line.file.c_str(), pattern.c_str());
}

void hideAndPose(const CommandLine& line, vex::Scene& scene) {
  const auto hide = []<typename Kind>(Kind& object) {
    object.flags |= vex::hiddenFlag;
    if constexpr (std::is_same_v<Kind, vex::Light>) {
      object.active = false;
      object.flareStrength = 0.0f;
    }
  };
  for (const std::string& name : line.hidden) forNamed(line, name, hide, scene.meshes, scene.lights);
  for (const auto& [name, seconds] : line.poses) {
    forNamed(
        line, name, [seconds](vex::Mesh& mesh) { mesh.setFixedTime(seconds); }, scene.meshes);
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

void draw(vex::Scene& scene, const CommandLine& line, float seconds) {
  if (line.bare) placeLamp(scene, seconds);
  glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  scene.render(seconds);
}

constexpr int sides = 8;
constexpr float turntableFov = 60.0f;  // three quarters of it upright

// A camera that goes round a ball, a little above its middle.
class Orbit {
 public:
  Orbit(vex::Scene& scene, const CommandLine& line, const Ball& shown) : ball(shown) {
    scene.viewers.allocate(1);
    viewer = scene.viewers[0] = new vex::Viewer;
    scene.viewerIndex = 0;
    viewer->fov = turntableFov;
    // Far enough for the ball to fit into the narrower angle, and for the near plane at 1.
    const double upright = static_cast<double>(turntableFov) * 0.75 * std::acos(-1.0) / 360.0;
    const double across = std::atan(std::tan(upright) * line.width / line.height);
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

vex::ContactSheet drawSides(vex::Scene& scene, const CommandLine& line, float seconds) {
  Orbit orbit(scene, line, surround(scene, {seconds}));
  vex::ContactSheet sheet(sides, line.width, line.height);
  std::vector<std::byte> pixels;
  for (int side = 0; side < sides; ++side) {
    const double degrees = side * 360.0 / sides;
    orbit.turnTo(degrees);
    draw(scene, line, seconds);
    vex::readBackBgra(line.width, line.height, pixels);
    sheet.add(degrees, pixels);
  }
  return sheet;
}

bool writePicture(vex::ReplacementFile& file, const CommandLine& line) {
  std::vector<std::byte> bgra;
  vex::readBackBgra(line.width, line.height, bgra);
  std::vector<std::byte> rgb;
  rgb.reserve(bgra.size() / 4 * 3);
  const auto rowSize = static_cast<std::size_t>(line.width) * 4;
  for (std::size_t row = bgra.size(); row > 0; row -= rowSize) {
    for (std::size_t pixel = row - rowSize; pixel < row; pixel += 4) {
      rgb.insert(rgb.end(), {bgra[pixel + 2], bgra[pixel + 1], bgra[pixel]});
    }
  }
  return vex::writePng(file, line.width, line.height, rgb);
}

// The model as the options ask for it, and a GL to draw it with.
void openScene(const CommandLine& line, vex::Scene& scene) {
  const std::string reason = vex::openOffscreenContext(line.width, line.height);
  if (!reason.empty()) vex::fatalError("no OpenGL to draw with: %s", reason.c_str());
  vex::setWindowSize(line.width, line.height);
  vex::setUpGlState();
  glViewport(0, 0, line.width, line.height);
  loadScene(line.file, scene);
  hideAndPose(line, scene);
  if (line.bare) makeBare(scene);
}

void turntable(const CommandLine& line) {
  constexpr int framesPerSecond = 30;
  constexpr int frames = 6 * framesPerSecond;
  const std::string out = std::filesystem::absolute(line.out).string();  // the working folder changes
  if (!vex::takesOddSizes(out) && (line.width % 2 != 0 || line.height % 2 != 0))
    vex::fatalError("%s: a picture of %dx%d has odd sides, .mkv takes them", line.out.c_str(), line.width,
                    line.height);
  vex::Scene scene;
  openScene(line, scene);
  vex::VideoEncoder encoder;
  const std::string failure = encoder.start(
      out, {.width = line.width, .height = line.height, .framesPerSecond = framesPerSecond, .quality = 2},
      {});
  if (!failure.empty()) vex::fatalError("%s", failure.c_str());
  Orbit orbit(scene, line, surround(scene, {0.0f, 0.25f, 0.5f, 0.75f, 1.0f}));
  auto result = vex::VideoEncoder::Result::complete;
  std::vector<std::byte> pixels;
  for (int frame = 0; frame < frames; ++frame) {
    orbit.turnTo(360.0 * frame / frames);
    draw(scene, line, static_cast<float>(frame) / frames);
    vex::readBackBgra(line.width, line.height, pixels);
    if (encoder.write(pixels)) continue;
    result = vex::VideoEncoder::Result::failed;
    break;
  }
  const std::string ending = encoder.finish(result);
  if (!ending.empty()) vex::fatalError("%s: %s", line.out.c_str(), ending.c_str());
}

void view(const CommandLine& line) {
  vex::ReplacementFile file(std::filesystem::absolute(line.out).string());  // the working folder changes
  if (!file.stream()) vex::fatalError("can't write %s: %s", line.out.c_str(), std::strerror(errno));
  vex::Scene scene;
  openScene(line, scene);
  const float seconds = line.content.seconds.value_or(0.0f);
  const int cameras = scene.viewers.count();
  if (line.cameraGiven && line.camera >= cameras) {
    vex::fatalError("%s has no camera %d, only %d of them", line.file.c_str(), line.camera, cameras);
  }
  bool written = false;
  if (cameras == 0) {
    written = drawSides(scene, line, seconds).write(file);
  } else {
    scene.viewerIndex = line.camera;
    draw(scene, line, seconds);
    written = writePicture(file, line);
  }
  if (!written) vex::fatalError("can't write %s: %s", line.out.c_str(), std::strerror(errno));
}

void checkForScene(const CommandLine& line) {
  const vex::SceneEntry* entry = vex::findSceneEntry(vex::sceneEntries(), line.scene);
  if (!entry || !entry->model) {
    std::string names;
    for (const vex::SceneEntry& known : vex::sceneEntries())
      if (known.model) names += (names.empty() ? "" : ", ") + std::string(known.name);
    vex::fatalError("%s is no scene that is built around a model; these are: %s", line.scene.c_str(),
                    names.c_str());
  }
  vex::ModelInfo info;
  vex::Scene scene;
  vex::readModel({enterFolder(line.file)}, &scene, vex::collectTextureNames(info));
  const std::vector<std::string> lacking = vex::lackingIn(scene, entry->needs);
  if (lacking.empty()) {
    printOut(line.file + ": holds all that " + entry->name + " asks for; the scene takes it as " +
             entry->model + "\n");
    return;
  }
  std::string text;
  for (const std::string& what : lacking) text += (text.empty() ? "" : ", ") + what;
  vex::fatalError("%s lacks for %s: %s", line.file.c_str(), entry->name, text.c_str());
}

// The folder that the data folder of a model's text is in.
std::string runFolderOf(const std::string& file) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::absolute(file).lexically_normal().parent_path();
  return (lowered(folder.filename().string()) == "data" ? folder.parent_path() : folder).string();
}

void import(const CommandLine& line) {
  if (!hasExtension(line.out, ".ase"))
    vex::fatalError("%s isn't the text of a model (.ase)", line.out.c_str());
  vex::Report report;
  const vex::SourceFile source = vex::readSource(line.file, report);
  vex::Imported imported = vex::importScene(source, line.import, report);
  imported.model.name = std::filesystem::path(line.out).stem().string();
  vex::TextureWriting textures = line.textures;
  if (textures.folder.empty()) textures.folder = runFolderOf(line.out);
  vex::writeTextures(imported.textures, textures, report);
  if (!textures.dryRun &&
      !vex::replaceFile(line.out, vex::writeModelText(imported.model, vex::NumberForm::exact)))
    vex::fatalError("can't write %s: %s", line.out.c_str(), std::strerror(errno));
  printOut(line.json ? vex::reportAsJson(report) : vex::reportAsText(report));
}

void exportModel(const CommandLine& line) {
  if (!hasExtension(line.out, ".glb"))
    vex::fatalError("%s isn't a binary glTF file (.glb)", line.out.c_str());
  const std::string out = std::filesystem::absolute(line.out).string();  // the working folder changes
  vex::Report report;
  vex::ModelInfo info;
  vex::Scene scene;
  vex::readModel({enterFolder(line.file)}, &scene, vex::collectTextureNames(info));
  if (!vex::replaceFile(out, vex::exportGlb(scene, info.textures, report)))
    vex::fatalError("can't write %s: %s", line.out.c_str(), std::strerror(errno));
  printOut(line.json ? vex::reportAsJson(report) : vex::reportAsText(report));
}

}  // namespace

int main(int argc, char** argv) {
  vex::openStandardStreams();
  vex::endAtSignals();
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h")) {
    printOut(usage);
    return 0;
  }
  const CommandLine line = parseCommandLine(arguments);
  if (line.command == "info") info(line);
  if (line.command == "compile") compile(line.file);
  if (line.command == "view") view(line);
  if (line.command == "turntable") turntable(line);
  if (line.command == "check") checkForScene(line);
  if (line.command == "export") exportModel(line);
  if (line.command == "import") return vex::runGuarded(line.file, [&line] { import(line); });
  return 0;
}
