#include <algorithm>

#include "embedded/language/Convert.h"
#include "embedded/language/Evaluator.h"
#include "embedded/language/Members.h"

namespace embedded {

namespace {

bool isNothing(const ValuePtr& value) {
  return value == nullptr || (value->as<std::vector<double>>() && value->elementCount() == 0);
}

ValuePtr newStructure() { return newValue({1, 1}, Structures()); }

std::size_t fieldPlace(const Structures& structures, const std::string& field) {
  return static_cast<std::size_t>(std::ranges::find(structures.fields, field) - structures.fields.begin());
}

/// With the fields of the other structure too, so that elements of one can stand in the other.
ValuePtr withFieldsOf(const ValuePtr& value, const ValuePtr& other) {
  const auto* model = other->as<Structures>();
  if (value->as<Structures>() == nullptr || model == nullptr) return value;
  Structures structures = *value->as<Structures>();
  for (const std::string& field : model->fields) {
    const std::size_t width = structures.fields.size();
    if (fieldPlace(structures, field) < width) continue;
    std::vector<ValuePtr> values;
    for (std::size_t element = 0; element < value->elementCount(); ++element) {
      for (std::size_t at = 0; at < width; ++at) values.push_back(structures.values[element * width + at]);
      values.push_back(nullptr);
    }
    structures.fields.push_back(field);
    structures.values = std::move(values);
  }
  return newValue(value->size(), std::move(structures));
}

bool isInside(const Value& value, const std::vector<Subscript>& subscripts) {
  for (std::size_t place = 0; place < subscripts.size(); ++place)
    for (const std::size_t position : subscripts[place].positions)
      if (position >= lastIndex(value, place, subscripts.size())) return false;
  return true;
}

/// What something is assigned into: the element, or what a new one is at first; null: nothing yet.
ValuePtr elementAt(const Value& value, const std::vector<Subscript>& subscripts) {
  if (isInside(value, subscripts)) return indexed(value, subscripts);
  return value.as<Structures>() ? gathered(value, {noElement}, {1, 1}) : nullptr;
}

}  // namespace

void Evaluator::assign(const Reference& target, ValuePtr value) {
  variables_.set(target.name, assigned(variables_.find(target.name), target.accesses, std::move(value)));
}

/// The base (null: nothing yet) with the value at the end of the accesses.
ValuePtr Evaluator::assigned(const ValuePtr& base, Selectors accesses, ValuePtr value) {
  if (accesses.empty()) return value;
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
    const ValuePtr old = rest.empty() ? nullptr : readProperty(session_, whole, name, routine_);
    return withProperty(session_, *whole, name, assigned(old, rest, std::move(value)), routine_);
  }
  if (whole->as<Structures>() == nullptr || whole->elementCount() != 1)
    failCode("KORVAL:code:NotAssignable", "A field of a value of class \"" + whole->className() + "\" with " +
                                              std::to_string(whole->elementCount()) +
                                              " elements cannot be assigned to");
  Structures structures = *whole->as<Structures>();
  const std::size_t place = fieldPlace(structures, name);
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
  if (places.empty()) failCode("KORVAL:code:Index", "An index is missing");
  if (!rest.empty()) value = assigned(elementAt(*whole, places), rest, std::move(value));
  interpreter_.at = access.at;
  value = withFieldsOf(value, whole);
  return withElements(withFieldsOf(whole, value), places, value);
}

ValuePtr Evaluator::withCellContent(const ValuePtr& base, Selectors accesses, ValuePtr value) {
  const Selector& access = accesses.front();
  const ValuePtr whole = isNothing(base) ? newValue({0, 0}, Cells()) : base;
  if (whole->as<Cells>() == nullptr)
    failCode("KORVAL:code:WrongType",
             "Only a cell array is indexed with braces, not a value of class \"" + whole->className() + "\"");
  const std::vector<Subscript> places = subscripts(access, *whole);
  if (places.empty()) failCode("KORVAL:code:Index", "An index is missing");
  ValuePtr old;
  if (accesses.size() > 1 && isInside(*whole, places)) {
    const ValuePtr element = indexed(*whole, places);
    if (element->elementCount() == 1) old = element->as<Cells>()->elements.front();
  }
  ValuePtr content = assigned(old, accesses.subspan(1), std::move(value));
  interpreter_.at = access.at;
  return withElements(whole, places, newValue({1, 1}, Cells{{std::move(content)}}));
}

}  // namespace embedded
