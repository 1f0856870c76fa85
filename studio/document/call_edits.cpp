#include "studio/document/call_edits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "authoring/known_call.h"
#include "authoring/project_lexer.h"
#include "scenes/scene_tables.h"
#include "studio/document/edit_target.h"
#include "studio/document/text_block.h"

namespace vex::studio {

namespace {

constexpr std::size_t lineWidth = 100;

const FunctionRow& functionRow(const std::string& scene, const std::string& function) {
  const SceneEntry* const entry = findSceneEntry(sceneEntries(), scene);
  if (!entry) throw Refusal{"There is no scene " + scene + "."};
  if (const FunctionRow* const row = findFunction(*entry, function)) return *row;
  throw Refusal{scene + " has no function " + function + "."};
}

// That the last call of the function names in that slot, or else the last parameter of that name; empty
// where there is neither.
std::string lastText(const Project& project, const std::string& scene, const std::string& function,
                     std::size_t slot, const std::string& name) {
  std::string ofFunction, ofName;
  for (const ProjectPart& part : project.parts) {
    for (const ProjectCall& call : part.calls) {
      const bool same = call.scene == scene && call.function == function;
      for (std::size_t i = 0; i < call.parameters.size(); ++i) {
        const ProjectParameter& parameter = call.parameters[i];
        if (parameter.type != PARAM_STRING) continue;
        if (same && i == slot) ofFunction = parameter.string;
        if (parameter.name == name) ofName = parameter.string;
      }
    }
  }
  return ofFunction.empty() ? ofName : ofFunction;
}

// What a new call begins with where the middle of the useful range would hide it or mean little: the whole
// screen, seen, from the first camera and frame.
struct Beginning {
  std::string_view parameter;
  double value;
};
constexpr std::array beginnings{Beginning{"x", -1},     Beginning{"y", -1},     Beginning{"width", 2},
                                Beginning{"height", 2}, Beginning{"alpha", 1},  Beginning{"opacity", 1},
                                Beginning{"blend", 0},  Beginning{"glitch", 0}, Beginning{"frames", 0},
                                Beginning{"first", 1},  Beginning{"last", 1},   Beginning{"fps", 25},
                                Beginning{"camera", 0}};

std::string firstNumber(const FunctionParameter& parameter) {
  const double middle = (static_cast<double>(parameter.min) + static_cast<double>(parameter.max)) / 2;
  const bool whole = parameter.kind != ArgumentKind::number;
  const auto known = std::ranges::find(beginnings, parameter.name, &Beginning::parameter);
  const double value = known != beginnings.end() ? known->value : whole ? std::trunc(middle) : middle;
  return writeNumber(value, 0, Precision::shown);
}

std::string callIndent(const Draft& draft, const PartPlace& place) {
  const std::string indent =
      place.calls.empty() ? "" : indentOf(draft.text(), place.calls.back().whole.begin);
  return indent.empty() ? "  " : indent;
}

}  // namespace

std::string newCallText(const Project& project, const std::string& scene, const std::string& function,
                        const std::string& indent, const std::string& lineEnd) {
  const FunctionRow& row = functionRow(scene, function);
  std::string text = indent + nameText(scene) + "." + nameText(function) + "(";
  std::size_t column = text.size();
  for (std::size_t i = 0; i < row.parameters.size(); ++i) {
    const FunctionParameter& parameter = row.parameters[i];
    const std::string value = isTextKind(parameter.kind)
                                  ? quoteText(lastText(project, scene, function, i, parameter.name))
                                  : firstNumber(parameter);
    const std::string argument =
        nameText(parameter.name) + " = " + value + (i + 1 < row.parameters.size() ? "," : ")");
    if (column + argument.size() + 1 > lineWidth) {
      text += lineEnd + indent + "  ";
      column = indent.size() + 2;
    } else if (i > 0) {
      text += ' ';
      ++column;
    }
    text += argument;
    column += argument.size();
  }
  return row.parameters.empty() ? text + ")" : text;
}

int addCall(Draft& draft, int part, const std::string& scene, const std::string& function) {
  const auto [record, place] = findPart(draft, part);
  if (record.calls.size() == maxProjectCount) {
    throw Refusal{"Part " + quoteText(record.name) + " has " + std::to_string(maxProjectCount) +
                  " calls, more are not possible."};
  }
  const std::string& text = draft.text();
  const std::string end = lineEndOf(text);
  const std::string call = newCallText(draft.project(), scene, function, callIndent(draft, place), end);
  const std::size_t behind = place.calls.empty() ? place.keysEnd : place.calls.back().whole.end;
  const int index = static_cast<int>(record.calls.size());
  if (endsItsLine(text, behind)) {
    const std::size_t next = lineEndBehind(text, behind);
    draft.rewrite({{{next, next}, call + end}});
  } else {
    draft.rewrite({{{behind, behind}, end + call + end}});
  }
  return index;
}

int removeCall(Draft& draft, CallAt at) {
  const CallTarget target = findCall(draft, at);
  const int last = static_cast<int>(target.part.calls.size()) - 2;
  draft.rewrite({removeBlock(draft.text(), target.callPlace.whole)});
  return std::min(at.call, last);
}

// With their lines where both have lines of their own. Otherwise the calls change places alone and all that
// stands between them stays.
int moveCall(Draft& draft, CallAt at, int to) {
  const CallTarget target = findCall(draft, at);
  findCall(draft, {at.part, to});
  if (to == at.call) return to;
  const std::string& text = draft.text();
  const std::vector<CallPlace>& calls = target.place.calls;
  const auto from = static_cast<std::size_t>(at.call), goal = static_cast<std::size_t>(to);
  const TextSpan beside = calls[goal].whole;
  if (blockOf(text, target.callPlace.whole).ownLines && blockOf(text, beside).ownLines) {
    draft.rewrite(moveBlock(text, target.callPlace.whole, beside, goal < from ? Side::before : Side::behind));
    return to;
  }
  std::vector<Replacement> replacements{{beside, std::string(textOf(draft, target.callPlace.whole))}};
  for (std::size_t i = from; i != goal;) {
    const std::size_t next = goal < from ? i - 1 : i + 1;
    replacements.push_back({calls[i].whole, std::string(textOf(draft, calls[next].whole))});
    i = next;
  }
  draft.rewrite(std::move(replacements));
  return to;
}

}  // namespace vex::studio
