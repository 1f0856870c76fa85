#pragma once

// "used_textures.log": the textures that a show uses, one a line: name, blank, 1 for wrap or 0. It is
// read at start-up, so that nothing is loaded in mid-show.

namespace vex {

// Loads what the list names; a missing list is no error. Lines without two fields are ignored.
// Logs "preloading texture %s w/ wrap\n" or "preloading texture %s\n".
void preloadTextures();

// Writes the whole cache as such a list, in id order. Movies and the statistics font have no image
// file of their name, so their lines are to be taken out by hand.
void writeUsedTextures();

}  // namespace vex
