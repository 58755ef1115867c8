#include <algorithm>
#include <array>

#include "embedded/snapshot/Object.h"

namespace embedded::snapshot {

namespace {

// In the order of the levels.
constexpr std::array<std::string_view, 6> levels{"public",    "protected", "private",
                                                 "immutable", "listed",    "constant"};
constexpr int listed = 4;

void takeLevel(Reader& reader, Event& event, Access& access) {
  std::string word;
  take(reader, event, word);
  const auto found = std::find(levels.begin(), levels.end(), word);
  if (found == levels.end()) {
    reader.fail("snapshot.bad-level",
                inQuotes(word) + " is none of public, protected, private, immutable, listed, constant");
  }
  access.level = static_cast<int>(found - levels.begin());
}

Json giveLevel(Writer& writer, const Access& access) {
  if (access.level < 0 || access.level >= static_cast<int>(levels.size()))
    writer.fail("snapshot.bad-level", std::to_string(access.level) + " is no access level");
  return levels[static_cast<std::size_t>(access.level)];
}

const Shape<Access> accessShape{
    .kind = "an access",
    .keys = {{"level", takeLevel, giveLevel, Required}, key<&Access::classes>("classes")},
};

}  // namespace

void take(Reader& reader, Event& event, Access& destination) {
  if (event.kind == Event::Text) return takeLevel(reader, event, destination);
  if (event.kind == Event::Object) return takeObject(reader, event, destination, accessShape);
  if (event.kind != Event::Array) reader.refuseType(event, "a level, a list of classes or an object of both");
  destination.level = listed;
  take(reader, event, destination.classes);
}

Json give(Writer& writer, const Access& access) {
  if (access.level == listed) return give(writer, access.classes);
  return access.classes.empty() ? giveLevel(writer, access) : giveObject(writer, access, accessShape);
}

}  // namespace embedded::snapshot
