#include "studio/document/edit_target.h"

#include <algorithm>
#include <cmath>

#include "authoring/project_lexer.h"
#include "timeline/project_rules.h"

namespace vex::studio {

namespace {

// The element of that number of a list.
template <typename List>
const auto& elementAt(const List& list, int index, const std::string& what) {
  if (index < 0 || static_cast<std::size_t>(index) >= list.size()) {
    throw Refusal{"There is no " + what + " number " + std::to_string(index + 1) + "."};
  }
  return list[static_cast<std::size_t>(index)];
}

}  // namespace

PartTarget findPart(const Draft& draft, int part) {
  const ProjectPart& found = elementAt(draft.project().parts, part, "part");
  return {found, draft.partPlace(part)};
}

CallTarget findCall(const Draft& draft, CallAt at) {
  const PartTarget target = findPart(draft, at.part);
  const ProjectCall& call = elementAt(target.part.calls, at.call, "call");
  return {target, call, target.place.calls[static_cast<std::size_t>(at.call)]};
}

ParameterTarget findParameter(const Draft& draft, ParameterAt at) {
  const CallTarget target = findCall(draft, {at.part, at.call});
  const ProjectParameter& parameter = elementAt(target.call.parameters, at.parameter, "parameter");
  return {target, parameter, target.callPlace.parameters[static_cast<std::size_t>(at.parameter)]};
}

std::string_view textOf(const Draft& draft, TextSpan span) {
  return std::string_view(draft.text()).substr(span.begin, span.end - span.begin);
}

Replacement numberAt(const Draft& draft, TextSpan span, double value, Precision precision) {
  return {span, writeNumber(value, styleOf(textOf(draft, span)).decimals, precision)};
}

Replacement spanAt(const Draft& draft, TextSpan span, double seconds, const std::optional<Tempo>& tempo,
                   Precision precision) {
  return {span, writeSpan(seconds, styleOf(textOf(draft, span)), tempo, precision)};
}

Replacement timeAt(const Draft& draft, TextSpan span, double time, const std::optional<Tempo>& tempo,
                   Precision precision) {
  return {span, writeTime(time, styleOf(textOf(draft, span)), tempo, precision)};
}

bool differ(double a, double b) {
  return !(std::abs(a - b) <= 1e-9 * std::max({1.0, std::abs(a), std::abs(b)}));
}

void requireNumber(const std::string& what, double value) {
  if (const auto fault = findNumberFault(static_cast<float>(value))) {
    throw Refusal{what + " " + *fault + "."};
  }
}

void requireText(const std::string& what, const std::string& text, std::size_t longest) {
  if (text.find('\n') != std::string::npos) {
    throw Refusal{what + " " + quoteText(text) + " holds a line feed."};
  }
  const std::size_t length = withoutCarriageReturns(text).size();
  if (length <= longest) return;
  throw Refusal{what + " has " + std::to_string(length) + " characters, at most " + std::to_string(longest) +
                " are possible."};
}

}  // namespace vex::studio
