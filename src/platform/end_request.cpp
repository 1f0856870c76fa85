#include "platform/end_request.h"

#include <csignal>
#include <initializer_list>

namespace vex {

namespace {

volatile std::sig_atomic_t requested = 0;

void handleSignal(int) {
  requested = 1;
}

}  // namespace

void catchEndSignals() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, handleSignal);
}

void requestEnd() {
  requested = 1;
}

bool endRequested() {
  return requested != 0;
}

}  // namespace vex
