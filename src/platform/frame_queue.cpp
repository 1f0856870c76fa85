#include "platform/frame_queue.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <utility>

namespace vex {

bool writeAll(int descriptor, const void* data, std::size_t size) {
  const char* bytes = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = write(descriptor, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

void FrameQueue::start(int pipeEnd, std::function<void()> whileWaiting) {
  descriptor = pipeEnd;
  watch = std::move(whileWaiting);
  writer = std::thread([this] { writeFrames(); });
}

void FrameQueue::wait(std::unique_lock<std::mutex>& lock, const std::function<bool()>& isOver) {
  constexpr std::chrono::milliseconds watchInterval(100);
  while (!changed.wait_for(lock, watchInterval, isOver)) {
    lock.unlock();
    watch();
    lock.lock();
  }
}

bool FrameQueue::put(std::vector<std::byte>& frame) {
  std::unique_lock lock(mutex);
  wait(lock,
       [&] { return failed || waiting.empty() || (waiting.size() + 1) * frame.size() <= waitingBytes; });
  if (failed) return false;
  waiting.push_back(std::move(frame));
  frame.clear();
  if (!spare.empty()) {
    frame = std::move(spare.back());
    spare.pop_back();
  }
  changed.notify_all();
  return true;
}

bool FrameQueue::finish() {
  if (!writer.joinable()) return !failed;
  {
    std::unique_lock lock(mutex);
    ended = true;
    changed.notify_all();
    wait(lock, [&] { return done; });
  }
  writer.join();
  return !failed;
}

void FrameQueue::writeFrames() {
  std::unique_lock lock(mutex);
  while (true) {
    changed.wait(lock, [&] { return ended || failed || !waiting.empty(); });
    if (waiting.empty() || failed) break;
    std::vector<std::byte> frame = std::move(waiting.front());
    waiting.pop_front();
    lock.unlock();
    const bool written = writeAll(descriptor, frame.data(), frame.size());
    lock.lock();
    spare.push_back(std::move(frame));
    failed = !written;
    changed.notify_all();
  }
  done = true;
  changed.notify_all();
}

}  // namespace vex
