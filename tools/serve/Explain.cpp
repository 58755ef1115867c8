#include "tools/serve/Explain.h"

#include "frontend/Explanation.h"
#include "tools/Explain.h"
#include "tools/serve/Params.h"
#include "tools/serve/Spot.h"

namespace tools::serve {

Json explain(Context& context, const Json& params) {
  const std::u16string name = wideTextAt(params, Path("/name"));
  const auto spot = spotOf(context, params);
  if (!spot) return nullptr;
  return tools::jsonOf(frontend::explain(context.session.session(), spot->text, spot->cursor, name,
                                         spot->place, context.abilities.options()));
}

}  // namespace tools::serve
