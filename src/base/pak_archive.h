#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "base/pak_directory.h"

// Making and unpacking archives, for tools. The player reads them through files.h.

namespace vex {

// Packs every regular file below `folder`, in byte order of their names; hidden files (a leading dot)
// and the archive itself stay out. The archive appears under its name only when it is complete.
// Fatal: more than 256 members, a name over 31 characters, two names that differ only in letter case,
// a name with a backslash or a control character, more than 4 GiB, what cannot be read or written.
void createPak(const std::filesystem::path& pak, const std::filesystem::path& folder);

// The same for the files that are `wanted` by their names below the folder (with slashes); gives the names of
// the others, whatever they look like.
std::vector<std::string> createPak(const std::filesystem::path& pak, const std::filesystem::path& folder,
                                   const std::function<bool(const std::string& name)>& wanted);

std::vector<PakMember> listPak(const std::filesystem::path& pak);

// Writes every member below `folder`, which is made when it is missing. Nothing is written unless all
// names are safe: relative, without "..", empty parts, drive letters or control characters, no name twice
// (ignoring letter case), and no link on the way from `folder` to any of them.
void extractPak(const std::filesystem::path& pak, const std::filesystem::path& folder);

}  // namespace vex
