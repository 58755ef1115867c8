#include "tools/lsp/Explain.h"

#include "frontend/Explanation.h"
#include "tools/render/FrontEnd.h"
#include "tools/lsp/Params.h"
#include "tools/lsp/Spot.h"

namespace tools::lsp {

Json explain(Context& context, const Json& params) {
  const std::u16string name = wideTextAt(params, Path("/name"));
  const auto spot = spotOf(context, params);
  if (!spot) return nullptr;
  return tools::jsonOf(frontend::explain(context.session.session(), spot->text, spot->cursor, name,
                                         spot->place, context.abilities.options()));
}

}  // namespace tools::lsp
