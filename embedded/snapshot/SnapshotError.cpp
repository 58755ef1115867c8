#include "embedded/Host.h"

namespace embedded {

namespace {

std::string message(const std::string& code, const std::string& file, const std::string& pointer,
                    const std::string& reason) {
  const std::string start = file.empty() ? "" : file + ": ";
  const std::string place = pointer.empty() ? "" : " at " + pointer;
  return start + reason + " [" + code + place + "]";
}

}  // namespace

SnapshotError::SnapshotError(std::string code, std::string file, std::string pointer, std::string reason)
    : std::runtime_error(message(code, file, pointer, reason)),
      code_(std::move(code)),
      file_(std::move(file)),
      pointer_(std::move(pointer)),
      reason_(std::move(reason)) {}

SnapshotError::~SnapshotError() = default;

}  // namespace embedded
