#pragma once

#include <string>

#include "studio/document/document.h"
#include "studio/document/draft.h"

// Edits of the calls of a part, as Document promises them. Each gives the call's index afterwards; all throw
// Refusal and may then leave changes in the draft.

namespace vex::studio {

int addCall(Draft& draft, int part, const std::string& scene, const std::string& function);
int removeCall(Draft& draft, CallAt at);  // index of the one that follows, or of the last
int moveCall(Draft& draft, CallAt at, int to);

// A call of the function, in lines of at most 100 bytes of which the first begins behind `indent`, with
// values from the middle of the useful ranges; texts are those that stand last in such calls, or
// behind such a name. Throws Refusal where there is no such function.
std::string newCallText(const Project& project, const std::string& scene, const std::string& function,
                        const std::string& indent, const std::string& lineEnd);

}  // namespace vex::studio
