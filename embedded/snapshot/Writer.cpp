#include "embedded/snapshot/Writer.h"

#include "embedded/Snapshot.h"

namespace embedded::snapshot {

void Writer::begin() const {
  if (depth_ >= deepestLevel)
    fail("snapshot.too-deep", "nested deeper than " + std::to_string(deepestLevel) + " levels");
}

void Writer::fail(const std::string& code, const std::string& reason) const {
  throw SnapshotError(code, file_, place_->pointer(), reason);
}

void append(Json& object, std::string key, Json value) {
  Json::object_t::Container& entries = object.get_ref<Json::object_t&>();  // which would look for the key
  entries.emplace_back(std::move(key), std::move(value));
}

}  // namespace embedded::snapshot
