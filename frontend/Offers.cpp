#include "frontend/Offers.h"

#include "frontend/CandidateList.h"
#include "frontend/MemberOffers.h"
#include "frontend/NameOffers.h"
#include "frontend/Resolution.h"
#include "frontend/ValueOffers.h"

namespace frontend {

namespace {

/// In a text with a folder in it, the part behind the folder is typed.
std::u16string splitFolder(CursorContext& context) {
  const std::size_t slash = context.typed.rfind(u'/');
  if (slash == std::u16string::npos) return {};
  std::u16string folder = context.typed.substr(0, slash);
  context.begin += slash + 1;
  context.typed.erase(0, slash + 1);
  return folder;
}

void finish(CandidateList& candidates, const Wanted& wanted, Completion& completion) {
  if (wanted.details)
    candidates.finish(wanted.limit, completion);
  else
    candidates.finishWithoutDetails(wanted.limit, completion);
}

void offerInText(RequestContext& request, CursorContext& context, const Wanted& wanted,
                 Completion& completion) {
  CandidateList values(request, context.typed);
  offerTargetValues(request, context, values);
  if (context.target.empty()) offerArguments(request, context, values);
  finish(values, wanted, completion);
  if (completion.total > 0 || !context.call) return;
  const std::u16string folder = splitFolder(context);
  completion.begin = context.begin;
  CandidateList files(request, context.typed);
  offerFilesInText(folder, files);
  finish(files, wanted, completion);
}

void offer(RequestContext& request, const CursorContext& context, CandidateList& candidates) {
  switch (context.kind) {
    case CursorContext::Member:
      offerMembers(request, resolve(request, context.base), candidates);
      break;
    case CursorContext::Handle:
      offerFunctions(request, candidates);
      break;
    case CursorContext::Name:
      offerTargetValues(request, context, candidates);
      if (!context.beginsStatement) offerArguments(request, context, candidates);
      if (!context.following.empty()) {
        offerMethodsBeforeDot(request, resolve(request, context.following), candidates);
      }
      offerNames(request, candidates);
      break;
    default:
      break;
  }
}

}  // namespace

void offerAt(RequestContext& request, CursorContext context, const Wanted& wanted, Completion& completion) {
  completion.begin = context.begin;
  completion.end = context.end;
  if (context.kind == CursorContext::Nothing) return;
  if (context.kind == CursorContext::Text) return offerInText(request, context, wanted, completion);
  CandidateList candidates(request, context.typed);
  try {
    offer(request, context, candidates);
  } catch (...) {
    candidates.finishWithoutDetails(wanted.limit, completion);
    throw;
  }
  finish(candidates, wanted, completion);
}

}  // namespace frontend
