#pragma once

#include <sys/types.h>

#include <map>
#include <random>
#include <string>
#include <vector>

// Nights in an hour: programs started, played, interrupted and killed many times over, and what is left of
// it.

namespace vex::endure {

// Figures and failures of one stage, printed as they come.
class Account {
 public:
  explicit Account(const char* theStage) : stage(theStage) {}

  void figure(const std::string& text) const;
  void fail(const std::string& text);

  // That `last` lies within 1 % of `first`; both are printed.
  void standsStill(const char* what, double first, double last, const char* unit);

  bool clean() const { return failures == 0; }

 private:
  const char* stage;
  int failures = 0;
};

struct End {
  int code = -1;        // exit code; -1 where a signal ended it
  long mostMemory = 0;  // KiB that it had at most
  double seconds = 0;   // how long it ran
};

// A program with its helpers, in a process group of their own. Standard input and output are /dev/null,
// standard error is the file "errors" beside the working folder, sound goes to a silent device.
class Process {
 public:
  explicit Process(const std::vector<std::string>& words);
  ~Process();  // kills the group
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void signal(int number) const;
  bool ended();
  End wait(double patience = 60);  // s; killed beyond that

  // Kills the program alone and waits, ten seconds at most, until its helpers have gone, too. False when some
  // stay.
  bool killAlone();

 private:
  pid_t process = -1;
  double begun = 0;
  bool reaped = false;
  End end;
};

std::string programPath(const char* name);
double now();             // s
void pauseFor(double s);  // sleeps

// All files below a folder by their relative names, with their bytes.
std::map<std::string, std::string> filesOf(const std::string& folder);

using Chance = std::mt19937;
double between(Chance& chance, double least, double most);

// The player `count` times under a virtual X server, by each way out in turn.
bool endureCycles(int count);

// The show of the run folder again and again in one process, `seconds` of its time.
bool endureLoops(const std::string& runFolder, double seconds);

// A recording interrupted `count` times at random.
bool endureInterrupts(int count, Chance& chance);

// Every program that writes killed at random, `count` times in all.
bool endureKills(int count, Chance& chance);

}  // namespace vex::endure
