#include <contextdata/KCOSContextData/Namespaces.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

using Names = std::vector<std::u16string>;

Question listing(const std::string& operation, bool (*list)(const std::u16string&, Names&)) {
  return {"KCOSContextData::" + operation,
          "",
          [list](Answer& a) { a.result = shown(list(u"ws", a.names)); },
          {{"*", passes}},
          "fl::i18n::to_ustring(codecvt_ascii_to_ustring)"};
}

}  // namespace

std::vector<Question> namespaceQuestions() {
  using namespace KCOSContextData;
  return {listing("getNamespaceFunctionNames", getNamespaceFunctionNames),
          listing("getNamespaceClassNames", getNamespaceClassNames),
          listing("getNamespaceNamespaceNames", getNamespaceNamespaceNames),
          {"KCOSContextData::getKCOSAllNamespaces",
           "",
           [](Answer& a) { a.result = getKCOSAllNamespaces() ? "a value" : "nothing"; },
           {{"*", passes}}}};
}

}  // namespace faults
