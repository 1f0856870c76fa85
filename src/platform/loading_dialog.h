#pragma once

// The progress window of the loading phase. It has no event loop of its own: every report repaints
// it before it returns. Escape and closing it request the end. All calls do nothing without a
// display or without an open dialog.

namespace vex {

void openLoadingWindow(const char* title);

// Bar to `percent` (clamped to 0 ... 100), line of text below it to `text`.
void showLoadingProgress(int percent, const char* text);

void closeLoadingWindow();

}  // namespace vex
