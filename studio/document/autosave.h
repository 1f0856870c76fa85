#pragma once

#include <optional>
#include <string>

// A copy of a text that is not saved yet, for the case that the program ends before it is: ".NAME.autosave"
// beside "NAME", or where that folder cannot be written in the user's cache folder ($XDG_CACHE_HOME or
// ~/.cache, there vex/autosave).

namespace vex::studio {

// What an earlier run left: a text that differs from the file's and is not older.
struct LeftAutosave {
  std::string path;
  std::string text;
};
std::optional<LeftAutosave> findAutosave(const std::string& textPath);

class Autosave {
 public:
  explicit Autosave(std::string textPath);

  // Only where the text is another one than was written last. Gives the trouble, as a sentence.
  std::optional<std::string> write(const std::string& text);

  // To be called when the text is saved or given up; removes both files.
  void remove();

 private:
  std::string textPath;
  std::optional<std::string> written;
};

}  // namespace vex::studio
