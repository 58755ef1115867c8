#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <utility>

namespace KCOSContextData {

using Exception = ResolvedClassID::BadClassNameException;

Exception::BadClassNameException(std::string name) : className(std::move(name)) {}

Exception::~BadClassNameException() noexcept = default;

std::unique_ptr<foundation::core::except::IException> Exception::clone() const {
  return std::make_unique<Exception>(*this);
}

void Exception::rethrow() const { throw Exception(*this); }

}  // namespace KCOSContextData
