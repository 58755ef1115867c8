#include "frontend/Hover.h"
#include "frontend/arguments/Metadata.h"
#include "frontend/line/Position.h"

namespace frontend {

SignatureHelp signatureHelp(Session& session, const std::u16string& text, std::size_t cursor,
                            const Place& place, const Options& options) {
  SignatureHelp help;
  help.outcome = answer(session, place, options, [&](Inquiry& inquiry) {
    const auto call = callAt(text, cursor);
    if (!call) return;
    help.signature = signatureOf(inquiry, *call);
    if (help.signature) help.activeArgument = activeArgument(*help.signature, *call);
  });
  return help;
}

}  // namespace frontend
