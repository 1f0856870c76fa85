#include "shell/startup.h"

int main() {
  vex::runPlayer();
}
