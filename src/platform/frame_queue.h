#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

// Frames on their way into a pipe, written by a thread of its own: whoever draws them waits only while
// the reader lies far behind, and the reader finds work while the next frame is being drawn.

namespace vex {

// False on an error, errno says which.
bool writeAll(int descriptor, const void* data, std::size_t size);

class FrameQueue {
 public:
  // The descriptor stays the caller's. SIGPIPE must be ignored. `whileWaiting` is called now and then by who
  // waits below: it can make the writing fail where the reader has stopped for good.
  void start(
      int pipeEnd, std::function<void()> whileWaiting = [] {});

  // Takes the frame and leaves a buffer to use again. Waits while as much as `waitingBytes` is unwritten.
  // False when a write has failed: the reader is gone.
  bool put(std::vector<std::byte>& frame);

  // Waits until everything is written; false when a write has failed.
  bool finish();

  ~FrameQueue() { finish(); }

  static constexpr std::size_t waitingBytes = 64 << 20;

 private:
  void writeFrames();
  void wait(std::unique_lock<std::mutex>& lock, const std::function<bool()>& isOver);

  int descriptor = -1;
  std::function<void()> watch;
  std::thread writer;
  std::mutex mutex;
  std::condition_variable changed;
  // All below belong to the mutex.
  std::deque<std::vector<std::byte>> waiting;
  std::vector<std::vector<std::byte>> spare;
  bool ended = false;  // no more frames come
  bool done = false;   // nothing more is written
  bool failed = false;
};

}  // namespace vex
