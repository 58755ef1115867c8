#include "embedded/host/FolderName.h"

#include <filesystem>
#include <system_error>

#include "embedded/host/Gate.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

constexpr std::u16string_view scheme = u"file://";

/// Where the last component begins: behind the last slash of the path.
std::size_t lastComponent(const std::u16string& iri) { return iri.rfind(u'/') + 1; }

}  // namespace

foundation::storage::vfs::CanonicalAbsoluteIRI folderName(const std::string& path) {
  std::error_code failure;
  auto canonical = std::filesystem::weakly_canonical(std::filesystem::absolute(path), failure);
  if (failure) canonical = std::filesystem::absolute(path).lexically_normal();
  if (!canonical.has_filename() && canonical.has_relative_path()) canonical = canonical.parent_path();
  return foundation::storage::vfs::CanonicalAbsoluteIRI(std::u16string(scheme) + widened(canonical.string()));
}

}  // namespace embedded

using embedded::enter;
using embedded::Operation;

namespace foundation::storage::vfs {

std::u16string AbsoluteIRI::getName() const {
  enter<Operation::iriGetName>(text_);
  return text_.substr(embedded::lastComponent(text_));
}

CanonicalAbsoluteIRI CanonicalAbsoluteIRI::getParent() const {
  enter<Operation::iriGetParent>(text());
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
