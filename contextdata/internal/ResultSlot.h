#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "host/Arrays.h"

/// The slot for one result of a call. It owns what the call leaves in it, also when the call fails after
/// that.
class ResultSlot {
 public:
  ResultSlot() = default;
  ~ResultSlot() { take(); }
  ResultSlot(const ResultSlot&) = delete;
  ResultSlot& operator=(const ResultSlot&) = delete;

  kxArray_tag** address() noexcept { return &value_; }
  kxArray_tag* get() const noexcept { return value_; }

  /// The value with its reference; the slot is empty afterwards.
  boost::intrusive_ptr<kxArray_tag> take() noexcept {
    boost::intrusive_ptr<kxArray_tag> taken(value_, false);
    value_ = nullptr;
    return taken;
  }

 private:
  kxArray_tag* value_ = nullptr;
};
