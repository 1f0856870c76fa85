#include "platform/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

namespace vex {

void openStandardStreams() {
  // Each call takes the lowest free number. Output that nobody receives must not look like success, a
  // message that nobody can read is no failure.
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) >= 0) continue;
    const int mode = stream == STDERR_FILENO ? O_WRONLY : O_RDONLY;
    if (open("/dev/null", mode) != stream) std::_Exit(255);
  }
}

}  // namespace vex
