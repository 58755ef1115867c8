#include "frontend/Namespaces.h"

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

/// What the session knows directly inside the namespace, by the last parts of the names.
std::vector<SessionName> namesBelow(const std::vector<SessionName>& known, const std::u16string& name) {
  std::vector<SessionName> names;
  for (const SessionName& whole : known) {
    const std::size_t dot = whole.name.rfind(u'.');
    const bool isInside = dot == name.size() && whole.name.starts_with(name);
    if (isInside) names.push_back({whole.name.substr(dot + 1), whole.hidden});
  }
  return names;
}

/// The library lists what is not hidden; these are hidden, or in folders of the path.
void offerKnown(const std::vector<SessionName>& known, const std::u16string& name, Kind kind,
                CandidateList& candidates) {
  for (const SessionName& inside : namesBelow(known, name)) {
    candidates.add({.label = inside.name, .insertion = {}, .kind = kind, .isHidden = inside.hidden});
  }
}

}  // namespace

bool isExcludedNamespace(const std::u16string& name) {
  static const auto whole = getVX2NamespacesExcludeSet();
  static const auto belowTop = getVX2KorvalNamespacesExcludeSet();
  static const std::u16string top = u"korval.";
  return whole.contains(name) || (name.starts_with(top) && belowTop.contains(name.substr(top.size())));
}

bool isFolderNamespace(RequestContext& request, const std::u16string& name) {
  return std::ranges::any_of(namesBelow(request.session().functionNames(), name),
                             [](const SessionName& function) { return !function.hidden; });
}

void offerNamespace(RequestContext& request, const std::u16string& name, CandidateList& candidates) {
  offerKnown(request.session().functionNames(), name, Kind::Function, candidates);
  offerKnown(request.session().classNames(), name, Kind::Class, candidates);
  Names functions;
  getNamespaceFunctionNames(name, functions);
  candidates.addNames(functions, Kind::Function);
  Names classes;
  getNamespaceClassNames(name, classes);
  candidates.addNames(classes, Kind::Class);
  Names inner;
  getNamespaceNamespaceNames(name, inner);
  for (const std::u16string& whole : inner) {
    const std::u16string last = lastPart(whole);
    if (!isExcludedNamespace(name + u"." + last)) candidates.addNames({last}, Kind::Namespace);
  }
}

void offerPackage(RequestContext& request, const std::u16string& name, CandidateList& candidates) {
  Names names;
  if (request.mayUse(CodePolicy::Allowed, u"what the package " + name + u" says of itself")) {
    PKXContextData::getPackageStrings(name, names);
  } else {
    for (const char* kind : {".k", ".kex", "classes"}) getWhatList(u"@" + name, names, kind);
  }
  for (std::u16string& found : names) found.resize(std::min(found.size(), found.find(u'.')));
  candidates.addNames(names, Kind::Function);
}

}  // namespace frontend
