#pragma once

#include "host/DataTypes.h"

namespace embedded {

/// A data type, which is its name. There is one for each name in a session.
class DataType final : public kcos::COSDataType {
 public:
  explicit DataType(kcos::COSInternedName id) : id_(id) {}
  kcos::COSInternedName id() const noexcept { return id_; }

 private:
  kcos::COSInternedName id_;
};

}  // namespace embedded
