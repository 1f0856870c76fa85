#pragma once

#include <string>
#include <utility>
#include <vector>

// Bytes of a project file from plain records.

namespace vex {

struct ParameterData {
  std::string name = "value";
  int type = 0;
  double constant = 0.0;
  double sinPeriod = 0.0;
  double sinAmplitude = 0.0;
  double sinOffset = 0.0;
  double sinPhase = 0.0;
  std::vector<std::pair<double, double>> dots = {};
  double min = -1000.0;
  double max = 1000.0;
  std::string string = "";
};

struct CallData {
  std::string scene = "SceneTest";
  std::string function = "animate";
  std::vector<ParameterData> parameters = {};
};

struct PartData {
  std::string name = "part";
  double pos = 0.0;
  double start = 0.0;
  double length = 10.0;
  int track = 0;
  int firstFlag = 0;  // of the two bytes, the one that nobody reads
  int active = 1;
  double speed = 1.0;
  std::vector<CallData> calls = {};
};

struct ProjectData {
  std::string version = "0.17";
  std::string executable = "player.exe";
  double startTime = 0.0;
  std::string functionsFile = "functions.txt";
  double leftTime = 0.0;
  double totalTime = 100.0;
  double zoom = 1.0;
  std::string music = "";
  std::vector<double> ticks = {};
  std::vector<PartData> parts = {};
  int tickCount = -1;  // in place of the true counts when 0 or more, or below -1
  int partCount = -1;
};

struct ProjectBytes {
  std::string bytes;
  std::string kinds;  // of the field that each byte belongs to: 'd'ouble, 'i'nt, 'b'yte or 's'tring
};

ProjectBytes buildProject(const ProjectData& project);

}  // namespace vex
