#include "platform/end_request.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "platform/replace_file.h"

namespace vex {

namespace {

volatile std::sig_atomic_t requested = 0;

void endAtOnce(int) {
  endInterrupted();
}

void handleSignal(int) {
  if (requested) endInterrupted();
  requested = 1;
}

void handleEndSignals(void (*handler)(int)) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;  // an interrupted read would look like a damaged file
    sigaction(signal, &action, nullptr);
  }
}

}  // namespace

void catchEndSignals() {
  handleEndSignals(handleSignal);
}

void endAtSignals() {
  handleEndSignals(endAtOnce);
}

void ignoreWriteSignals() {
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
}

// Called by handlers, too: nothing here allocates, locks or buffers.
void endInterrupted() {
  removeTemporaryFiles();
  char line[64];
  char* end = stpncpy(line, program_invocation_short_name, sizeof line / 2);
  end = stpcpy(end, ": interrupted\n");
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line, static_cast<std::size_t>(end - line));
  std::_Exit(interruptedExitCode);
}

void requestEnd() {
  requested = 1;
}

bool endRequested() {
  return requested != 0;
}

}  // namespace vex
