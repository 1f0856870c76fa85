#pragma once

#include <optional>
#include <string>

// Texts on the disk, whole. Troubles are sentences that name the file and the reason.

namespace vex::studio {

struct FileText {
  std::string text;
  std::optional<std::string> trouble;
  bool missing = false;  // the trouble is that there is no such file
};

// At most 256 MiB, as the compiler takes them.
FileText readText(const std::string& path);

// In one step: the file has the old text or the new one, never a part. Permissions stay; of a link the file
// behind it is written. What no one may write is not replaced.
std::optional<std::string> writeText(const std::string& path, const std::string& text);

}  // namespace vex::studio
