#include "tools/query/Records.h"

namespace tools::query {

using KCOSContextData::MethodInfo;
using KCOSContextData::PropertyInfo;

Record record(const Arguments& arguments, const std::string& name) {
  const Arguments inner = arguments.nested(name);
  Record made = constructRecord(inner, [](const auto& make) { return make(); });
  inner.finish();
  return made;
}

Record recordOrNone(const Arguments& arguments, const std::string& name) {
  if (!arguments.has(name) || arguments.hasNull(name)) return nullptr;
  return record(arguments, name);
}

MethodInfo::GetContext completionContext(const Arguments& arguments, const std::string& name) {
  return MethodInfo::GetContext{arguments.numberOrWord(name, {"none", "before-dot", "after-dot", "any"})};
}

OptionsArgument<PropertyInfo::GetOptions> propertyOptions(const Arguments& arguments,
                                                          const std::string& name) {
  OptionsArgument<PropertyInfo::GetOptions> read;
  if (!arguments.has(name)) return read;
  const Arguments inner = arguments.nested(name);
  if (inner.has("accessLevels")) read.options.accessLevels = inner.numbers("accessLevels");
  if (inner.has("accessorKinds")) read.options.accessorKinds = inner.numbers("accessorKinds");
  read.accessingClass = recordOrNone(inner, "accessingClass");
  read.options.accessingClass = read.accessingClass.get();
  read.options.includeHidden = inner.flag("includeHidden");
  inner.finish();
  return read;
}

OptionsArgument<MethodInfo::GetOptions> methodOptions(const Arguments& arguments, const std::string& name) {
  OptionsArgument<MethodInfo::GetOptions> read;
  if (!arguments.has(name)) return read;
  const Arguments inner = arguments.nested(name);
  if (inner.has("access")) read.options.access = inner.numbers("access");
  read.accessingClass = recordOrNone(inner, "accessingClass");
  read.options.accessingClass = read.accessingClass.get();
  if (inner.has("context")) read.options.context = completionContext(inner, "context");
  read.options.includeConstructors = inner.flag("includeConstructors");
  read.options.includeOperatorOverloads = inner.flag("includeOperatorOverloads");
  read.options.includeHidden = inner.flag("includeHidden");
  inner.finish();
  return read;
}

}  // namespace tools::query
