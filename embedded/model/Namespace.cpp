#include "embedded/model/Namespace.h"

#include "embedded/host/Session.h"
#include "embedded/model/DottedName.h"
#include "embedded/model/Interning.h"
#include "embedded/model/ListEnumerator.h"

namespace embedded {

Namespace::Namespace(kcos::COSInternedName dottedName)
    : dottedName_(dottedName), simpleName_(interned(simpleNameOf(dottedName.text()))) {}

const char* Namespace::getSimpleName() const {
  enter<Operation::namespaceGetSimpleName>(dottedName_);
  return simpleName_.text().c_str();
}

const char* Namespace::getDottedName() const {
  enter<Operation::namespaceGetDottedName>(dottedName_);
  return dottedName_.text().c_str();
}

kcos::COSIterator Namespace::getFunctions() const {
  enter<Operation::namespaceGetFunctions>(dottedName_);
  return enumerate(functions_);
}

kcos::COSIterator Namespace::getClasses() const {
  enter<Operation::namespaceGetClasses>(dottedName_);
  return enumerate(classes_);
}

kcos::COSIterator Namespace::getNamespaces() const {
  enter<Operation::namespaceGetNamespaces>(dottedName_);
  return enumerate(namespaces_);
}

}  // namespace embedded

namespace kcos {

COSNamespace::~COSNamespace() = default;

COSInterfacePtr COSNamespace::getNamespaceInterface(const COSInternedName& name) {
  embedded::enter<embedded::Operation::getNamespaceInterface>(name);
  return embedded::session().classes.findNamespace(name);
}

}  // namespace kcos
