#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSContextData/MethodInfo.h>

#include <algorithm>
#include <set>
#include <unordered_set>

#include "host/Text.h"

namespace KCOSContextData {

namespace {

using ClassNames = std::unordered_set<std::string>;

/// Built-in types, whose methods nobody completes. "unit16" and "in32" are meant as they are written: the
/// classes that they resemble take part.
const ClassNames& builtinTypes() {
  static const ClassNames names{"double",          "single", "int8",   "uint8",   "int16", "unit16", "in32",
                                "uint32",          "int64",  "uint64", "logical", "char",  "struct", "cell",
                                "function_handle", "handle"};
  return names;
}

/// A table for many questions: one look at a hash costs less than several comparisons.
std::unordered_set<std::u16string> hashed(const std::set<std::u16string>& names) {
  return {names.begin(), names.end()};
}

ClassNames withNoDotMethodClasses(ClassNames names) {
  for (const std::u16string& name : getNoDotMethodClassesExcludeSet())
    names.insert(fl::i18n::to_string(name));
  return names;
}

const ClassNames& classesWithoutDotMethods() {
  static const ClassNames names = withNoDotMethodClasses(builtinTypes());
  return names;
}

/// Builds both sets while the library is loaded, so that no query pays for them.
[[maybe_unused]] const bool areBuilt = !builtinTypes().empty() && !classesWithoutDotMethods().empty();

}  // namespace

bool MethodInfo::isOperatorOverload(const std::u16string& name) {
  // Kept, because the table hands out copies and this is asked once per method of a class.
  static const std::unordered_set<std::u16string> operators = hashed(getKCOSMethodsExcludeSet());
  static const std::size_t longest = std::ranges::max(operators, {}, &std::u16string::size).size();
  // Most methods have longer names.
  return name.size() <= longest && operators.contains(name);
}

bool MethodInfo::isOperatorOverload(const std::string& name) {
  return isOperatorOverload(fl::i18n::to_ustring(name));
}

bool MethodInfo::isClassToCompleteMethodsForBeforeDot(kcos::COSInternedName classId) {
  return !builtinTypes().contains(classId.text());
}

bool MethodInfo::isClassToCompleteMethodsForAfterDot(kcos::COSInternedName classId) {
  return !classesWithoutDotMethods().contains(classId.text());
}

}  // namespace KCOSContextData
