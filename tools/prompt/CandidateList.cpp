#include "tools/prompt/CandidateList.h"

#include <algorithm>

#include "tools/render/FrontEnd.h"
#include "tools/prompt/Terminal.h"
#include "tools/render/Text.h"

namespace tools::prompt {

namespace {

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

Cell cellOf(const frontend::Candidate& candidate) {
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

/// `isLast` in its line, it needs no blanks behind it.
std::string textOf(const Cell& cell, const Layout& layout, bool isLast) {
  const std::string label = fitted(cell.label, layout.labels);
  const std::string details = fitted(cell.details, layout.details);
  std::string text = label;
  if (!details.empty()) text += blanks(layout.labels - widthOf(label) + 2) + dim(details);
  const std::size_t taken = details.empty() ? widthOf(label) : layout.labels + 2 + widthOf(details);
  const std::size_t whole = layout.labels + (layout.details > 0 ? 2 : 0) + layout.details;
  return isLast ? text : text + blanks(whole - taken + gap);
}

}  // namespace

std::vector<std::string> linesOf(const std::vector<frontend::Candidate>& candidates, std::size_t width) {
  std::vector<Cell> cells;
  for (const frontend::Candidate& candidate : candidates) cells.push_back(cellOf(candidate));
  // The last column stays empty: some terminals begin a new line behind it.
  const Layout layout = layoutOf(cells, std::max<std::size_t>(width, 2) - 1);
  const std::size_t rows = (cells.size() + layout.columns - 1) / layout.columns;
  std::vector<std::string> lines(rows);
  for (std::size_t at = 0; at < cells.size(); ++at)
    lines[at % rows] += textOf(cells[at], layout, at + rows >= cells.size());
  return lines;
}

}  // namespace tools::prompt
