#include "embedded/host/Files.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "embedded/host/Gate.h"
#include "embedded/model/Unicode.h"
#include "host/Exceptions.h"

namespace embedded {

namespace {

namespace files = std::filesystem;
using fl::filesystem::file_status;
using fl::filesystem::file_type;

constexpr std::u16string_view scheme = u"file://";
constexpr std::u16string_view everyEntry = u"/*";

file_status statusOf(files::file_type type) {
  if (type == files::file_type::regular) return file_status(file_type::regular);
  if (type == files::file_type::directory) return file_status(file_type::directory);
  const bool isThere = type != files::file_type::not_found && type != files::file_type::none;
  return file_status(isThere ? file_type::other : file_type::not_found);
}

/// Listing a folder has told already what most entries are; only links are followed.
file_status statusOf(const files::directory_entry& entry) {
  // Not looked at: an entry that is gone by now is of no kind.
  std::error_code failure;
  if (entry.is_directory(failure)) return file_status(file_type::directory);
  if (entry.is_regular_file(failure)) return file_status(file_type::regular);
  return statusOf(entry.status(failure).type());
}

[[noreturn]] void failListing(const std::string& folder, const std::string& reason) {
  throw foundation::core::except::Exception("KORVAL:host:FolderNotListed",
                                            "The folder \"" + folder + "\" cannot be listed: " + reason);
}

/// A folder that is gone holds nothing; one that cannot be read is an error.
std::vector<FileNameWithStat> listed(const std::string& folder) {
  std::vector<FileNameWithStat> found;
  std::error_code failure;
  files::directory_iterator entry(folder, failure);
  // With an error code, because a folder may go away while it is listed.
  for (; !failure && entry != files::directory_iterator(); entry.increment(failure))
    found.push_back({widened(entry->path().filename().string()), statusOf(*entry)});
  const bool isGone = failure == std::errc::no_such_file_or_directory;
  if (failure && !isGone) failListing(folder, failure.message());
  // A file system lists in any order, and the same folder is to give the same list.
  std::ranges::sort(found, {}, &FileNameWithStat::name);
  return found;
}

/// Where the last component begins: after the last slash of the path.
std::size_t lastComponent(const std::u16string& iri) { return iri.rfind(u'/') + 1; }

}  // namespace

foundation::storage::vfs::CanonicalAbsoluteIRI folderName(const std::string& path) {
  std::error_code failure;
  auto canonical = std::filesystem::weakly_canonical(std::filesystem::absolute(path), failure);
  // A folder that cannot be looked at keeps the name that it was given.
  if (failure) canonical = std::filesystem::absolute(path).lexically_normal();
  // A slash at the end would make the last component empty.
  if (!canonical.has_filename() && canonical.has_relative_path()) canonical = canonical.parent_path();
  return foundation::storage::vfs::CanonicalAbsoluteIRI(std::u16string(scheme) + widened(canonical.string()));
}

}  // namespace embedded

using embedded::enter;
using embedded::Operation;

fl::filesystem::file_status fl::filesystem::status(const std::u16string& path) {
  enter<Operation::fileStatus>(path);
  std::error_code failure;
  // The system would cut such a path at that character, and tell of another file.
  if (path.find(u'\0') != std::u16string::npos) return file_status();
  return embedded::statusOf(std::filesystem::status(embedded::narrowed(path), failure).type());
}

void ioGetDirList(const std::u16string& pattern, std::vector<FileNameWithStat>& entries, int flag) {
  enter<Operation::getDirList>(pattern, flag);
  const std::string folder = embedded::narrowed(std::u16string_view(pattern).substr(0, pattern.rfind(u'/')));
  if (!pattern.ends_with(embedded::everyEntry)) embedded::failListing(folder, "only the pattern * is known");
  const std::vector<FileNameWithStat> found = embedded::listed(folder.empty() ? "/" : folder);
  entries.insert(entries.end(), found.begin(), found.end());
}

namespace foundation::storage::vfs {

std::u16string AbsoluteIRI::getName() const {
  enter<Operation::iriGetName>(text_);
  return text_.substr(embedded::lastComponent(text_));
}

CanonicalAbsoluteIRI CanonicalAbsoluteIRI::getParent() const {
  enter<Operation::iriGetParent>(text());
  // The root folder is its own parent.
  const std::size_t root = embedded::scheme.size() + 1;
  const std::size_t last = embedded::lastComponent(text());
  return CanonicalAbsoluteIRI(text().substr(0, last > root ? last - 1 : last));
}

CanonicalAbsoluteIRI Folder::getLocation() const {
  enter<Operation::folderGetLocation>(location_.text());
  return location_;
}

}  // namespace foundation::storage::vfs

std::u16string Tamsix::PathManagement::GetStringFromIRI(const foundation::storage::vfs::AbsoluteIRI& iri) {
  enter<Operation::getStringFromIRI>(iri.text());
  return iri.text().starts_with(embedded::scheme) ? iri.text().substr(embedded::scheme.size()) : iri.text();
}
