#pragma once

#include "assets/image.h"

// JPEG files of textures and movie frames. Greyscale files give three equal channels.
// Fatal for both: "Texture %s not found", "ijlInit() failed", "ijlRead(Params) failed", "ijlRead(image)
// failed" (also where the data end early), "strange JPEG format" (neither 1 nor 3 channels).

namespace vex {

// The texture `file` with its mask `..._mask.jpg` when there is one. Empty, with a warning, when a
// side is no power of two. Fatal: a mask of another size.
Image readJpegTexture(const char* file);

// A movie frame: of any size, without mask.
Image readJpegFrame(const char* file);

}  // namespace vex
