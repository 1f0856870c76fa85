#pragma once

#include <functional>
#include <string>

namespace vex {

// While something is read or run that other parts of the program may refuse: gives the place in it, such as
// "hell.ase:12", which then follows the text of a fatal error in parentheses, before the places around it. At
// the end of its life the place is again that of before, or none. Each thread has its own.
class FatalPlace {
 public:
  explicit FatalPlace(std::function<std::string()> place);
  ~FatalPlace();
  FatalPlace(const FatalPlace&) = delete;
  FatalPlace& operator=(const FatalPlace&) = delete;

  std::string text() const;

 private:
  std::function<std::string()> place;
  const FatalPlace* before;
};

}  // namespace vex
