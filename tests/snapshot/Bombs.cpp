// Texts that are small for what they make: whatever their shape is, a session takes at most twenty times its text and a
// fixed amount, or is refused with the place up to which it was read.

#include <gtest/gtest.h>

#include "tests/snapshot/Faults.h"
#include "tests/snapshot/Saved.h"
#include "tests/support/Memory.h"
#include "tests/support/Table.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr std::size_t textSize = memoryIsComparable ? 3'000'000 : 30'000;
constexpr std::size_t most = 20 * textSize + (std::size_t{160} << 20U);

/// What stands before, the repeated part in which "#" is a number, and what stands after.
std::string bomb(const std::string& before, const std::string& part, const std::string& after,
                 std::size_t size = textSize) {
  std::string text = before;
  for (int number = 0; text.size() < size; ++number) {
    if (number > 0) text += ',';
    for (const char character : part) character == '#' ? text += std::to_string(number) : text += character;
  }
  return text + after;
}

/// What is wrong with a file, when it is not what it takes.
std::string outcomeOf(const std::filesystem::path& file) {
  const std::size_t begin = residentBytes("VmRSS");
  const Fault fault = faultOf([&] { embedded::Host::load(file); });
  return memoryIsComparable && residentBytes("VmHWM") - begin > most ? "too much memory" : fault.shown;
}

// In a child, whose memory is its own.
TEST(Bombs, TakeNoMoreThanTwentyTimesTheirText) {
  const TempFolder folder;
  int refused = 0;
  for (const auto& [shape, before, part, after] :
       rowsOf<4>("tests/snapshot/tables.rows", "Bombs.TakeNoMoreThanTwentyTimesTheirText")) {
    const auto file = folder.write("bomb.json", bomb(before, part, after));
    const std::string outcome = inChild([&] { return outcomeOf(file); });
    EXPECT_TRUE(outcome.empty() || outcome.starts_with("snapshot.too-big /")) << shape << ": " << outcome;
    refused += outcome.empty() ? 0 : 1;
  }
  EXPECT_TRUE(refused > 5 || !memoryIsComparable) << "nothing was held against the limit";
}

// What could not be read again is not written.
TEST(Bombs, AreNotSaved) {
  embedded::CellArray cells;
  cells.elements.resize(800'000, embedded::ValueDescription{embedded::DoubleArray{{}, {0}}});
  embedded::Description world;
  world.workspace.push_back({"x", {std::move(cells)}});
  const Fault fault = faultOf([&] { embedded::snapshotText(world); });
  EXPECT_TRUE(fault.shown.starts_with("snapshot.too-big /workspace/0/value/cell/")) << fault.shown;
}

// What people have is longer than what it makes.
TEST(Bombs, AreNotWhatPeopleHave) {
  for (const char* part :
       {R"({"name": "lab.C#", "properties": [{"name": "Flow", "type": "double", "set": "private"}, "Rate"],
            "methods": ["start", {"name": "create", "static": true}]})",
        R"({"name": "C#", "properties": ["margin-start", "margin-end", "opacity", "height-request"]})"}) {
    EXPECT_EQ(faultOfText(bomb(R"({"format": 1, "classes": [)", part, "]}", 500'000)).shown, "") << part;
  }
}

}  // namespace
