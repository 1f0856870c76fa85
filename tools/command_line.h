#pragma once

#include <charconv>
#include <functional>
#include <iomanip>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/version.h"

// How the tools read their command lines: one way to name options, one wording of what is refused. Wrong
// usage ends the program with 2 after "NAME: MESSAGE" and the usage on standard error.

namespace vex {

struct Option {
  const char* name;
  std::function<void(const std::string& value)> take;
  bool alone = false;  // takes no value
};

class CommandLine {
 public:
  // `contained` is what --version names beside the libraries.
  CommandLine(const char* program, const char* usage, int argc, char** argv,
              std::span<const Contained> contained = {});

  // The first argument, which names the command of a tool that has several; empty where there is none.
  std::string first() const { return arguments.empty() ? "" : arguments[0]; }

  // The arguments that are no options, in their order. Refused: options of other names, missing values; where
  // help or the version is asked for, it is shown and the program ends with 0.
  std::vector<std::string> parse(std::span<const Option> options) const;

  // The whole text as a number within the range, both ends included.
  template <typename Number>
  Number number(std::string_view option, std::string_view text, Number least, Number most) const {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc() && end == text.data() + text.size() && value >= least && value <= most)
      return value;
    std::ostringstream message;
    message << std::setprecision(10) << option << ' ' << text << ": a number from " << least << " to " << most
            << " is expected";
    refuse(message.str());
  }

  // "WIDTHxHEIGHT" in pixels.
  std::pair<int, int> size(std::string_view option, std::string_view text, int least, int most) const;

  [[noreturn]] void refuse(const std::string& message = "") const;

 private:
  const char* program;
  const char* usage;
  std::vector<std::string> arguments;
  std::span<const Contained> contained;
};

std::vector<std::string> splitAtCommas(std::string_view text);

}  // namespace vex
