#include "embedded/model/Value.h"

#include <algorithm>
#include <array>
#include <boost/algorithm/string/join.hpp>
#include <functional>
#include <numeric>
#include <type_traits>

#include "embedded/model/ClassSystem.h"
#include "embedded/model/Names.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

struct Kind {
  int code;
  std::string_view name;
};

template <class Alternative>
using Type = std::type_identity<Alternative>;

// One for each alternative of the content, or visiting it does not compile. Objects have the names of their classes
// instead.
constexpr Kind kindOf(Type<std::vector<double>>) { return {StorageCode::DoubleArray, "double"}; }
constexpr Kind kindOf(Type<std::vector<bool>>) { return {3, "logical"}; }
constexpr Kind kindOf(Type<std::u16string>) { return {StorageCode::CharacterArray, "char"}; }
constexpr Kind kindOf(Type<Strings>) { return {16, "string"}; }
constexpr Kind kindOf(Type<Cells>) { return {StorageCode::Cell, "cell"}; }
constexpr Kind kindOf(Type<Structures>) { return {StorageCode::Structure, "struct"}; }
constexpr Kind kindOf(Type<Object>) { return {StorageCode::UserObject, ""}; }
constexpr Kind kindOf(Type<Objects>) { return {StorageCode::UserObject, ""}; }
constexpr Kind kindOf(Type<Opaque>) { return {StorageCode::UserObject, ""}; }
constexpr Kind kindOf(Type<FunctionHandle>) { return {15, "function_handle"}; }
constexpr Kind kindOf(Type<ClassReference>) { return {14, "class_reference"}; }
constexpr Kind kindOf(Type<ForeignMember>) { return {14, ""}; }
constexpr Kind kindOf(Type<Tall>) { return {StorageCode::UserObject, "tall"}; }

Kind kindOf(const Value::Content& content) {
  return std::visit([]<class Alternative>(const Alternative&) { return kindOf(Type<Alternative>()); },
                    content);
}

template <class... Alternatives>
constexpr std::array<Kind, sizeof...(Alternatives)> kindsOf(Type<std::variant<Alternatives...>>) {
  return {kindOf(Type<Alternatives>())...};
}

// For all values of the process. Added to without an order: nobody waits for them.
constinit std::atomic<std::int64_t> values = 0;
constinit std::atomic<std::uint64_t> added = 0;
constinit std::atomic<std::uint64_t> dropped = 0;
__attribute__((tls_model("initial-exec"))) constinit thread_local std::int64_t memory = 0;

std::size_t bytesOf(const std::u16string& text) {
  // A short text is inside the string itself.
  return text.capacity() <= std::u16string().capacity() ? 0 : text.capacity() * sizeof(char16_t);
}

/// What the content takes beside itself, nearly: small allocations of names are not looked for.
struct BytesOf {
  template <class Element>
  std::size_t operator()(const std::vector<Element>& elements) const {
    return elements.capacity() * sizeof(Element);
  }
  std::size_t operator()(const std::vector<bool>& logicals) const { return logicals.capacity() / 8; }
  std::size_t operator()(const std::u16string& text) const { return bytesOf(text); }
  std::size_t operator()(const Cells& cells) const { return (*this)(cells.elements); }
  std::size_t operator()(const Objects& objects) const { return (*this)(objects.elements); }
  std::size_t operator()(const Strings& strings) const {
    std::size_t bytes = (*this)(strings.elements);
    for (const auto& text : strings.elements)
      if (text) bytes += bytesOf(*text);
    return bytes;
  }
  std::size_t operator()(const Structures& structures) const {
    return (*this)(structures.fields) + (*this)(structures.values);
  }
  std::size_t operator()(const Object& object) const { return (*this)(object.properties); }
  std::size_t operator()(const Opaque& opaque) const {
    return (*this)(opaque.fields) + (*this)(opaque.methods);
  }
  std::size_t operator()(const ScalarKind auto&) const { return 0; }
};

}  // namespace

std::size_t FieldIndex::find(const std::vector<std::string>& fields, std::string_view field) {
  constexpr std::size_t few = 8;  // are looked through faster
  if (fields.size() <= few)
    return static_cast<std::size_t>(std::ranges::find(fields, field) - fields.begin());
  if (places_.empty()) {
    places_.reserve(fields.size());
    for (std::size_t at = 0; at < fields.size(); ++at) places_.emplace(fields[at], at);
  }
  const auto found = places_.find(field);
  return found == places_.end() ? fields.size() : found->second;
}

Value::Value(Size size, Content content, DimensionForm form)
    : size_(std::move(size)),
      content_(std::move(content)),
      form_(form),
      bytes_(sizeof(Value) + size_.capacity() * sizeof(std::size_t) + std::visit(BytesOf(), content_)) {
  memory += static_cast<std::int64_t>(bytes_);
  values.fetch_add(1, std::memory_order_relaxed);
  added.fetch_add(1, std::memory_order_relaxed);
}

Value::~Value() {
  memory -= static_cast<std::int64_t>(bytes_);
  values.fetch_sub(1, std::memory_order_relaxed);
}

std::int64_t Value::memoryOfThread() noexcept { return memory; }

void destroyValue(const Value* value) noexcept {
  // Values inside a deleted one come here again and wait their turn, so that deep nesting costs no stack.
  static constinit thread_local const Value* waiting = nullptr;
  static constinit thread_local bool isDeleting = false;
  value->nextToDelete_ = std::exchange(waiting, value);
  if (isDeleting) return;
  isDeleting = true;
  while (waiting != nullptr) delete std::exchange(waiting, waiting->nextToDelete_);
  isDeleting = false;
}

void Value::addReference() const noexcept {
  references_.fetch_add(1, std::memory_order_relaxed);
  added.fetch_add(1, std::memory_order_relaxed);
}

ValueCounts Value::counts() noexcept { return {values.load(), added.load(), dropped.load()}; }

bool Value::dropReference() const noexcept {
  dropped.fetch_add(1, std::memory_order_relaxed);
  // Whoever deletes the value must see what other holders did with it before.
  return references_.fetch_sub(1, std::memory_order_acq_rel) == 1;
}

const Object* Value::object() const noexcept {
  if (const auto* array = as<Objects>())
    return array->elements.empty() ? nullptr : array->elements.front()->object();
  return as<Object>();
}

kcos::COSInternedName Value::classId() const noexcept {
  const Object* found = object();
  if (found != nullptr) return found->classId;
  const auto* objects = as<Objects>();
  return objects == nullptr ? kcos::COSInternedName() : objects->classId;
}

const Opaque* Value::opaque() const noexcept {
  if (const auto* array = as<Objects>())
    return array->elements.empty() ? nullptr : array->elements.front()->opaque();
  return as<Opaque>();
}

const Structures* Value::structureObject() const noexcept {
  const auto* structures = as<Structures>();
  return structures == nullptr || structures->className.empty() ? nullptr : structures;
}

int Value::classCode() const noexcept {
  if (const auto* objects = as<Objects>(); objects != nullptr && objects->ofPossibleValues)
    return StorageCode::ObjectArray;
  if (structureObject() != nullptr) return StorageCode::StructureObject;
  return kindOf(content_).code;
}

std::string Value::className() const {
  if (const Object* found = object()) return found->className.text();
  if (const Opaque* found = opaque()) return found->className;
  if (const auto* objects = as<Objects>()) return objects->className;
  if (const Structures* structures = structureObject()) return structures->className;
  if (const auto* member = as<ForeignMember>()) return member->className;
  return std::string(kindOf(content_).name);
}

std::string Value::sizeText() const {
  std::vector<std::string> extents;
  for (const std::size_t extent : size_) extents.push_back(std::to_string(extent));
  return boost::algorithm::join(extents, "x");
}

std::size_t Value::columns() const noexcept {
  // As a matrix: dimensions after the second one count as further columns.
  return std::accumulate(size_.begin() + 1, size_.end(), std::size_t{1}, std::multiplies());
}

void Value::completeDimensions() const noexcept {
  if (form_ == DimensionForm::Lazy) form_ = DimensionForm::Full;
}

std::size_t Value::elementsOf(const Size& size) noexcept {
  return std::accumulate(size.begin(), size.end(), std::size_t{1}, std::multiplies());
}

std::optional<int> builtInClassCode(std::string_view className) noexcept {
  for (const Kind& kind : kindsOf(Type<Value::Content>()))
    if (kind.name == className && !className.empty()) return kind.code;
  return {};
}

OwnedValue newValue(Value::Size size, Value::Content content, DimensionForm form) {
  return OwnedValue(new Value(std::move(size), std::move(content), form), false);
}

OwnedValue newNumber(double number) { return newValue({1, 1}, std::vector<double>{number}); }
OwnedValue newLogical(bool value) { return newValue({1, 1}, std::vector<bool>{value}); }
OwnedValue newEmpty() { return newValue({0, 0}, std::vector<double>()); }

OwnedValue newText(std::u16string text) {
  // Without characters there is no row either: '' is 0x0.
  const Value::Size size = text.empty() ? Value::Size{0, 0} : Value::Size{1, text.size()};
  return newValue(size, std::move(text));
}

OwnedValue newString(std::optional<std::u16string> text) {
  return newValue({1, 1}, Strings{{std::move(text)}});
}

OwnedValue newCellOfTexts(const std::vector<std::string>& texts) {
  Cells cells;
  for (const std::string& text : texts) cells.elements.push_back(newText(widened(text)));
  return newValue({texts.size(), 1}, std::move(cells));
}

namespace {

using Size = Value::Size;

Size sizeOr(const Size& declared, std::size_t count) { return declared.empty() ? Size{1, count} : declared; }

struct Maker {
  const ClassSystem& classes;

  OwnedValue operator()(const DoubleArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), array.elements);
  }

  OwnedValue operator()(const LogicalArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), array.elements);
  }

  OwnedValue operator()(const CharacterRow& row) const { return newText(row.text); }

  OwnedValue operator()(const CharacterArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), array.elements);
  }

  OwnedValue operator()(const StringScalar& scalar) const { return newString(scalar.text); }

  OwnedValue operator()(const StringArray& array) const {
    return newValue(sizeOr(array.size, array.elements.size()), Strings{array.elements});
  }

  OwnedValue operator()(const CellArray& array) const {
    Cells cells;
    for (const auto& element : array.elements)
      // An absent element stays absent: clients can tell it from an empty array.
      cells.elements.push_back(element ? makeValue(*element, classes) : ValuePtr());
    return newValue(sizeOr(array.size, array.elements.size()), std::move(cells));
  }

  OwnedValue operator()(const StructureArray& array) const {
    Structures structures{array.fields, {}, array.className};
    for (const ValueDescription& value : array.values) structures.values.push_back(makeValue(value, classes));
    const std::size_t count = array.fields.empty() ? 0 : array.values.size() / array.fields.size();
    return newValue(sizeOr(array.size, count), std::move(structures));
  }

  OwnedValue operator()(const ObjectValue& value) const {
    const Class* found = classes.find(value.className);  // null: of a class that built-in functions know
    const kcos::COSInternedName id = found ? found->names().id : interned(value.className);
    Object object{id, found ? found->names().dotted : id, {}, value.member, value.text, value.failing};
    for (const auto& [name, property] : value.properties)
      object.properties.emplace_back(name, makeValue(property, classes));
    return newValue({1, 1}, std::move(object));
  }

  OwnedValue operator()(const ObjectArray& array) const {
    const Class* found = classes.find(array.className);
    // Also of a class that no session describes, but not of one of a foreign object system.
    const kcos::COSInternedName identity = found           ? found->names().id
                                           : array.foreign ? kcos::COSInternedName()
                                                           : interned(array.className);
    Objects objects{{}, dottedName(array.className), identity};
    for (const ValueDescription& element : array.elements)
      objects.elements.push_back(makeValue(element, classes));
    return newValue(sizeOr(array.size, array.elements.size()), std::move(objects));
  }

  OwnedValue operator()(const OpaqueObject& object) const {
    Opaque opaque{object.className, {}, {}, object.java};
    for (const auto& [name, field] : object.fields)
      opaque.fields.emplace_back(name, makeValue(field, classes));
    for (const auto& [name, answer] : object.methods)
      opaque.methods.push_back({name, answer ? makeValue(*answer, classes) : ValuePtr()});
    return newValue({1, 1}, std::move(opaque), object.dimensions);
  }

  OwnedValue operator()(const FunctionHandleValue& handle) const {
    return newValue({1, 1}, FunctionHandle{handle.function});
  }

  OwnedValue operator()(const ClassReferenceValue& reference) const {
    const Class* found = classes.find(reference.className);
    const std::string dotted = dottedName(reference.className);
    // Its identity, where the name that users know means another class.
    const bool isMeant = found == nullptr || classes.find(dotted) == found;
    return newValue({1, 1}, ClassReference{isMeant ? dotted : found->names().id.text()});
  }

  OwnedValue operator()(const TallValue& tall) const {
    return newValue({1, 1}, Tall{makeValue(tall.inside.front(), classes)});
  }

  OwnedValue operator()(const ForeignMemberValue& member) const {
    return newValue({1, 1}, ForeignMember{member.className, member.member});
  }

  /// The name by which users know the class; that of a class which is not of the class system as it is.
  std::string dottedName(const std::string& className) const {
    const Class* found = classes.find(className);
    return found ? found->names().dotted.text() : className;
  }
};

}  // namespace

OwnedValue makeValue(const ValueDescription& description, const ClassSystem& classes) {
  return std::visit(Maker{classes}, description.content);
}

}  // namespace embedded
