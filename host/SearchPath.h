#pragma once

// The search path and the current folder, as the dispatcher hands them out. Borrowed for one query; no
// operation runs Korval code; each may throw.

#include <string>
#include <vector>

#include "host/Export.h"
#include "host/Files.h"

/// Compares names of path items by the case rules of their file system.
class KORVAL_HOST_API KnameComparer {
 public:
  virtual ~KnameComparer();
  virtual bool equal(const std::u16string& left, const std::u16string& right) const = 0;
};

/// A folder that belongs to the search path: on the path itself, or a special folder inside one that is.
class KORVAL_HOST_API KpathItem {
 public:
  /// The kinds of items. An item of the last kind belongs to the current folder and counts only there.
  enum Kind : int { PathFolder = 0, ClassFolder = 1, PackageFolder = 2, CurrentFolderItem = 3 };
  /// The selector of the name comparer among an item's services.
  enum Service : int { NameComparer = 2 };

  virtual ~KpathItem();
  virtual int getKind() const = 0;
  virtual foundation::storage::vfs::CanonicalAbsoluteIRI getLocation() const = 0;
  /// The comparer for this item's name; never null for the selector NameComparer.
  virtual const KnameComparer* getService(int selector) const = 0;
};

class KORVAL_HOST_API KpathItemVisitor {
 public:
  virtual ~KpathItemVisitor();
  virtual void visit(const KpathItem& item) = 0;
};

class KORVAL_HOST_API KsearchPath {
 public:
  virtual ~KsearchPath();
  /// Visits the items of these kinds in path order. What the visitor throws propagates.
  virtual void visitItems(const std::vector<int>& kinds, KpathItemVisitor& visitor) const = 0;
};

/// The service that knows the current folder.
class KORVAL_HOST_API KcurrentWorkingFolder {
 public:
  virtual ~KcurrentWorkingFolder();
  virtual foundation::storage::vfs::Folder get() const = 0;
};
