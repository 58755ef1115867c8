#include "tools/prompt/Questions.h"

#include <cstddef>
#include <vector>

#include "frontend/Explanation.h"
#include "frontend/Hover.h"
#include "tools/render/FrontEnd.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace tools::prompt {

namespace {

/// "label: 1x1 double, ...", or what it is when it has no value.
std::string textOf(const std::vector<std::u16string>& names) {
  std::string text;
  for (const std::u16string& name : names) text += (text.empty() ? "" : ", ") + printable(name);
  return text;
}

std::string lineOf(const char* title, const std::vector<std::u16string>& names) {
  return names.empty() ? std::string() : std::string("  ") + title + ": " + textOf(names) + '\n';
}

std::string textOf(const frontend::Hover& hover) {
  if (hover.isUnknown) return {};
  const std::string details = detailsOf(hover.subject);
  std::string text = printable(hover.subject.label) + ": " + kindOf(hover.subject);
  text += (details.empty() ? "" : ", " + details) + '\n';
  if (hover.signature) text += "  " + printable(hover.signature->text()) + '\n';
  return text + lineOf("derives from", hover.superclasses) + lineOf("values", hover.possibleValues) +
         lineOf("checked by", hover.validators);
}

/// The note, too, when there is something to note.
std::string withNotice(std::string text, const frontend::Outcome& outcome) {
  const std::string notice = noticeOf(outcome);
  return notice.empty() ? text : text + notice + '\n';
}

}  // namespace

std::string explain(LiveSession& live, const std::u16string& name) {
  const std::size_t begin = name.rfind(u'.') + 1;
  const std::u16string before = name.substr(0, begin);
  const Interruptible request(live.host);
  live.trace.begin();
  const frontend::Explanation answer =
      frontend::explain(live.session, before, before.size(), name.substr(begin), {}, live.options());
  return withNotice(tools::textOf(answer), answer.outcome) + live.trace.end();
}

std::string describe(LiveSession& live, const std::u16string& name) {
  const Interruptible request(live.host);
  live.trace.begin();
  const frontend::Hover answer = frontend::describe(live.session, name, name.size(), {}, live.options());
  return withNotice(textOf(answer), answer.outcome) + live.trace.end();
}

}  // namespace tools::prompt
