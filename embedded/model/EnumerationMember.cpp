#include "embedded/model/EnumerationMember.h"

#include "embedded/host/Gate.h"

namespace embedded {

const char* EnumerationMember::getName() const {
  enter<Operation::enumGetName>(name_.text());
  return name_.text();
}

bool EnumerationMember::isHidden() const {
  enter<Operation::enumIsHidden>(name_.text());
  return hidden_;
}

}  // namespace embedded

kcos::COSEnumInfo::~COSEnumInfo() = default;
