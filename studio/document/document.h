#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "authoring/project_places.h"
#include "authoring/project_text.h"
#include "timeline/project_record.h"

// A show's text while it is shaped.

namespace vex::studio {

struct CallAt {
  int part = -1;
  int call = -1;
  bool operator==(const CallAt&) const = default;
};

struct ParameterAt {
  int part = -1;
  int call = -1;
  int parameter = -1;
  bool operator==(const ParameterAt&) const = default;
};

// What came of an edit: nothing was changed where a refusal says why. `index` is where the thing that was
// edited stands now (a part, a call of its part, a dot), since edits keep parts in order of their beginnings.
struct Edited {
  std::optional<std::string> refusal;
  int index = -1;

  explicit operator bool() const { return !refusal; }
};

enum class SineField : std::int8_t { cycles, amplitude, offset, phase };

// The text is the truth: each edit rewrites those bytes of it that it must and no others, numbers in the
// style in which they stood (seconds, bars and beats, number of decimals; the part's end as until or as
// length). Comments, blanks and order stay. Times are demo time in seconds; indices are those of project().
class Document {
 public:
  explicit Document(std::string text);
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  const std::string& text() const;
  std::uint64_t revision() const;  // another one after every change of the text, undoing included

  // Of the text, or while that has problems of the last one that had none.
  const Project& project() const;
  const ProjectPlaces& places() const;
  std::optional<Tempo> tempo() const;
  const std::vector<TextProblem>& problems()
      const;  // of the text; no edit but replaceText and undo while it has some

  // Whether the text is the one that was given to the constructor or that markSaved() met last.
  bool saved() const;
  void markSaved();

  // From begin to end all edits are one step of undo, which carries the name ("Move part"). An edit outside a
  // gesture is a step of its own. Gestures that change nothing leave no step. A gesture within another one
  // belongs to it. Of edits of one kind on one thing that follow each other in a gesture only the last
  // counts: each begins where the first one did, so that a mouse that goes to and fro leaves no traces.
  void beginGesture(std::string name);
  void endGesture();
  void cancelGesture();  // as it was before the gesture

  bool undo();
  bool redo();
  std::optional<std::string> undoName() const;
  std::optional<std::string> redoName() const;

  // The whole text, as from the disk. One step of undo like any other.
  void replaceText(std::string text, std::string name);

  // Parts. Moving and splitting a part keeps its curves where they were in it. What is cut off leaves dots
  // before 0 and behind 1.
  Edited movePart(int part, double pos, int track);
  Edited trimStart(int part, double pos);  // what remains is shown as before: scene time and curves too
  Edited trimEnd(int part, double end);    // likewise
  Edited setPartStart(int part, double sceneTime);
  Edited setPartLength(int part, double seconds);  // curves stretch with it
  Edited setPartSpeed(int part, double speed);
  Edited renamePart(int part, const std::string& name);
  Edited doublePart(int part, double pos, int track);
  Edited splitPart(int part, double time);  // index of the second half; both together show what the one did
  Edited removePart(int part);
  // With one call of the function that is seen on the whole screen; other values from the middle of their
  // useful ranges.
  Edited createPart(double pos, double length, int track, const std::string& scene,
                    const std::string& function);

  // Calls.
  Edited addCall(int part, const std::string& scene, const std::string& function);
  Edited removeCall(CallAt at);
  Edited moveCall(CallAt at, int to);

  // Parameters.
  Edited setConstant(ParameterAt at, double value);
  Edited setString(ParameterAt at, const std::string& value);
  Edited setSine(ParameterAt at, SineField field, double value);
  // Without losing the values: line and spline have the same dots, a constant becomes two dots of its value,
  // a sine a line through nine points of it, anything a constant of its value at `progress`.
  Edited setKind(ParameterAt at, ParameterType kind, double progress);
  Edited setDot(ParameterAt at, int dot, double x,
                double y);  // between its neighbours; x is progress, 0 to 1
  Edited addDot(ParameterAt at, double x, double y);
  Edited removeDot(ParameterAt at, int dot);  // the last one stays

  // Of the whole.
  Edited setTotalTime(double seconds);
  Edited setStartTime(double seconds);
  Edited setTempo(double beatsPerMinute);  // that holds at the first part; what stands in bars moves with it
  Edited setMusic(const std::string& file);              // empty: none
  Edited addTick(double time, const std::string& name);  // the name as a comment behind it; may be empty
  Edited moveTick(int tick, double time);
  Edited removeTick(int tick);
  std::string tickName(int tick) const;

 private:
  struct State;
  std::unique_ptr<State> state;
};

}  // namespace vex::studio
