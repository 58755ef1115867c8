#include "frontend/CursorContext.h"
#include "frontend/Hover.h"
#include "frontend/Metadata.h"

namespace frontend {

SignatureHelp signatureHelp(Session& session, const std::u16string& text, std::size_t cursor,
                            const Scope& scope, const Options& options) {
  SignatureHelp help;
  help.outcome = answer(session, scope, options, [&](RequestContext& request) {
    const auto call = callAt(text, cursor);
    if (!call) return;
    help.signature = signatureOf(request, *call);
    if (help.signature) help.activeArgument = activeArgument(*help.signature, *call);
  });
  return help;
}

}  // namespace frontend
