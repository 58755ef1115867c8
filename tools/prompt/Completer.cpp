#include "tools/prompt/Completer.h"

#include <algorithm>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/locale/encoding_utf.hpp>

#include "frontend/Completion.h"
#include "tools/render/FrontEnd.h"
#include "tools/prompt/CandidateList.h"
#include "tools/prompt/Terminal.h"
#include "tools/session/Process.h"

namespace tools::prompt {

namespace {

using boost::locale::conv::utf_to_utf;
using frontend::Candidate;
using frontend::Completion;
using frontend::Match;
using Candidates = std::vector<Candidate>;

/// The names that the lines before give values, which no variable has yet.
frontend::Scope placeIn(const std::u16string& text, const embedded::Host& host) {
  frontend::Scope place;
  for (const embedded::CodeVariable& variable : embedded::outlineOf(text).variables) {
    if (host.variable(variable.name)) continue;
    place.locals.push_back({utf_to_utf<char16_t>(variable.name), utf_to_utf<char16_t>(variable.maker)});
  }
  return place;
}

/// The end of those that fit as well as the first one; an exact match is a prefix, too.
Candidates::const_iterator endOfBest(const Candidates& candidates) {
  const auto rankOf = [](const Candidate& each) {
    return each.match == Match::Exact ? Match::Prefix : each.match;
  };
  return std::ranges::find_if(candidates,
                              [&](const Candidate& each) { return rankOf(each) != rankOf(candidates[0]); });
}

std::u16string commonBeginning(Candidates::const_iterator first, Candidates::const_iterator end) {
  std::u16string common = first->insertion;
  for (; first != end; ++first) {
    const auto ends = std::ranges::mismatch(common, first->insertion);
    common.erase(ends.in1, common.end());
  }
  if (!common.empty() && common.back() >= 0xD800 && common.back() <= 0xDBFF) common.pop_back();
  return common;
}

/// As far as all of those that fit best agree. A name that is not typed from its beginning on is taken whole or not.
std::u16string insertionOf(const Candidates& candidates, const std::u16string& typed) {
  if (candidates.empty()) return typed;
  const auto end = endOfBest(candidates);
  const std::u16string common = commonBeginning(candidates.begin(), end);
  const bool isOne = end - candidates.begin() == 1;
  if (isOne) return common;
  const bool isLonger = common.size() >= typed.size() && candidates[0].match != Match::Humps;
  return isLonger ? common : typed;
}

/// There are more candidates that fit best than were asked for, so that it is not known how far they agree.
bool lacksSome(const Completion& completion) {
  using frontend::Status;
  const Status status = completion.outcome.status;
  if (status == Status::Interrupted || status == Status::TimedOut || status == Status::Failed) return false;
  return completion.total > completion.candidates.size() && !completion.candidates.empty() &&
         endOfBest(completion.candidates) == completion.candidates.end();
}

}  // namespace

Completed Completer::complete(const std::u16string& text, std::size_t cursor, bool hidden,
                              std::size_t width) {
  const frontend::Scope place = placeIn(text.substr(0, text.rfind(u'\n') + 1), live_.host);
  frontend::Options options = live_.options(hidden);
  const Interruptible request(live_.host);
  live_.trace.begin();
  Completion completion = frontend::complete(live_.session, text, cursor, place, options);
  const std::u16string typed = text.substr(completion.begin, completion.end - completion.begin);
  Completed completed{completion.begin, completion.end, typed};
  if (lacksSome(completion)) {
    options.limit = completion.total;
    const Completion every = frontend::complete(live_.session, text, cursor, place, options);
    if (!lacksSome(every)) completed.insertion = insertionOf(every.candidates, typed);
  } else {
    completed.insertion = insertionOf(completion.candidates, typed);
  }
  const bool isDone = completion.candidates.size() == 1 && completed.insertion != typed;
  if (!isDone) completed.lines = linesOf(completion.candidates, width);
  std::string remarks = noticeOf(completion.outcome);
  if (!remarks.empty()) remarks += '\n';
  remarks += live_.trace.end();
  std::vector<std::string> lines;
  boost::algorithm::split(lines, remarks, boost::algorithm::is_any_of("\n"));
  for (const std::string& line : lines)
    if (!line.empty()) completed.lines.push_back(dim(fitted(line, std::max<std::size_t>(width, 2) - 1)));
  return completed;
}

}  // namespace tools::prompt
