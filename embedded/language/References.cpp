#include <algorithm>

#include "embedded/language/Convert.h"
#include "embedded/language/Evaluator.h"
#include "embedded/language/Members.h"
#include "embedded/model/Names.h"

namespace embedded {

namespace {

ValuePtr foreignMember(const ForeignClassDescription& foreign, const std::string& name) {
  if (std::ranges::find(foreign.members, name) == foreign.members.end())
    failCode("KORVAL:code:NoSuchMember", "\"" + foreign.name + "\" has no \"" + name + "\"");
  return newValue({1, 1}, ForeignMember{foreign.name, name});
}

Values fieldOfAll(const Structures& structures, const std::string& field) {
  const auto found = std::ranges::find(structures.fields, field);
  if (found == structures.fields.end())
    failCode("KORVAL:code:NoSuchField", "The structure has no field \"" + field + "\"");
  Values result;
  const auto width = structures.fields.size();
  for (auto at = static_cast<std::size_t>(found - structures.fields.begin()); at < structures.values.size();
       at += width)
    result.push_back(structures.values[at] == nullptr ? newEmpty() : structures.values[at]);
  return result;
}

}  // namespace

Values Evaluator::reference(const Reference& reference, std::size_t wanted) {
  if (ValuePtr variable = variables_.find(reference.name); variable != nullptr)
    return follow({std::move(variable)}, reference.accesses, wanted);
  return nameValues(reference, wanted);
}

Values Evaluator::takeArguments(Selectors& accesses) {
  if (accesses.empty() || accesses.front().kind != Selector::Paren) return {};
  const Selector& access = accesses.front();
  accesses = accesses.subspan(1);
  return arguments(access.arguments);
}

/// A name that is no variable: a function, a class, a namespace and what is in it.
Values Evaluator::nameValues(const Reference& reference, std::size_t wanted) {
  const Position at = interpreter_.at;
  Selectors rest = reference.accesses;
  std::string name = reference.name;
  Meaning meaning = meaningOf(session_, name, routine_);
  while (!meaning.isCallable() && !rest.empty() && rest.front().kind == Selector::Field) {
    const Selector& field = rest.front();
    const std::string longer = name + "." + field.field;
    const bool goesOn =
        meaning.oneClass == nullptr
            ? meaning.foreignClass == nullptr && isOuterName(session_, name)
            : !hasStaticMethod(*meaning.oneClass, field.field) && findBuiltin(longer) != nullptr;
    if (!goesOn) return follow(memberOfName(name, meaning, field, rest, wanted), rest, wanted);
    name = longer;
    rest = rest.subspan(1);
    meaning = meaningOf(session_, name, routine_);
  }
  Values given = takeArguments(rest);
  interpreter_.at = at;
  return follow(call(*this, name, meaning, std::move(given), rest.empty() ? wanted : 1), rest, wanted);
}

/// Class.member(arguments), which takes the member and its arguments off the accesses.
Values Evaluator::memberOfName(const std::string& name, const Meaning& meaning, const Selector& field,
                               Selectors& rest, std::size_t wanted) {
  if (meaning.oneClass == nullptr && meaning.foreignClass == nullptr)
    return call(*this, name, meaning, {}, wanted);
  interpreter_.at = field.at;
  rest = rest.subspan(1);
  if (meaning.foreignClass != nullptr) return {foreignMember(*meaning.foreignClass, field.field)};
  return classMember(*meaning.oneClass, field, rest, wanted);
}

Values Evaluator::classMember(const Class& oneClass, const Selector& field, Selectors& rest,
                              std::size_t wanted) {
  if (ValuePtr constant = classConstant(oneClass, field.field, routine_)) return {std::move(constant)};
  Values given = takeArguments(rest);
  interpreter_.at = field.at;
  return callStatic(*this, oneClass, field.field, std::move(given), rest.empty() ? wanted : 1);
}

Values Evaluator::follow(Values current, Selectors accesses, std::size_t wanted) {
  while (!accesses.empty()) {
    const Selector& access = accesses.front();
    interpreter_.at = access.at;
    interpreter_.step();
    if (current.size() != 1)
      failCode("KORVAL:code:NoValue",
               "One value is needed before this, not " + std::to_string(current.size()));
    const ValuePtr value = std::move(current.front());
    accesses = accesses.subspan(1);
    const std::size_t wantedNow = accesses.empty() ? wanted : 1;
    if (access.kind == Selector::Transposed)
      current = {transposed(*value)};
    else if (access.kind == Selector::Paren)
      current = index(value, access, wantedNow);
    else if (access.kind == Selector::Brace)
      current = cellContents(*value, access);
    else
      current = field(value, access, accesses, wanted);
  }
  return current;
}

/// value(...): elements, or the call of a function handle.
Values Evaluator::index(const ValuePtr& value, const Selector& access, std::size_t wanted) {
  if (const auto* handle = value->as<FunctionHandle>()) {
    Values given = arguments(access.arguments);
    interpreter_.at = access.at;
    return callNamed(*this, handle->function, std::move(given), wanted);
  }
  if (access.arguments.empty()) return {value};
  const std::vector<Subscript> all = subscripts(access, *value);
  interpreter_.at = access.at;
  return {indexed(*value, all)};
}

Values Evaluator::cellContents(const Value& value, const Selector& access) {
  if (value.as<Cells>() == nullptr)
    failCode("KORVAL:code:WrongType",
             "Only a cell array is indexed with braces, not a value of class \"" + value.className() + "\"");
  const std::vector<Subscript> all = subscripts(access, value);
  interpreter_.at = access.at;
  if (all.empty()) failCode("KORVAL:code:Index", "An index is missing");
  const ValuePtr elements = indexed(value, all);
  Values result = elements->as<Cells>()->elements;
  for (ValuePtr& element : result)
    if (element == nullptr) element = newEmpty();
  return result;
}

/// value.field, or value.method(arguments), which takes the arguments off the accesses.
Values Evaluator::field(const ValuePtr& value, const Selector& access, Selectors& rest, std::size_t wanted) {
  const std::string& name = access.field;
  if (const auto* structures = value->as<Structures>();
      structures != nullptr && structures->className.empty())
    return fieldOfAll(*structures, name);
  const Selectors before = rest;
  if (hasMethod(session_, *value, name)) {
    Values given = takeArguments(rest);
    given.insert(given.begin(), value);
    interpreter_.at = access.at;
    if (auto answer = callMethodOfArguments(*this, name, given, rest.empty() ? wanted : 1)) return *answer;
    rest = before;
  }
  if (const auto* reference = value->as<ClassReference>()) {
    const Meaning meaning = meaningOf(session_, reference->className, nullptr);
    if (meaning.oneClass != nullptr) return classMember(*meaning.oneClass, access, rest, wanted);
    if (meaning.foreignClass != nullptr) return {foreignMember(*meaning.foreignClass, name)};
  }
  Values result;
  for (std::size_t at = 0; at < value->elementCount(); ++at) {
    interpreter_.pollAt(at);
    result.push_back(readProperty(session_, elementOf(value, at), name, routine_));
  }
  return result;
}

}  // namespace embedded
