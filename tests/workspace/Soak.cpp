#include <malloc.h>

#include <algorithm>
#include <cstdlib>

#include "tests/support/Memory.h"
#include "tests/workspace/Queries.h"

namespace {

using namespace workspace;

std::size_t bytesInUse() {
  ::malloc_trim(0);
  return residentBytes("VmRSS");
}

std::uint64_t queryCount() {
  const char* asked = std::getenv("CONTEXTDATA_SOAK");
  if (asked != nullptr) return std::strtoull(asked, nullptr, 10);
  return memoryIsComparable ? 100'000 : 20'000;
}

class Soak : public Workspace {};

TEST_F(Soak, OfMixedQueriesKeepsMemoryFlat) {
  std::vector<Row> rows;
  for (Row& row : rowsOfQueries())
    if (std::ranges::all_of(row.arguments, [](const std::string& text) { return text.size() < 1000; }))
      rows.push_back(std::move(row));
  const auto ask = [&](std::uint64_t from, std::uint64_t to) {
    for (std::uint64_t at = from; at < to; ++at) {
      const Row& row = rows[at % rows.size()];
      answerTo(*host_, row, valueFor(row));
    }
    return std::pair(bytesInUse(), embedded::Host::references().values);
  };
  // Both ends are in the same place of the table.
  const std::uint64_t first = 10'000 - 10'000 % rows.size(), last = queryCount() - queryCount() % rows.size();
  ASSERT_GT(last, first);
  const auto [bytesBefore, valuesBefore] = ask(0, first);
  const auto [bytesAfter, valuesAfter] = ask(first, last);
  EXPECT_EQ(valuesAfter, valuesBefore);
  EXPECT_TRUE(!memoryIsComparable || bytesAfter <= bytesBefore + (1U << 20U))
      << last << " queries: from " << bytesBefore << " to " << bytesAfter;
  RecordProperty("queries", std::to_string(last));
}

}  // namespace
