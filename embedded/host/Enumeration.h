#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "embedded/host/Gate.h"
#include "host/Enumeration.h"

namespace embedded {

/// A pass over elements that a function makes of their indices, from 0: nothing is copied that lives with the host anyway.
template <class T, class At>
class Enumerator final : public kcos::COSEnumerator<T> {
 public:
  Enumerator(std::size_t count, At at) : count_(count), at_(std::move(at)) {}

  bool hasMoreElements() override {
    return asked<Operation::hasMoreElements>().answer([this] { return next_ < count_; });
  }

  T nextElement() override {
    return asked<Operation::nextElement>().answer([this]() -> T {
      if (next_ == count_) throw kcos::ENoElements();
      return at_(next_++);
    });
  }

 private:
  std::size_t count_;
  At at_;
  std::size_t next_ = 0;
};

template <class T, class At>
kcos::COSEnumeration<T> enumerate(std::size_t count, At at) {
  return kcos::COSEnumeration<T>(std::make_unique<Enumerator<T, At>>(count, std::move(at)));
}

/// Of a list that outlives the pass.
template <class T>
kcos::COSEnumeration<T> enumerate(const std::vector<T>& elements) {
  return enumerate<T>(elements.size(), [&elements](std::size_t at) { return elements[at]; });
}
template <class T>
kcos::COSEnumeration<T> enumerate(std::vector<T>&& elements) {
  const std::size_t count = elements.size();
  return enumerate<T>(count, [all = std::move(elements)](std::size_t at) { return all[at]; });
}

}  // namespace embedded
