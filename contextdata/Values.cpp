#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include <boost/numeric/conversion/cast.hpp>
#include <cmath>
#include <iterator>

#include "contextdata/internal/Dimensions.h"
#include "contextdata/internal/Names.h"
#include "host/Classes.h"
#include "host/Dispatcher.h"
#include "host/Interpreter.h"

namespace {

using Extents = std::vector<unsigned long>;

const char* sizeMethod(const kxArray_tag* value) {
  // omIsKCOS first: only objects of the class system can derive from a mixin.
  static const std::string customSize = "korval.mixin.internal.CustomSizeString";
  return omIsKCOS(value) && kxIsA(value, customSize.c_str()) ? "sizeAsDouble" : "size";
}

/// The extents that a size method returns; none when its answer says nothing. An extent that is no count
/// throws.
Extents extentsOf(const kxArray_tag* answer) {
  if (answer == nullptr || kxGetClassID(answer) != StorageCode::DoubleArray || kxIsEmpty(answer)) return {};
  const std::size_t count = kxGetNumberOfElements(answer);
  const double* numbers = count == 0 ? nullptr : kxGetDoubles(answer);
  Extents extents;
  for (std::size_t index = 0; index < count; ++index) {
    // NaN falls back to the value's own dimensions; an extent that is no count throws, which leaves no size
    // at all.
    if (std::isnan(numbers[index])) return {};
    extents.push_back(boost::numeric_cast<unsigned long>(numbers[index]));
  }
  return extents;
}

}  // namespace

boost::intrusive_ptr<kxArray_tag> makeSharedPtr(kxArray_tag* value) { return {value, false}; }

boost::intrusive_ptr<kxArray_tag> getSharedProperty(const kxArray_tag* object, const std::string& name,
                                                    unsigned long index) {
  try {
    // Reading may run a get method. Its errors, and an interrupt too, mean that there is no value.
    return makeSharedPtr(kxGetPropertyShared(object, index, name));
  } catch (...) {
    return {};
  }
}

bool isObjectOrIsOpaque(const kxArray_tag* value) { return kxIsObject(value) || kxIsOpaque(value); }

// A failed call and an object without names are the same to these two: nothing is appended.
void getOpaqueObjectProperties(const kxArray_tag* value, std::vector<std::u16string>& names) {
  KCOSIntrospection::callFunctionOnObject(value, "fieldnames", names);
}

void getOpaqueObjectMethods(const kxArray_tag* value, std::vector<std::u16string>& names) {
  KCOSIntrospection::callFunctionOnObject(value, "methods", names);
}

bool getStringsFromKxarray(const kxArray_tag* value, std::vector<std::u16string>& strings) {
  if (value == nullptr || kxGetClassID(value) != StorageCode::Cell) return false;
  const std::size_t count = kxGetNumberOfElements(value);
  // Room is made before anything is read, so that appending cannot fail once all texts are there.
  strings.reserve(strings.size() + count);
  // Collected apart, so that neither an early end nor an exception leaves some in the list.
  std::vector<std::u16string> texts;
  texts.reserve(count);
  for (std::size_t index = 0; index < count; ++index) {
    // Borrowed: the cell keeps it, and nothing here outlives the cell.
    const kxArray_tag* element = kxGetCell(value, index);
    if (element == nullptr || !Tamsix::String::isNonMissingScalarText(element)) return false;
    texts.push_back(Tamsix::String::getScalarText(element));
  }
  strings.insert(strings.end(), std::move_iterator(texts.begin()), std::move_iterator(texts.end()));
  return true;
}

std::vector<unsigned long> getSizeFromKxArray(const kxArray_tag* value) {
  if (value == nullptr || kxIsA(value, "tall")) return {};
  if (!StorageCode::isSizedByClass(kxGetClassID(value))) return ownDimensions(value);
  const char* method = sizeMethod(value);
  Extents extents;
  try {
    // Runs code of the class. Whatever goes wrong there means that the size is not known, an interrupt too.
    extents = extentsOf(makeSharedPtr(inCallMethodSingleInputSingleOutput(value, method, 1)).get());
  } catch (...) {
    return {};
  }
  // Outside the handler: what the value's own dimensions throw is the caller's, as it is for other values.
  return extents.empty() ? ownDimensions(value) : extents;
}

unsigned int GetClassPrecedence(const std::u16string& classA, const std::u16string& classB) {
  const std::string nameA = toAscii(classA);
  const std::string nameB = toAscii(classB);
  const KobjectSystem& objectSystem = *kdGetObjectSystem();
  const KclassIdentifier* a = objectSystem.getClassIdentifier(nameA);
  const KclassIdentifier* b = objectSystem.getClassIdentifier(nameB);
  if (objectSystem.precedes(a, b)) return 0xFFFFFFFFU;
  return objectSystem.precedes(b, a) ? 1U : 0U;
}

bool IsJavaFunction(const std::u16string& name) {
  const std::string text = toAscii(name);
  const std::size_t dot = text.rfind('.');
  // Without a class before the dot there is nothing to ask for, and the host is not asked.
  if (dot == std::string::npos || dot == 0) return false;
  const boost::intrusive_ptr<kxArray_tag> cls = makeSharedPtr(kxCreateClassArray(text.substr(0, dot)));
  if (!cls) return false;
  const boost::intrusive_ptr<kxArray_tag> member =
      makeSharedPtr(kxFindTypeMember(cls.get(), text.substr(dot + 1)));
  return member && kxIsA(member.get(), "java");
}
