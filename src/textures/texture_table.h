#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "textures/texture_cache.h"

namespace vex {

constexpr char lowerCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// A name of at most Size - 1 characters in lower case, filled up with zeros.
template <int Size>
struct FoldedName {
  char text[Size] = {};
  bool fits = false;

  FoldedName() = default;
  explicit FoldedName(const char* name) {
    int length = 0;
    while (length < Size - 1 && name[length] != '\0') {
      text[length] = lowerCase(name[length]);
      ++length;
    }
    fits = name[length] == '\0';
  }

  bool operator==(const FoldedName& other) const { return std::memcmp(text, other.text, Size) == 0; }
};

using TextureName = FoldedName<textureNameSize>;
using MovieFrameName = FoldedName<movieFrameNameSize>;

// The textures of a show; texture_cache.h works on the current one.
struct TextureTable {
  // Where the ids of a name are found: a hash table with linear probing, never more than half full.
  struct NameSlot {
    TextureName name;
    std::int16_t first = -1;  // in id order; -1 in a free slot
    std::int16_t last = -1;
  };
  static constexpr std::size_t nameSlotCount = 2048;
  static_assert(nameSlotCount >= 2 * maxTextures);

  std::array<TextureEntry, maxTextures> entries;
  int entryCount = 0;
  std::array<NameSlot, nameSlotCount> nameSlots;
  char lastMovieFrame[movieFrameNameSize] = "";
};

}  // namespace vex
