#include "frontend/CandidateList.h"

#include <algorithm>
#include <utility>

#include "frontend/MemberNames.h"
#include "frontend/Text.h"

namespace frontend {

namespace {

bool isMember(Kind kind) {
  switch (kind) {
    case Kind::Property:
    case Kind::Field:
    case Kind::Constant:
    case Kind::EnumerationMember:
    case Kind::Method:
    case Kind::StaticMethod:
      return true;
    default:
      return false;
  }
}

std::uint32_t rankOf(Match match, bool isHidden, Kind kind) {
  return static_cast<std::uint32_t>(match) << 16U | (isHidden ? 1U << 8U : 0U) |
         static_cast<std::uint32_t>(kind);
}

}  // namespace

CandidateList::CandidateList(const RequestContext& request, std::u16string typed, Place place)
    : request_(request), typed_(std::move(typed)), place_(place), hidden_(request.options().hidden) {}

void CandidateList::add(Candidate candidate, Details details) {
  // The label is set once the entries stay where they are.
  if (addKey(
          {candidate.label, candidate.kind, candidate.isHidden, candidate.order, nullptr, entries_.size()}))
    entries_.push_back({std::move(candidate), std::move(details)});
}

void CandidateList::add(const Listed& listed) { addKey(listed); }

bool CandidateList::addKey(const Listed& listed) {
  request_.check();
  const Match match = matchOf(typed_, listed.label);
  if (match == Match::None) return false;
  // Whoever has typed the whole name knows it.
  if (listed.isHidden && !hidden_ && match != Match::Exact) return false;
  if (!isWritable(listed.kind, listed.label)) return false;
  keys_.push_back({rankOf(match, listed.isHidden, listed.kind), static_cast<std::uint32_t>(listed.at),
                   listed.order, listed.label, listed.source});
  return true;
}

bool CandidateList::isWritable(Kind kind, std::u16string_view label) const {
  if (place_ == Place::Text || kind == Kind::Value || kind == Kind::ArgumentName || kind == Kind::Keyword)
    return true;
  if (place_ != Place::Member || !isMember(kind)) return isName(label);
  // After a dot every name can be written that stands in one line, in quotes if need be.
  return !label.empty() && label.find_first_of(u"\n\r") == std::u16string_view::npos;
}

void CandidateList::completeInsertion(Candidate& candidate) const {
  if (place_ == Place::Member && isMember(candidate.kind) && !isMemberName(candidate.label)) {
    candidate.replacesDot = true;
    candidate.insertion = u".('" + escaped(candidate.label, u'\'') + u"')";
  } else if (candidate.insertion.empty()) {
    candidate.insertion = candidate.label;
  }
}

void CandidateList::addNames(const std::vector<std::u16string>& names, Kind kind) {
  for (const std::u16string& name : names) add({.label = name, .insertion = {}, .kind = kind});
}

void CandidateList::addInOrder(const std::vector<std::u16string>& names, Kind kind, const Details& details,
                               std::size_t order) {
  for (const std::u16string& name : names) {
    add({.label = name, .insertion = {}, .kind = kind, .order = order++}, details);
  }
}

bool CandidateList::isBefore(const Key& left, const Key& right) {
  if (left.rank != right.rank) return left.rank < right.rank;
  return left.order != right.order ? left.order < right.order : left.label < right.label;
}

void CandidateList::dropRepeated() {
  NameNumbers<char16_t> labels(keys_.size());
  // One entry per number, the best one so far.
  auto end = keys_.begin();
  for (const Key& key : keys_) {
    const std::uint32_t number = labels.numberOf(key.label);
    Key* known = keys_.data() + number;
    if (known == std::to_address(end))
      *end++ = key;
    else if (isBefore(key, *known))
      *known = key;
  }
  keys_.erase(end, keys_.end());
}

Candidate CandidateList::candidateOf(const Key& key) {
  Candidate candidate;
  if (key.source == nullptr) {
    candidate = std::move(entries_[key.at].candidate);
  } else {
    candidate.label = key.label;
    candidate.kind = static_cast<Kind>(key.rank & 0xFFU);
    candidate.isHidden = (key.rank & 0x100U) != 0;
    candidate.order = key.order;
  }
  candidate.match = static_cast<Match>(key.rank >> 16U);
  completeInsertion(candidate);
  return candidate;
}

void CandidateList::finish(const Extent& extent, Completion& completion) {
  for (Key& key : keys_)
    if (key.source == nullptr) key.label = entries_[key.at].candidate.label;
  dropRepeated();
  completion.total = keys_.size();
  const auto shown = keys_.begin() + static_cast<std::ptrdiff_t>(std::min(extent.limit, keys_.size()));
  // What is beyond the limit needs no order.
  if (shown != keys_.end()) std::nth_element(keys_.begin(), shown, keys_.end(), isBefore);
  std::sort(keys_.begin(), shown, isBefore);
  keys_.erase(shown, keys_.end());
  completion.candidates.reserve(completion.candidates.size() + keys_.size());
  for (const Key& key : keys_) completion.candidates.push_back(candidateOf(key));
  if (!extent.details) return;
  // All candidates are there before the first detail is read: a request that is stopped meanwhile loses none.
  for (std::size_t at = 0; at < keys_.size(); ++at) {
    request_.check();
    Candidate& candidate = completion.candidates[at];
    const Key& key = keys_[at];
    if (key.source != nullptr)
      key.source->describe(key.at, candidate);
    else if (const Details& details = entries_[key.at].details)
      details(candidate);
  }
}

}  // namespace frontend
