#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "studio/document/document.h"
#include "studio/document/draft.h"
#include "studio/document/number_style.h"

// What an edit is about, found in a draft, and what all edits demand. Everything here throws Refusal.

namespace vex::studio {

struct PartTarget {
  const ProjectPart& part;
  const PartPlace& place;
};
struct CallTarget : PartTarget {
  const ProjectCall& call;
  const CallPlace& callPlace;
};
struct ParameterTarget : CallTarget {
  const ProjectParameter& parameter;
  const ParameterPlace& parameterPlace;
};

PartTarget findPart(const Draft& draft, int part);
CallTarget findCall(const Draft& draft, CallAt at);
ParameterTarget findParameter(const Draft& draft, ParameterAt at);

std::string_view textOf(const Draft& draft, TextSpan span);

// The number in the span as the value is written there.
Replacement numberAt(const Draft& draft, TextSpan span, double value, Precision precision = Precision::shown);
Replacement spanAt(const Draft& draft, TextSpan span, double seconds, const std::optional<Tempo>& tempo,
                   Precision precision = Precision::shown);
Replacement timeAt(const Draft& draft, TextSpan span, double time, const std::optional<Tempo>& tempo,
                   Precision precision = Precision::shown);

// Whether two values are different ones and not the same with an error of computing.
bool differ(double a, double b);

// Numbers that the player can hold; `what` begins a sentence.
void requireNumber(const std::string& what, double value);

// A name or a text of a project; `what` begins a sentence.
void requireText(const std::string& what, const std::string& text, std::size_t longest);

}  // namespace vex::studio
