#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/project_lexer.h"
#include "authoring/project_text.h"
#include "timeline/tempo.h"

// What the statements of a project's text are made of: names, texts, numbers, times and the parameters of
// calls.

namespace vex {

class ProjectValueReader {
 protected:
  static constexpr std::size_t maxProblems = 1000;

  explicit ProjectValueReader(const ProjectLexer& itsLexer) : lexer(itsLexer) {}

  ProjectLexer lexer;
  std::vector<TextProblem> problems;
  std::map<std::string, ParameterRange, std::less<>> ranges;  // by parameter name
  std::optional<Tempo> tempo;                                 // that holds here
  std::optional<Tempo> firstTempo;                            // of the text

  // What is wrong but can be passed over. All that follows throws TextFault where reading cannot go on.
  void note(int line, std::string text);
  [[noreturn]] void expected(const Token& token, const std::string& what);

  bool nextIs(std::string_view word);
  bool nextIsMark(char mark);
  bool takeMark(char mark);
  void needMark(char mark, const std::string& where);

  std::string name(const std::string& what);
  std::string string(const Token& keyword, std::size_t longest);
  void checkText(int line, const std::string& what, const std::string& text, std::size_t longest);

  double number(const std::string& what);
  double span(const std::string& what);  // seconds between two times
  double time(const std::string& what);  // demo time
  long wholeNumber(const std::string& what, long least, long most);
  ParameterRange range(const std::string& parameter);
  void requireFinite(int line, const std::string& what, double value);

  // NAME = VALUE and what follows it. The part's length is known.
  void readParameter(const ProjectPart& part, ProjectCall& call, CallPlace& callPlace);

  // From the token that comes next to the one that was taken last.
  std::size_t nextBegin() const { return lexer.spanOf(lexer.peek()).begin; }
  TextSpan takenFrom(std::size_t begin) const { return {begin, lexer.takenEnd()}; }

 private:
  enum class Unit { plain, seconds, beats };
  struct Scalar {
    double value;
    Unit unit;
  };
  // Which of its values a parameter has got.
  struct Given {
    bool number = false;
    bool sine = false;
    bool dots = false;
    bool text = false;
  };

  Scalar scalar(const std::string& what);
  void readValue(const ProjectPart& part, ProjectParameter& parameter, Given& values, bool surplus,
                 ParameterPlace& place);
  void readSine(ProjectParameter& parameter, ParameterPlace& place);
  void readDots(const ProjectPart& part, ProjectParameter& parameter, ParameterPlace& place);
};

}  // namespace vex
