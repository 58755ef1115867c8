#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "embedded/Snapshot.h"
#include "embedded/snapshot/Checks.h"
#include "embedded/snapshot/Shape.h"

namespace embedded {

namespace {

namespace fs = std::filesystem;

std::string jsonTextOf(const Description& description, const std::string& name) {
  // Nothing is written that could not be read again.
  checkDescription(description, name);
  snapshot::Writer writer(name);
  constexpr int indent = 2;
  return write(writer, description).dump(indent) + "\n";
}

/// What readSnapshot() undoes.
Description withFoldersFrom(Description description, const fs::path& file) {
  const fs::path folder = fs::absolute(file).parent_path().lexically_normal();
  const auto place = [&](std::string& path) {
    path = fs::absolute(path).lexically_normal().lexically_relative(folder).string();
  };
  for (auto& item : description.path) place(item.folder);
  if (!description.currentFolder.empty()) place(description.currentFolder);
  return description;
}

[[noreturn]] void failToWrite(const fs::path& file, const std::string& reason) {
  throw SnapshotError("snapshot.unwritable", file.string(), "", reason);
}

/// A file beside the one that is to be replaced; it is gone with this, unless it has taken its place.
class FileBeside {
 public:
  explicit FileBeside(const fs::path& named)
      : named_(named),
        target_(targetOf(named)),
        beside_(target_.string() + "." + std::to_string(getpid()) + ".new"),
        // With "x", because a file that has this name already is somebody else's.
        file_(std::fopen(beside_.c_str(), "wbx"), std::fclose) {
    if (!file_) failNow("cannot make a file beside it");
  }
  ~FileBeside() {
    std::error_code ignored;
    // When even this fails, the error that led here is the one to be told.
    if (!moved_ && file_) fs::remove(beside_, ignored);
  }
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;

  void write(const std::string& text) const {
    // On the disk before it takes the old one's place, so that after a crash one of the two is whole.
    const bool written = std::fwrite(text.data(), 1, text.size(), file_.get()) == text.size() &&
                         std::fflush(file_.get()) == 0 && fsync(fileno(file_.get())) == 0;
    if (!written) failNow("cannot be written");
  }

  void replace() {
    std::error_code failure;
    const auto before = fs::status(target_, failure);
    // A failure of this is not looked at: what is saved matters more than its permissions.
    if (fs::exists(before)) fs::permissions(beside_, before.permissions(), failure);
    fs::rename(beside_, target_, failure);
    if (failure) failToWrite(named_, "cannot be replaced: " + failure.message());
    moved_ = true;
  }

 private:
  /// A link stays, and what it leads to is replaced.
  static fs::path targetOf(const fs::path& named) {
    std::error_code failure;
    if (!fs::is_symlink(named, failure)) return named;
    const fs::path target = fs::canonical(named, failure);
    if (failure) failToWrite(named, "the link leads nowhere: " + failure.message());
    return target;
  }

  [[noreturn]] void failNow(const std::string& what) const {
    failToWrite(named_, what + ": " + std::generic_category().message(errno));
  }

  fs::path named_;
  fs::path target_;
  fs::path beside_;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
  bool moved_ = false;
};

void requireReplaceable(const fs::path& file) {
  std::error_code unknown;
  const auto kind = fs::status(file, unknown).type();
  if (kind == fs::file_type::directory)
    throw SnapshotError("snapshot.directory", file.string(), "", "this is a directory, not a file");
  // A device or a pipe would be replaced by a file.
  if (kind != fs::file_type::regular && kind != fs::file_type::not_found)
    failToWrite(file, "this is no file that can be replaced");
  if (!file.has_filename()) failToWrite(file, "this names no file");
}

}  // namespace

void writeSnapshot(const Description& description, const std::filesystem::path& file) {
  requireReplaceable(file);
  // All that can be wrong with a session is found before a file is made.
  const std::string text = jsonTextOf(withFoldersFrom(description, file), file.string());
  FileBeside beside(file);
  beside.write(text);
  beside.replace();
}

std::string snapshotText(const Description& description) { return jsonTextOf(description, ""); }

}  // namespace embedded
