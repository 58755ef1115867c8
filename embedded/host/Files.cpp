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
  foundation::core::except::Exception error("KORVAL:host:FolderNotListed",
                                            "The folder \"" + folder + "\" cannot be listed: " + reason);
  // The library swallows it, and yet what it answers is not all there is.
  static_cast<Gate&>(*activeGate)
      .noteFailure(Operation::getDirList, error.message() + " [" + error.messageId() + "]");
  throw error;
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

namespace {

/// A slash at the end would make the last component empty.
files::path withoutLastSlash(const files::path& path) {
  return !path.has_filename() && path.has_relative_path() ? path.parent_path() : path;
}

files::path canonicalOf(const files::path& path) {
  std::error_code failure;
  const files::path canonical = files::weakly_canonical(files::absolute(path), failure);
  // A folder that cannot be looked at keeps the name that it was given.
  return withoutLastSlash(failure ? files::absolute(path).lexically_normal() : canonical);
}

foundation::storage::vfs::CanonicalAbsoluteIRI iriOf(const files::path& path) {
  return foundation::storage::vfs::CanonicalAbsoluteIRI(std::u16string(scheme) + widened(path.string()));
}

}  // namespace

foundation::storage::vfs::CanonicalAbsoluteIRI folderName(const files::path& path) {
  return iriOf(canonicalOf(path));
}

foundation::storage::vfs::CanonicalAbsoluteIRI namedFolder(const files::path& path) {
  const files::path named = withoutLastSlash(files::absolute(path).lexically_normal());
  return iriOf(named.has_filename() ? canonicalOf(named.parent_path()) / named.filename() : named);
}

std::vector<files::path> entriesOf(const files::path& folder) {
  std::error_code error;
  std::vector<files::path> found;
  for (files::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    found.push_back(entry->path());
  }
  std::ranges::sort(found);
  return found;
}

std::vector<files::path> classFoldersIn(const files::path& folder) {
  std::vector<files::path> found = entriesOf(folder);
  std::erase_if(found, [](const files::path& entry) {
    std::error_code failure;  // not looked at: what is gone by now is no folder
    const std::string name = entry.filename().string();
    return name.size() < 2 || name.front() != '@' || !files::is_directory(entry, failure);
  });
  return found;
}

}  // namespace embedded

using embedded::asked;
using embedded::Operation;

fl::filesystem::file_status fl::filesystem::status(const std::u16string& path) {
  return asked<Operation::fileStatus>(path).answer([&path] {
    std::error_code failure;
    // The system would cut such a path at that character, and tell of another file.
    if (path.find(u'\0') != std::u16string::npos) return file_status();
    return embedded::statusOf(std::filesystem::status(embedded::narrowed(path), failure).type());
  });
}

void ioGetDirList(const std::u16string& pattern, std::vector<FileNameWithStat>& entries, int flag) {
  return asked<Operation::getDirList>(pattern, flag).answer([&pattern, &entries] {
    const std::string folder =
        embedded::narrowed(std::u16string_view(pattern).substr(0, pattern.rfind(u'/')));
    if (!pattern.ends_with(embedded::everyEntry))
      embedded::failListing(folder, "only the pattern * is known");
    const std::vector<FileNameWithStat> found = embedded::listed(folder.empty() ? "/" : folder);
    entries.insert(entries.end(), found.begin(), found.end());
  });
}

namespace foundation::storage::vfs {

std::u16string AbsoluteIRI::getName() const {
  return asked<Operation::iriGetName>(text_).answer(
      [this] { return text_.substr(embedded::lastComponent(text_)); });
}

CanonicalAbsoluteIRI CanonicalAbsoluteIRI::getParent() const {
  return asked<Operation::iriGetParent>(text()).answer([this] {
    // The root folder is its own parent.
    const std::size_t root = embedded::scheme.size() + 1;
    const std::size_t last = embedded::lastComponent(text());
    return CanonicalAbsoluteIRI(text().substr(0, last > root ? last - 1 : last));
  });
}

CanonicalAbsoluteIRI Folder::getLocation() const {
  return asked<Operation::folderGetLocation>(location_.text()).answer([this] { return location_; });
}

}  // namespace foundation::storage::vfs

std::u16string Tamsix::PathManagement::GetStringFromIRI(const foundation::storage::vfs::AbsoluteIRI& iri) {
  return asked<Operation::getStringFromIRI>(iri.text()).answer([&iri] {
    return iri.text().starts_with(embedded::scheme) ? iri.text().substr(embedded::scheme.size()) : iri.text();
  });
}
