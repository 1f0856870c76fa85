#pragma once

#include <utility>

// What a running show has one of, such as its clock. Functions without an object (clockTime()) work on the
// current one: the one made last that still lives, or the process's own where nobody made any.

namespace vex {

template <typename State>
inline State ofProcess{};

template <typename State>
inline State* currentState = &ofProcess<State>;

template <typename State>
State& current() {
  return *currentState<State>;
}

// A state that is the current one as long as it lives. They are destroyed in the opposite order of their
// making.
template <typename State>
class Owned {
 public:
  template <typename... Arguments>
  explicit Owned(Arguments&&... arguments)
      : state(std::forward<Arguments>(arguments)...), before(std::exchange(currentState<State>, &state)) {}
  ~Owned() { currentState<State> = before; }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;

 private:
  State state;
  State* before;
};

}  // namespace vex
