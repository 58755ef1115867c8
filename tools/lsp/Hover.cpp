#include "tools/lsp/Hover.h"

#include "frontend/Hover.h"
#include "tools/lsp/HoverText.h"
#include "tools/lsp/Outcome.h"
#include "tools/lsp/Params.h"
#include "tools/lsp/Spot.h"

namespace tools::lsp {

Json hover(Context& context, const Json& params) {
  const auto spot = spotOf(context, params);
  if (!spot) return nullptr;
  const auto answer = frontend::describe(context.session.session(), spot->text, spot->cursor, spot->place,
                                         context.abilities.options());
  logOutcome(context.client, "hover", answer.outcome);
  if (answer.isUnknown) return nullptr;
  return {{"contents", contentOf(answer, context.abilities.markdownHover)},
          {"range", jsonOf(spot->rangeOf(answer.begin, answer.end))}};
}

}  // namespace tools::lsp
