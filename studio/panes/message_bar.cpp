#include "studio/panes/message_bar.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>

#include <algorithm>

#include "base/report.h"
#include "studio/panes/look.h"

namespace vex::studio {

namespace {

std::string countText(const std::vector<Finding>& findings) {
  const auto remarks = std::ranges::count_if(findings, [](const Finding& finding) { return finding.remark; });
  const auto problems = static_cast<std::ptrdiff_t>(findings.size()) - remarks;
  if (findings.empty()) return "nothing wrong";
  std::string text;
  if (problems > 0) text = formatted("%td problem%s", problems, problems == 1 ? "" : "s");
  if (problems > 0 && remarks > 0) text += ", ";
  if (remarks > 0) text += formatted("%td remark%s", remarks, remarks == 1 ? "" : "s");
  return text;
}

}  // namespace

void MessageBar::placeButtons() {
  buttons.clear();
  useFont(true, 12);
  const Message& message = session.message();
  for (std::size_t i = 0; i < message.answers.size(); ++i)
    buttons.push_back({message.answers[i].label, [this, i] { session.answer(i); }, 0, 0});
  if (session.recorded()) buttons.push_back({"Cancel", [this] { session.cancelRecording(); }, 0, 0});
  buttons.push_back({countText(session.findings()),
                     [this] {
                       if (listFindings) listFindings();
                     },
                     0, 0});
  int right = x() + w() - px(6);
  for (auto button = buttons.rbegin(); button != buttons.rend(); ++button) {
    button->width = textWidth(button->label) + px(18);
    button->left = right - button->width;
    right = button->left - px(6);
  }
}

void MessageBar::draw() {
  placeButtons();
  const Message& message = session.message();
  setDrawColour(message.kind == Message::Kind::trouble    ? blended(colour::raised, colour::trouble, 0.35)
                : message.kind == Message::Kind::question ? blended(colour::raised, colour::remark, 0.3)
                                                          : colour::raised);
  fl_rectf(x(), y(), w(), h());
  int left = x() + px(10);
  const int right = buttons.front().left - px(10);
  if (const auto percent = session.recorded()) {
    const int width = std::min(px(160), right - left);
    setDrawColour(colour::ground);
    fl_rectf(left, y() + h() / 3, width, h() / 3);
    setDrawColour(colour::chosen);
    fl_rectf(left, y() + h() / 3, width * *percent / 100, h() / 3);
    left += width + px(10);
  }
  useFont(false, 12);
  setDrawColour(colour::text);
  drawText(message.text, left, y(), std::max(0, right - left), h());
  if (const std::string whole = message.text.empty() ? "" : message.text + "\na click copies it";
      whole != hint) {
    hint = whole;
    copy_tooltip(hint.c_str());
  }
  for (const Button& button : buttons) {
    const bool counts = &button == &buttons.back();
    const bool bad =
        std::ranges::any_of(session.findings(), [](const Finding& finding) { return !finding.remark; });
    if (!counts) {
      setDrawColour(blended(colour::raised, colour::text, 0.2));
      fl_rectf(button.left, y() + px(3), button.width, h() - px(6));
    }
    useFont(!counts, 12);
    setDrawColour(!counts                      ? colour::text
                  : bad                        ? colour::trouble
                  : session.findings().empty() ? colour::dim
                                               : colour::remark);
    drawText(button.label, button.left, y(), button.width, h(), FL_ALIGN_CENTER);
  }
}

int MessageBar::handle(int event) {
  if (event == FL_ENTER) return 1;
  if (event != FL_PUSH) return Fl_Widget::handle(event);
  for (const Button& button : buttons) {
    if (Fl::event_x() < button.left || Fl::event_x() >= button.left + button.width) continue;
    const auto press = button.press;  // the buttons may change with it
    press();
    redraw();
    return 1;
  }
  const std::string& text = session.message().text;
  Fl::copy(text.c_str(), static_cast<int>(text.size()), 1);
  return 1;
}

}  // namespace vex::studio
