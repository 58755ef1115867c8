#include "tools/prompt/Completer.h"

#include <algorithm>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include "frontend/Completion.h"
#include "host/Text.h"
#include "tools/prompt/Terminal.h"
#include "tools/render/FrontEnd.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace tools::prompt {

namespace {

using frontend::Candidate;
using frontend::Completion;
using frontend::Match;
using Candidates = std::vector<Candidate>;

constexpr std::size_t widestDetails = 40;
constexpr std::size_t narrowestDetails = 6;
constexpr std::size_t gap = 3;

struct Cell {
  std::string label;
  std::string details;
};

struct Layout {
  std::size_t labels = 0;
  std::size_t details = 0;
  std::size_t columns = 1;
};

Cell cellOf(const Candidate& candidate) {
  std::string details = detailsOf(candidate);
  if (candidate.type.empty() && candidate.size.empty())
    details = kindOf(candidate) + (details.empty() ? "" : ", ") + details;
  return {printable(candidate.label), details};
}

/// A narrow terminal has one column, in which details are cut off, and then left out, before names are.
Layout layoutOf(const std::vector<Cell>& cells, std::size_t width) {
  Layout layout;
  for (const Cell& cell : cells) {
    layout.labels = std::max(layout.labels, widthOf(cell.label));
    layout.details = std::clamp(widthOf(cell.details), layout.details, widestDetails);
  }
  layout.labels = std::min(layout.labels, width);
  const std::size_t left = width - layout.labels;
  if (left < 2 + std::min(layout.details, narrowestDetails)) layout.details = 0;
  layout.details = std::min(layout.details, left < 2 ? 0 : left - 2);
  const std::size_t cell = layout.labels + (layout.details > 0 ? 2 : 0) + layout.details;
  layout.columns = std::max<std::size_t>(1, (width + gap) / (cell + gap));
  return layout;
}

std::string blanks(std::size_t count) { return std::string(count, ' '); }

/// `isLast` in its line, it needs no blanks after it.
std::string paddedCell(const Cell& cell, const Layout& layout, bool isLast) {
  const std::string label = fitted(cell.label, layout.labels);
  const std::string details = fitted(cell.details, layout.details);
  std::string text = label;
  if (!details.empty()) text += blanks(layout.labels - widthOf(label) + 2) + dim(details);
  const std::size_t taken = details.empty() ? widthOf(label) : layout.labels + 2 + widthOf(details);
  const std::size_t whole = layout.labels + (layout.details > 0 ? 2 : 0) + layout.details;
  return isLast ? text : text + blanks(whole - taken + gap);
}

/// Candidates as lines of a terminal of this width, best first and downwards, in as many columns as fit; beside each
/// its type and size and what else is to be known, or what it is.
std::vector<std::string> columnsOf(const Candidates& candidates, std::size_t width) {
  std::vector<Cell> cells;
  for (const Candidate& candidate : candidates) cells.push_back(cellOf(candidate));
  // The last column stays empty: some terminals begin a new line after it.
  const Layout layout = layoutOf(cells, std::max<std::size_t>(width, 2) - 1);
  const std::size_t rows = (cells.size() + layout.columns - 1) / layout.columns;
  std::vector<std::string> lines(rows);
  for (std::size_t at = 0; at < cells.size(); ++at)
    lines[at % rows] += paddedCell(cells[at], layout, at + rows >= cells.size());
  return lines;
}

/// The names that the lines before give values, which no variable has yet.
frontend::Scope scopeIn(const std::u16string& text, const embedded::Host& host) {
  frontend::Scope scope;
  for (const embedded::CodeVariable& variable : embedded::outlineOf(text).variables) {
    // The session knows better what a variable is than a line that has not run.
    if (host.variable(variable.name)) continue;
    scope.locals.push_back({wide(variable.name), wide(variable.maker)});
  }
  return scope;
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
  // No character is cut in two.
  if (!common.empty() && fl::i18n::is_high_surrogate(common.back())) common.pop_back();
  return common;
}

/// As far as all of those that fit best agree. A name that is not typed from its beginning on is taken whole or not.
std::u16string insertionOf(const Candidates& candidates, const std::u16string& typed) {
  if (candidates.empty()) return typed;
  const auto end = endOfBest(candidates);
  const std::u16string common = commonBeginning(candidates.begin(), end);
  const bool isOne = end - candidates.begin() == 1;
  if (isOne) return common;
  // What replaces the dot has no beginning in common with what does not.
  if (std::any_of(candidates.begin(), end, [](const Candidate& each) { return each.replacesDot; }))
    return typed;
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
  // Only of the lines before: the one that is being typed is not finished.
  const frontend::Scope scope = scopeIn(text.substr(0, text.rfind(u'\n') + 1), live_.host);
  frontend::Options options = live_.options(hidden);
  const Interruptible request(live_.host);
  live_.trace.begin();
  Completion completion = frontend::complete(live_.session, text, cursor, scope, options);
  const std::u16string typed = text.substr(completion.begin, completion.end - completion.begin);
  Completed completed{completion.begin, completion.end, typed};
  if (lacksSome(completion)) {
    // How far the best ones agree can be told of all of them only.
    options.limit = completion.total;
    const Completion every = frontend::complete(live_.session, text, cursor, scope, options);
    if (!lacksSome(every)) completed.insertion = insertionOf(every.candidates, typed);
  } else {
    completed.insertion = insertionOf(completion.candidates, typed);
  }
  if (completed.insertion != typed && completion.candidates[0].replacesDot) --completed.begin;
  // A single name that has been inserted needs no list.
  const bool isDone = completion.candidates.size() == 1 && completed.insertion != typed;
  if (!isDone) completed.lines = columnsOf(completion.candidates, width);
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
