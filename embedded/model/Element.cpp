#include "embedded/model/Element.h"

#include "embedded/host/Gate.h"
#include "embedded/model/Class.h"

using embedded::Element;
using embedded::enter;
using embedded::Operation;

const kcos::COSAttribute* Element::findAttribute(const kcos::COSInternedName& name) const {
  enter<Operation::findAttribute>(name);
  return nullptr;
}

bool Element::getAttributeValue(const kcos::COSInternedName& name, const kcos::COSClient*) const {
  enter<Operation::getAttributeValue>(name);
  return false;
}

namespace kcos {

template <class T>
COSVisitor<T>::~COSVisitor() = default;
template class COSVisitor<COSInterface*>;

COSInterface::~COSInterface() = default;

namespace {

Element* elementOf(COSInterface* interface) { return static_cast<Element*>(interface); }

}  // namespace

COSPropInfo* cosiToProp(COSInterface* interface) {
  enter<Operation::cosiToProp>();
  return interface == nullptr ? nullptr : elementOf(interface)->asProperty();
}

COSMethodInfo* cosiToMethod(COSInterface* interface) {
  enter<Operation::cosiToMethod>();
  return interface == nullptr ? nullptr : elementOf(interface)->asMethod();
}

COSEnumInfo* cosiToEnum(COSInterface* interface) {
  enter<Operation::cosiToEnum>();
  return interface == nullptr ? nullptr : elementOf(interface)->asEnumerationMember();
}

COSClass* cosiToClass(COSInterface* interface) {
  enter<Operation::cosiToClass>();
  return interface == nullptr ? nullptr : elementOf(interface)->asClass();
}

COSNamespace* cosiToNamespace(COSInterface* interface) {
  enter<Operation::cosiToNamespace>();
  return interface == nullptr ? nullptr : elementOf(interface)->asNamespace();
}

COSClass* cosiClassOfMember(COSInterface* member) {
  enter<Operation::cosiClassOfMember>();
  return member == nullptr ? nullptr : elementOf(member)->definingClass();
}

}  // namespace kcos

/// There is one client, and it needs no more than an address.
class kcos::COSClient {};

const kcos::COSClient* COSGetPublicClient() {
  enter<Operation::getPublicClient>();
  static constexpr kcos::COSClient everybody;
  return &everybody;
}
