#include "frontend/Completion.h"
#include "frontend/Offers.h"

namespace frontend {

Completion complete(Session& session, const std::u16string& text, std::size_t cursor, const Scope& scope,
                    const Options& options) {
  Completion completion;
  completion.outcome = answer(session, scope, options, [&](RequestContext& request) {
    offerAt(request, contextAt(text, cursor), {options.limit}, completion);
  });
  if (completion.outcome.status == Status::Complete && completion.total > completion.candidates.size()) {
    completion.outcome.status = Status::Limited;
    completion.outcome.reason = u"the first " + wide(std::to_string(completion.candidates.size())) + u" of " +
                                wide(std::to_string(completion.total));
  }
  return completion;
}

}  // namespace frontend
