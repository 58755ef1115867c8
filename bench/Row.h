#pragma once

// One measured thing: a query, and beside it the bound, which makes the same answer from a flat table.

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench {

/// A session with the two actions that are compared. Each returns how many entries its answer had; the answer is
/// destroyed inside.
struct Measured {
  /// Keeps alive what the actions use.
  std::shared_ptr<void> world;
  std::function<std::size_t()> answer;
  std::function<std::size_t()> bound;
};

struct Row {
  /// "work/members/depth"
  std::string name;
  std::function<Measured()> make;
};

/// All rows, those of the library, of the front end and of snapshots.
std::vector<Row> allRows();

void addLibraryRows(std::vector<Row>& rows);
void addFrontEndRows(std::vector<Row>& rows);

}  // namespace bench
