#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/Description.h"
#include "embedded/model/Routine.h"

namespace embedded {

class Interpreter;

/// The ".k" files of the current folder and of the search path. A file is read anew when it has changed.
class CodeFiles {
 public:
  CodeFiles(const Description& description, const Interpreter& interpreter);

  /// "name.k" of a folder, or for "package.name" that of a package folder "+package"; null when there is
  /// none.
  const Routine* function(const std::string& dottedName);
  /// Is there a package folder "+name"?
  bool isPackage(const std::string& name) const;
  /// "@className/name.k", or null.
  const Routine* method(const std::string& className, const std::string& name);
  /// Of all methods of the class, in ascending order.
  std::vector<std::string> methodNames(const std::string& className) const;

 private:
  using Path = std::filesystem::path;
  struct File {
    std::filesystem::file_time_type written;
    std::unique_ptr<const Routine> routine;
  };

  /// Where "@className" may be.
  std::vector<Path> foldersOfClass(const std::string& className) const;
  const Routine* read(const Path& file, const std::string& inNamespace);

  std::u16string textInFile(const Path& file) const;

  const Interpreter& interpreter_;
  std::vector<Path> folders_;  // in which functions are looked for
  std::vector<PathItemDescription> special_;
  std::unordered_map<std::string, File> files_;
  std::vector<std::unique_ptr<const Routine>> replaced_;  // which may be running
};

}  // namespace embedded
