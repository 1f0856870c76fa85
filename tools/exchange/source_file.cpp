#include "tools/exchange/source_file.h"

#include <assimp/DefaultIOSystem.h>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
#include <optional>

#include "base/report.h"

namespace vex {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t mostBytes = std::uintmax_t{512} << 20;
constexpr rlim_t mostMemory = rlim_t{6} << 30;
constexpr rlim_t mostSeconds = 300;

constexpr struct {
  const char* extension;
  SourceKind kind;
} kinds[]{{".gltf", SourceKind::gltf},
          {".glb", SourceKind::gltf},
          {".fbx", SourceKind::fbx},
          {".dae", SourceKind::collada},
          {".obj", SourceKind::obj}};

std::optional<SourceKind> findKind(const std::string& path) {
  std::string extension = fs::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  for (const auto& row : kinds)
    if (row.extension == extension) return row.kind;
  return std::nullopt;
}

SourceKind kindOf(const std::string& path) {
  if (const auto kind = findKind(path)) return *kind;
  fatalError("%s: only .gltf, .glb, .fbx, .dae and .obj files can be imported", path.c_str());
}

// What the library opens, within the folder of the file.
class FolderFiles : public Assimp::DefaultIOSystem {
 public:
  FolderFiles(std::string sourceFolder, Report& sourceReport)
      : folder(std::move(sourceFolder)), report(sourceReport) {}

  bool Exists(const char* file) const override {
    const std::string path = pathWithin(folder, file);
    return !path.empty() && DefaultIOSystem::Exists(path.c_str());
  }

  Assimp::IOStream* Open(const char* file, const char* mode) override {
    const std::string path = pathWithin(folder, file);
    if (path.empty()) {
      refuse(file, "lies outside the file's folder");
      return nullptr;
    }
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return nullptr;
    if (fs::file_size(path, error) > mostBytes) {
      refuse(file, "is larger than 512 MiB");
      return nullptr;
    }
    return DefaultIOSystem::Open(path.c_str(), mode);
  }

 private:
  void refuse(const char* file, const char* why) {
    const std::string text = "file " + std::string(file) + ": not read, it " + why;
    const auto same = [&](const Report::Line& line) { return line.text == text; };
    if (std::none_of(report.lines.begin(), report.lines.end(), same)) report.left(text);
  }

  std::string folder;
  Report& report;
};

// Without recursion, since a file may nest as deep as it likes.
void checkSize(const SourceFile& source) {
  std::vector<const aiNode*> open{source.scene->mRootNode};
  unsigned nodes = 0;
  unsigned long triangles = 0;
  while (!open.empty()) {
    const aiNode* node = open.back();
    open.pop_back();
    if (++nodes > mostNodes) fatalError("%s: more than %u nodes", source.path.c_str(), mostNodes);
    for (unsigned i = 0; i < node->mNumMeshes; ++i) {
      if (node->mMeshes[i] >= source.scene->mNumMeshes)
        fatalError("%s: node %s asks for mesh %u of %u", source.path.c_str(), node->mName.C_Str(),
                   node->mMeshes[i], source.scene->mNumMeshes);
      const aiMesh& mesh = *source.scene->mMeshes[node->mMeshes[i]];
      triangles += std::max(mesh.mNumFaces, mesh.mNumVertices / 3);
      if (triangles > mostTriangles)
        fatalError("%s: more than %lu triangles or three times as many vertices", source.path.c_str(),
                   mostTriangles);
    }
    open.insert(open.end(), node->mChildren, node->mChildren + node->mNumChildren);
  }
}

}  // namespace

bool canBeImported(const std::string& path) {
  return findKind(path).has_value();
}

std::string pathWithin(const std::string& folder, const std::string& name) {
  std::string slashed = name;
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  std::error_code error;
  const fs::path root = fs::weakly_canonical(folder.empty() ? "." : folder, error);
  // The library gives names with the folder or without.
  for (const fs::path& candidate : {fs::path(slashed), root / slashed}) {
    const fs::path path = fs::weakly_canonical(candidate, error);
    if (error) continue;
    const auto end = std::mismatch(root.begin(), root.end(), path.begin(), path.end()).first;
    if (end == root.end() && path != root) return path.string();
  }
  return {};
}

SourceFile readSource(const std::string& path, Report& report) {
  SourceFile source{.path = path, .folder = {}, .kind = kindOf(path), .importer = {}, .scene = {}};
  std::error_code error;
  if (!fs::is_regular_file(path, error))
    fatalError("%s: %s", path.c_str(), error ? error.message().c_str() : "no file");
  if (access(path.c_str(), R_OK) != 0) fatalError("%s: %s", path.c_str(), std::strerror(errno));
  if (fs::file_size(path, error) > mostBytes) fatalError("%s: larger than 512 MiB", path.c_str());
  const fs::path whole = fs::weakly_canonical(path, error);
  source.folder = whole.parent_path().string();

  source.importer = std::make_unique<Assimp::Importer>();
  Assimp::Importer& importer = *source.importer;
  importer.SetIOHandler(new FolderFiles(source.folder, report));
  importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
  importer.SetPropertyInteger(AI_CONFIG_PP_SBP_REMOVE, aiPrimitiveType_POINT | aiPrimitiveType_LINE);
  try {
    source.scene = importer.ReadFile(
        whole.string(), aiProcess_Triangulate | aiProcess_SortByPType | aiProcess_ValidateDataStructure);
  } catch (const std::bad_alloc&) {
    fatalError("%s: asks for more memory than there is", path.c_str());
  }
  if (!source.scene || !source.scene->mRootNode)
    fatalError("%s: can't be read: %s", path.c_str(), importer.GetErrorString());
  checkSize(source);
  return source;
}

int runGuarded(const std::string& path, const std::function<void()>& work) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) fatalError("can't start a process: %s", std::strerror(errno));
  if (child == 0) {
#if !defined(__SANITIZE_ADDRESS__)
    const rlimit memory{mostMemory, mostMemory};
    setrlimit(RLIMIT_AS, &memory);
#endif
    const rlimit time{mostSeconds, mostSeconds};
    setrlimit(RLIMIT_CPU, &time);
    try {
      work();
    } catch (const std::bad_alloc&) {
      fatalError("%s: asks for more memory than there is", path.c_str());
    }
    std::fflush(nullptr);
    _exit(0);
  }
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFSIGNALED(status)) {
    fatalError("%s: reading it came to a bad end (%s), so nothing of it was taken", path.c_str(),
               strsignal(WTERMSIG(status)));
  }
  const int code = WEXITSTATUS(status);
  constexpr int known[]{0, 130, 255};  // done, interrupted, refused
  if (std::find(std::begin(known), std::end(known), code) == std::end(known))
    fatalError("%s: reading it came to a bad end (exit code %d), so nothing of it was taken", path.c_str(),
               code);
  return code;
}

}  // namespace vex
