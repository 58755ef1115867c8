#include "frontend/candidates/Gathering.h"

#include <algorithm>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace frontend {

namespace {

auto rankOf(const Candidate& candidate) {
  return std::tie(candidate.match, candidate.isHidden, candidate.kind, candidate.order, candidate.label);
}

}  // namespace

Gathering::Gathering(const Inquiry& inquiry, std::u16string typed)
    : inquiry_(inquiry), typed_(std::move(typed)), hidden_(inquiry.options().hidden) {}

void Gathering::add(Candidate candidate, Details details) {
  inquiry_.check();
  candidate.match = matchOf(typed_, candidate.label);
  if (candidate.match == Match::None) return;
  if (candidate.isHidden && !hidden_ && candidate.match != Match::Exact) return;
  if (candidate.insertion.empty()) candidate.insertion = candidate.label;
  entries_.push_back({std::move(candidate), std::move(details)});
}

void Gathering::addNames(const std::vector<std::u16string>& names, Kind kind) {
  for (const std::u16string& name : names) add({.label = name, .insertion = {}, .kind = kind});
}

void Gathering::addInOrder(const std::vector<std::u16string>& names, Kind kind, const Details& details,
                           std::size_t order) {
  for (const std::u16string& name : names) {
    add({.label = name, .insertion = {}, .kind = kind, .order = order++}, details);
  }
}

void Gathering::finishWithoutDetails(std::size_t limit, Completion& completion) {
  std::ranges::sort(entries_, [](const Entry& left, const Entry& right) {
    return rankOf(left.candidate) < rankOf(right.candidate);
  });
  std::unordered_set<std::u16string> seen;
  std::erase_if(entries_, [&](const Entry& entry) { return !seen.insert(entry.candidate.label).second; });
  completion.total = entries_.size();
  entries_.resize(std::min(limit, entries_.size()));
  for (Entry& entry : entries_) completion.candidates.push_back(std::move(entry.candidate));
}

void Gathering::finish(std::size_t limit, Completion& completion) {
  finishWithoutDetails(limit, completion);
  for (std::size_t at = 0; at < entries_.size(); ++at) {
    inquiry_.check();
    if (entries_[at].details) entries_[at].details(completion.candidates[at]);
  }
}

}  // namespace frontend
