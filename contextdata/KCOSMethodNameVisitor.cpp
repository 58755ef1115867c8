#include "contextdata/KCOSMethodNameVisitor.h"

#include <utility>

#include "contextdata/MemberName.h"

namespace {

/// Classes of the usual size fill a list of this capacity without another allocation.
constexpr std::size_t usualNameCount = 32;

std::string lastPart(const std::string& dottedName) { return dottedName.substr(dottedName.rfind('.') + 1); }

}  // namespace

KCOSMethodNameVisitor::KCOSMethodNameVisitor(std::vector<std::u16string>* names, std::uint32_t selection)
    : names_(names), selection_(selection) {}

void KCOSMethodNameVisitor::visit(kcos::COSInterface* member) {
  const kcos::COSMethodInfo& method = *kcos::cosiToMethod(member);
  const kcos::COSClass& definingClass = *kcos::cosiClassOfMember(member);
  const std::string methodName = memberName(method.getName());
  if (lastPart(memberName(definingClass.getDottedName())) == methodName) return;

  std::u16string name = fl::i18n::to_ustring(methodName, converter_);
  const bool isOffered = (selection_ == All || method.isStatic() == (selection_ == Static)) &&
                         method.isVisible() && method.getMemberAccess() == kcos::PublicAccess;
  const bool isNew = seen_.insert(name).second;
  if (isOffered && isNew) names_->push_back(std::move(name));
}

void appendMethodNames(kcos::COSClass* cls, std::vector<std::u16string>& names, std::uint32_t selection) {
  if (cls == nullptr || cls->checkClass(false) == nullptr) return;
  if (names.capacity() < usualNameCount) names.reserve(usualNameCount);
  KCOSMethodNameVisitor visitor(&names, selection);
  cls->visitMethods(visitor);
}
