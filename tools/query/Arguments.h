#pragma once

// The arguments of a request, read by name and type. Each reader throws RequestError for an argument that is
// missing, of the wrong type, or names nothing in the session.

#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "tools/render/JsonText.h"

namespace tools::query {

class Arguments {
 public:
  /// `object` and `host` outlive the arguments; `path` stands before their names in errors.
  Arguments(const Json& object, embedded::Host& host, std::string path = {});

  bool has(const std::string& name) const;
  bool hasNull(const std::string& name) const;
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
  /// One of the words, which stand for 0, 1, ...; or any number.
  std::int32_t numberOrWord(const std::string& name, const std::vector<std::string>& words) const;
  /// A workspace variable's value; null for null.
  boost::intrusive_ptr<kxArray_tag> value(const std::string& name) const;
  /// The same where null is no argument.
  boost::intrusive_ptr<kxArray_tag> existingValue(const std::string& name) const;
  /// A function; null for null.
  const Kfh_KORVAL_fn* scope(const std::string& name) const;
  /// From text, as it stands; from an object, by the constructor whose arguments it holds, or {"id": text}.
  KCOSContextData::ResolvedClassID identifier(const std::string& name) const;

  /// The arguments in an object. Whoever has read them calls their finish().
  Arguments nested(const std::string& name) const;

  /// What may stand in every request.
  void allow(const std::string& name) const { read_.insert(name); }
  /// Throws for an argument that nobody has read.
  void finish() const;

 private:
  const Json& get(const std::string& name) const;
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

}  // namespace tools::query
