#pragma once

#include <string>

#include "studio/document/draft.h"
#include "studio/document/number_style.h"

// Edits of whole parts, as Document promises them. Each gives the part's index afterwards; all throw Refusal
// and may then leave changes in the draft.

namespace vex::studio {

int movePart(Draft& draft, int part, double pos, int track);
int trimStart(Draft& draft, int part, double pos);
int trimEnd(Draft& draft, int part, double end, Precision precision = Precision::shown);
int setPartStart(Draft& draft, int part, double sceneTime);
int setPartLength(Draft& draft, int part, double seconds);
int setPartSpeed(Draft& draft, int part, double speed);
int renamePart(Draft& draft, int part, const std::string& name);
int removePart(Draft& draft, int part);  // index of the one that follows, or of the last

// Takes a part to where its beginning belongs among the others, unless it would mean something else there.
int settlePart(Draft& draft, int part);

// Between the keys of the part: blanks, or a line end and what begins its lines.
std::string keySeparator(const Draft& draft, const PartPlace& place);

}  // namespace vex::studio
