#pragma once

// Class records and query options as arguments.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include <memory>
#include <string>

#include "tools/query/Arguments.h"

namespace tools::query {

using Record = std::unique_ptr<KCOSContextData::ClassInfo>;

/// The record that a constructor makes of its arguments: `value`, or `context` and `className`, or `id`. `ask`
/// is called with the construction.
template <class Ask>
auto constructRecord(const Arguments& arguments, Ask ask) {
  using KCOSContextData::ClassInfo;
  if (arguments.has("value")) {
    const auto value = arguments.value("value");
    return ask([&] { return std::make_unique<ClassInfo>(value.get()); });
  }
  if (arguments.has("context") || arguments.has("className")) {
    const std::u16string context = arguments.text("context");
    const std::u16string className = arguments.text("className");
    return ask([&] { return std::make_unique<ClassInfo>(context, className); });
  }
  const KCOSContextData::ResolvedClassID id = arguments.identifier("id");
  return ask([&] { return std::make_unique<ClassInfo>(id); });
}

/// The record that an object with the arguments of a constructor stands for.
Record record(const Arguments& arguments, const std::string& name);

/// The same; null when it is null or missing.
Record recordOrNone(const Arguments& arguments, const std::string& name);

/// Options, and the accessing class that they borrow.
template <class Options>
struct OptionsArgument {
  Record accessingClass;
  Options options;
};

// From the object under that name, whose keys are the fields; what is missing has its default.
OptionsArgument<KCOSContextData::PropertyInfo::GetOptions> propertyOptions(const Arguments& arguments,
                                                                           const std::string& name);
OptionsArgument<KCOSContextData::MethodInfo::GetOptions> methodOptions(const Arguments& arguments,
                                                                       const std::string& name);

/// "none", "before-dot", "after-dot", "any", or a number.
KCOSContextData::MethodInfo::GetContext completionContext(const Arguments& arguments,
                                                          const std::string& name);

}  // namespace tools::query
