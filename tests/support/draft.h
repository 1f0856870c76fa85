#pragma once

#include <filesystem>

// The small form of the whole presentation for tests. It takes longer to make than most of them run: the
// first test that asks for it makes it beside the program, anew only what its code has changed since.

namespace vex {

// A copy of its own below `folder`, as the generator leaves it: test.hvp, used_textures.log and data/.
void placeDraft(const std::filesystem::path& folder);

// The one that all copies come from, up to date; not to be written to.
std::filesystem::path sharedDraft();

}  // namespace vex
