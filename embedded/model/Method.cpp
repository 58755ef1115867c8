#include "embedded/model/Method.h"

#include "embedded/host/Gate.h"

namespace embedded {

const char* Method::getName() const {
  enter<Operation::methodGetName>(content_.name.text());
  return content_.name.text();
}

bool Method::isStatic() const {
  enter<Operation::methodIsStatic>(content_.name.text());
  return content_.isStatic;
}

bool Method::isVisible() const {
  enter<Operation::methodIsVisible>(content_.name.text());
  return content_.visible;
}

bool Method::isHidden() const {
  enter<Operation::methodIsHidden>(content_.name.text());
  return content_.hidden;
}

kcos::MemberAccess Method::getMemberAccess() const {
  enter<Operation::getMemberAccess>(content_.name.text());
  return content_.access.level;
}

kcos::COSExtendedAccess Method::getExtendedAccess() const {
  enter<Operation::getExtendedAccess>(content_.name.text());
  return content_.access;
}

}  // namespace embedded

namespace kcos {

COSMethodBase::~COSMethodBase() = default;
COSMethodInfo::~COSMethodInfo() = default;

}  // namespace kcos
