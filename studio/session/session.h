#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "authoring/project_check.h"
#include "studio/document/disk_state.h"
#include "studio/document/document.h"
#include "studio/document/snapping.h"
#include "studio/session/questions.h"
#include "studio/show/show.h"
#include "studio/show/waveform.h"

// What the panes share: the document, the show that follows it, what is chosen, and what the user is told.
// Knows files, and no toolkit.

namespace vex::studio {

// What is chosen; each is -1 where nothing is, and stands within the one before.
struct Selection {
  int part = -1;
  int call = -1;
  int parameter = -1;
  int dot = -1;
  bool operator==(const Selection&) const = default;

  ParameterAt where() const { return {part, call, parameter}; }
};

class Session {
 public:
  // `text` names the file that is shaped. The working folder is the run folder.
  // Fatal: a file that cannot be read.
  explicit Session(const std::string& text);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Once the GL context is current: loads the show. `progress` hears of each step.
  void open(const std::function<void(int, const char*)>& progress);

  Document& document();
  Show& show();
  const Peaks* peaks() const;

  // --- What is chosen and what may be looked at

  const Selection& selection() const;
  void select(Selection selection);
  const ProjectPart* selectedPart() const;  // null where none is
  const ProjectParameter* selectedParameter() const;

  const std::vector<Finding>& findings()
      const;                                 // problems first; of the text's own problems where it has some
  const Finding* findingOf(int part) const;  // the first; null while it is not judged
  const Message& message() const;
  void tell(Message::Kind kind, std::string text);
  void ask(Subject subject, std::string text, std::vector<Message::Answer> answers);
  void answer(std::size_t index);  // of message()

  // --- Edits: what the document refuses is told, what it takes is followed by the selection

  // A gesture of the mouse: one step of undo; meanwhile no other text is taken from the disk.
  void beginGesture(const std::string& name);
  void endGesture();
  void cancelGesture();
  bool inGesture() const;

  bool edit(const Edited& edited);      // of the selected part, call or dot, which may stand elsewhere now
  bool editPart(const Edited& edited);  // its result is the part that is chosen from now on
  void undo();
  void redo();

  // --- Time

  void seek(double time);
  void scrub(double time);
  void togglePlaying();
  void setLoopBegin();  // at the time where the show stands
  void setLoopEnd();
  void clearLoop();
  // To what a gesture catches on within so many pixels.
  double snapped(double time, double secondsPerPixel, double pixels = snapReach) const;

  // --- Files

  std::string fileName() const;  // of the text, without its folder
  std::string path() const;
  std::string folder() const;
  bool saved() const;  // nothing would be lost
  bool save();
  bool saveAs(const std::string& path, Overwrite overwrite = Overwrite::yes);
  bool compilesOnSave() const;
  void setCompilesOnSave(bool compiles);
  void loadFromDisk();                     // takes what the file holds now, as a step of undo
  void openText(const std::string& path);  // another text in place of this one; asks when that has changes
  std::vector<std::string> textureNames() const;
  std::vector<std::string> movieNames() const;
  std::vector<std::string> musicNames() const;
  std::string firstFrame(const std::string& movie) const;  // its texture name; empty for none
  void saveStill(const std::vector<std::uint32_t>& bgra, int width, int height);  // rows from the bottom

  // The last call but the destructor's, with the GL context current: the show goes. What is not saved is kept
  // to be offered the next time where `keepsChanges` says so.
  void leave(bool keepsChanges);

  // Descriptor that becomes readable when a file changes; -1 for none.
  int watched() const;

  // Programs beside the studio.
  enum class Stretch : std::int8_t { whole, loop, toEnd };
  void record(Stretch stretch, const std::string& file, int width, int height, int framesPerSecond);
  void playInPlayer();
  std::optional<int> recorded() const;  // percent while a recording runs
  void cancelRecording();

  // Called for every frame of the window: brings the show up to date with document and disk, judges when
  // there is time, saves on the side. Whether something changed that panes show.
  bool update();

 private:
  struct State;
  std::unique_ptr<State> state;

  void askWhichText();
  void saveUnderFreeName();
  void offerLeftText();
  void heedText();
  bool write();
};

}  // namespace vex::studio
