#include "tools/serve/Hover.h"

#include "frontend/Hover.h"
#include "tools/serve/HoverText.h"
#include "tools/serve/Outcome.h"
#include "tools/serve/Params.h"
#include "tools/serve/Spot.h"

namespace tools::serve {

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

}  // namespace tools::serve
