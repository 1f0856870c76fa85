#include "studio/session/questions.h"

#include <algorithm>
#include <utility>

namespace vex::studio {

void Questions::ask(Subject subject, std::string text, std::vector<Message::Answer> answers) {
  Message message{Message::Kind::question, std::move(text), std::move(answers)};
  const auto same = std::ranges::find(waiting, subject, &Question::subject);
  if (same != waiting.end()) {
    same->message = std::move(message);
  } else {
    waiting.push_back({subject, std::move(message)});
  }
}

void Questions::withdraw(Subject subject) {
  std::erase_if(waiting, [&](const Question& question) { return question.subject == subject; });
}

bool Questions::asks(Subject subject) const {
  return std::ranges::find(waiting, subject, &Question::subject) != waiting.end();
}

const Message* Questions::first() const {
  return waiting.empty() ? nullptr : &waiting.front().message;
}

void Questions::answer(std::size_t index) {
  if (waiting.empty() || index >= waiting.front().message.answers.size()) return;
  const Message asked = std::move(waiting.front().message);
  waiting.erase(waiting.begin());
  asked.answers[index].act();
}

}  // namespace vex::studio
