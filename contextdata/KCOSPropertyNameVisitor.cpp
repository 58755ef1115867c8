#include "contextdata/KCOSPropertyNameVisitor.h"

#include "contextdata/MemberName.h"

namespace {

bool isAccessible(const kcos::COSPropInfo& property) {
  return property.getMemberGetAccess() == kcos::PublicAccess ||
         property.getMemberSetAccess() == kcos::PublicAccess;
}

}  // namespace

KCOSPropertyNameVisitor::KCOSPropertyNameVisitor(std::vector<std::u16string>* names,
                                                 std::vector<kcos::COSDataTypePtr>* dataTypes,
                                                 std::uint32_t selection)
    : names_(names), dataTypes_(dataTypes), selection_(selection) {}

void KCOSPropertyNameVisitor::visit(kcos::COSInterface* member) {
  const kcos::COSPropInfo& property = *kcos::cosiToProp(member);
  if (!isSelected(property) || !isAccessible(property) || !property.isVisible()) return;
  names_->push_back(asciiMemberName(property.getName(), converter_));
  if (dataTypes_ != nullptr) dataTypes_->push_back(property.getDataType());
}

bool KCOSPropertyNameVisitor::isSelected(const kcos::COSPropInfo& property) const {
  switch (selection_) {
    case Constant:
      return property.getMemberSetAccess() == kcos::ConstantAccess;
    case NonConstant:
      return property.getMemberSetAccess() != kcos::ConstantAccess;
    default:
      return selection_ == All;
  }
}
