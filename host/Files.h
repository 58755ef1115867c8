#pragma once

// Folders and their entries, on disk and in the virtual file system. No operation runs Korval code; each may
// throw.

#include <string>
#include <utility>
#include <vector>

#include "host/Export.h"

namespace foundation::storage::vfs {

/// The absolute name of a file or folder. Plain values: making and reading one asks the host nothing but what
/// its operations say.
class KORVAL_HOST_API AbsoluteIRI {
 public:
  explicit AbsoluteIRI(std::u16string text) : text_(std::move(text)) {}
  const std::u16string& text() const noexcept { return text_; }
  /// The last component; empty for a root.
  std::u16string getName() const;
  friend bool operator==(const AbsoluteIRI&, const AbsoluteIRI&) = default;

 private:
  std::u16string text_;
};

/// An absolute name in its one canonical spelling, so that equality is that of the folders.
class KORVAL_HOST_API CanonicalAbsoluteIRI : public AbsoluteIRI {
 public:
  using AbsoluteIRI::AbsoluteIRI;
  /// The name of the enclosing folder; a root is its own parent.
  CanonicalAbsoluteIRI getParent() const;
};

/// A folder of the virtual file system.
class KORVAL_HOST_API Folder {
 public:
  explicit Folder(CanonicalAbsoluteIRI location) : location_(std::move(location)) {}
  CanonicalAbsoluteIRI getLocation() const;

 private:
  CanonicalAbsoluteIRI location_;
};

}  // namespace foundation::storage::vfs

namespace Tamsix::PathManagement {

/// The path by which the operations below know the file or folder.
KORVAL_HOST_API std::u16string GetStringFromIRI(const foundation::storage::vfs::AbsoluteIRI& iri);

}  // namespace Tamsix::PathManagement

namespace fl::filesystem {

enum class file_type { not_found, regular, directory, other };

class file_status {
 public:
  explicit file_status(file_type type = file_type::not_found) noexcept : type_(type) {}
  file_type type() const noexcept { return type_; }

 private:
  file_type type_;
};

/// What is at that path; a missing path is an answer, not an error.
KORVAL_HOST_API file_status status(const std::u16string& path);

}  // namespace fl::filesystem

struct FileNameWithStat {
  std::u16string name;
  fl::filesystem::file_status status;
};

/// Appends the entries that match `pattern`, a folder path, "/" and "*", without "." and "..", in an order
/// that is stable as long as the folder does not change. `flag` is 1.
KORVAL_HOST_API void ioGetDirList(const std::u16string& pattern, std::vector<FileNameWithStat>& entries,
                                  int flag);
