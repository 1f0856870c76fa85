#pragma once

#include <string>

namespace vex {

// While something is read that other parts of the program may refuse: gives the place in it, such as
// "hell.ase:12", with which the text of a fatal error then begins. Null: nowhere.
void setFatalPlace(std::string (*place)());

}  // namespace vex
