#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

// A program that works beside the studio: the recorder, the player.

namespace vex::studio {

class Child {
 public:
  // One that was cancelled has so many `seconds` to end what it does.
  explicit Child(double seconds = 3);
  ~Child();  // kills one that still runs
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // Starts it with `folder` as its working folder, in a process group of its own and with nothing on its
  // standard input. Why not, where it cannot be; and while one still runs.
  std::optional<std::string> start(const std::vector<std::string>& words, const std::string& folder);

  // Readable when it has said something or has ended; -1 while none has been started.
  int descriptor() const;

  // Takes what it has said, gives more to one that was cancelled and lives on, and notices its end. Never
  // waits: to be called when the descriptor is readable, and a few times a second while it runs.
  void update();

  bool running() const;

  // Percent of its last line of progress ("recording 40 %"); -1 before the first.
  int percent() const;

  // Its last line: after its end the reason where it failed.
  std::string message() const;

  // Once it has ended: its exit code, or 128 and the signal that ended it; -1 before.
  int exitCode() const;

  // Interrupts it, which lets a recorder keep what it has; kills it when it is out of patience. Does not
  // wait.
  void cancel();
  bool cancelled() const;

 private:
  struct State;
  std::unique_ptr<State> state;
  double patience;  // s
};

}  // namespace vex::studio
