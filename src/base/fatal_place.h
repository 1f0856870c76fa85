#pragma once

#include <functional>
#include <string>

namespace vex {

// While something is read that other parts of the program may refuse: gives the place in it, such as
// "hell.ase:12", with which the text of a fatal error then begins. At the end of its life the place is again
// that of before, or none.
class FatalPlace {
 public:
  explicit FatalPlace(std::function<std::string()> place);
  ~FatalPlace();
  FatalPlace(const FatalPlace&) = delete;
  FatalPlace& operator=(const FatalPlace&) = delete;

  std::string text() const { return place(); }

 private:
  std::function<std::string()> place;
  const FatalPlace* before;
};

}  // namespace vex
