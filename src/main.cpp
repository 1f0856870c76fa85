#include "platform/standard_streams.h"
#include "shell/startup.h"

int main() {
  vex::openStandardStreams();
  vex::runPlayer();
}
