#pragma once

#include <map>
#include <string>
#include <vector>

// What the library does not write into glTF files, by hand.

namespace vex {

struct GlbCamera {
  std::string node;
  double heightRadians;  // from top to bottom
  double far;
};

struct GlbLight {
  std::string node;
  bool spot;
  float colour[3];
  double candela;
  double edgeRadians;  // of a spot, from its axis
};

struct GlbParts {
  std::vector<GlbCamera> cameras;
  std::vector<GlbLight> lights;
  std::map<std::string, std::map<std::string, std::string>> extras;  // by node, by name
  std::map<std::string, std::vector<double>> places;                 // by node: what it rests at
};

// The binary glTF file with the parts in it. Its nodes have names of their own.
std::string withParts(const std::string& glb, const GlbParts& parts);

}  // namespace vex
