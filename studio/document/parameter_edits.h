#pragma once

#include <string>

#include "studio/document/document.h"
#include "studio/document/draft.h"

// Edits of the values of one parameter, as Document promises them. All throw Refusal and may then leave
// changes in the draft.

namespace vex::studio {

void setConstant(Draft& draft, ParameterAt at, double value);
void setString(Draft& draft, ParameterAt at, const std::string& value);
void setSine(Draft& draft, ParameterAt at, SineField field, double value);
void setKind(Draft& draft, ParameterAt at, ParameterType kind, double progress);

// Give the dot's index afterwards; of a removed one that of its follower, or of the last.
int setDot(Draft& draft, ParameterAt at, int dot, double x, double y);
int addDot(Draft& draft, ParameterAt at, double x, double y);
int removeDot(Draft& draft, ParameterAt at, int dot);

}  // namespace vex::studio
