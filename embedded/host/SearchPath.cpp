#include "embedded/host/SearchPath.h"

#include <algorithm>

#include "embedded/host/Gate.h"

namespace embedded {

namespace {

/// Every file system here tells upper from lower case.
class CaseComparer final : public KnameComparer {
 public:
  bool equal(const std::u16string& left, const std::u16string& right) const override {
    enter<Operation::comparerEqual>(left, right);
    return left == right;
  }
};

}  // namespace

PathItem::PathItem(const PathItemDescription& description)
    : kind_(description.kind), location_(folderName(description.folder)) {}

int PathItem::getKind() const {
  enter<Operation::pathItemGetKind>(location_.text());
  return kind_;
}

foundation::storage::vfs::CanonicalAbsoluteIRI PathItem::getLocation() const {
  enter<Operation::pathItemGetLocation>(location_.text());
  return location_;
}

const KnameComparer* PathItem::getService(int selector) const {
  enter<Operation::pathItemGetService>(location_.text(), selector);
  static const CaseComparer comparer;
  return selector == NameComparer ? &comparer : nullptr;
}

void SearchPath::visitItems(const std::vector<int>& kinds, KpathItemVisitor& visitor) const {
  enter<Operation::visitItems>();
  for (const PathItem& item : items_)
    if (std::ranges::find(kinds, item.kind()) != kinds.end()) visitor.visit(item);
}

foundation::storage::vfs::Folder CurrentFolder::get() const {
  enter<Operation::workingFolderGet>();
  return folder_;
}

}  // namespace embedded

KnameComparer::~KnameComparer() = default;
KpathItem::~KpathItem() = default;
KpathItemVisitor::~KpathItemVisitor() = default;
KsearchPath::~KsearchPath() = default;
KcurrentWorkingFolder::~KcurrentWorkingFolder() = default;
