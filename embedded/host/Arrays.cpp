#include "host/Arrays.h"

#include <algorithm>

#include "embedded/host/Session.h"
#include "embedded/language/Members.h"
#include "embedded/model/Unicode.h"
#include "syntax/Characters.h"

namespace embedded {

namespace {

/// The value, whose dimensions must not be held in that form any more.
const Value& heldOtherwise(const kxArray_tag* value, std::initializer_list<DimensionForm> forms) {
  for (const DimensionForm form : forms)
    if (valueOf(value).dimensionForm() == form)
      throw foundation::core::except::Exception("KORVAL:host:DimensionForm",
                                                "The value does not hold its dimensions in this form.");
  return valueOf(value);
}

bool isMissing(const Value& value) {
  const auto* strings = value.as<Strings>();
  return strings != nullptr && value.elementCount() == 1 && !strings->elements.front();
}

/// The text of a row of characters (or an empty array of them) or of a string scalar that is not missing; null for any
/// other value.
const std::u16string* scalarText(const Value& value) {
  // Stricter than isText() of the language, for which an array of rows beside rows is a row, too.
  if (const auto* characters = value.as<std::u16string>()) {
    const bool isRow = characters->empty() || (value.size().size() == 2 && value.rows() == 1);
    return isRow ? characters : nullptr;
  }
  const auto* strings = value.as<Strings>();
  return strings != nullptr && value.elementCount() == 1 && !isMissing(value) ? &*strings->elements.front()
                                                                              : nullptr;
}

std::u16string requireScalarText(const kxArray_tag* value) {
  if (value != nullptr) {
    if (const std::u16string* text = scalarText(valueOf(value))) return *text;
    if (isMissing(valueOf(value))) throw KORVAL::string::MissingNotSupported();
  }
  throw KORVAL::string::MustBeStringScalarOrCharacterVector();
}

/// The field of one element; a field that nobody has set yet is set to an empty array, so that it can be borrowed.
const Value* fieldOf(const Structures& structures, std::size_t index, std::string_view name) {
  const std::size_t field = structures.indexOf(name);
  if (field == structures.fields.size()) return nullptr;
  ValuePtr& value = structures.values.at(index * structures.fields.size() + field);
  if (value == nullptr) value = newEmpty();
  return value.get();
}

ValuePtr foreignMember(const ForeignClassDescription& foreign, const std::string& name) {
  if (std::ranges::find(foreign.members, name) == foreign.members.end()) return nullptr;
  return newValue({1, 1}, ForeignMember{foreign.name, name});
}

/// What everybody can have of a class without an object: a constant, an enumeration member, a method as its handle.
ValuePtr memberOf(const Class& oneClass, const std::string& name) {
  const Property* property = oneClass.property(alreadyInterned(name));
  // A constant that not everybody may read counts as none; reading it would fail.
  if (property == nullptr ||
      mayUse(session().interpreter, property->content().get, *property->definingClass(), nullptr))
    if (ValuePtr constant = classConstant(session().interpreter, oneClass, name, nullptr)) return constant;
  if (oneClass.method(alreadyInterned(name)) == nullptr) return nullptr;
  return newValue({1, 1}, FunctionHandle{oneClass.names().dotted.text() + "." + name});
}

}  // namespace

}  // namespace embedded

using namespace embedded;

// References.

void kxAddReference(const kxArray_tag* value) noexcept {
  return asked<Operation::addReference>(value).answer([value] { valueOf(value).addReference(); });
}

bool kxDropReference(const kxArray_tag* value) noexcept {
  return asked<Operation::dropReference>(value).answer([value] { return valueOf(value).dropReference(); });
}

void kxDestroyArray(const kxArray_tag* value) noexcept {
  return asked<Operation::destroyArray>(value).answer([value] { destroyValue(&valueOf(value)); });
}

// What a value is.

int kxGetClassID(const kxArray_tag* value) {
  return asked<Operation::getClassIdentifier>(value).answer([value] { return valueOf(value).classCode(); });
}

std::string kxGetClassName(const kxArray_tag* value) {
  return asked<Operation::getClassName>(value).answer([value] { return valueOf(value).className(); });
}

int kxGetClassNumber(const kxArray_tag* value) {
  return asked<Operation::getClassNumber>(value).answer(
      [value] { return session().dispatcher.classNumbers().numberOf(valueOf(value)); });
}

bool kxIsOpaque(const kxArray_tag* value) {
  return asked<Operation::isOpaque>(value).answer([value] { return valueOf(value).opaque() != nullptr; });
}

bool kxIsObject(const kxArray_tag* value) {
  return asked<Operation::isObject>(value).answer([value] {
    const Value& found = valueOf(value);
    if (found.structureObject() != nullptr) return true;
    // Also of an array without elements, which has no object to look at.
    if (found.as<Objects>()) return found.opaque() == nullptr;
    return found.object() != nullptr;
  });
}

bool kxIsScalar(const kxArray_tag* value) {
  return asked<Operation::isScalar>(value).answer([value] { return valueOf(value).elementCount() == 1; });
}

bool kxIsLogicalScalarTrue(const kxArray_tag* value) {
  return asked<Operation::isLogicalScalarTrue>(value).answer([value] {
    const auto* elements = valueOf(value).as<std::vector<bool>>();
    return elements != nullptr && elements->size() == 1 && elements->front();
  });
}

bool kxIsA(const kxArray_tag* value, const char* className) {
  return asked<Operation::isA>(value, className).answer([value, className] {
    return session().classes.isOfClass(valueOf(value), className);
  });
}

// Dimensions.

bool kxHasLazyDimensions(const kxArray_tag* value) {
  return asked<Operation::hasLazyDimensions>(value).answer(
      [value] { return valueOf(value).dimensionForm() == DimensionForm::Lazy; });
}

void kxCompleteDimensions(const kxArray_tag* value) {
  enter<Operation::completeDimensions>(value);
  valueOf(value).completeDimensions();
}

bool kxHasCompactDimensions(const kxArray_tag* value) {
  return asked<Operation::hasCompactDimensions>(value).answer(
      [value] { return valueOf(value).dimensionForm() == DimensionForm::Compact; });
}

std::size_t kxGetRowCount(const kxArray_tag* value) {
  return asked<Operation::getRowCount>(value).answer(
      [value] { return heldOtherwise(value, {DimensionForm::Lazy}).rows(); });
}

std::size_t kxGetColumnCount(const kxArray_tag* value) {
  return asked<Operation::getColumnCount>(value).answer(
      [value] { return heldOtherwise(value, {DimensionForm::Lazy}).columns(); });
}

std::size_t kxGetNumberOfDimensions(const kxArray_tag* value) {
  return asked<Operation::getNumberOfDimensions>(value).answer(
      [value] { return heldOtherwise(value, {DimensionForm::Lazy}).size().size(); });
}

const std::size_t* kxGetDimensions(const kxArray_tag* value) {
  return asked<Operation::getDimensions>(value).answer([value] {
    return heldOtherwise(value, {DimensionForm::Lazy, DimensionForm::Compact}).size().data();
  });
}

std::size_t kxGetNumberOfElements(const kxArray_tag* value) {
  return asked<Operation::getNumberOfElements>(value).answer(
      [value] { return valueOf(value).elementCount(); });
}

bool kxIsEmpty(const kxArray_tag* value) {
  return asked<Operation::isEmpty>(value).answer([value] { return valueOf(value).elementCount() == 0; });
}

// Contents.

const double* kxGetDoubles(const kxArray_tag* value) {
  return asked<Operation::getDoubles>(value).answer(
      [value] { return std::get<std::vector<double>>(valueOf(value).content()).data(); });
}

const char16_t* kxGetCharacters(const kxArray_tag* value) {
  return asked<Operation::getCharacters>(value).answer(
      [value] { return std::get<std::u16string>(valueOf(value).content()).data(); });
}

int kxArray_tag::get_number_of_struct_fields() const {
  return asked<Operation::getNumberOfStructFields>(this).answer([this] {
    const auto* structures = valueOf(this).as<Structures>();
    return structures == nullptr ? 0 : static_cast<int>(structures->fields.size());
  });
}

const char* const* kxArray_tag::get_struct_field_names() const {
  return asked<Operation::getStructFieldNames>(this).answer([this] {
    const auto& structures = std::get<Structures>(valueOf(this).content());
    // Kept in the value, because the pointers are borrowed for as long as it lives.
    structures.names.resize(structures.fields.size());
    std::ranges::transform(structures.fields, structures.names.begin(), &std::string::c_str);
    return structures.names.data();
  });
}

kxArray_tag* kxGetField(const kxArray_tag* structure, std::size_t index, const char* name) {
  return asked<Operation::getField>(structure, index, name).answer([structure, index, name] {
    return lent(fieldOf(std::get<Structures>(valueOf(structure).content()), index, name));
  });
}

kxArray_tag* kxGetCell(const kxArray_tag* cell, std::size_t index) {
  return asked<Operation::getCell>(cell, index).answer([cell, index] {
    return lent(std::get<Cells>(valueOf(cell).content()).elements.at(index).get());
  });
}

kxArray_tag* kxGetPropertyShared(const kxArray_tag* object, std::size_t index, const std::string& name) {
  return asked<Operation::getPropertyShared>(object, index, name).answer([object, index, &name] {
    Session& current = session();
    const CodeSource source(current.interpreter, expressionSource);
    const ValuePtr element = elementOf(current.interpreter, ValuePtr(&valueOf(object)), index);
    std::optional<CodeRun> run;
    // What is only stored is no run of code, which a policy could refuse.
    if (readingRunsCode(current.interpreter, *element, name))
      run.emplace(current.interpreter, "get method of " + name);
    return handedOut(readProperty(current.interpreter, element, name, nullptr));
  });
}

kxArray_tag* kxGetTypeProperty(const kxArray_tag* object, std::size_t index, const std::string& name) {
  return asked<Operation::getTypeProperty>(object, index, name).answer([object, index, &name] {
    Session& current = session();
    const CodeSource source(current.interpreter, expressionSource);
    const ValuePtr element = elementOf(current.interpreter, ValuePtr(&valueOf(object)), index);
    // No run is counted: what is stored or declared is read without code, whatever get method there is.
    return handedOut(storedProperty(current.interpreter, element, name));
  });
}

kxArray_tag* kxFindTypeMember(const kxArray_tag* classReference, const std::string& name) {
  return asked<Operation::findTypeMember>(classReference, name).answer([classReference, &name] {
    const std::string& className = std::get<ClassReference>(valueOf(classReference).content()).className;
    if (const Class* found = session().classes.find(className)) return handedOut(memberOf(*found, name));
    const ForeignClassDescription* foreign = session().foreignClass(className);
    return foreign == nullptr ? nullptr : handedOut(foreignMember(*foreign, name));
  });
}

// New values.

kxArray_tag* kxCreateCell(std::size_t numberOfDimensions, const std::size_t* dimensions) {
  return asked<Operation::createCell>(numberOfDimensions).answer([numberOfDimensions, dimensions] {
    Value::Size size(dimensions, dimensions + numberOfDimensions);
    // Fewer dimensions are no size of a value.
    if (size.size() < 2) size.resize(2, 1);
    session().interpreter.checkSize(size);
    OwnedValue cell = newValue(size, Cells());
    std::get<Cells>(cell->mutableContent()).elements.resize(cell->elementCount());
    return cell.detach();
  });
}

void kxSetCell(kxArray_tag* cell, std::size_t index, kxArray_tag* value) {
  // Before anything can throw: the reference is taken over in any case.
  const ValuePtr adopted(static_cast<Value*>(value), false);
  enter<Operation::setCell>(cell, index, value);
  std::get<Cells>(static_cast<Value*>(cell)->mutableContent()).elements.at(index) = adopted;
}

kxArray_tag* kxCreateString(const char* text) {
  return asked<Operation::createString>(text).answer([text] { return newString(widened(text)).detach(); });
}

kxArray_tag* kxCreateClassArray(const std::string& className) {
  return asked<Operation::createClassArray>(className).answer([&className]() -> kxArray_tag* {
    const Class* found = session().classes.find(className);
    if (found == nullptr && session().foreignClass(className) == nullptr) return nullptr;
    const std::string& name = found == nullptr ? className : found->names().dotted.text();
    return newValue({1, 1}, ClassReference{name}).detach();
  });
}

int kxIsValidKorvalNameCount(const char* text) {
  return asked<Operation::isValidNameCount>(text).answer([text] {
    if (!syntax::isNameStart(*text)) return 0;
    const char* end = text + 1;
    while (syntax::isNamePart(*end)) ++end;
    return static_cast<int>(end - text);
  });
}

namespace matrix {

ErrorMode getErrorMode() {
  return asked<Operation::getErrorMode>().answer([] { return session().interpreter.errorMode; });
}

void setErrorMode(ErrorMode mode) {
  enter<Operation::setErrorMode>(static_cast<unsigned long>(mode));
  session().interpreter.errorMode = mode;
}

kxArray_tag* create(const std::u16string& text) {
  return asked<Operation::createText>(text).answer([&text] { return newString(text).detach(); });
}

std::u16string get_ustring(const kxArray_tag* value) {
  return asked<Operation::getUstring>(value).answer([value] { return requireScalarText(value); });
}

}  // namespace matrix

namespace Tamsix::String {

bool isString(const kxArray_tag* value) {
  return asked<Operation::isString>(value).answer(
      [value] { return valueOf(value).as<Strings>() != nullptr; });
}

std::u16string getString(const kxArray_tag* value) {
  return asked<Operation::getString>(value).answer([value] {
    if (valueOf(value).as<Strings>() == nullptr) throw KORVAL::string::MustBeStringScalarOrCharacterVector();
    return requireScalarText(value);
  });
}

bool isNonMissingScalarText(const kxArray_tag* value) {
  return asked<Operation::isNonMissingScalarText>(value).answer(
      [value] { return scalarText(valueOf(value)) != nullptr; });
}

std::u16string getScalarText(const kxArray_tag* value) {
  return asked<Operation::getScalarText>(value).answer([value] { return requireScalarText(value); });
}

}  // namespace Tamsix::String
