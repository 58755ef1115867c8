#include "tests/support/World.h"

#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

std::string World::asked(const std::function<void()>& ask) {
  host.startLog();
  ask();
  std::string all;
  for (const embedded::Call& call : host.takeLog()) {
    const std::size_t scope = call.operation.rfind("::");
    all += (all.empty() ? "" : " ") + call.operation.substr(scope == std::string::npos ? 0 : scope + 2);
  }
  return all;
}

std::string sourceFile(const std::string& path) {
  const char* source = std::getenv("CONTEXTDATA_SOURCE");
  return std::string(source != nullptr ? source : ".") + "/" + path;
}

std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

embedded::Description worldFile(const std::string& path) { return embedded::readSnapshot(sourceFile(path)); }

std::string textOf(const kcos::COSInternedName& id) { return id.isNull() ? "null" : id.text(); }

std::string thrownBy(const std::function<void()>& ask) {
  try {
    ask();
    return "";
  } catch (const KCOSContextData::ResolvedClassID::BadClassNameException& caught) {
    return "bad class name: " + caught.className;
  } catch (const foundation::core::except::Exception& caught) {
    return caught.messageId();
  } catch (const std::logic_error& caught) {
    return std::string("logic error: ") + caught.what();
  } catch (...) {
    return "something else";
  }
}
