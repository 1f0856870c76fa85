#include "shell/loading.h"

#include "platform/loading_dialog.h"
#include "shell/title.h"

namespace vex {

LoadingSink openLoadingDialog() {
  openLoadingWindow(programTitle);
  return {.show = showLoadingProgress, .close = closeLoadingWindow};
}

}  // namespace vex
