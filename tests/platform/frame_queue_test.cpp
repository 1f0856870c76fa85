#include "platform/frame_queue.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <thread>

namespace vex {

namespace {

struct Pipe {
  int ends[2] = {-1, -1};
  Pipe() {
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
  }
  ~Pipe() {
    closeReader();
    close(ends[1]);
  }
  void closeReader() {
    if (ends[0] >= 0) close(ends[0]);
    ends[0] = -1;
  }
};

// Frames of more bytes than a pipe takes at once, each of one value.
std::vector<std::byte> frameOf(int value) {
  return std::vector<std::byte>(100'001, static_cast<std::byte>(value));
}

}  // namespace

TEST(FrameQueue, EveryFrameArrivesInOrderFromBuffersThatAreUsedAgain) {
  constexpr int frames = 40;
  Pipe pipe;
  std::vector<std::byte> read;
  std::thread reader([&] {
    std::byte bytes[7001];
    while (read.size() < frames * frameOf(0).size()) {
      const ssize_t size = ::read(pipe.ends[0], bytes, sizeof bytes);
      if (size <= 0) break;
      read.insert(read.end(), bytes, bytes + size);
    }
  });
  FrameQueue queue;
  queue.start(pipe.ends[1]);
  std::vector<std::byte> frame;
  for (int i = 0; i < frames; ++i) {
    frame.assign(frameOf(i).size(), static_cast<std::byte>(i));
    EXPECT_TRUE(queue.put(frame)) << i;
  }
  EXPECT_TRUE(queue.finish());
  reader.join();
  std::vector<std::byte> expected;
  for (int i = 0; i < frames; ++i) {
    const std::vector<std::byte> one = frameOf(i);
    expected.insert(expected.end(), one.begin(), one.end());
  }
  EXPECT_TRUE(read == expected);
}

// It neither blocks for ever nor takes frames without end.
TEST(FrameQueue, SaysThatTheReaderIsGone) {
  Pipe pipe;
  FrameQueue queue;
  queue.start(pipe.ends[1]);
  std::vector<std::byte> frame = frameOf(1);
  EXPECT_TRUE(queue.put(frame));
  pipe.closeReader();
  int taken = 0;
  const auto most = static_cast<int>(FrameQueue::waitingBytes / frameOf(1).size()) + 2;
  do {
    frame = frameOf(2);
  } while (queue.put(frame) && ++taken <= most);
  EXPECT_LE(taken, most);
  EXPECT_FALSE(queue.finish());
}

}  // namespace vex
