#pragma once

#include <string>

#include "models/model_loader.h"

// Where a model comes from: its text, or the compiled form that reading the text leaves beside it.

namespace vex {

// The compiled file where it belongs to the text (its stamp equals the text's comment) or is alone. What had
// to be decoded to tell is in the result.
ModelSource chooseSource(const std::string& base);

// Opens the file for readModel(), taking the data that it holds, and decides whether its compiled form is
// recorded.
void prepareSource(ModelSource& source);

// After the first pass: nothing more is recorded.
void endRecording();

// Writes the recorded stream where it is complete; the log says why it is not. A model that is refused in
// the second pass has none.
void saveStream(const ModelSource& source);

// Why the compiled form of the text read last was not written; empty when it was, or was not asked for.
const std::string& recordingObstacle();

void releaseSource();

}  // namespace vex
