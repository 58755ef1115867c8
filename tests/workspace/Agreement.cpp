#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/Values.h>

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <random>

#include "tests/support/World.h"
#include "tests/workspace/Workspace.h"

namespace {

using namespace workspace;
using json = nlohmann::ordered_json;

/// A world and expressions in it, which a seed stands for. Names are few, so that they often meet.
class Generated {
 public:
  explicit Generated(std::uint32_t seed) : random_(seed) {
    for (const char* name : {"A", "B", "C"}) classes_.push_back(classNamed(name));
    for (const char* name : names) variables_.push_back({{"name", name}, {"value", value(4)}});
    world_ = std::make_unique<World>(json{
        {"format", 1},
        {"classes", classes_},
        {"workspace", variables_},
        {"foreignClasses", foreign_}}.dump());
  }

  std::string expression() {
    std::string text = name();
    for (int fields = below(5); fields > 0; --fields) text += "." + name();
    return text;
  }
  embedded::Host& host() { return world_->host; }

 private:
  static constexpr const char* names[] = {"a", "b", "c", "d", "e"};

  int below(int limit) { return static_cast<int>(random_() % static_cast<std::uint32_t>(limit)); }
  std::string name() { return names[below(5)]; }

  json classNamed(const std::string& name) {
    json cls{{"name", name}, {"properties", json::array()}, {"methods", json::array()}};
    if (!classes_.empty() && below(2) == 0) cls["superclasses"] = json::array({classes_.back()["name"]});
    for (const char* member : names) {
      const json kinds[] = {{{"value", value(2)}},
                            {{"getter", "7"}},
                            {{"getter", "error('no')"}},
                            {{"value", 1}, {"access", "private"}},
                            {{"value", 2}, {"hidden", true}},
                            {{"value", 3}, {"constant", true}}};
      if (below(9) == 0) cls["methods"].push_back({{"name", member}, {"code", "99"}});
      json property = kinds[below(6)];
      property["name"] = member;
      if (below(3) > 0) cls["properties"].push_back(property);
    }
    return cls;
  }

  json fields(int depth) {
    json all = json::object();
    for (const char* member : names)
      if (below(3) > 0) all[member] = value(depth - 1);
    return all;
  }

  json value(int depth) {
    const int kind = depth == 0 ? 9 : below(14);
    if (kind < 6) return {{"struct", fields(depth)}};
    if (kind == 6) return {{"struct", fields(depth)}, {"class", "Older"}};
    if (kind == 7) return {{"structs", {{{"a", 1}}, {{"a", 2}}}}};
    if (kind == 8) return {{"opaque", "Far"}, {"fields", fields(depth)}, {"methods", {{name(), 5}}}};
    if (kind > 10 && !classes_.empty()) return {{"object", classes_[random_() % classes_.size()]["name"]}};
    const json plain[] = {5, "text", {{"string", "s"}}, json::array({1, 2}), {{"cell", {1, "x"}}}, true};
    return plain[below(6)];
  }

  std::mt19937 random_;
  json classes_ = json::array(), variables_ = json::array();
  json foreign_ = json::array({{{"name", "a.b"}, {"members", {"c"}}}, {{"name", "d"}, {"members", {"e"}}}});
  std::unique_ptr<World> world_;
};

/// The value to its depths; objects by their class and by what the public can read of them without running code.
std::string shownDeeply(const kxArray_tag* value) {
  std::string all = shownValue(Value(const_cast<kxArray_tag*>(value)));
  if (value == nullptr || !StorageCode::isStructure(kxGetClassID(value))) return all;
  for (std::size_t index = 0; index < kxGetNumberOfElements(value); ++index)
    for (int field = 0; field < value->get_number_of_struct_fields(); ++field) {
      const char* name = value->get_struct_field_names()[field];
      all += std::string(" ") + name + "=" + shownDeeply(kxGetField(value, index, name));
    }
  return all + ";";
}

Value evaluated(const std::string& expression) {
  kxArray_tag* slot = nullptr;
  EvalcExpSuccessful(wide(expression), 1, &slot, false);
  return makeSharedPtr(slot);
}

/// The walk finds nothing at all at a member of a foreign class, and at a dot after what is not one structure or
/// object, or before a method.
bool stopsOnPurpose(const std::string& expression) {
  if (IsJavaFunction(wide(expression))) return true;
  for (std::size_t dot = expression.find('.'); dot != std::string::npos;
       dot = expression.find('.', dot + 1)) {
    const Value before = evaluated(expression.substr(0, dot));
    if (!before) return false;
    const bool hasFields =
        kxGetClassID(before.get()) == StorageCode::Structure || isObjectOrIsOpaque(before.get());
    if (!hasFields || !kxIsScalar(before.get())) return true;
    Names methods;
    getOpaqueObjectMethods(before.get(), methods);
    const std::string field = expression.substr(dot + 1, expression.find('.', dot + 1) - dot - 1);
    if (std::ranges::find(methods, wide(field)) != methods.end()) return true;
  }
  return false;
}

struct Counts {
  std::size_t expressions = 0, walked = 0, stopped = 0;
};

void compare(Generated& generated, Counts& counts) {
  const std::string expression = generated.expression();
  ++counts.expressions;
  generated.host().startLog();
  const std::string walked = shownDeeply(GetValueFromCurrentWorkspace(wide(expression)).get());
  const std::vector<embedded::Call> log = generated.host().takeLog();
  if (std::ranges::count(log, "inEvalExp", &embedded::Call::operation) > 0) return;
  const std::string expected = shownDeeply(evaluated(expression).get());
  if (walked == expected) {
    counts.walked += walked != "nothing";
    return;
  }
  EXPECT_EQ(walked, "nothing") << expression << " is " << expected;
  EXPECT_TRUE(stopsOnPurpose(expression)) << expression << " is " << expected;
  ++counts.stopped;
}

/// No class of these worlds overloads indexing: there the two may differ.
TEST(Agreement, OfTheWalkAndTheEvaluationBothWays) {
  Counts counts;
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Generated generated(seed);
    for (int count = 0; count < 150; ++count) compare(generated, counts);
  }
  std::cout << "agreement: " << counts.expressions << " expressions, " << counts.walked
            << " values compared, " << counts.stopped << " stops on purpose\n";
  EXPECT_EQ(counts.expressions, 9000U);
  EXPECT_GT(counts.walked, 2000U);
  EXPECT_GT(counts.stopped, 50U);
}

}  // namespace
