#include "frontend/CandidateList.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "frontend/Text.h"

namespace frontend {

namespace {

auto rankOf(const Candidate& candidate) {
  return std::tie(candidate.match, candidate.isHidden, candidate.kind, candidate.order, candidate.label);
}

}  // namespace

CandidateList::CandidateList(const RequestContext& request, std::u16string typed, Place place)
    : request_(request), typed_(std::move(typed)), place_(place), hidden_(request.options().hidden) {}

void CandidateList::add(Candidate candidate, Details details) {
  request_.check();
  candidate.match = matchOf(typed_, candidate.label);
  if (candidate.match == Match::None) return;
  // Whoever has typed the whole name knows it.
  if (candidate.isHidden && !hidden_ && candidate.match != Match::Exact) return;
  if (!makeWritable(candidate)) return;
  entries_.push_back({std::move(candidate), std::move(details)});
}

bool CandidateList::makeWritable(Candidate& candidate) const {
  if (place_ == Place::Text) return true;
  switch (candidate.kind) {
    case Kind::Value:
    case Kind::ArgumentName:
    case Kind::Keyword:
      return true;
    case Kind::Property:
    case Kind::Field:
    case Kind::Constant:
    case Kind::EnumerationMember:
    case Kind::Method:
    case Kind::StaticMethod:
      if (place_ == Place::Name) return isName(candidate.label);
      if (isMemberName(candidate.label)) return true;
      candidate.replacesDot = true;
      candidate.insertion = u".('" + escaped(candidate.label, u'\'') + u"')";
      return !candidate.label.empty();
    default:
      return isName(candidate.label);
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

/// Entries are big: pointers to them are sorted, not they.
std::vector<CandidateList::Entry*> CandidateList::ranked() {
  std::vector<Entry*> order;
  order.reserve(entries_.size());
  for (Entry& entry : entries_) order.push_back(&entry);
  std::ranges::sort(order, [](const Entry* left, const Entry* right) {
    return rankOf(left->candidate) < rankOf(right->candidate);
  });
  // Views of labels are good here: pointers have been sorted, and the entries have stayed where they are.
  std::unordered_set<std::u16string_view> seen;
  seen.reserve(order.size());
  std::erase_if(order, [&](const Entry* entry) { return !seen.insert(entry->candidate.label).second; });
  return order;
}

void CandidateList::finish(const Extent& extent, Completion& completion) {
  std::vector<Entry*> order = ranked();
  completion.total = order.size();
  order.resize(std::min(extent.limit, order.size()));
  std::vector<Entry> first;
  for (Entry* entry : order) first.push_back(std::move(*entry));
  entries_ = std::move(first);
  for (Entry& entry : entries_) {
    if (entry.candidate.insertion.empty()) entry.candidate.insertion = entry.candidate.label;
    completion.candidates.push_back(std::move(entry.candidate));
  }
  if (!extent.details) return;
  // All candidates are there before the first detail is read: a request that is stopped meanwhile loses none.
  for (std::size_t at = 0; at < entries_.size(); ++at) {
    request_.check();
    if (entries_[at].details) entries_[at].details(completion.candidates[at]);
  }
}

}  // namespace frontend
