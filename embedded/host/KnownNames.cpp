#include "embedded/host/KnownNames.h"

#include <system_error>
#include <unordered_set>

#include "embedded/host/Files.h"

namespace embedded {

namespace {

namespace fs = std::filesystem;

/// Of a class folder "@Pump" or a package folder "+lab": the name without the first character.
std::string nameAfterPrefix(const fs::path& folder) {
  const std::string name = (folder.has_filename() ? folder : folder.parent_path()).filename().string();
  return name.empty() ? name : name.substr(1);
}

/// How deep packages are looked for in packages: links may lead back to where they stand.
constexpr int deepestPackage = 8;

void addCodeFiles(const fs::path& folder, const std::string& prefix, std::vector<KnownName>& names,
                  int depth = 0) {
  for (const fs::path& entry : entriesOf(folder)) {
    const std::string name = entry.stem().string();
    std::error_code failure;  // not looked at: what is gone by now is no file
    if (entry.extension() == ".k" && !name.empty() && fs::is_regular_file(entry, failure))
      names.push_back({prefix + name});
    // The whole name of the folder, which may have a dot in it.
    const std::string folderName = entry.filename().string();
    if (depth < deepestPackage && folderName.starts_with('+'))
      addCodeFiles(entry, prefix + folderName.substr(1) + ".", names, depth + 1);
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
  std::unordered_set<std::string> met;
  for (const KnownName& known : names) met.insert(known.name);
  for (const fs::path& folder : folders_) {
    for (const fs::path& found : classFoldersIn(folder))
      if (met.insert(nameAfterPrefix(found)).second) names.push_back({nameAfterPrefix(found)});
  }
  return names;
}

std::vector<KnownName> KnownNames::functions() const {
  std::vector<KnownName> names = functions_;
  for (const fs::path& folder : folders_) addCodeFiles(folder, "", names);
  return names;
}

}  // namespace embedded
