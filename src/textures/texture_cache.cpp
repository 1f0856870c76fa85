#include "textures/texture_cache.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "base/current.h"
#include "base/files.h"
#include "base/report.h"
#include "textures/bmp.h"
#include "textures/jpeg_texture.h"
#include "textures/preload_list.h"
#include "textures/texture_table.h"

namespace vex {
namespace {

using NameSlot = TextureTable::NameSlot;

TextureTable& table() {
  return current<TextureTable>();
}

// Eight characters at a time.
std::size_t hashName(const TextureName& name) {
  std::uint64_t hash = 0;
  for (std::size_t i = 0; i < sizeof name.text; i += 8) {
    std::uint64_t characters;
    std::memcpy(&characters, name.text + i, 8);
    hash = (hash ^ characters) * 0x9e3779b97f4a7c15u;  // 2^64 over the golden ratio
    hash ^= hash >> 32;
  }
  return hash;
}

TextureName checkedName(const char* name) {
  const TextureName folded(name);
  if (!folded.fits) fatalError("texture name %s is longer than %d characters", name, textureNameSize - 1);
  return folded;
}

// The slot of the name, or the free one where it would stand.
NameSlot& findSlot(const TextureName& name) {
  for (std::size_t i = hashName(name) % TextureTable::nameSlotCount;;
       i = (i + 1) % TextureTable::nameSlotCount) {
    NameSlot& slot = table().nameSlots[i];
    if (slot.first < 0 || slot.name == name) return slot;
  }
}

// From the first texture of the name on; -1 where all have masks.
int findUnmasked(const TextureName& name, int first) {
  for (int id = first; id >= 0 && id < table().entryCount; ++id) {
    const TextureEntry& entry = table().entries[static_cast<std::size_t>(id)];
    if (!entry.masked && TextureName(entry.name) == name) return id;
  }
  return -1;
}

// The JPEG of the name without extension, or the BMP where there is none.
Image readTextureFile(const std::string& stem, MaskUse maskUse) {
  const std::string jpeg = stem + ".jpg";
  if (fileExists(jpeg)) return readJpegTexture(jpeg.c_str(), maskUse);
  refuseUnreadable(jpeg);
  return readBmpTexture((stem + ".bmp").c_str(), maskUse);
}

int useTexture(int id, bool wrap) {
  TextureEntry& entry = textureEntry(id);
  if (entry.wrap != wrap) uploadTexture(entry, wrap);
  entry.wrap = wrap;
  return id;
}

}  // namespace

int getTexture(const char* name, bool wrap) {
  TextureName folded = checkedName(name);
  const int id = findSlot(folded).first;
  return id < 0 ? loadTexture(folded.text, wrap) : useTexture(id, wrap);
}

int getTextureWithoutMask(const char* name, bool wrap) {
  TextureName folded = checkedName(name);
  const int id = findUnmasked(folded, findSlot(folded).first);
  return id < 0 ? loadTexture(folded.text, wrap, MaskUse::ignored) : useTexture(id, wrap);
}

int loadTexture(char* name, bool wrap, MaskUse maskUse) {
  const TextureName folded = checkedName(name);
  std::memcpy(name, folded.text, std::strlen(folded.text));
  TextureEntry entry;
  static_cast<Image&>(entry) = readTextureFile(folded.text, maskUse);
  entry.fromFile = true;
  entry.maskUse = maskUse;
  return addTexture(std::move(entry), folded.text, wrap);
}

bool reloadTextures(const std::string& name) {
  const TextureName folded(name.c_str());
  std::vector<std::pair<int, Image>> images;
  for (int id = folded.fits ? findSlot(folded).first : -1; id >= 0 && id < textureCount(); ++id) {
    const TextureEntry& entry = textureEntry(id);
    if (entry.fromFile && TextureName(entry.name) == folded)
      images.emplace_back(id, readTextureFile(folded.text, entry.maskUse));
  }
  for (auto& [id, image] : images) {
    if (image.pixels.empty()) continue;
    TextureEntry& entry = textureEntry(id);
    static_cast<Image&>(entry) = std::move(image);
    entry.loadedPixels.clear();
    uploadTexture(entry, entry.wrap);
  }
  return !images.empty();
}

void uploadTexture(const TextureEntry& entry, bool wrap) {
  const float mode = wrap ? GL_REPEAT : GL_CLAMP;
  glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(entry.id));
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, mode);
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, mode);
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
  const void* pixels = entry.pixels.empty() ? nullptr : entry.pixels.data();
  glTexImage2D(GL_TEXTURE_2D, 0, 4, entry.width, entry.height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
}

int addTexture(TextureEntry entry, const char* name, bool wrap) {
  if (textureCount() == maxTextures) fatalError("too many textures, %s is more than %d", name, maxTextures);
  const TextureName folded = checkedName(name);
  entry.id = textureCount();
  std::memcpy(entry.name, name, std::strlen(name) + 1);
  entry.wrap = wrap;
  uploadTexture(entry, wrap);
  const int id = entry.id;
  table().entries[static_cast<std::size_t>(id)] = std::move(entry);
  ++table().entryCount;
  NameSlot& slot = findSlot(folded);
  slot.name = folded;
  slot.last = static_cast<std::int16_t>(id);
  if (slot.first < 0) slot.first = slot.last;
  return id;
}

int setMovieFrame(const char* textureName, const char* frameFile) {
  const TextureName name = checkedName(textureName);
  const MovieFrameName frame(frameFile);
  if (!frame.fits) {
    fatalError("movie frame name %s is longer than %d characters", frameFile, movieFrameNameSize - 1);
  }
  int id = findSlot(name).last;
  if (id >= 0 && std::strcmp(frame.text, table().lastMovieFrame) == 0) return id;

  Image picture = readJpegFrame(frame.text);
  if (id < 0) {
    TextureEntry entry;
    static_cast<Image&>(entry) = std::move(picture);
    id = addTexture(std::move(entry), name.text, false);
  } else {
    TextureEntry& entry = textureEntry(id);
    const GLuint texture = static_cast<GLuint>(id);
    glDeleteTextures(1, &texture);
    static_cast<Image&>(entry) = std::move(picture);
    entry.wrap = false;
    uploadTexture(entry, false);
  }
  std::memcpy(table().lastMovieFrame, frame.text, sizeof table().lastMovieFrame);
  return id;
}

bool sameTextureName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lowerCase(x) == lowerCase(y); });
}

int textureCount() {
  return table().entryCount;
}

TextureEntry& textureEntry(int id) {
  if (id < 0 || id >= textureCount()) fatalError("texture %d isn't one of the %d loaded", id, textureCount());
  return table().entries[static_cast<std::size_t>(id)];
}

std::vector<bool> textureWraps() {
  std::vector<bool> wraps;
  for (int id = 0; id < textureCount(); ++id) wraps.push_back(textureEntry(id).wrap);
  return wraps;
}

void restoreTextures(const std::vector<bool>& wraps) {
  int id = 0;
  for (const bool wrap : wraps) {
    TextureEntry& entry = textureEntry(id++);
    if (entry.wrap == wrap && entry.loadedPixels.empty()) continue;
    if (!entry.loadedPixels.empty()) entry.pixels = entry.loadedPixels;
    entry.wrap = wrap;
    uploadTexture(entry, wrap);
  }
  table().lastMovieFrame[0] = '\0';
}

void destroyTextures() {
  logPrintf("destroying textures\n");
#ifdef VEX_WRITE_USED_TEXTURES
  writeUsedTextures();
#endif
  std::vector<GLuint> names;
  for (int id = 0; id < table().entryCount; ++id) names.push_back(static_cast<GLuint>(id));
  if (!names.empty()) glDeleteTextures(static_cast<GLsizei>(names.size()), names.data());
  table() = {};
}

}  // namespace vex
