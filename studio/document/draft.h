#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "authoring/project_places.h"
#include "authoring/project_text.h"
#include "timeline/project_record.h"

// A text with what was read from it, kept in step: after a change inside parts only these are read again.

namespace vex::studio {

// Why an edit is not made, as a sentence.
struct Refusal {
  std::string text;
};

// Bytes of the text and what is to stand in their place; an empty span inserts.
struct Replacement {
  TextSpan where;
  std::string with;
};

// How far a change reaches. One that may take away or change statements other than parts reaches the whole.
enum class Reach : std::int8_t { parts, whole };

struct TextChange {
  struct Piece {
    std::size_t offset = 0;  // in the text before the change
    std::string removed;
    std::string inserted;
  };
  std::vector<Piece> pieces;  // ascending, apart
  Reach reach = Reach::parts;
};

TextChange inverseOf(const TextChange& change);
void applyTo(std::string& text, const TextChange& change);

// What makes `after` of `before`, as one piece.
TextChange differenceOf(const std::string& before, const std::string& after);

class Draft {
 public:
  explicit Draft(std::string text);

  const std::string& text() const { return content; }
  const std::vector<TextProblem>& problems() const { return found; }
  std::uint64_t revision() const { return changesMade; }

  // Of the text, or of the last one that had no problems.
  const Project& project() const { return read; }
  const ProjectPlaces& places() const;
  const PartPlace& partPlace(int part) const;  // cheaper where only this one is asked for
  const std::optional<Tempo>& tempo() const { return firstTempo; }

  // One change of the text, which has no problems. Throws Refusal, with nothing changed, where it would have
  // some. What is replaced by itself does not count.
  void rewrite(std::vector<Replacement> replacements, Reach reach = Reach::parts);

  // Any change, whatever the text is then. It is remembered.
  void make(TextChange change);

  // Changes that were made and not forgotten.
  const std::vector<TextChange>& changes() const { return made; }
  std::vector<TextChange> takeBack(std::size_t first);  // from that one on; gives them
  std::vector<TextChange> forgetChanges();              // gives them

 private:
  // Parts from this one on, and all that stands behind them, are so many bytes further on than noted.
  struct Shift {
    std::size_t fromPart = 0;
    std::size_t fromByte = 0;
    std::ptrdiff_t bytes = 0;
  };

  TextSpan wholePart(std::size_t part) const;
  Reach apply(const TextChange& change);  // how much was read again
  void readAll();
  bool readPartsAgain(std::size_t begin, std::size_t end, std::ptrdiff_t grown, std::ptrdiff_t linesMore);
  void settleShift() const;

  std::string content;
  Project read;
  mutable ProjectPlaces noted;
  mutable Shift shift;
  std::vector<TextProblem> found;
  std::optional<Tempo> firstTempo;
  std::vector<TextChange> made;
  std::uint64_t changesMade = 0;
};

}  // namespace vex::studio
