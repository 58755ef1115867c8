#include "tools/render/Exceptions.h"

#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <boost/core/demangle.hpp>
#include <exception>
#include <string>
#include <typeinfo>

#include "host/Exceptions.h"

namespace tools {

namespace {

template <class Exception>
std::string typeOf(const Exception& exception) {
  return boost::core::demangle(typeid(exception).name());
}

}  // namespace

Json describeCurrentException() {
  try {
    throw;
  } catch (const KCOSContextData::ResolvedClassID::BadClassNameException& exception) {
    return {{"type", typeOf(exception)}, {"className", jsonOf(exception.className)}};
  } catch (const foundation::core::except::Exception& exception) {
    return {{"type", typeOf(exception)},
            {"messageId", jsonOf(exception.messageId())},
            {"message", jsonOf(exception.message())}};
  } catch (const foundation::core::except::IException& exception) {
    return {{"type", typeOf(exception)}};
  } catch (const std::exception& exception) {
    return {{"type", typeOf(exception)}, {"what", jsonOf(std::string(exception.what()))}};
  } catch (...) {
    return {{"type", "unknown"}};
  }
}

}  // namespace tools
