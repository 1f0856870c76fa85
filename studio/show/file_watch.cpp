#include "studio/show/file_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <utility>

namespace vex::studio {

namespace {

namespace fs = std::filesystem;

// Closed after writing, moved in or away, deleted; of the folder itself, to look for its next life.
constexpr std::uint32_t fileEvents = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr std::uint32_t folderEvents = IN_CREATE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

constexpr std::size_t mostFolders = 1000;

fs::path folderOf(const fs::path& path) {
  const fs::path folder = path.parent_path();
  return folder.empty() ? fs::path(".") : folder;
}

// As it was given: what stands in the current folder has no folder in its name.
std::string inFolder(const std::string& given, const std::string& name) {
  return given.empty() ? name : (fs::path(given) / name).native();
}

}  // namespace

struct FileWatch::State {
  // A folder of which something is wanted.
  struct Folder {
    bool allFiles = false;
    std::set<std::string> names;     // of files
    std::vector<std::string> given;  // how its path was written
    int watch = -1;                  // -1: it is not there, and a folder above it is watched
  };

  int descriptor = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  std::map<std::string, Folder> folders;         // by path
  std::map<int, std::set<std::string>> watched;  // the folders, wanted or above one, by watch
  std::vector<std::string> changed;
  bool foldersChanged = false;

  ~State() {
    if (descriptor >= 0) close(descriptor);
  }

  void add(const std::string& folder, const std::string& name);
  void addBelow(const std::string& folder);
  void watch(const std::string& path);
  void tell(const std::string& path);
  void tellWhatIsThere(const std::string& path);
  void lookAgain();
  void take(const inotify_event& event);
};

void FileWatch::State::add(const std::string& given, const std::string& name) {
  const std::string path = given.empty() ? "." : fs::path(given).lexically_normal().native();
  Folder& folder = folders[path];
  if (std::find(folder.given.begin(), folder.given.end(), given) == folder.given.end())
    folder.given.push_back(given);
  if (name.empty()) {
    folder.allFiles = true;
  } else {
    folder.names.insert(name);
  }
  watch(path);
}

// The folders in one of which all files are wanted. Files that came with one of them are told where it was
// not known before.
void FileWatch::State::addBelow(const std::string& given) {
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(given, error)) {
    if (folders.size() >= mostFolders || !entry.is_directory(error) || entry.is_symlink(error)) continue;
    const std::string below = inFolder(given, entry.path().filename().native());
    if (entry.path().filename().native().starts_with('.') ||
        folders.contains(fs::path(below).lexically_normal().native()))
      continue;
    add(below, {});
    tellWhatIsThere(fs::path(below).lexically_normal().native());
    addBelow(below);
  }
}

// The folder, or where it is missing the next one above that is there.
void FileWatch::State::watch(const std::string& path) {
  folders[path].watch = -1;
  if (descriptor < 0) return;
  for (fs::path at = path;; at = folderOf(at)) {
    const int number = inotify_add_watch(descriptor, at.c_str(), fileEvents | folderEvents);
    if (number >= 0) {
      watched[number].insert(at.native());
      if (at == path) folders[path].watch = number;
      return;
    }
    if (at == folderOf(at)) return;
  }
}

void FileWatch::State::tell(const std::string& path) {
  if (std::find(changed.begin(), changed.end(), path) == changed.end()) changed.push_back(path);
}

// Of a folder that has come with files in it.
void FileWatch::State::tellWhatIsThere(const std::string& path) {
  const Folder& folder = folders[path];
  std::error_code error;
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(path, error)) {
    const std::string name = entry.path().filename().native();
    if (entry.is_regular_file(error) && !name.starts_with('.') &&
        (folder.allFiles || folder.names.contains(name)))
      names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  for (const std::string& given : folder.given)
    for (const std::string& name : names) tell(inFolder(given, name));
}

// Something has come or gone that may be a folder, or lead to one.
void FileWatch::State::lookAgain() {
  for (auto& [path, folder] : folders) {
    const int before = folder.watch;
    watch(path);
    if (folder.watch == before) continue;
    if (before >= 0) {
      inotify_rm_watch(descriptor, before);  // it may live on elsewhere
      watched.erase(before);
      for (const std::string& given : folder.given)
        for (const std::string& name : folder.names) tell(inFolder(given, name));
    }
    if (folder.watch >= 0) tellWhatIsThere(path);
  }
  std::vector<std::string> wholes;
  for (const auto& [path, folder] : folders)
    if (folder.allFiles) wholes.insert(wholes.end(), folder.given.begin(), folder.given.end());
  for (const std::string& given : wholes) addBelow(given);
}

void FileWatch::State::take(const inotify_event& event) {
  if (event.mask & (IN_IGNORED | IN_DELETE_SELF | IN_MOVE_SELF | IN_ISDIR)) {
    foldersChanged = true;
    return;
  }
  if (event.mask & IN_Q_OVERFLOW) {  // what has been lost, nobody knows
    for (const auto& [path, folder] : folders) tellWhatIsThere(path);
    return;
  }
  if (event.mask & IN_CREATE) return;  // it is being written
  const std::string name = event.len > 0 ? event.name : "";
  if (name.empty() || name.starts_with('.')) return;
  for (const std::string& path : watched[event.wd]) {
    const auto folder = folders.find(path);
    if (folder == folders.end() || (!folder->second.allFiles && !folder->second.names.contains(name)))
      continue;
    for (const std::string& given : folder->second.given) tell(inFolder(given, name));
  }
}

FileWatch::FileWatch() : state(std::make_unique<State>()) {}
FileWatch::~FileWatch() = default;

void FileWatch::addFile(const std::string& path) {
  state->add(fs::path(path).parent_path().native(), fs::path(path).filename().native());
}

void FileWatch::addFolder(const std::string& path) {
  state->add(path, {});
  state->addBelow(path);
  state->changed.clear();  // what lay there before is no news
}

int FileWatch::descriptor() const {
  return state->descriptor;
}

std::vector<std::string> FileWatch::changed() {
  alignas(inotify_event) std::array<char, 1 << 14> buffer;
  do {
    for (ssize_t size = 0;
         state->descriptor >= 0 && (size = read(state->descriptor, buffer.data(), buffer.size())) > 0;) {
      for (ssize_t at = 0; at < size;) {
        const auto& event =
            *reinterpret_cast<const inotify_event*>(buffer.data() + at);  // aligned, says inotify(7)
        state->take(event);
        at += static_cast<ssize_t>(sizeof event + event.len);
      }
    }
    // Behind all that is known of folders as they were; what that stirs up is read, too.
    if (!std::exchange(state->foldersChanged, false)) break;
    state->lookAgain();
  } while (true);
  return std::exchange(state->changed, {});
}

}  // namespace vex::studio
