#pragma once

#include <string>

#include "studio/document/draft.h"

// Edits of what stands outside the parts, as Document promises them. All throw Refusal and may then leave
// changes in the draft.

namespace vex::studio {

void setTotalTime(Draft& draft, double seconds);
void setStartTime(Draft& draft, double seconds);
void setTempo(Draft& draft, double beatsPerMinute);
void setMusic(Draft& draft, const std::string& file);

// Give the tick's index afterwards; of a removed one that of its follower, or of the last.
int addTick(Draft& draft, double time, const std::string& name);
int moveTick(Draft& draft, int tick, double time);
int removeTick(Draft& draft, int tick);

// What the comment says behind it; empty where there is none, or another tick between.
std::string tickName(const Draft& draft, int tick);

}  // namespace vex::studio
