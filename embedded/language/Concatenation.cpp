#include "embedded/language/Concatenation.h"

#include <algorithm>

#include "embedded/host/Session.h"
#include "embedded/language/Convert.h"

namespace embedded {

namespace {

/// A row of the result: its pieces and its extents.
struct Row {
  Values pieces;
  std::size_t height = 0;
  std::size_t width = 0;
};

bool isEmpty(const ValuePtr& value) { return value->elementCount() == 0; }

Values flattened(const std::vector<Values>& rows) {
  Values all;
  for (const Values& row : rows) all.insert(all.end(), row.begin(), row.end());
  return all;
}

Row measured(Values pieces) {
  Row row{std::move(pieces)};
  row.height = row.pieces.front()->rows();
  for (const ValuePtr& piece : row.pieces) {
    if (piece->rows() != row.height)
      failCode("KORVAL:code:SizeMismatch", "Values of " + std::to_string(row.height) + " and " +
                                               std::to_string(piece->rows()) +
                                               " rows cannot stand side by side");
    row.width += piece->columns();
  }
  return row;
}

/// The rows that hold something, of pieces of one kind.
std::vector<Row> unifiedRows(const std::vector<Values>& rows, Values& pieces) {
  std::erase_if(pieces, isEmpty);
  pieces = unified(std::move(pieces));
  std::vector<Row> result;
  auto next = pieces.begin();
  for (const Values& row : rows) {
    const auto end = next + (std::ssize(row) - std::ranges::count_if(row, isEmpty));
    if (next != end) result.push_back(measured(Values(next, end)));
    next = end;
  }
  return result;
}

/// Where each element of the result comes from among the elements of all pieces.
std::vector<std::size_t> originsOf(const std::vector<Row>& rows, std::size_t height, std::size_t width) {
  std::vector<std::size_t> origins(height * width);
  std::size_t top = 0;
  std::size_t next = 0;
  for (const Row& row : rows) {
    std::size_t left = 0;
    for (const ValuePtr& piece : row.pieces) {
      for (std::size_t element = 0; element < piece->elementCount(); ++element) {
        session().interpreter.pollAt(element + 1);
        origins[top + element % row.height + (left + element / row.height) * height] = next++;
      }
      left += piece->columns();
    }
    top += row.height;
  }
  return origins;
}

}  // namespace

ValuePtr concatenated(const std::vector<Values>& rows) {
  Values pieces = flattened(rows);
  if (pieces.empty()) return newEmpty();
  if (std::ranges::all_of(pieces, isEmpty)) return unified(std::move(pieces)).front();
  const std::vector<Row> all = unifiedRows(rows, pieces);
  const std::size_t width = all.front().width;
  std::size_t height = 0;
  for (const Row& row : all) {
    if (row.width != width)
      failCode("KORVAL:code:SizeMismatch",
               "The rows have " + std::to_string(width) + " and " + std::to_string(row.width) + " columns");
    height += row.height;
  }
  session().interpreter.checkSize({height, width});
  return gathered(*joined(pieces), originsOf(all, height, width), {height, width});
}

}  // namespace embedded
