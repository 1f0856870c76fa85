#pragma once

#include "studio/document/draft.h"
#include "timeline/project_record.h"

// Curves of a part whose beginning or end has moved.

namespace vex::studio {

// Every curve shows at every demo time what it showed in the part as it was `before`: the dots move in
// progress, also beyond 0 and 1, where they bend the curve still and come back when the part grows again;
// sines change cycles and phase. Throws Refusal.
void keepCurves(Draft& draft, int part, const ProjectPart& before);

// Dots that are times of a part that has another length than `before` keep their progress. Throws Refusal.
void stretchCurves(Draft& draft, int part, const ProjectPart& before);

// Removes the dots outside the part that its lines never come near. Throws Refusal.
void dropUnseenDots(Draft& draft, int part);

}  // namespace vex::studio
