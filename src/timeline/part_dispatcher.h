#pragma once

#include <cstdint>
#include <memory>

#include "engine/owned_array.h"
#include "engine/scene.h"
#include "timeline/function_call.h"

// The time line: the scenes, the parts that call their functions, and which parts run when. Times are
// seconds; demo time runs from the project's start time to its total time.

namespace vex {

struct ProjectSource;

inline constexpr int maxScenes = 40;
inline constexpr int maxParts = 1000;  // one more than a project may have
inline constexpr int maxActiveParts = 16;

// A stretch of demo time, pos <= t < pos + length, in which scene functions are called every frame.
struct Part {
  char name[projectNameSize] = "";
  float pos = 0.0f;
  float start = 0.0f;  // scene time at pos
  float length = 0.0f;
  float speed = 1.0f;     // scene seconds per demo second
  std::int8_t track = 0;  // order within a frame, ascending
  OwnedArray<FunctionCall> calls;

  Part() = default;
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;
  ~Part();  // logs "  destroying part %s\n"

  float end() const { return pos + length; }

  // Invokes the calls in file order when the part is active at demo time t, otherwise nothing.
  void run(float t);
};

// Whether loading looks up scenes and functions, or takes their names as they are, for tools that do not
// play.
enum class ProjectNames : std::int8_t { resolved, taken };

// One per process. Owns the scenes from addScene on.
class PartDispatcher {
 public:
  std::unique_ptr<Scene*[]> scenes;
  int sceneCount = 0;
  OwnedArray<Part> parts;  // in file order, which is to be ascending pos
  int cursor = 0;          // first part that may still be active; only grows
  float totalTime = 0.0f;
  float startTime = 0.0f;  // may be set anew between loadProject and startTimeline
  ProjectNames names = ProjectNames::resolved;
  char musicName[projectNameSize] = "";           // as the project names it; empty for none
  void (*openMusic)(const char* name) = nullptr;  // called by loading when the project names some

  PartDispatcher();
  PartDispatcher(const PartDispatcher&) = delete;
  PartDispatcher& operator=(const PartDispatcher&) = delete;
  ~PartDispatcher();  // destroys the scenes, then the parts, logging as it goes

  // The scene is owned from here on. Fatal: "sCount exceeds 40 in PartDispatcher!"; "Duplicated scene name
  // %s".
  void addScene(Scene* scene);

  // In the place of the scene of that number, which goes; the parts call the new one.
  void replaceScene(int index, Scene* scene);

  // By exact name. Fatal: "Scene %s not found".
  Scene* findScene(const char* name) const;

  // By exact name. Fatal: "getFunctionByName scene==NULL"; "function %s not found".
  SceneFunction* getFunctionByName(const Scene* scene, const char* name) const;

  // Reads the project file and has its music opened. Every failure is fatal. The format stands in
  // timeline/project_record.h.
  void loadProject(const char* fileName);

  // The same of what is open already; the name serves messages.
  void readProject(ProjectSource& source, const char* fileName);

  // The same in place of the project that is there, without having its music opened. What refuses it leaves
  // the one that is there.
  void replaceProject(ProjectSource& source, const char* fileName);

  // Runs every part that has ended by the start time once, at its midpoint, so that what it set holds.
  // Fatal: "Starting after end!".
  void startTimeline();

  // Runs the parts active at t by ascending track, equal tracks in file order; t never falls from call
  // to call. From the total time on also asks to quit. A part that begins before the one in front of it
  // in the list is hidden until that one has begun.
  void runFrame(float t);
};

}  // namespace vex
