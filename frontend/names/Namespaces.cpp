#include "frontend/names/Namespaces.h"

#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/Workspace/SearchPath.h>

#include <algorithm>
#include <vector>

namespace frontend {

using namespace KCOSContextData;

namespace {

using Names = std::vector<std::u16string>;

std::u16string lastPart(const std::u16string& name) { return name.substr(name.rfind(u'.') + 1); }

/// Functions that only the session knows, from folders of the path.
Names functionsBelow(Inquiry& inquiry, const std::u16string& name) {
  Names names;
  for (const SessionName& function : inquiry.session().functionNames()) {
    const std::size_t dot = function.name.rfind(u'.');
    const bool isInside = dot == name.size() && function.name.starts_with(name);
    if (isInside && !function.hidden) names.push_back(function.name.substr(dot + 1));
  }
  return names;
}

}  // namespace

bool isExcludedNamespace(const std::u16string& name) {
  static const auto whole = getVX2NamespacesExcludeSet();
  static const auto belowTop = getVX2KorvalNamespacesExcludeSet();
  static const std::u16string top = u"korval.";
  return whole.contains(name) || (name.starts_with(top) && belowTop.contains(name.substr(top.size())));
}

bool isFolderNamespace(Inquiry& inquiry, const std::u16string& name) {
  return !functionsBelow(inquiry, name).empty();
}

void offerNamespace(Inquiry& inquiry, const std::u16string& name, Gathering& gathering) {
  gathering.addNames(functionsBelow(inquiry, name), Kind::Function);
  Names functions;
  getNamespaceFunctionNames(name, functions);
  gathering.addNames(functions, Kind::Function);
  Names classes;
  getNamespaceClassNames(name, classes);
  gathering.addNames(classes, Kind::Class);
  Names inner;
  getNamespaceNamespaceNames(name, inner);
  for (const std::u16string& whole : inner) {
    const std::u16string last = lastPart(whole);
    if (!isExcludedNamespace(name + u"." + last)) gathering.addNames({last}, Kind::Namespace);
  }
}

void offerPackage(Inquiry& inquiry, const std::u16string& name, Gathering& gathering) {
  Names names;
  if (inquiry.mayUse(CodePolicy::Allowed, u"what the package " + name + u" says of itself")) {
    PKXContextData::getPackageStrings(name, names);
  } else {
    for (const char* kind : {".k", ".kex", "classes"}) getWhatList(u"@" + name, names, kind);
  }
  for (std::u16string& found : names) found.resize(std::min(found.size(), found.find(u'.')));
  gathering.addNames(names, Kind::Function);
}

}  // namespace frontend
