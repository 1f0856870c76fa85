#pragma once

#include <string>

#include "models/model_loader.h"

// Where a model comes from: its text, or the compiled form that reading the text leaves beside it.

namespace vex {

struct ModelLoad;

// The compiled file where it belongs to the text (its stamp equals the text's comment) or is alone. What had
// to be decoded to tell is in the result.
ModelSource chooseSource(const std::string& base);

// Opens the file, taking the data that the source holds, and decides whether its compiled form is recorded.
void prepareSource(ModelLoad& load);

// After the first pass: nothing more is recorded.
void endRecording(ModelLoad& load);

// Writes the recorded stream where it is complete; the log says why it is not. A model that is refused in
// the second pass has none.
void saveStream(ModelLoad& load);

}  // namespace vex
