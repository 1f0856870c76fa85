#pragma once

#include "studio/document/document.h"

namespace vex::studio {

// Expects that the document's record and places are those that its text gives when it is read anew.
void expectInStep(const Document& document);

}  // namespace vex::studio
