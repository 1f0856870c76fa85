#pragma once

#include "shell/report.h"

namespace vex {

// Shows the loading dialog and returns the sink that feeds and closes it, for setLoadingDialog().
LoadingSink openLoadingDialog();

}  // namespace vex
