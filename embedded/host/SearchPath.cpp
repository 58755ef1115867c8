#include "embedded/host/SearchPath.h"

#include <algorithm>

#include "embedded/host/Gate.h"

namespace embedded {

namespace {

/// Every file system here tells upper from lower case.
class CaseComparer final : public KnameComparer {
 public:
  bool equal(const std::u16string& left, const std::u16string& right) const override {
    return asked<Operation::comparerEqual>(left, right).answer([&left, &right] { return left == right; });
  }
};

}  // namespace

int PathItem::getKind() const {
  return asked<Operation::pathItemGetKind>(location_.text()).answer([this] { return kind_; });
}

foundation::storage::vfs::CanonicalAbsoluteIRI PathItem::getLocation() const {
  return asked<Operation::pathItemGetLocation>(location_.text()).answer([this] { return location_; });
}

const KnameComparer* PathItem::getService(int selector) const {
  return asked<Operation::pathItemGetService>(location_.text(), selector).answer([selector] {
    static const CaseComparer comparer;
    return selector == NameComparer ? &comparer : nullptr;
  });
}

void SearchPath::visitItems(const std::vector<int>& kinds, KpathItemVisitor& visitor) const {
  return asked<Operation::visitItems>().answer([this, &kinds, &visitor] {
    const auto isWanted = [&](int kind) { return std::ranges::find(kinds, kind) != kinds.end(); };
    // "@" folders are of classes and of packages alike: each is visited once, as what is asked for.
    const int kind = isWanted(KpathItem::ClassFolder) ? KpathItem::ClassFolder : KpathItem::PackageFolder;
    for (const PathItem& item : items_) {
      if (isWanted(item.kind())) visitor.visit(item);
      if (item.kind() != KpathItem::PathFolder || !isWanted(kind)) continue;
      // Looked for anew each time: folders come and go.
      for (const std::filesystem::path& folder : classFoldersIn(item.folder())) {
        const PathItem found(kind, folder.string());
        const bool isListed =
            std::ranges::find(items_, found.location(), &PathItem::location) != items_.end();
        if (!isListed) visitor.visit(found);
      }
    }
  });
}

foundation::storage::vfs::Folder CurrentFolder::get() const {
  return asked<Operation::workingFolderGet>().answer([this] { return folder_; });
}

}  // namespace embedded

KnameComparer::~KnameComparer() = default;
KpathItem::~KpathItem() = default;
KpathItemVisitor::~KpathItemVisitor() = default;
KsearchPath::~KsearchPath() = default;
KcurrentWorkingFolder::~KcurrentWorkingFolder() = default;
