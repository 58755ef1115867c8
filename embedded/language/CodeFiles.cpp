#include "embedded/language/CodeFiles.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

#include "embedded/language/Interpreter.h"
#include "embedded/model/Names.h"
#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

constexpr std::uintmax_t longestFile = 4U << 20U;

/// "+lab/+tools" for "lab.tools".
std::filesystem::path packageFolder(std::string_view package) {
  std::filesystem::path folder;
  while (!package.empty()) {
    const std::size_t dot = std::min(package.find('.'), package.size());
    folder /= "+" + std::string(package.substr(0, dot));
    package.remove_prefix(std::min(dot + 1, package.size()));
  }
  return folder;
}

/// Where the package is, when the item of the path is the outermost of its folders; empty when it is not.
std::filesystem::path packageIn(const PathItemDescription& item, const std::string& package) {
  const std::filesystem::path folder = packageFolder(package);
  const std::filesystem::path own(item.folder);
  if (item.kind != PathItemDescription::Package || folder.empty() || *folder.begin() != own.filename())
    return {};
  return own.parent_path() / folder;
}

}  // namespace

CodeFiles::CodeFiles(const Description& description, const Interpreter& interpreter)
    : interpreter_(interpreter),
      folders_{description.currentFolder.empty() ? "." : description.currentFolder} {
  for (const PathItemDescription& item : description.path) {
    if (item.kind == PathItemDescription::Path)
      folders_.emplace_back(item.folder);
    else
      special_.push_back(item);
  }
}

const Routine* CodeFiles::function(const std::string& dottedName) {
  const std::string package(namespaceOf(dottedName));
  const std::string file = std::string(simpleNameOf(dottedName)) + ".k";
  for (const Path& folder : folders_)
    if (const Routine* found = read(folder / packageFolder(package) / file, package)) return found;
  for (const PathItemDescription& item : special_)
    if (const Path folder = packageIn(item, package); !folder.empty())
      if (const Routine* found = read(folder / file, package)) return found;
  return nullptr;
}

bool CodeFiles::isPackage(const std::string& name) const {
  std::error_code failure;
  // `failure` is not looked at: a folder that cannot be asked about is no package.
  const Path ofPackage = packageFolder(name);
  return std::ranges::any_of(folders_,
                             [&](const Path& folder) {
                               return std::filesystem::is_directory(folder / ofPackage, failure);
                             }) ||
         std::ranges::any_of(special_, [&](const PathItemDescription& item) {
           const Path folder = packageIn(item, name);
           return !folder.empty() &&
                  (folder == item.folder || std::filesystem::is_directory(folder, failure));
         });
}

std::vector<CodeFiles::Path> CodeFiles::foldersOfClass(const std::string& className) const {
  const std::string folderName = "@" + className;
  std::vector<Path> result;
  for (const Path& folder : folders_) result.push_back(folder / folderName);
  for (const PathItemDescription& item : special_)
    if (item.kind == PathItemDescription::Class && Path(item.folder).filename() == folderName)
      result.emplace_back(item.folder);
  return result;
}

const Routine* CodeFiles::method(const std::string& className, const std::string& name) {
  for (const Path& folder : foldersOfClass(className))
    if (const Routine* found = read(folder / (name + ".k"), "")) return found;
  return nullptr;
}

std::vector<std::string> CodeFiles::methodNames(const std::string& className) const {
  // In order and each once: a directory has its files in any order, and several folders may hold the same
  // name.
  std::set<std::string> names;
  for (const Path& folder : foldersOfClass(className)) {
    std::error_code failure;
    std::filesystem::directory_iterator entry(folder, failure);
    for (; !failure && entry != std::filesystem::directory_iterator(); entry.increment(failure))
      if (entry->path().extension() == ".k") names.insert(entry->path().stem().string());
  }
  return {names.begin(), names.end()};
}

std::u16string CodeFiles::textInFile(const Path& file) const {
  std::error_code failure;
  const std::uintmax_t size = std::filesystem::file_size(file, failure);
  std::ifstream stream(file, std::ios::binary);
  // The size is checked first, because the file is read whole.
  if (failure || !stream || size > longestFile)
    interpreter_.fail("KORVAL:code:UnreadableFile", "The file " + file.string() + " cannot be read");
  return widened(std::string(std::istreambuf_iterator<char>(stream), {}));
}

const Routine* CodeFiles::read(const Path& file, const std::string& inNamespace) {
  std::error_code failure;
  const auto written = std::filesystem::last_write_time(file, failure);
  // Asked about each time: a file that has been changed is read again.
  if (failure) return nullptr;
  // Reading a pipe would wait for somebody who writes.
  if (!std::filesystem::is_regular_file(file, failure))
    interpreter_.fail("KORVAL:code:UnreadableFile", file.string() + " is no file that can be read");
  File& known = files_[file.string()];
  if (known.routine != nullptr && known.written == written) return known.routine.get();
  Routine::Context context{.name = file.string(), .inNamespace = inNamespace, .isFile = true};
  auto routine = std::make_unique<const Routine>(std::move(context), textInFile(file));
  // Kept, because it may be running.
  if (known.routine != nullptr) replaced_.push_back(std::move(known.routine));
  known = {written, std::move(routine)};
  return known.routine.get();
}

}  // namespace embedded
