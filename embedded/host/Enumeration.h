#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "embedded/host/Gate.h"
#include "host/Enumeration.h"

namespace embedded {

/// A pass over a list of its own.
template <class T>
class ListEnumerator final : public kcos::COSEnumerator<T> {
 public:
  explicit ListEnumerator(std::vector<T> elements) : elements_(std::move(elements)) {}

  bool hasMoreElements() override {
    return asked<Operation::hasMoreElements>().answer([this] { return next_ < elements_.size(); });
  }

  T nextElement() override {
    return asked<Operation::nextElement>().answer([this] {
      if (next_ == elements_.size()) throw kcos::ENoElements();
      return elements_[next_++];
    });
  }

 private:
  std::vector<T> elements_;
  std::size_t next_ = 0;
};

template <class T>
kcos::COSEnumeration<T> enumerate(std::vector<T> elements) {
  return kcos::COSEnumeration<T>(std::make_unique<ListEnumerator<T>>(std::move(elements)));
}

}  // namespace embedded
