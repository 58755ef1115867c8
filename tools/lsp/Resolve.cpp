#include "frontend/Hover.h"
#include "tools/lsp/Completion.h"
#include "tools/lsp/HoverText.h"
#include "tools/lsp/Outcome.h"
#include "tools/lsp/Params.h"

namespace tools::lsp {

using frontend::Candidate;

Json resolve(Context& context, const Json& item) {
  const LatestCompletion& latest = context.completion;
  const Json& index = valueAt(item, Path("/data/index"));
  if (valueAt(item, Path("/data/answer")) != latest.number || !index.is_number_unsigned() ||
      index >= latest.candidates.size()) {
    return item;
  }
  const Candidate& candidate = latest.candidates[index.get<std::size_t>()];
  const std::u16string text = latest.before + candidate.insertion;
  const auto hover = frontend::describe(context.session.session(), text, text.size(), latest.place,
                                        context.abilities.options());
  logOutcome(context.client, "resolve", hover.outcome);
  Json resolved = item;
  if (!hover.isUnknown) resolved["documentation"] = contentOf(hover, context.abilities.markdownDocumentation);
  return resolved;
}

}  // namespace tools::lsp
