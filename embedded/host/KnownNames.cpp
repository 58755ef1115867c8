#include "embedded/host/KnownNames.h"

#include <algorithm>
#include <system_error>

namespace embedded {

namespace {

namespace fs = std::filesystem;

/// Of a class folder "@Pump" or a package folder "+lab": the name without the first character.
std::string nameAfterPrefix(const fs::path& folder) {
  const std::string name = folder.filename().string();
  return name.empty() ? name : name.substr(1);
}

/// What a folder holds, in ascending order. One that cannot be read holds nothing.
std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::error_code error;
  std::vector<fs::path> found;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    found.push_back(entry->path());
  }
  std::ranges::sort(found);
  return found;
}

void addCodeFiles(const fs::path& folder, const std::string& prefix, std::vector<KnownName>& names) {
  for (const fs::path& entry : entriesOf(folder)) {
    const std::string name = entry.stem().string();
    if (entry.extension() == ".k" && !name.empty()) names.push_back({prefix + name});
    // One level: code does not find functions of packages inside packages either.
    if (prefix.empty() && name.starts_with('+')) addCodeFiles(entry, name.substr(1) + ".", names);
  }
}

}  // namespace

KnownNames::KnownNames(const Description& description) {
  for (const ClassDescription& known : description.classes) classes_.push_back({known.name, known.hidden});
  for (const FunctionDescription& known : description.functions) {
    functions_.push_back({known.name, known.hidden || !known.visible.value_or(true)});
  }
  for (const PackageDescription& known : description.packages) packages_.push_back({known.name});
  for (const PathItemDescription& item : description.path) {
    if (item.kind == PathItemDescription::Path) folders_.emplace_back(item.folder);
    if (item.kind == PathItemDescription::Class) classes_.push_back({nameAfterPrefix(item.folder)});
    if (item.kind == PathItemDescription::Package) addPackage(item.folder);
  }
}

/// "+lab" is a namespace of functions, "@lab" a package of the older object system.
void KnownNames::addPackage(const fs::path& folder) {
  if (folder.filename().string().starts_with('+')) {
    addCodeFiles(folder, nameAfterPrefix(folder) + ".", functions_);
  } else {
    packages_.push_back({nameAfterPrefix(folder)});
  }
}

std::vector<KnownName> KnownNames::classes() const {
  // Folders are listed anew each time: files come and go.
  std::vector<KnownName> names = classes_;
  for (const fs::path& folder : folders_) {
    for (const fs::path& entry : entriesOf(folder)) {
      const std::string name = entry.filename().string();
      if (name.size() > 1 && name.starts_with('@')) names.push_back({name.substr(1)});
    }
  }
  return names;
}

std::vector<KnownName> KnownNames::functions() const {
  std::vector<KnownName> names = functions_;
  for (const fs::path& folder : folders_) addCodeFiles(folder, "", names);
  return names;
}

}  // namespace embedded
