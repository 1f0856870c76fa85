#include "studio/document/disk_state.h"

#include <utility>

namespace vex::studio {

DiskState::DiskState(std::string path) : file(std::move(path)) {}

FileText DiskState::read() {
  FileText text = readText(file);
  if (!text.trouble) known = text.text;
  return text;
}

DiskChange DiskState::change() const {
  const FileText now = readText(file);
  if (now.missing) return DiskChange::gone;
  if (now.trouble) return DiskChange::unreadable;
  return known && *known == now.text ? DiskChange::none : DiskChange::changed;
}

std::optional<std::string> DiskState::save(const std::string& text, Overwrite overwrite) {
  if (overwrite == Overwrite::no) {
    const DiskChange changed = change();
    if (changed == DiskChange::changed) return file + " was changed by someone else since it was read.";
    if (changed == DiskChange::unreadable) return readText(file).trouble;
  }
  const std::optional<std::string> trouble = writeText(file, text);
  if (!trouble) known = text;
  return trouble;
}

std::optional<std::string> DiskState::saveAs(const std::string& path, const std::string& text,
                                             Overwrite overwrite) {
  DiskState other(path);
  if (overwrite == Overwrite::no && other.change() != DiskChange::gone) return path + " is there already.";
  const std::optional<std::string> trouble = other.save(text, Overwrite::yes);
  if (!trouble) *this = std::move(other);
  return trouble;
}

}  // namespace vex::studio
