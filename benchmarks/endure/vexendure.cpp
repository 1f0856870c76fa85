#include <filesystem>
#include <string>

#include "benchmarks/endure/endure.h"
#include "tools/command_line.h"

namespace {

constexpr const char* usage =
    "Usage: vexendure RUNDIR [options]\n"
    "Starts, plays, interrupts and kills the programs beside it over and over, and says what is left of it.\n"
    "\n"
    "  --cycles N      start, play and end the player N times, by every way out in turn (default 1000)\n"
    "  --loops S       play the show of RUNDIR again and again, S seconds of its time (default 3600)\n"
    "  --interrupts N  interrupt N recordings at random moments (default 100)\n"
    "  --kills N       kill the programs that write at N random moments (default 200)\n"
    "  --short         5 cycles, 100 seconds, 3 interrupts and 8 kills instead\n"
    "  --seed N        of the random moments (default 1)\n"
    "  --help          show this text\n"
    "  --version       show version, libraries and licences\n"
    "\n"
    "Exit codes: 0 all held, 1 something did not, 2 wrong usage.\n";

struct Counts {
  int cycles = 1000, loops = 3600, interrupts = 100, kills = 200;
};

}  // namespace

int main(int argc, char** argv) {
  Counts counts;
  unsigned seed = 1;
  const vex::CommandLine line("vexendure", usage, argc, argv);
  const auto count = [&line](const char* name, int& target) {
    return vex::Option{name, [&line, name, &target](const std::string& value) {
                         target = line.number(name, value, 0, 1'000'000);
                       }};
  };
  const vex::Option options[] = {
      count("--cycles", counts.cycles),
      count("--loops", counts.loops),
      count("--interrupts", counts.interrupts),
      count("--kills", counts.kills),
      {.name = "--short",
       .take =
           [&](const std::string&) {
             counts = {5, 100, 3, 8};
           },
       .alone = true},
      {.name = "--seed",
       .take = [&](const std::string& value) { seed = line.number("--seed", value, 0u, 1'000'000u); }},
  };
  const std::vector<std::string> words = line.parse(options);
  if (words.size() != 1) line.refuse("one run folder is expected");
  const std::string runFolder = std::filesystem::absolute(words[0]);
  vex::endure::Chance chance(seed);
  bool held = true;
  if (counts.kills > 0) held &= vex::endure::endureKills(counts.kills, chance);
  if (counts.interrupts > 0) held &= vex::endure::endureInterrupts(counts.interrupts, chance);
  if (counts.cycles > 0) held &= vex::endure::endureCycles(counts.cycles);
  if (counts.loops > 0) held &= vex::endure::endureLoops(runFolder, counts.loops);
  return held ? 0 : 1;
}
