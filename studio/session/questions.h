#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vex::studio {

// A sentence for the bar, with what can be done about it.
struct Message {
  enum class Kind : std::int8_t { none, hint, trouble, question };
  struct Answer {
    std::string label;
    std::function<void()> act;
  };

  Kind kind = Kind::none;
  std::string text;
  std::vector<Answer> answers;  // of a question, which stays until one is given
};

// What a question is about: of each there is one at most.
enum class Subject : std::int8_t {
  leftText,   // whether what an earlier run left is taken
  twoTexts,   // which of two texts counts
  unsaved,    // what becomes of changes when the text is left
  recording,  // whether it is stopped
};

// Questions that wait, the one asked first in front.
class Questions {
 public:
  // In the place of one about the same.
  void ask(Subject subject, std::string text, std::vector<Message::Answer> answers);
  void withdraw(Subject subject);
  bool asks(Subject subject) const;

  const Message* first() const;  // null where there is none

  // Takes the first one back, then acts. Does nothing for an answer that it does not have.
  void answer(std::size_t index);

 private:
  struct Question {
    Subject subject;
    Message message;
  };
  std::vector<Question> waiting;
};

}  // namespace vex::studio
