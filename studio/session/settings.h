#pragma once

#include <map>
#include <string>

namespace vex::studio {

// What the user's window looked like: "vex/studio" in $XDG_CONFIG_HOME or in ".config" of the user's folder,
// lines of a name, a blank and a number. Damaged lines are passed over; where it cannot be written nothing is
// kept.
class Settings {
 public:
  void read();
  void write() const;

  // Held to the range.
  double number(const std::string& name, double otherwise, double least, double most) const;
  void set(const std::string& name, double value);

 private:
  std::map<std::string, double> numbers;
};

}  // namespace vex::studio
