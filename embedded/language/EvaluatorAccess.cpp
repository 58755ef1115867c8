#include "embedded/language/Evaluator.h"

#include <algorithm>

#include "embedded/language/Calls.h"
#include "embedded/language/Convert.h"
#include "embedded/language/Members.h"
#include "embedded/model/Names.h"

namespace embedded {

namespace {

ValuePtr foreignMember(Interpreter& interpreter, const ForeignClassDescription& foreign,
                       const std::string& name) {
  if (std::ranges::find(foreign.members, name) == foreign.members.end())
    interpreter.fail("KORVAL:code:NoSuchMember", "\"" + foreign.name + "\" has no \"" + name + "\"");
  return newValue({1, 1}, ForeignMember{foreign.name, name});
}

/// An empty array stands for each value that nobody has assigned.
void fillAbsent(Values& values) {
  // One for all: there may be a million of them.
  ValuePtr empty;
  for (ValuePtr& value : values) {
    if (value != nullptr) continue;
    if (empty == nullptr) empty = newEmpty();
    value = empty;
  }
}

Values fieldOfAll(Interpreter& interpreter, const Structures& structures, const std::string& field) {
  const std::size_t width = structures.fields.size();
  const std::size_t first = structures.indexOf(field);
  if (first == width)
    interpreter.fail("KORVAL:code:NoSuchField", "The structure has no field \"" + field + "\"");
  Values result;
  interpreter.step(width + structures.values.size() / width);
  result.reserve(structures.values.size() / width);
  // Values stand element by element, so those of one field are a whole element apart.
  for (std::size_t at = first; at < structures.values.size(); at += width)
    result.push_back(structures.values[at]);
  fillAbsent(result);
  return result;
}

bool isNothing(const ValuePtr& value) {
  // An empty array of numbers counts as nothing: after x = [], x.a = 1 and x{1} = 1 make what they need.
  return value == nullptr || (value->as<std::vector<double>>() && value->elementCount() == 0);
}

void requireCells(const Interpreter& interpreter, const Value& value) {
  if (value.as<Cells>() == nullptr)
    interpreter.fail(
        "KORVAL:code:WrongType",
        "Only a cell array is indexed with braces, not a value of class \"" + value.className() + "\"");
}

ValuePtr newStructure() { return newValue({1, 1}, Structures()); }

/// With the fields of the other structure too, so that elements of one can stand in the other.
ValuePtr withFieldsOf(Interpreter& interpreter, const ValuePtr& value, const ValuePtr& other) {
  const auto* own = value->as<Structures>();
  const auto* model = other->as<Structures>();
  if (own == nullptr || model == nullptr || own->fields == model->fields) return value;
  interpreter.step(own->fields.size() * model->fields.size());
  Structures structures{own->fields, {}, own->className};
  for (const std::string& field : model->fields)
    if (own->indexOf(field) == own->fields.size()) structures.fields.push_back(field);
  const std::size_t count = value->elementCount();
  interpreter.checkSize({count, structures.fields.size()});
  structures.values.resize(count * structures.fields.size());
  for (std::size_t element = 0; element < count; ++element)
    for (std::size_t at = 0; at < own->fields.size(); ++at)
      structures.values[element * structures.fields.size() + at] =
          own->values[element * own->fields.size() + at];
  return newValue(value->size(), std::move(structures));
}

bool isInside(const Value& value, const std::vector<Subscript>& subscripts) {
  for (std::size_t place = 0; place < subscripts.size(); ++place) {
    const std::size_t extent = lastIndex(value, place, subscripts.size());
    if (std::ranges::any_of(subscripts[place].positions,
                            [extent](std::size_t position) { return position >= extent; }))
      return false;
  }
  return true;
}

/// What something is assigned into: the element, or what a new one is at first; null: nothing yet.
ValuePtr elementAt(Interpreter& interpreter, const Value& value, const std::vector<Subscript>& subscripts) {
  if (isInside(value, subscripts)) return indexed(interpreter, value, subscripts);
  return value.as<Structures>() ? elementsAt(interpreter, value, {noElement}, {1, 1}) : nullptr;
}

}  // namespace

// Reading.

Values Evaluator::reference(const Reference& reference, std::size_t nargout) {
  // A variable hides every other meaning of its name.
  if (ValuePtr variable = variables_.find(reference.name); variable != nullptr)
    return follow({std::move(variable)}, reference.accesses, nargout);
  return nameValues(reference, nargout);
}

Values Evaluator::nextArguments(Selectors& accesses) {
  if (accesses.empty() || accesses.front().kind != Selector::Paren) return {};
  const Selector& access = accesses.front();
  accesses = accesses.subspan(1);
  return arguments(access.arguments);
}

/// A name that is no variable: a function, a class, a namespace and what is in it.
Values Evaluator::nameValues(const Reference& reference, std::size_t nargout) {
  const Position at = interpreter_.at;
  Selectors rest = reference.accesses;
  std::string name = reference.name;
  Meaning meaning = meaningOf(interpreter_, name, routine_);
  while (!meaning.isCallable() && !rest.empty() && rest.front().kind == Selector::Field) {
    const Selector& field = rest.front();
    const std::string longer = name + "." + field.field;
    // A class ends the name, unless a built-in function is known by a longer one, as
    // "korval.metadata.Namespace.getAllNamespaces" is.
    const bool goesOn =
        meaning.oneClass == nullptr
            ? meaning.foreignClass == nullptr && isOuterName(interpreter_, name)
            : !hasStaticMethod(*meaning.oneClass, field.field) && findBuiltin(longer) != nullptr;
    if (!goesOn) return follow(memberOfName(name, meaning, field, rest, nargout), rest, nargout);
    name = longer;
    rest = rest.subspan(1);
    meaning = meaningOf(interpreter_, name, routine_);
  }
  Values given = nextArguments(rest);
  // The arguments have moved the place.
  interpreter_.at = at;
  return follow(call(*this, name, meaning, std::move(given), rest.empty() ? nargout : 1), rest, nargout);
}

/// Class.member(arguments), which advances past the accesses of the member and its arguments.
Values Evaluator::memberOfName(const std::string& name, const Meaning& meaning, const Selector& field,
                               Selectors& rest, std::size_t nargout) {
  if (meaning.oneClass == nullptr && meaning.foreignClass == nullptr)
    return call(*this, name, meaning, {}, nargout);
  interpreter_.at = field.at;
  rest = rest.subspan(1);
  if (meaning.foreignClass != nullptr)
    return {foreignMember(interpreter_, *meaning.foreignClass, field.field)};
  return classMember(*meaning.oneClass, field, rest, nargout);
}

Values Evaluator::classMember(const Class& oneClass, const Selector& field, Selectors& rest,
                              std::size_t nargout) {
  if (ValuePtr constant = classConstant(interpreter_, oneClass, field.field, routine_))
    return {std::move(constant)};
  Values given = nextArguments(rest);
  interpreter_.at = field.at;
  return callStatic(*this, oneClass, field.field, std::move(given), rest.empty() ? nargout : 1);
}

Values Evaluator::follow(Values current, Selectors accesses, std::size_t nargout) {
  while (!accesses.empty()) {
    const Selector& access = accesses.front();
    interpreter_.at = access.at;
    interpreter_.step();
    if (current.size() != 1)
      interpreter_.fail("KORVAL:code:NoValue",
                        "One value is needed before this, not " + std::to_string(current.size()));
    const ValuePtr value = std::move(current.front());
    accesses = accesses.subspan(1);
    // What another access follows is to give just one value.
    const std::size_t nargoutNow = accesses.empty() ? nargout : 1;
    switch (access.kind) {
      case Selector::Field:
        // Not nargoutNow: a method advances past its arguments, and only then it is known whether more
        // follows.
        current = field(value, access, accesses, nargout);
        break;
      case Selector::Paren:
        current = index(value, access, nargoutNow);
        break;
      case Selector::Brace:
        current = cellContents(*value, access);
        break;
      case Selector::Transposed:
        current = {transposed(interpreter_, *value)};
        break;
    }
  }
  return current;
}

/// value(...): elements, or the call of a function handle.
Values Evaluator::index(const ValuePtr& value, const Selector& access, std::size_t nargout) {
  if (const auto* handle = value->as<FunctionHandle>()) {
    Values given = arguments(access.arguments);
    interpreter_.at = access.at;
    return callNamed(*this, handle->function, std::move(given), nargout);
  }
  if (access.arguments.empty()) return {value};
  const std::vector<Subscript> all = subscripts(access, *value);
  interpreter_.at = access.at;
  return {indexed(interpreter_, *value, all)};
}

Values Evaluator::cellContents(const Value& value, const Selector& access) {
  requireCells(interpreter_, value);
  const std::vector<Subscript> all = subscripts(access, value);
  interpreter_.at = access.at;
  if (all.empty()) interpreter_.fail("KORVAL:code:Index", "An index is missing");
  const ValuePtr elements = indexed(interpreter_, value, all);
  Values result = elements->as<Cells>()->elements;
  fillAbsent(result);
  return result;
}

/// value.field, or value.method(arguments), which advances past the access of the arguments.
Values Evaluator::field(const ValuePtr& value, const Selector& access, Selectors& rest, std::size_t nargout) {
  const std::string& name = access.field;
  if (const auto* structures = value->as<Structures>();
      structures != nullptr && structures->className.empty())
    return fieldOfAll(interpreter_, *structures, name);
  const Selectors before = rest;
  // Methods come before properties, and before all elements: a method gets the whole array.
  if (hasMethod(interpreter_, *value, name)) {
    Values given = nextArguments(rest);
    given.insert(given.begin(), value);
    interpreter_.at = access.at;
    if (auto answer = callMethodOfArguments(*this, name, given, rest.empty() ? nargout : 1)) return *answer;
    // A static method is none of the object: the name is a property, and the arguments are its index.
    rest = before;
  }
  if (const auto* reference = value->as<ClassReference>()) {
    const Meaning meaning = meaningOf(interpreter_, reference->className, nullptr);
    if (meaning.oneClass != nullptr) return classMember(*meaning.oneClass, access, rest, nargout);
    if (meaning.foreignClass != nullptr) return {foreignMember(interpreter_, *meaning.foreignClass, name)};
  }
  Values result;
  interpreter_.checkCount(value->elementCount());
  // What no element has is an error also where there is none to ask.
  if (value->elementCount() == 0) requireReadable(interpreter_, *value, name, routine_);
  for (std::size_t at = 0; at < value->elementCount(); ++at) {
    interpreter_.step();
    result.push_back(readProperty(interpreter_, elementOf(interpreter_, value, at), name, routine_));
  }
  return result;
}

// Assigning.

void Evaluator::assign(const Reference& target, ValuePtr value) {
  variables_.set(target.name, assigned(variables_.find(target.name), target.accesses, std::move(value)));
}

/// The base (null: nothing yet) with the value at the end of the accesses.
ValuePtr Evaluator::assigned(const ValuePtr& base, Selectors accesses, ValuePtr value) {
  if (accesses.empty()) return value;
  // Values are shared and never change, so what contains the new one is made anew, from the inside out.
  const CodeLevel level(interpreter_);
  interpreter_.at = accesses.front().at;
  interpreter_.step();
  if (accesses.front().kind == Selector::Field) return withField(base, accesses, std::move(value));
  if (accesses.front().kind == Selector::Brace) return withCellContent(base, accesses, std::move(value));
  return withIndex(base, accesses, std::move(value));
}

ValuePtr Evaluator::withField(const ValuePtr& base, Selectors accesses, ValuePtr value) {
  const std::string& name = accesses.front().field;
  const Selectors rest = accesses.subspan(1);
  const ValuePtr whole = isNothing(base) ? newStructure() : base;
  if (whole->as<Object>()) {
    // Read only where something inside it is assigned to, for reading may run a get method.
    const ValuePtr old = rest.empty() ? nullptr : readProperty(interpreter_, whole, name, routine_);
    return withProperty(interpreter_, *whole, name, assigned(old, rest, std::move(value)), routine_);
  }
  if (whole->as<Structures>() == nullptr || whole->elementCount() != 1)
    interpreter_.fail("KORVAL:code:NotAssignable", "A field of a value of class \"" + whole->className() +
                                                       "\" with " + std::to_string(whole->elementCount()) +
                                                       " elements cannot be assigned to");
  interpreter_.step(whole->as<Structures>()->fields.size());
  Structures structures = *whole->as<Structures>();
  // Not by the index: one would be made for this copy alone, and fields may not be added to a structure that has one.
  const auto place =
      static_cast<std::size_t>(std::ranges::find(structures.fields, name) - structures.fields.begin());
  if (place == structures.fields.size()) {
    structures.fields.push_back(name);
    structures.values.emplace_back();
  }
  structures.values[place] = assigned(structures.values[place], rest, std::move(value));
  return newValue(whole->size(), std::move(structures));
}

ValuePtr Evaluator::withIndex(const ValuePtr& base, Selectors accesses, ValuePtr value) {
  const Selector& access = accesses.front();
  const Selectors rest = accesses.subspan(1);
  ValuePtr whole = base == nullptr ? newEmpty() : base;
  const std::vector<Subscript> places = subscripts(access, *whole);
  if (places.empty()) interpreter_.fail("KORVAL:code:Index", "An index is missing");
  if (!rest.empty()) value = assigned(elementAt(interpreter_, *whole, places), rest, std::move(value));
  interpreter_.at = access.at;
  // In both directions: the new element may lack fields, and may bring some.
  value = withFieldsOf(interpreter_, value, whole);
  return withElements(interpreter_, withFieldsOf(interpreter_, whole, value), places, value);
}

ValuePtr Evaluator::withCellContent(const ValuePtr& base, Selectors accesses, ValuePtr value) {
  const Selector& access = accesses.front();
  const ValuePtr whole = isNothing(base) ? newValue({0, 0}, Cells()) : base;
  requireCells(interpreter_, *whole);
  const std::vector<Subscript> places = subscripts(access, *whole);
  if (places.empty()) interpreter_.fail("KORVAL:code:Index", "An index is missing");
  ValuePtr old;
  if (accesses.size() > 1 && isInside(*whole, places)) {
    const ValuePtr element = indexed(interpreter_, *whole, places);
    if (element->elementCount() == 1) old = element->as<Cells>()->elements.front();
  }
  ValuePtr content = assigned(old, accesses.subspan(1), std::move(value));
  interpreter_.at = access.at;
  return withElements(interpreter_, whole, places, newValue({1, 1}, Cells{{std::move(content)}}));
}

}  // namespace embedded
