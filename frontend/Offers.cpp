#include "frontend/Offers.h"

#include "frontend/arguments/ValueOffers.h"
#include "frontend/candidates/Gathering.h"
#include "frontend/inquiry/Denotation.h"
#include "frontend/members/MemberOffers.h"
#include "frontend/names/NameOffers.h"

namespace frontend {

namespace {

/// In a text with a folder in it, the part behind the folder is typed.
std::u16string splitFolder(Position& position) {
  const std::size_t slash = position.typed.rfind(u'/');
  if (slash == std::u16string::npos) return {};
  std::u16string folder = position.typed.substr(0, slash);
  position.begin += slash + 1;
  position.typed.erase(0, slash + 1);
  return folder;
}

void finish(Gathering& gathering, const Wanted& wanted, Completion& completion) {
  if (wanted.details)
    gathering.finish(wanted.limit, completion);
  else
    gathering.finishWithoutDetails(wanted.limit, completion);
}

void offerInText(Inquiry& inquiry, Position& position, const Wanted& wanted, Completion& completion) {
  Gathering values(inquiry, position.typed);
  offerTargetValues(inquiry, position, values);
  if (position.target.empty()) offerArguments(inquiry, position, values);
  finish(values, wanted, completion);
  if (completion.total > 0 || !position.call) return;
  const std::u16string folder = splitFolder(position);
  completion.begin = position.begin;
  Gathering files(inquiry, position.typed);
  offerFilesInText(folder, files);
  finish(files, wanted, completion);
}

void offer(Inquiry& inquiry, const Position& position, Gathering& gathering) {
  switch (position.kind) {
    case Position::Member:
      offerMembers(inquiry, denote(inquiry, position.base), gathering);
      break;
    case Position::Handle:
      offerFunctions(inquiry, gathering);
      break;
    case Position::Name:
      offerTargetValues(inquiry, position, gathering);
      if (!position.beginsStatement) offerArguments(inquiry, position, gathering);
      if (!position.following.empty()) {
        offerMethodsBeforeDot(inquiry, denote(inquiry, position.following), gathering);
      }
      offerNames(inquiry, gathering);
      break;
    default:
      break;
  }
}

}  // namespace

void offerAt(Inquiry& inquiry, Position position, const Wanted& wanted, Completion& completion) {
  completion.begin = position.begin;
  completion.end = position.end;
  if (position.kind == Position::Nothing) return;
  if (position.kind == Position::Text) return offerInText(inquiry, position, wanted, completion);
  Gathering gathering(inquiry, position.typed);
  try {
    offer(inquiry, position, gathering);
  } catch (...) {
    gathering.finishWithoutDetails(wanted.limit, completion);
    throw;
  }
  finish(gathering, wanted, completion);
}

}  // namespace frontend
