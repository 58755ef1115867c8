#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

/// A new folder of its own, gone with everything in it at the end.
class TempFolder {
 public:
  TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tested-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~TempFolder() { std::filesystem::remove_all(path_); }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }
  const std::filesystem::path& path() const { return path_; }

  std::filesystem::path write(const std::filesystem::path& name, const std::string& text) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << text;
    return path_ / name;
  }

 private:
  std::filesystem::path path_;
};
