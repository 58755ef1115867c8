// Texts that are small for what they make: whatever their shape is, a session takes at most twenty times its text and a
// fixed amount, or is refused with the place up to which it was read.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "embedded/Host.h"
#include "tests/snapshot/Faults.h"
#include "tests/support/Table.h"
#include "tests/support/TempFolder.h"

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool memoryIsComparable = false;  // only that every shape is read counts there
#elif defined(__has_feature)
constexpr bool memoryIsComparable = !__has_feature(address_sanitizer);
#else
constexpr bool memoryIsComparable = true;
#endif

constexpr std::size_t textSize = memoryIsComparable ? 1'000'000 : 30'000;
constexpr std::size_t most = 20 * textSize + (std::size_t{64} << 20U);

/// Of this process, in bytes: "VmRSS" now, "VmHWM" at most.
std::size_t memory(const std::string& key) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (word == key + ":" && status >> word) return std::stoull(word) * 1024;
  return 0;
}

/// What stands before, the repeated part in which "#" is a number, and what stands after.
std::string bomb(const std::string& before, const std::string& part, const std::string& after,
                 std::size_t size = textSize) {
  std::string text = before;
  for (int number = 0; text.size() < size; ++number) {
    if (number > 0) text += ',';
    for (const char character : part)
      if (character == '#')
        text += std::to_string(number);
      else
        text += character;
  }
  return text + after;
}

enum Outcome { Loaded = 1, Refused = 2, TooMuch = 3 };

// In a child, whose memory is its own.
TEST(Bombs, TakeNoMoreThanTwentyTimesTheirText) {
  const TempFolder folder;
  int refused = 0;
  for (const auto& [shape, before, part, after] :
       rowsOf<4>("tests/snapshot/tables.rows", "Bombs.TakeNoMoreThanTwentyTimesTheirText")) {
    const auto file = folder.write("bomb.json", bomb(before, part, after));
    const pid_t child = fork();
    if (child == 0) {
      Outcome outcome = Loaded;
      const std::size_t begin = memory("VmRSS");
      try {
        embedded::Host::load(file);
      } catch (const embedded::SnapshotError& fault) {
        if (fault.code() != "snapshot.too-big" || fault.pointer().empty()) _exit(0);
        outcome = Refused;
      }
      _exit(memoryIsComparable && memory("VmHWM") - begin > most ? TooMuch : outcome);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    const bool isFine =
        WIFEXITED(status) && (WEXITSTATUS(status) == Loaded || WEXITSTATUS(status) == Refused);
    EXPECT_TRUE(isFine) << shape << ": " << status;
    refused += isFine && WEXITSTATUS(status) == Refused;
  }
  EXPECT_TRUE(refused > 5 || !memoryIsComparable) << "nothing was held against the limit";
}

// What could not be read again is not written.
TEST(Bombs, AreNotSaved) {
  embedded::CellArray cells;
  cells.elements.resize(400'000, embedded::ValueDescription{embedded::DoubleArray{{}, {0}}});
  embedded::Description world;
  world.workspace.push_back({"x", {std::move(cells)}});
  try {
    embedded::snapshotText(world);
    ADD_FAILURE() << "written";
  } catch (const embedded::SnapshotError& fault) {
    EXPECT_EQ(fault.code(), "snapshot.too-big");
    EXPECT_TRUE(fault.pointer().starts_with("/workspace/0/value/cell/")) << fault.pointer();
  }
}

// What people have is longer than what it makes.
TEST(Bombs, AreNotWhatPeopleHave) {
  for (const char* part :
       {R"({"name": "lab.C#", "properties": [{"name": "Flow", "type": "double", "set": "private"}, "Rate"],
            "methods": ["start", {"name": "create", "static": true}]})",
        R"({"name": "C#", "properties": ["margin-start", "margin-end", "opacity", "height-request"]})"}) {
    const auto fault = faultOfText(bomb(R"({"format": 1, "classes": [)", part, "]}", 500'000));
    EXPECT_FALSE(fault) << part;
  }
}

}  // namespace
