#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "host/Names.h"

namespace embedded {

/// The members of one class by name; those of one name in their own order. Members without a name are not found.
template <class Member>
class NameIndex {
 public:
  NameIndex() = default;
  explicit NameIndex(const std::vector<std::unique_ptr<Member>>& members) {
    for (const auto& member : members)
      if (!member->name().isNull()) members_.push_back(member.get());
    std::ranges::stable_sort(members_, std::less(), handle);
  }

  std::span<Member* const> find(kcos::COSInternedName name) const {
    const auto first = std::ranges::lower_bound(members_, &name.text(), std::less(), handle);
    return {first, std::ranges::upper_bound(first, members_.end(), &name.text(), std::less(), handle)};
  }

 private:
  // Equal names are one handle, so that its address orders as well as the text and costs less.
  static const std::string* handle(const Member* member) { return &member->name().text(); }

  std::vector<Member*> members_;
};

}  // namespace embedded
