#include "app/startup.h"
#include "platform/standard_streams.h"

int main() {
  vex::openStandardStreams();
  vex::runPlayer();
}
