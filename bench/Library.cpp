// The library's queries against what their answers cost by themselves.

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/VariableMethods.h>

#include <unordered_map>
#include <utility>

#include "bench/Row.h"
#include "bench/Worlds.h"
#include "embedded/Host.h"

namespace bench {

namespace {

using KCOSContextData::ClassInfo;
using KCOSContextData::MethodInfo;
using KCOSContextData::PropertyInfo;
using KCOSContextData::ResolvedClassID;
using Names = std::vector<std::u16string>;

/// The entries of an answer as the flat table holds them: narrow.
using Table = std::vector<std::string>;

/// ASCII only, in one go: the cheapest way there is.
std::u16string widened(const std::string& text) { return {text.begin(), text.end()}; }
std::string narrowed(const std::u16string& text) { return {text.begin(), text.end()}; }

Table tableOf(const Names& names) {
  Table table;
  for (const std::u16string& name : names) table.push_back(narrowed(name));
  return table;
}

std::size_t copyOf(const Table& table) {
  Names names;
  names.reserve(table.size());
  for (const std::string& name : table) names.push_back(widened(name));
  return names.size();
}

/// A session, active while it lives.
struct World {
  explicit World(const embedded::Description& description) : host(description) {}

  embedded::Host host;
  embedded::Activation active{host};
};

ResolvedClassID lastClassId() { return ResolvedClassID(u"", u"bench.Last"); }

/// A list of names, asked by a function that returns it.
template <class Ask>
Measured namesOf(embedded::Description (*chain)(Size), Size size, Ask ask) {
  auto world = std::make_shared<World>(chain(size));
  return {world, [ask] { return ask().size(); }, [table = tableOf(ask())] { return copyOf(table); }};
}

struct NarrowProperty {
  std::string name, type;
  Table sizes;
  bool hasGetter, flag;
};

Measured propertyRecords(Size size) {
  auto world = std::make_shared<World>(chainOfProperties(size));
  auto record = std::make_shared<ClassInfo>(lastClassId());
  std::vector<NarrowProperty> table;
  for (const PropertyInfo& property : record->getProperties({}))
    table.push_back({narrowed(property.name), narrowed(property.type), tableOf(property.sizeStrings),
                     property.hasCustomGetter, property.optimizedPropertyFlag});
  return {std::make_shared<std::pair<std::shared_ptr<World>, std::shared_ptr<ClassInfo>>>(world, record),
          [record] { return record->getProperties({}).size(); },
          [table] {
            std::vector<PropertyInfo> properties;
            properties.reserve(table.size());
            for (const NarrowProperty& entry : table) {
              PropertyInfo& property = properties.emplace_back();
              property.name = widened(entry.name);
              property.type = widened(entry.type);
              for (const std::string& extent : entry.sizes) property.sizeStrings.push_back(widened(extent));
              property.hasCustomGetter = entry.hasGetter;
              property.optimizedPropertyFlag = entry.flag;
            }
            return properties.size();
          }};
}

Measured methodRecords(Size size) {
  auto world = std::make_shared<World>(chainOfMethods(size));
  auto record = std::make_shared<ClassInfo>(lastClassId());
  const auto ask = [record] { return record->getMethods({0}, MethodInfo::GetContext::AfterDot, nullptr); };
  std::vector<std::pair<std::string, std::string>> table;
  for (const MethodInfo& method : ask())
    table.emplace_back(narrowed(method.name), narrowed(method.definingClass));
  return {std::make_shared<std::pair<std::shared_ptr<World>, std::shared_ptr<ClassInfo>>>(world, record),
          [ask] { return ask().size(); },
          [table] {
            std::vector<MethodInfo> methods;
            methods.reserve(table.size());
            for (const auto& [name, definingClass] : table)
              methods.push_back({widened(name), widened(definingClass), false});
            return methods.size();
          }};
}

/// Reads the innermost of nested structures; per segment of the expression.
Measured nestedValue(std::size_t fields) {
  constexpr std::size_t levels = 8;
  auto world = std::make_shared<World>(nestedStructure(fields, levels));
  std::u16string expression = u"structure";
  for (std::size_t level = 0; level < levels; ++level) expression += u".next";
  struct Node {
    std::unordered_map<std::string, std::shared_ptr<Node>> fields;
  };
  auto root = std::make_shared<Node>();
  Node* at = root.get();
  for (std::size_t level = 0; level <= levels; ++level) {
    for (std::size_t field = 0; field + 1 < fields; ++field)
      at->fields[memberName(field)] = std::make_shared<Node>();
    at = (at->fields[level == 0 ? "structure" : "next"] = std::make_shared<Node>()).get();
  }
  return {world, [expression] { return GetValueFromCurrentWorkspace(expression) ? levels + 1 : 0; },
          [expression, root] {
            const std::string text = narrowed(expression);
            std::shared_ptr<Node> found = root;
            std::size_t segments = 0;
            for (std::size_t begin = 0; begin <= text.size() && found; ++segments) {
              const std::size_t end = std::min(text.find('.', begin), text.size());
              const auto next = found->fields.find(text.substr(begin, end - begin));
              found = next == found->fields.end() ? nullptr : next->second;
              begin = end + 1;
            }
            return segments;
          }};
}

Measured recordOf(Size size) {
  auto world = std::make_shared<World>(chainOfProperties(size));
  return {world,
          [size] {
            const ClassInfo record(lastClassId());
            return size.depth;
          },
          [size] {
            std::vector<std::shared_ptr<ClassInfo>> records(size.depth);
            return records.size();
          }};
}

Names propertyNames() {
  Names names;
  bool flag = false;
  KCOSContextData::getClassPropertyNames(lastClassId(), names, flag);
  return names;
}

Names methodNames() {
  Names names;
  bool flag = false;
  KCOSContextData::getClassMethodNames(lastClassId(), names, flag);
  return names;
}

Names namesAfterDot() { return getMethodsForWSVariable(u"object", GetValueFromCurrentWorkspace(u"object")); }

}  // namespace

void addLibraryRows(std::vector<Row>& rows) {
  for (const std::size_t members : {16, 256, 4096, 65536}) {
    for (const std::size_t depth : {1, 8, 64}) {
      if (members < 4 * depth) continue;
      const Size size{members, depth};
      const auto add = [&](const std::string& work, auto make) {
        rows.push_back({rowName(work, size), make});
      };
      add("getClassPropertyNames", [=] { return namesOf(chainOfProperties, size, propertyNames); });
      add("getClassMethodNames", [=] { return namesOf(chainOfMethods, size, methodNames); });
      add("getMethodsForWSVariable", [=] { return namesOf(chainOfMethods, size, namesAfterDot); });
      add("getProperties", [=] { return propertyRecords(size); });
      add("getMethods", [=] { return methodRecords(size); });
    }
  }
  for (const std::size_t depth : {1, 8, 64}) {
    const Size size{4 * depth, depth};
    rows.push_back({rowName("ClassInfo", size), [=] { return recordOf(size); }});
  }
  for (const std::size_t fields : {16, 256, 4096})
    rows.push_back(
        {rowName("GetValueFromCurrentWorkspace", {fields, 8}), [=] { return nestedValue(fields); }});
}

std::vector<Row> allRows() {
  std::vector<Row> rows;
  addLibraryRows(rows);
  addFrontEndRows(rows);
  return rows;
}

}  // namespace bench
