#include "tools/prompt/Questions.h"

#include <cstddef>

#include "frontend/Explanation.h"
#include "tools/Explain.h"
#include "tools/FrontEnd.h"
#include "tools/Interrupt.h"

namespace tools::prompt {

namespace {

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

}  // namespace tools::prompt
