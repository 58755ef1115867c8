#include "host/Files.h"

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

constexpr std::u16string_view everyEntry = u"/*";

file_status statusOf(files::file_type type) {
  if (type == files::file_type::regular) return file_status(file_type::regular);
  if (type == files::file_type::directory) return file_status(file_type::directory);
  const bool isThere = type != files::file_type::not_found && type != files::file_type::none;
  return file_status(isThere ? file_type::other : file_type::not_found);
}

/// Listing a folder has told already what most entries are; only links are followed.
file_status statusOf(const files::directory_entry& entry) {
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
  for (; !failure && entry != files::directory_iterator(); entry.increment(failure))
    found.push_back({widened(entry->path().filename().string()), statusOf(*entry)});
  const bool isGone = failure == std::errc::no_such_file_or_directory;
  if (failure && !isGone) failListing(folder, failure.message());
  std::ranges::sort(found, {}, &FileNameWithStat::name);
  return found;
}

}  // namespace

}  // namespace embedded

using embedded::enter;
using embedded::Operation;

fl::filesystem::file_status fl::filesystem::status(const std::u16string& path) {
  enter<Operation::fileStatus>(path);
  std::error_code failure;
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
