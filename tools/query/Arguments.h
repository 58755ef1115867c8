#pragma once

// The arguments of a request, read by name and type. Each reader throws RequestError for an argument that is
// missing, of the wrong type, or names nothing in the session.

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "tools/render/Json.h"

namespace tools::query {

/// Why a request cannot be asked. Codes are stable; docs/query.md lists them.
struct RequestError {
  std::string code;
  std::string message;
  /// The argument that is to blame, or nothing.
  std::string argument = {};
};

using Record = std::unique_ptr<KCOSContextData::ClassInfo>;

/// Options, and the accessing class that they borrow.
template <class Options>
struct OptionsArgument {
  Record accessingClass;
  Options options;
};
using PropertyOptions = OptionsArgument<KCOSContextData::PropertyInfo::GetOptions>;
using MethodOptions = OptionsArgument<KCOSContextData::MethodInfo::GetOptions>;

class Arguments {
 public:
  /// `object` and `host` outlive the arguments; `path` stands before their names in errors.
  Arguments(const Json& object, embedded::Host& host, std::string path = {});

  bool has(const std::string& name) const;
  /// Is the argument an object that stands for an identifier?
  bool hasIdentifier(const std::string& name) const;

  std::u16string text(const std::string& name) const;
  std::string narrowText(const std::string& name) const;
  /// false when it is missing.
  bool flag(const std::string& name) const;
  std::vector<std::u16string> texts(const std::string& name) const;
  /// The same; empty when it is missing.
  std::vector<std::u16string> textsOrNone(const std::string& name) const;
  std::vector<std::int32_t> numbers(const std::string& name) const;
  /// 0 when it is missing.
  std::uint32_t count(const std::string& name, std::uint32_t largest) const;
  /// "none", "before-dot", "after-dot", "any", or any number.
  KCOSContextData::MethodInfo::GetContext context(const std::string& name) const;
  /// A workspace variable's value; null for null.
  boost::intrusive_ptr<kxArray_tag> value(const std::string& name) const;
  /// The same where null is no argument.
  boost::intrusive_ptr<kxArray_tag> existingValue(const std::string& name) const;
  /// A function; null for null.
  const Kfh_KORVAL_fn* scope(const std::string& name) const;
  /// From text, as it stands; from an object, by the constructor whose arguments it holds, or {"id": text}.
  KCOSContextData::ResolvedClassID identifier(const std::string& name) const;
  /// The record that an object with the arguments of a constructor stands for.
  Record record(const std::string& name) const;
  /// The same; null when it is null or missing.
  Record recordOrNone(const std::string& name) const;
  // From the object under that name, whose keys are the fields; what is missing has its default.
  PropertyOptions propertyOptions(const std::string& name) const;
  MethodOptions methodOptions(const std::string& name) const;

  /// What may stand in every request.
  void allow(const std::string& name) const { read_.insert(name); }
  /// Throws for an argument that nobody has read.
  void finish() const;

 private:
  const Json& get(const std::string& name) const;
  /// The arguments in an object. Whoever has read them calls their finish().
  Arguments nested(const std::string& name) const;
  [[noreturn]] void wrongType(const std::string& name, const std::string& expected) const;

  const Json& object_;
  embedded::Host& host_;
  const std::string path_;
  mutable std::set<std::string> read_;
};

/// The identifier that a constructor makes of its arguments: `object`, `scope` and `className`, or `context`
/// and `className`. `ask` is called with the construction.
template <class Ask>
auto construct(const Arguments& arguments, Ask ask) {
  using KCOSContextData::ResolvedClassID;
  if (arguments.has("object")) {
    const auto object = arguments.value("object");
    return ask([&] { return ResolvedClassID(object.get()); });
  }
  if (arguments.has("scope")) {
    const Kfh_KORVAL_fn* scope = arguments.scope("scope");
    const std::u16string className = arguments.text("className");
    return ask([&] { return ResolvedClassID(scope, className); });
  }
  const std::u16string context = arguments.text("context");
  const std::u16string className = arguments.text("className");
  return ask([&] { return ResolvedClassID(context, className); });
}

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

}  // namespace tools::query
