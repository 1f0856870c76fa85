#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "platform/message.h"

namespace vex::studio {

// Takes what the engine warns of as long as it lives, line feeds as blanks; one at a time.
class MessagesCaught {
 public:
  MessagesCaught() {
    texts.clear();
    setMessageSink([](const char* text) {
      std::string line = text;
      std::replace(line.begin(), line.end(), '\n', ' ');
      texts.push_back(line);
    });
  }
  ~MessagesCaught() { setMessageSink(nullptr); }
  MessagesCaught(const MessagesCaught&) = delete;
  MessagesCaught& operator=(const MessagesCaught&) = delete;

  static std::string first() { return texts.empty() ? std::string{} : texts.front(); }

 private:
  static inline std::vector<std::string> texts;
};

}  // namespace vex::studio
