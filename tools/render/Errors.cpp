#include "tools/render/Errors.h"

#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <boost/core/demangle.hpp>
#include <exception>
#include <nlohmann/json.hpp>
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

Json jsonOfCurrentException() {
  try {
    throw;
  } catch (const KCOSContextData::ResolvedClassID::BadClassNameException& exception) {
    return {{"type", typeOf(exception)}, {"className", jsonOf(exception.className)}};
    // More derived types come before their bases.
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

// Not its message alone: exceptions of hosts need not have one.
std::string describeCurrentException() { return lineOf(jsonOfCurrentException()); }

std::string describe(const embedded::SnapshotError& error) {
  std::string text = error.file() + ": ";
  if (!error.pointer().empty()) text += error.pointer() + ": ";
  return text + error.reason() + " [" + error.code() + "]";
}

Json jsonOf(const embedded::SnapshotError& error) {
  return {{"code", error.code()},
          {"file", jsonOf(error.file())},
          {"pointer", jsonOf(error.pointer())},
          {"message", jsonOf(error.reason())}};
}

}  // namespace tools
