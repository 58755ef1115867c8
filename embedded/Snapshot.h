#pragma once

// Snapshots: descriptions in files, and why a file or a description is none.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "embedded/Description.h"
#include "host/Export.h"

namespace embedded {

/// A description or a snapshot that is no host. `code` is stable and for programs ("snapshot.duplicate-key",
/// "snapshot.unknown-class", ...; docs/snapshot.md lists them), `pointer` is the JSON pointer of the culprit
/// in the snapshot (the same path leads to it in a Description), and the file is empty for a Description.
class KORVAL_HOST_API SnapshotError : public std::runtime_error {
 public:
  SnapshotError(std::string code, std::string file, std::string pointer, std::string reason);
  ~SnapshotError() override;

  const std::string& code() const noexcept { return code_; }
  const std::string& file() const noexcept { return file_; }
  const std::string& pointer() const noexcept { return pointer_; }
  const std::string& reason() const noexcept { return reason_; }

 private:
  std::string code_;
  std::string file_;
  std::string pointer_;
  std::string reason_;
};

/// Told now and then how many bytes of a snapshot have been read, of how many.
using LoadProgress = std::function<void(std::uintmax_t read, std::uintmax_t total)>;

/// Reads a snapshot; throws SnapshotError.
KORVAL_HOST_API Description readSnapshot(const std::filesystem::path& file,
                                         const LoadProgress& progress = {});

/// The same from text; `name` stands for the file in errors.
KORVAL_HOST_API Description readSnapshotText(std::string_view text, const std::string& name);

/// Writes a snapshot that reads as this description, whose folders become relative to the file. The same description
/// makes the same bytes, and one that was read from what was written here makes them again. The file is replaced as a
/// whole: until the new one stands complete beside it, it is left alone, also when this throws. Throws SnapshotError for a
/// file that cannot be written ("snapshot.unwritable"), for a description that Host would refuse, unless only a session
/// can tell (its scopes may be code files), and for text that JSON does not carry; for a fault of a variable the reason names it.
KORVAL_HOST_API void writeSnapshot(const Description& description, const std::filesystem::path& file);

/// The same as text, with folders as they are.
KORVAL_HOST_API std::string snapshotText(const Description& description);

// Reading is in snapshot/Snapshot.cpp, writing in snapshot/Save.cpp.

}  // namespace embedded
