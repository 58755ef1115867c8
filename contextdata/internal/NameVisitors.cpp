#include "contextdata/internal/NameVisitors.h"

#include <utility>

#include "contextdata/internal/ClassRules.h"
#include "contextdata/internal/Names.h"

namespace {

/// Classes of the usual size fill a list of this capacity without another allocation.
constexpr std::size_t usualNameCount = 32;

std::string_view lastPart(std::string_view dottedName) {
  return dottedName.substr(dottedName.rfind('.') + 1);
}

bool isAscii(std::string_view text) {
  std::uint64_t all = 0;
  forEachWord(text, [&](std::uint64_t word) { all |= word; });
  return (all & 0x8080808080808080U) == 0;
}

bool isAccessible(const kcos::COSPropInfo& property) {
  return property.getMemberGetAccess() == kcos::PublicAccess ||
         property.getMemberSetAccess() == kcos::PublicAccess;
}

}  // namespace

KCOSMethodNameVisitor::KCOSMethodNameVisitor(std::vector<std::u16string>* names, std::uint32_t selection)
    : names_(names), selection_(selection) {}

void KCOSMethodNameVisitor::visit(kcos::COSInterface* member) {
  const kcos::COSMethodInfo& method = *kcos::cosiToMethod(member);
  const kcos::COSClass& definingClass = *kcos::cosiClassOfMember(member);
  name_ = memberName(method.getName());
  // A walk meets the methods of a class one after the other, so that its name is read once for all of them.
  if (std::exchange(definingClass_, &definingClass) != &definingClass)
    constructorName_ = lastPart(memberName(definingClass.getDottedName()));
  // Before it is noted as seen: a constructor decides nothing for other methods of its name.
  if (name_ == constructorName_) return;

  const bool isOffered = (selection_ == All || method.isStatic() == (selection_ == Static)) &&
                         method.isVisible() && method.getMemberAccess() == kcos::PublicAccess;
  // Also for a name that is not offered: it is the first method of a name that decides about all of them.
  const std::uint32_t next = seen_.size();
  const bool isNew = seen_.numberOf(isAscii(name_) ? std::string_view(name_) : converted(name_)) == next;
  if (isOffered && isNew) names_->push_back(asciiName(name_, converter_));
}

/// Names are compared as they would be listed, and what is not ASCII is listed as something else.
std::string_view KCOSMethodNameVisitor::converted(const std::string& name) {
  listed_ = fl::i18n::to_string(fl::i18n::to_ustring(name, converter_));
  return listed_;
}

void appendMethodNames(kcos::COSClass* cls, std::vector<std::u16string>& names, std::uint32_t selection) {
  if (!KCOSContextData::isValid(cls)) return;
  if (names.capacity() < usualNameCount) names.reserve(usualNameCount);
  KCOSMethodNameVisitor visitor(&names, selection);
  cls->visitMethods(visitor);
}

KCOSPropertyNameVisitor::KCOSPropertyNameVisitor(std::vector<std::u16string>* names,
                                                 std::vector<kcos::COSDataTypePtr>* dataTypes,
                                                 std::uint32_t selection)
    : names_(names), dataTypes_(dataTypes), selection_(selection) {}

void KCOSPropertyNameVisitor::visit(kcos::COSInterface* member) {
  const kcos::COSPropInfo& property = *kcos::cosiToProp(member);
  if (!isSelected(property) || !isAccessible(property) || !property.isVisible()) return;
  // Read last: a property without a name is an error only where it would be listed.
  name_ = memberName(property.getName());
  names_->push_back(asciiName(name_, converter_));
  if (dataTypes_ != nullptr) dataTypes_->push_back(property.getDataType());
}

bool KCOSPropertyNameVisitor::isSelected(const kcos::COSPropInfo& property) const {
  switch (selection_) {
    case Constant:
      return property.getMemberSetAccess() == kcos::ConstantAccess;
    case NonConstant:
      return property.getMemberSetAccess() != kcos::ConstantAccess;
    default:
      // A selection that is none of these selects nothing.
      return selection_ == All;
  }
}
