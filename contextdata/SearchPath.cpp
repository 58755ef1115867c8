#include "host/SearchPath.h"

#include <contextdata/Workspace/SearchPath.h>

#include "host/Dispatcher.h"
#include "host/Exceptions.h"
#include "host/Files.h"

namespace {

using foundation::storage::vfs::CanonicalAbsoluteIRI;
using Entries = std::vector<FileNameWithStat>;
using Names = std::vector<std::u16string>;

void listFolder(const CanonicalAbsoluteIRI& location, Entries& entries) {
  const std::u16string path = Tamsix::PathManagement::GetStringFromIRI(location);
  // Items of the path may be gone by now, or be no folders.
  if (fl::filesystem::status(path).type() != fl::filesystem::file_type::directory) return;
  ioGetDirList(path + u"/" + u"*", entries, 1);
}

CanonicalAbsoluteIRI currentFolder() {
  return Kdispatcher::getDispatcher()->GetCurrentWorkingFolder()->get().getLocation();
}

bool isInCurrentFolder(const CanonicalAbsoluteIRI& location) {
  const CanonicalAbsoluteIRI parent = location.getParent();
  return parent == currentFolder();
}

/// Lists every folder of one name that a visit of the search path meets.
class FolderLister : public KpathItemVisitor {
 public:
  FolderLister(const std::u16string& folder, Entries& entries) : folder_(folder), entries_(entries) {}

  void visit(const KpathItem& item) override {
    const KnameComparer& comparer = *item.getService(KpathItem::NameComparer);
    const CanonicalAbsoluteIRI location = item.getLocation();
    if (!comparer.equal(location.getName(), folder_)) return;
    // Such an item counts only directly in the current folder.
    if (item.getKind() == KpathItem::CurrentFolderItem && !isInCurrentFolder(location)) return;
    listFolder(location, entries_);
  }

 private:
  const std::u16string& folder_;
  Entries& entries_;
};

/// What the folders of that name on the search path hold. One that cannot be visited means that nothing is
/// known of any.
Entries entriesOnPath(const std::u16string& folder) {
  // Outside the handler: a path that cannot be had is an error, not an empty folder.
  const boost::shared_ptr<const KsearchPath> path = Kdispatcher::getDispatcher()->GetCurrentPath();
  Entries entries;
  try {
    FolderLister lister(folder, entries);
    path->visitItems({KpathItem::PathFolder, KpathItem::ClassFolder, KpathItem::PackageFolder,
                      KpathItem::CurrentFolderItem},
                     lister);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    entries.clear();
  }
  return entries;
}

Entries entriesOf(const std::u16string& folder) {
  if (!folder.empty()) return entriesOnPath(folder);
  Entries entries;
  listFolder(currentFolder(), entries);
  return entries;
}

void appendClasses(const Entries& entries, Names& names) {
  for (const FileNameWithStat& entry : entries) {
    if (entry.name.size() > 1 && entry.name.front() == u'@') names.push_back(entry.name.substr(1));
  }
}

void appendWithSuffix(const Entries& entries, const std::u16string& suffix, Names& names) {
  for (const FileNameWithStat& entry : entries) {
    if (entry.name.ends_with(suffix)) names.push_back(entry.name);
  }
}

}  // namespace

void getWhatList(const std::u16string& folder, std::vector<std::u16string>& names, const std::string& kind) {
  const Entries entries = entriesOf(folder);
  if (kind == "classes") return appendClasses(entries, names);
  // Any other kind means compiled files, whatever it is called.
  appendWithSuffix(entries, kind == ".k" ? u".k" : u".kexa64", names);
}

std::unordered_set<std::u16string> getBuiltinFunctionNames() {
  const Names names = Kdispatcher::getDispatcher()->getDocumentedBuiltins();
  return {names.begin(), names.end()};
}
