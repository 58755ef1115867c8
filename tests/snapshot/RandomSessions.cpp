// Sessions of classes, aliases, components, cycles and odd names, made at random: each is refused with its place, or
// loaded and then asked, and nothing of what was refused reaches a session.

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSIntrospection.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>

#include "embedded/Host.h"
#include "host/Classes.h"

namespace {

// Ordered, because the first key of a value is its kind.
using json = nlohmann::ordered_json;

class Sessions {
 public:
  explicit Sessions(std::uint64_t seed) : random_(seed) {}

  json next() {
    json classes = json::array();
    const std::size_t count = below(7);
    for (std::size_t index = 0; index < count; ++index) classes.push_back(oneClass());
    json world{{"format", 1}, {"classes", classes}, {"components", below(2) == 0}};
    if (below(4) == 0) world["namespaces"] = {name()};
    if (below(3) == 0)
      world["functions"] = {{{"name", name()}, {"component", component()}, {"imports", {name()}}}};
    if (below(2) == 0) world["workspace"] = {{{"name", odd(20) ? "a-b" : "v"}, {"value", value(0)}}};
    return world;
  }

 private:
  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }
  bool odd(std::size_t oneIn) { return below(oneIn) == 0; }

  /// Few, so that names meet: as identities, aliases and names that users know.
  std::string name() {
    static const char* const odds[] = {"ä.B", "", "a..b", "1x", "if", "margin-start", "a b", "c:", ":", "."};
    if (odd(40)) return odds[below(std::size(odds))];
    const std::string simple(1, static_cast<char>('A' + below(4)));
    const std::string before[] = {"n.", component() + ":", "", "", "", ""};
    return before[below(6)] + simple;
  }
  std::string component() { return std::vector<std::string>{"", "c", "d"}[below(3)]; }

  json oneClass() {
    json made{{"name", name()}};
    if (const std::string own = component(); !own.empty()) made["component"] = own;
    for (const char* key : {"aliases", "superclasses", "superclasses", "precedence"})
      if (below(4) == 0) made[key].push_back(name());
    const std::tuple<std::size_t, const char*, json> more[] = {
        {3, "order", "inherited-first"},
        {5, "enumeration", true},
        {2, "members", {"One", name()}},
        {2, "properties", {"p", {{"name", name()}, {"type", name()}, {"get", {name()}}}}},
        {2, "methods", {"m", {{"name", name()}, {"static", true}}}}};
    for (const auto& [oneIn, key, value] : more)
      if (odd(oneIn)) made[key] = value;
    return made;
  }

  json value(int depth) {
    if (depth <= 3 && below(4) == 0) return {{"cell", {value(depth + 1), value(depth + 1)}}};
    const std::string className = name();
    const json object = {{"object", className}};
    const json values[] = {1,
                           {{"object", className}, {"properties", {{"p", 1}}}},
                           {{"object", className}, {"member", "One"}},
                           {{"class", className}},
                           {{"objects", json::array()}, {"class", className}},
                           {{"objects", json::array({object})}, {"class", className}}};
    return values[below(6)];
  }

  std::mt19937_64 random_;
};

/// Asks what a session is asked for each of its classes; none of it may fail, or come to no end.
void ask(const embedded::Description& description) {
  embedded::Host host(description);
  const embedded::Activation active(host);
  for (const embedded::ClassDescription& described : description.classes) {
    const KCOSContextData::ClassInfo info(KCOSContextData::ResolvedClassID::fromKnownResolvedClassID(
        described.component.empty() ? described.name : described.component + ":" + described.name));
    EXPECT_FALSE(info.structure.name.empty());
    info.getProperties(KCOSContextData::PropertyInfo::GetOptions());
    info.getMethods(KCOSContextData::MethodInfo::GetOptions());
    for (const std::string& superclass : described.superclasses)
      EXPECT_TRUE(info.isA(kcos::COSClass::getClass(kcos::internal::makeInterned(superclass))->getID()));
  }
  EXPECT_EQ(embedded::snapshotText(host.describe()),
            embedded::snapshotText(embedded::Host(host.describe()).describe()));
}

TEST(RandomSessions, AreLoadedOrRefusedWithTheirPlace) {
  const char* asked = std::getenv("CONTEXTDATA_SESSIONS");
  const std::uint64_t count = asked != nullptr ? std::strtoull(asked, nullptr, 10) : 4000;
  std::size_t loaded = 0;
  std::map<std::string, std::size_t> refused;
  for (std::uint64_t seed = 0; seed < count; ++seed) {
    const json world = Sessions(seed).next();
    SCOPED_TRACE(world.dump());
    std::optional<embedded::Description> description;
    try {
      description = embedded::readSnapshotText(world.dump(), "random");
    } catch (const embedded::SnapshotError& fault) {
      ++refused[fault.code()];
      EXPECT_TRUE(world.contains(json::json_pointer(fault.pointer())) && !fault.pointer().empty())
          << fault.what();
    }
    // What has been loaded can be asked, and saved: an error now is no refusal.
    if (description) ask(*description);
    loaded += description ? 1 : 0;
    if (HasFailure()) break;
  }
  // Of both there are many: a session that is never loaded, or a fault that never happens, tests nothing.
  EXPECT_GT(loaded, count / 10);
  for (const char* code : {"superclass-cycle", "duplicate-class", "unknown-class", "not-ascii", "bad-name"})
    EXPECT_GT(refused[std::string("snapshot.") + code], count / 1000) << code;
}

}  // namespace
