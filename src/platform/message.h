#pragma once

// The message box: a window with caption, text and an OK button, and one line on standard error.

namespace vex {

enum class MessageIcon { none, exclamation };

// Writes "PROGRAM: TEXT" (line feeds inside as blanks, none at the end) to standard error. Where
// message windows are on, also shows the window and returns when it is dismissed; without a display
// for it the line goes on to say so.
void showMessage(const char* caption, const char* text, MessageIcon icon);

// What comes with an exclamation icon while one lives waits for the window until the last of them goes, and
// then all of it is shown in one, in its order. The lines on standard error come at once; a message without
// icon shows first what waits.
class MessagesJoined {
 public:
  MessagesJoined();
  ~MessagesJoined();
  MessagesJoined(const MessagesJoined&) = delete;
  MessagesJoined& operator=(const MessagesJoined&) = delete;
};

// Takes every message in place of standard error and window, as it stands; null gives both back.
using MessageSink = void (*)(const char* text);
void setMessageSink(MessageSink sink);

// Message windows are off at first; the player turns them on, the tools never do. A standard error that
// nobody reads any more does not end the process from then on.
void enableMessageWindows();

}  // namespace vex
