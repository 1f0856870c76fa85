#include "tools/command_line.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace vex {

namespace {

[[noreturn]] void showAndEnd(const std::string& text) {
  std::fputs(text.c_str(), stdout);
  std::exit(std::fflush(stdout) == 0 ? 0 : 255);
}

}  // namespace

CommandLine::CommandLine(const char* theProgram, const char* theUsage, int argc, char** argv,
                         std::span<const Contained> theContained)
    : program(theProgram),
      usage(theUsage),
      arguments(argv + std::min(argc, 1), argv + argc),
      contained(theContained) {}

std::vector<std::string> CommandLine::parse(std::span<const Option> options) const {
  std::vector<std::string> others;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--help" || argument == "-h") showAndEnd(usage);
    if (argument == "--version") showAndEnd(versionLine(program, contained) + "\n");
    const auto option = std::find_if(options.begin(), options.end(),
                                     [&argument](const Option& one) { return one.name == argument; });
    if (option == options.end()) {
      if (argument.starts_with("-")) refuse("unknown option " + argument);
      others.push_back(argument);
      continue;
    }
    if (!option->alone && (++i == arguments.size() || arguments[i].empty()))
      refuse(argument + " needs a value");
    option->take(option->alone ? "" : arguments[i]);
  }
  return others;
}

std::pair<int, int> CommandLine::size(std::string_view option, std::string_view text, int least,
                                      int most) const {
  const std::size_t cross = text.find('x');
  if (cross == std::string_view::npos) {
    refuse(std::string(option) + " " + std::string(text) + ": WIDTHxHEIGHT is expected");
  }
  return {number(option, text.substr(0, cross), least, most),
          number(option, text.substr(cross + 1), least, most)};
}

void CommandLine::refuse(const std::string& message) const {
  if (!message.empty()) std::fprintf(stderr, "%s: %s\n", program, message.c_str());
  std::fputs(usage, stderr);
  std::exit(2);
}

std::vector<std::string> splitAtCommas(std::string_view text) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start <= text.size(); start += parts.back().size() + 1) {
    parts.emplace_back(text.substr(start, std::min(text.find(',', start), text.size()) - start));
  }
  return parts;
}

}  // namespace vex
