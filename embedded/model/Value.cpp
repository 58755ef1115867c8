#include "embedded/model/Value.h"

#include <array>
#include <functional>
#include <numeric>

#include "embedded/host/Gate.h"
#include "embedded/model/References.h"

namespace embedded {

namespace {

struct Kind {
  int code;
  std::string_view name;
};

/// In the order of the content's alternatives. Objects have the names of their classes instead.
constexpr std::array<Kind, std::variant_size_v<Value::Content>> kinds = {{{6, "double"},
                                                                          {3, "logical"},
                                                                          {4, "char"},
                                                                          {16, "string"},
                                                                          {1, "cell"},
                                                                          {2, "struct"},
                                                                          {19, ""},
                                                                          {19, ""},
                                                                          {19, ""},
                                                                          {15, "function_handle"},
                                                                          {14, "class_reference"},
                                                                          {14, ""},
                                                                          {19, "tall"}}};

constexpr int possibleObjects = 17;
constexpr int structureObject = 18;

}  // namespace

Value::Value(Size size, Content content, DimensionForm form)
    : size_(std::move(size)), content_(std::move(content)), form_(form) {
  countNewValue();
  countAddedReference();
}

Value::~Value() { countDestroyedValue(); }

void destroyValue(const Value* value) noexcept {
  static constinit thread_local std::vector<const Value*>* waiting = nullptr;
  if (waiting != nullptr) return waiting->push_back(value);
  std::vector<const Value*> values{value};
  waiting = &values;
  while (!values.empty()) {
    const Value* next = values.back();
    values.pop_back();
    delete next;
  }
  waiting = nullptr;
}

void Value::addReference() const noexcept {
  references_.fetch_add(1, std::memory_order_relaxed);
  countAddedReference();
}

bool Value::dropReference() const noexcept {
  countDroppedReference();
  return references_.fetch_sub(1, std::memory_order_acq_rel) == 1;
}

const Object* Value::object() const noexcept {
  if (const auto* array = as<Objects>())
    return array->elements.empty() ? nullptr : array->elements.front()->object();
  return as<Object>();
}

const Opaque* Value::opaque() const noexcept {
  if (const auto* array = as<Objects>())
    return array->elements.empty() ? nullptr : array->elements.front()->opaque();
  return as<Opaque>();
}

int Value::classCode() const noexcept {
  if (const auto* objects = as<Objects>(); objects != nullptr && objects->ofPossibleValues)
    return possibleObjects;
  if (const auto* structures = as<Structures>(); structures != nullptr && !structures->className.empty())
    return structureObject;
  return kinds[content_.index()].code;
}

std::string Value::className() const {
  if (const Object* found = object()) return found->className.text();
  if (const Opaque* found = opaque()) return found->className;
  if (const auto* objects = as<Objects>()) return objects->className;
  if (const auto* structures = as<Structures>(); structures != nullptr && !structures->className.empty())
    return structures->className;
  if (const auto* member = as<ForeignMember>()) return member->className;
  return std::string(kinds[content_.index()].name);
}

std::size_t Value::columns() const noexcept {
  return std::accumulate(size_.begin() + 1, size_.end(), std::size_t{1}, std::multiplies());
}

void Value::completeDimensions() const noexcept {
  if (form_ == DimensionForm::Lazy) form_ = DimensionForm::Full;
}

std::size_t Value::elementCount() const noexcept {
  return std::accumulate(size_.begin(), size_.end(), std::size_t{1}, std::multiplies());
}

std::optional<int> builtInClassCode(std::string_view className) noexcept {
  for (const Kind& kind : kinds)
    if (kind.name == className && !className.empty()) return kind.code;
  return {};
}

std::string describe(const kxArray_tag* value) {
  if (value == nullptr) return "null";
  std::string result = "<";
  result += valueOf(value).className();
  char separator = ' ';
  for (const std::size_t extent : valueOf(value).size()) {
    result += std::exchange(separator, 'x');
    result += std::to_string(extent);
  }
  result += '>';
  return result;
}

}  // namespace embedded
