#include "tests/support/draft.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "production/making/maker.h"
#include "production/products.h"

namespace vex {

namespace fs = std::filesystem;

fs::path sharedDraft() {
  const fs::path draft = fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "draft";
  // Tests run side by side: one makes it, the others wait.
  const int lock = open((draft.native() + ".lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0644);
  flock(lock, LOCK_EX);
  makeProducts(allProducts(), draft, Settings{true}, ProgressStyle::none);
  close(lock);
  return draft;
}

void placeDraft(const fs::path& folder) {
  fs::copy(sharedDraft(), folder, fs::copy_options::recursive);
}

}  // namespace vex
