#include "tools/query/Arguments.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace tools::query {

using KCOSContextData::MethodInfo;
using KCOSContextData::ResolvedClassID;

namespace {

std::optional<std::int32_t> numberOf(const Json& json) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (!json.is_number_integer()) return {};
  // First: such a number would be negative as a signed one.
  if (json.is_number_unsigned() && json.get<std::uint64_t>() > std::uint64_t{Limits::max()}) return {};
  const std::int64_t number = json.get<std::int64_t>();
  if (number < Limits::min()) return {};
  return static_cast<std::int32_t>(number);
}

}  // namespace

Arguments::Arguments(const Json& object, embedded::Host& host, std::string path)
    : object_(object), host_(host), path_(std::move(path)) {}

bool Arguments::has(const std::string& name) const { return object_.contains(name); }

bool Arguments::hasIdentifier(const std::string& name) const {
  // Also an object may be a text: {"utf16": [...]}.
  return has(name) && object_.at(name).is_object() && !wideTextOf(object_.at(name));
}

std::u16string Arguments::text(const std::string& name) const {
  const std::optional<std::u16string> text = wideTextOf(get(name));
  if (!text) wrongType(name, "a text: a string or {\"utf16\": [...]}");
  return *text;
}

std::string Arguments::narrowText(const std::string& name) const {
  // Bytes are not checked: what the library does with broken text can be asked, too.
  const std::optional<std::string> text = narrowTextOf(get(name));
  if (!text) wrongType(name, "a narrow text: a string or {\"bytes\": [...]}");
  return *text;
}

bool Arguments::flag(const std::string& name) const {
  if (!has(name)) return false;
  const Json& flag = get(name);
  if (!flag.is_boolean()) wrongType(name, "true or false");
  return flag.get<bool>();
}

std::vector<std::u16string> Arguments::texts(const std::string& name) const {
  std::vector<std::u16string> texts;
  const Json& list = get(name);
  if (!list.is_array()) wrongType(name, "a list of texts");
  for (const Json& element : list) {
    const std::optional<std::u16string> text = wideTextOf(element);
    if (!text) wrongType(name, "a list of texts");
    texts.push_back(*text);
  }
  return texts;
}

std::vector<std::u16string> Arguments::textsOrNone(const std::string& name) const {
  return has(name) ? texts(name) : std::vector<std::u16string>();
}

std::uint32_t Arguments::count(const std::string& name, std::uint32_t largest) const {
  if (!has(name)) return 0;
  const std::optional<std::int32_t> number = numberOf(get(name));
  if (!number || *number < 0 || static_cast<std::uint32_t>(*number) > largest) {
    wrongType(name, "a number from 0 to " + std::to_string(largest));
  }
  return static_cast<std::uint32_t>(*number);
}

std::vector<std::int32_t> Arguments::numbers(const std::string& name) const {
  std::vector<std::int32_t> numbers;
  const Json& list = get(name);
  if (!list.is_array()) wrongType(name, "a list of 32-bit numbers");
  for (const Json& element : list) {
    const std::optional<std::int32_t> number = numberOf(element);
    if (!number) wrongType(name, "a list of 32-bit numbers");
    numbers.push_back(*number);
  }
  return numbers;
}

MethodInfo::GetContext Arguments::context(const std::string& name) const {
  static const std::vector<std::string> words = {"none", "before-dot", "after-dot", "any"};
  const Json& given = get(name);
  // Any number: what the library does with one that is no context can be asked, too.
  if (const std::optional<std::int32_t> number = numberOf(given)) return MethodInfo::GetContext{*number};
  const auto found = given.is_string() ? std::ranges::find(words, given.get<std::string>()) : words.end();
  if (found == words.end()) wrongType(name, "a 32-bit number or one of the words for it");
  return MethodInfo::GetContext{static_cast<std::int32_t>(found - words.begin())};
}

boost::intrusive_ptr<kxArray_tag> Arguments::value(const std::string& name) const {
  const Json& value = get(name);
  if (value.is_null()) return nullptr;
  if (!value.is_object()) wrongType(name, "a variable, {\"variable\": name}, or null");
  const Arguments inner = nested(name);
  const std::string variable = inner.narrowText("variable");
  inner.finish();
  auto found = host_.variable(variable);
  // A mistake of the request, not an answer: what the library does without a value is asked with null.
  if (!found) throw RequestError{"query.unknown-variable", "no variable has this name", path_ + name};
  return found;
}

boost::intrusive_ptr<kxArray_tag> Arguments::existingValue(const std::string& name) const {
  // The library requires a value here: a null would be a mistake of the client, not a question.
  if (get(name).is_null()) wrongType(name, "a variable, {\"variable\": name}");
  return value(name);
}

const Kfh_KORVAL_fn* Arguments::scope(const std::string& name) const {
  if (get(name).is_null()) return nullptr;
  const Kfh_KORVAL_fn* function = host_.function(narrowText(name));
  if (function == nullptr) {
    throw RequestError{"query.unknown-function", "no function has this name", path_ + name};
  }
  return function;
}

ResolvedClassID Arguments::identifier(const std::string& name) const {
  if (const std::optional<std::string> text = narrowTextOf(get(name))) {
    return ResolvedClassID::fromKnownResolvedClassID(*text);
  }
  if (!get(name).is_object())
    wrongType(name, "an identifier: a narrow text or the arguments of a constructor");
  const Arguments inner = nested(name);
  const ResolvedClassID id =
      inner.has("id") ? inner.identifier("id") : construct(inner, [](const auto& make) { return make(); });
  inner.finish();
  return id;
}

Record Arguments::record(const std::string& name) const {
  const Arguments inner = nested(name);
  Record made = constructRecord(inner, [](const auto& make) { return make(); });
  inner.finish();
  return made;
}

Record Arguments::recordOrNone(const std::string& name) const {
  if (!has(name) || get(name).is_null()) return nullptr;
  return record(name);
}

PropertyOptions Arguments::propertyOptions(const std::string& name) const {
  PropertyOptions read;
  if (!has(name)) return read;
  const Arguments inner = nested(name);
  // What is not given stays as the library has it.
  if (inner.has("accessLevels")) read.options.accessLevels = inner.numbers("accessLevels");
  if (inner.has("accessorKinds")) read.options.accessorKinds = inner.numbers("accessorKinds");
  read.accessingClass = inner.recordOrNone("accessingClass");
  read.options.accessingClass = read.accessingClass.get();
  read.options.includeHidden = inner.flag("includeHidden");
  inner.finish();
  return read;
}

MethodOptions Arguments::methodOptions(const std::string& name) const {
  MethodOptions read;
  if (!has(name)) return read;
  const Arguments inner = nested(name);
  if (inner.has("access")) read.options.access = inner.numbers("access");
  read.accessingClass = inner.recordOrNone("accessingClass");
  read.options.accessingClass = read.accessingClass.get();
  if (inner.has("context")) read.options.context = inner.context("context");
  read.options.includeConstructors = inner.flag("includeConstructors");
  read.options.includeOperatorOverloads = inner.flag("includeOperatorOverloads");
  read.options.includeHidden = inner.flag("includeHidden");
  inner.finish();
  return read;
}

void Arguments::finish() const {
  for (const auto& [name, value] : object_.items()) {
    if (!read_.contains(name)) {
      throw RequestError{"query.unknown-argument", "not an argument of this operation in this form",
                         path_ + name};
    }
  }
}

const Json& Arguments::get(const std::string& name) const {
  // Noted also when it is missing or wrong: finish() is about arguments that nobody asks for.
  read_.insert(name);
  const auto found = object_.find(name);
  if (found == object_.end()) {
    throw RequestError{"query.missing-argument", "the operation needs this argument", path_ + name};
  }
  return *found;
}

Arguments Arguments::nested(const std::string& name) const {
  const Json& object = get(name);
  if (!object.is_object()) wrongType(name, "an object");
  return Arguments(object, host_, path_ + name + ".");
}

void Arguments::wrongType(const std::string& name, const std::string& expected) const {
  throw RequestError{"query.wrong-type", "expected " + expected, path_ + name};
}

}  // namespace tools::query
