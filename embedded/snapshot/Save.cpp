#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
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
  std::string text = write(writer, description).dump(indent) + "\n";
  // A long one may take more memory than a reader grants; below, none does. Nothing but reading tells.
  constexpr std::size_t longText = 500'000;
  if (text.size() > longText) readSnapshotText(text, name);
  return text;
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

/// A descriptor of a file, closed with this.
class OpenFile {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  ~OpenFile() { close(); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  int get() const { return descriptor_; }
  bool isOpen() const { return descriptor_ >= 0; }
  void reset(int descriptor) {
    close();
    descriptor_ = descriptor;
  }

 private:
  void close() const {
    if (isOpen()) ::close(descriptor_);
  }

  int descriptor_;
};

/// Is it what another save of that file has made beside it: "file.123.new"?
bool isBeside(const std::string& name, const std::string& file) {
  constexpr std::string_view end = ".new";
  if (!name.starts_with(file + ".") || !name.ends_with(end) || name.size() <= file.size() + 1 + end.size())
    return false;
  const auto number =
      std::string_view(name).substr(file.size() + 1, name.size() - file.size() - 1 - end.size());
  return std::ranges::all_of(number, [](char digit) { return digit >= '0' && digit <= '9'; });
}

/// Whoever saves holds a lock on the file that he makes. What nobody holds is left from a save that was killed.
void removeLeftovers(const fs::path& target) {
  std::error_code failure;  // not looked at: the save that follows does not depend on it
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  fs::directory_iterator entry(folder, failure);
  for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
    if (!isBeside(entry->path().filename().string(), target.filename().string())) continue;
    const OpenFile left(open(entry->path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!left.isOpen() || fstat(left.get(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
    if (status.st_uid == geteuid() && flock(left.get(), LOCK_EX | LOCK_NB) == 0)
      unlink(entry->path().c_str());
  }
}

/// A file beside the one that is to be replaced; it is gone with this, unless it has taken its place.
class FileBeside {
 public:
  explicit FileBeside(const fs::path& named)
      : named_(named),
        target_(targetOf(named)),
        beside_(target_.string() + "." + std::to_string(getpid()) + ".new") {
    removeLeftovers(target_);
    struct stat before = {};
    const bool isNew = stat(target_.c_str(), &before) != 0;
    // Nobody else may read it before it has the owner and the mode of the file whose content it takes over.
    make(isNew ? S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH : S_IRUSR | S_IWUSR);
    if (!isNew) resemble(before);
  }
  ~FileBeside() {
    std::error_code ignored;
    // When even this fails, the error that led here is the one to be told.
    if (!moved_ && file_.isOpen()) fs::remove(beside_, ignored);
  }
  FileBeside(const FileBeside&) = delete;
  FileBeside& operator=(const FileBeside&) = delete;

  void write(const std::string& text) const {
    for (std::size_t done = 0; done < text.size();) {
      const ssize_t count = ::write(file_.get(), text.data() + done, text.size() - done);
      if (count < 0 && errno != EINTR) failNow("cannot be written");
      done += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    // On the disk before it takes the old one's place, so that after a crash one of the two is whole.
    if (fsync(file_.get()) != 0) failNow("cannot be written");
  }

  void replace() {
    std::error_code failure;
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

  void make(mode_t mode) {
    // Made anew when somebody took it for a leftover before it was locked.
    for (struct stat made = {}; made.st_nlink == 0;) {
      // Exclusive, because a file that has this name still is being written.
      file_.reset(open(beside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
      if (!file_.isOpen() || flock(file_.get(), LOCK_EX) != 0 || fstat(file_.get(), &made) != 0)
        failNow("cannot make a file beside it");
    }
  }

  /// Takes over owner, group and mode. Who may not give a file away keeps it, and what its group may not know.
  void resemble(const struct stat& before) const {
    constexpr mode_t everything = S_IRWXU | S_IRWXG | S_IRWXO;
    mode_t mode = before.st_mode & everything;
    constexpr auto sameUser = static_cast<uid_t>(-1);
    const bool sameGroup = fchown(file_.get(), before.st_uid, before.st_gid) == 0 ||
                           fchown(file_.get(), sameUser, before.st_gid) == 0;
    if (!sameGroup) mode &= ~static_cast<mode_t>(S_IRWXG);
    if (fchmod(file_.get(), mode) != 0) failNow("cannot be given the mode of the old file");
  }

  [[noreturn]] void failNow(const std::string& what) const {
    failToWrite(named_, what + ": " + std::generic_category().message(errno));
  }

  fs::path named_;
  fs::path target_;
  fs::path beside_;
  OpenFile file_{-1};
  bool moved_ = false;
};

void requireReplaceable(const fs::path& file) {
  std::error_code unknown;
  const fs::file_status status = fs::status(file, unknown);
  const auto kind = status.type();
  if (kind == fs::file_type::directory)
    throw SnapshotError("snapshot.directory", file.string(), "", "this is a directory, not a file");
  // A device or a pipe would be replaced by a file.
  if (kind != fs::file_type::regular && kind != fs::file_type::not_found)
    failToWrite(file, "this is no file that can be replaced");
  // Replacing it would go round what its owner has said. Asked of the mode too: some users may write to everything.
  constexpr fs::perms writable = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  const bool isReadOnly =
      (status.permissions() & writable) == fs::perms::none || access(file.c_str(), W_OK) != 0;
  if (kind == fs::file_type::regular && isReadOnly) failToWrite(file, "the file is read-only");
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
