#pragma once

#include <assimp/scene.h>

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <vector>

#include "tools/exchange/report.h"
#include "tools/exchange/transform.h"

// How the nodes of a file move: its channels, evaluated at any time in seconds.

namespace vex {

enum class Joining { straight, step, cubic };

// Values at ascending times. Before the first and after the last it holds them. Cubic ones have a slope a
// second before and after each key.
template <typename Value>
struct Channel {
  Joining joining = Joining::straight;
  std::vector<double> times;
  std::vector<Value> values;
  std::vector<std::array<Value, 2>> slopes;
};

struct NodeMotion {
  Channel<Place> places, scales;
  Channel<Turn> turns;
};

// Parts without a channel stay as they rest.
Pose poseAt(const NodeMotion& motion, const Pose& rest, double seconds);

struct Motions {
  std::map<std::string, NodeMotion> byNode;
  double seconds = 0;  // up to the last key of all
};

// Of all animations together; of two that move one node the first counts, which the report says.
Motions collectMotions(const aiScene& scene, Report& report);

// Gives channels back how a glTF file joins their keys, which the library does not keep: it says where keys
// stand still between and brings slopes along. Files of other kinds are left as they are. `path`: the file
// itself.
void readJoining(const std::string& path, Motions& motions);

}  // namespace vex
