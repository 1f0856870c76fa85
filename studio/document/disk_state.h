#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "studio/document/text_file.h"

// What a text file holds against what was last read from it or written to it.

namespace vex::studio {

enum class DiskChange : std::int8_t {
  none,
  changed,
  gone,        // there is no such file any more
  unreadable,  // what it holds cannot be known
};

enum class Overwrite : std::int8_t { no, yes };

class DiskState {
 public:
  explicit DiskState(std::string path);  // reads nothing yet

  const std::string& path() const { return file; }

  // What it holds, which counts as known from then on unless there is trouble.
  FileText read();

  // By the bytes. Before anything was read or written every file counts as changed.
  DiskChange change() const;
  bool changedOutside() const { return change() != DiskChange::none; }

  // Nothing unseen is overwritten: refused where the file holds something else than what is known, unless
  // told otherwise. One that is gone is written anew. Gives the trouble, as a sentence; the file is then as
  // it was.
  std::optional<std::string> save(const std::string& text, Overwrite overwrite = Overwrite::no);

  // From then on the file is another one. Refused, like save(), where that is there already.
  std::optional<std::string> saveAs(const std::string& path, const std::string& text,
                                    Overwrite overwrite = Overwrite::no);

 private:
  std::string file;
  std::optional<std::string> known;
};

}  // namespace vex::studio
