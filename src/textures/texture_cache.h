#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "textures/image.h"

// Textures shared by all scenes. An id is the index in order of first load (0, 1, 2, ...) and also the
// GL texture name; id 0 is GL's default texture. The cache owns pixels and GL textures until
// destroyTextures().

namespace vex {

inline constexpr int maxTextures = 1000;
inline constexpr int textureNameSize = 32;     // at most 31 characters and the terminator
inline constexpr int movieFrameNameSize = 64;  // at most 63 characters and the terminator

// Pixels, width and height are empty where the image was rejected.
struct TextureEntry : Image {
  int id = -1;
  char name[textureNameSize] = {};
  bool wrap = false;                             // mode of the last upload: repeat or clamp
  std::vector<std::uint32_t> loadedPixels = {};  // of one that is drawn into, as they were
  bool fromFile = false;                         // of its name
  MaskUse maskUse = MaskUse::taken;              // with which that was read
};

// Id of the first texture of that name (path without extension, ASCII letter case ignored), loaded on
// first use and uploaded again when `wrap` differs from the last upload. Never -1.
// Fatal: "Texture %s not found", a name longer than 31 characters, a texture beyond 1000.
int getTexture(const char* name, bool wrap);

// As getTexture, but the first of that name whose alpha is not that of a mask.
int getTextureWithoutMask(const char* name, bool wrap);

// Loads name + ".jpg", or name + ".bmp" where there is no JPEG, as a new texture without a look at the
// others: one call after the other gives consecutive ids. Lower-cases the caller's text.
int loadTexture(char* name, bool wrap, MaskUse maskUse = MaskUse::taken);

// Reads the files of all loaded textures of that name again, which then stand as just loaded, with the same
// ids. False where no texture has the name. What cannot be read leaves all as they were; it is fatal as in
// getTexture. So does, with its warning, a picture whose sides are no powers of two.
bool reloadTextures(const std::string& name);

// Hands the pixels to the GL texture of the entry's id and leaves it bound; filters are linear.
void uploadTexture(const TextureEntry& entry, bool wrap);

// Makes pixels filled elsewhere a texture of their own: gives it the next id, uploads it, owns it.
int addTexture(TextureEntry entry, const char* name, bool wrap);

// Id of the last texture of that name, or of a new one, showing the JPEG `frameFile` without wrap. The
// file is read only when it differs from the frame loaded last by whichever movie. An entry takes the
// size of each frame. Fatal: a frame name longer than 63 characters.
int setMovieFrame(const char* textureName, const char* frameFile);

// Whether the cache takes both for one texture.
bool sameTextureName(std::string_view a, std::string_view b);

int textureCount();
TextureEntry& textureEntry(int id);

// How textures were uploaded last, by id.
std::vector<bool> textureWraps();

// Textures as they were then, those that were drawn into as they were loaded; the next frame of a movie is
// read anew. Textures loaded since then stay.
void restoreTextures(const std::vector<bool>& wraps);

// Logs "destroying textures\n", writes the list of used textures in builds with that switch, deletes
// all GL textures and empties the cache.
void destroyTextures();

}  // namespace vex
