#include "frontend/NameOffers.h"

#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/Workspace/SearchPath.h>

#include <algorithm>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "frontend/CandidateDetails.h"
#include "frontend/Resolution.h"
#include "syntax/Keywords.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

using Names = std::vector<std::u16string>;

bool isDotted(const std::u16string& name) { return name.find(u'.') != std::u16string::npos; }

void offerVariables(RequestContext& request, CandidateList& candidates) {
  std::size_t order = 0;
  for (const LocalName& local : request.scope().locals) {
    candidates.add({.label = local.name, .insertion = {}, .kind = Kind::Variable, .order = order++},
                   [type = local.className](Candidate& candidate) { candidate.type = type; });
  }
  if (!request.scope().workspace) return;
  const Names names = request.session().variableNames();
  for (const std::u16string& name : names) {
    candidates.add({.label = name, .insertion = {}, .kind = Kind::Variable, .order = order++},
                   [&request](Candidate& candidate) {
                     // Asked for again rather than kept, so that a list of names holds no values.
                     const auto value = request.session().variable(candidate.label);
                     if (value) describeValue(request, value.get(), candidate);
                   });
  }
}

/// Those without a namespace.
void offerPlain(const std::vector<SessionName>& names, Kind kind, CandidateList& candidates) {
  for (const SessionName& known : names) {
    if (isDotted(known.name)) continue;
    candidates.add({.label = known.name, .insertion = {}, .kind = kind, .isHidden = known.hidden});
  }
}

/// Also the classes that imports make known under their last part.
void offerClasses(RequestContext& request, CandidateList& candidates) {
  const std::vector<SessionName> names = request.session().classNames();
  offerPlain(names, Kind::Class, candidates);
  if (request.scope().function.empty()) return;
  for (const SessionName& known : names) {
    request.check();
    const std::u16string last = KCOSIntrospection::getConstructorName(known.name);
    // Resolving asks the host, so only what fits is resolved.
    if (!isDotted(known.name) || matchOf(candidates.typed(), last) == Match::None) continue;
    const auto meant = classNamed(request, last);
    // The short name may be known here as another class.
    if (!meant || meant->getNonComponentQualifiedName() != known.name) continue;
    candidates.add({.label = last, .insertion = {}, .kind = Kind::Class, .isHidden = known.hidden},
                   [whole = known.name](Candidate& candidate) { candidate.type = whole; });
  }
}

/// Those that the session documents, and the interpreter's own.
Names builtinFunctions(RequestContext& request) {
  const auto documented = getBuiltinFunctionNames();
  Names names(documented.begin(), documented.end());
  const Names own = request.session().builtinNames();
  names.insert(names.end(), own.begin(), own.end());
  return names;
}

/// All that can be called by a dotted name and is not hidden. Namespaces that hold nothing else are known by these alone.
Names dottedFunctions(RequestContext& request) {
  Names names = builtinFunctions(request);
  for (SessionName& function : request.session().functionNames())
    if (!function.hidden) names.push_back(std::move(function.name));
  std::erase_if(names, [](const std::u16string& name) { return !isDotted(name); });
  return names;
}

/// The outermost ones: what is inside them comes after a dot.
void offerNamespaces(RequestContext& request, CandidateList& candidates) {
  // A set, because most names share their first part with others.
  std::set<std::u16string> outermost;
  for (const SessionName& known : request.session().namespaceNames()) {
    const std::u16string first = known.name.substr(0, known.name.find(u'.'));
    if (!known.hidden && !isExcludedNamespace(first)) outermost.insert(first);
  }
  for (const std::u16string& function : dottedFunctions(request))
    outermost.insert(function.substr(0, function.find(u'.')));
  for (const std::u16string& name : outermost) {
    candidates.add({.label = name, .insertion = {}, .kind = Kind::Namespace});
  }
  offerPlain(request.session().packageNames(), Kind::Package, candidates);
}

Names folderEntries(const std::string& kind) {
  Names names;
  getWhatList(u"", names, kind);
  return names;
}

/// Of the current folder.
void offerFiles(CandidateList& candidates) {
  for (const std::string& kind : {std::string(".k"), std::string(".kex")}) {
    for (std::u16string& name : folderEntries(kind)) {
      name.resize(name.rfind(u'.'));
      if (!name.empty()) candidates.add({.label = std::move(name), .insertion = {}, .kind = Kind::CodeFile});
    }
  }
  candidates.addNames(folderEntries("classes"), Kind::ClassFolder);
}

void offerBuiltins(RequestContext& request, CandidateList& candidates) {
  Names names = builtinFunctions(request);
  std::erase_if(names, isDotted);
  candidates.addNames(names, Kind::BuiltinFunction);
}

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

void offerFunctions(RequestContext& request, CandidateList& candidates) {
  offerPlain(request.session().functionNames(), Kind::Function, candidates);
  offerFiles(candidates);
  offerClasses(request, candidates);
  offerNamespaces(request, candidates);
  offerBuiltins(request, candidates);
}

void offerNames(RequestContext& request, CandidateList& candidates) {
  offerVariables(request, candidates);
  offerFunctions(request, candidates);
}

void offerKeywords(CandidateList& candidates) {
  for (const auto& [spelling, keyword] : syntax::keywords)
    candidates.addNames({std::u16string(spelling)}, Kind::Keyword);
}

bool isExcludedNamespace(const std::u16string& name) {
  // Kept, because the tables hand out copies and this is asked once per name.
  static const auto whole = getVX2NamespacesExcludeSet();
  static const auto belowTop = getVX2KorvalNamespacesExcludeSet();
  static const std::u16string top = u"korval.";
  return whole.contains(name) || (name.starts_with(top) && belowTop.contains(name.substr(top.size())));
}

bool holdsFunctions(RequestContext& request, const std::u16string& name) {
  return std::ranges::any_of(dottedFunctions(request), [&](const std::u16string& function) {
    return function.starts_with(name + u".");
  });
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
  // Hosts may tell inner namespaces by their whole names.
  for (std::u16string& whole : inner) whole = lastPart(whole);
  for (const std::u16string& function : dottedFunctions(request)) {
    if (!function.starts_with(name + u".")) continue;
    const std::size_t begin = name.size() + 1;
    const std::size_t dot = function.find(u'.', begin);
    if (dot != std::u16string::npos) inner.push_back(function.substr(begin, dot - begin));
  }
  std::erase_if(inner, [&](const std::u16string& last) { return isExcludedNamespace(name + u"." + last); });
  candidates.addNames(inner, Kind::Namespace);
  for (const std::u16string& function : builtinFunctions(request)) {
    const bool isInside = function.starts_with(name + u".") && function.rfind(u'.') == name.size();
    if (isInside) candidates.addNames({lastPart(function)}, Kind::BuiltinFunction);
  }
}

void offerPackage(RequestContext& request, const std::u16string& name, CandidateList& candidates) {
  Names names;
  if (request.mayUse(CodePolicy::Allowed, u"what the package " + name + u" says of itself")) {
    PKXContextData::getPackageStrings(name, names);
  } else {
    // What the library finds without running code: the files in the package's folders.
    for (const char* kind : {".k", ".kex", "classes"}) getWhatList(u"@" + name, names, kind);
  }
  // Files among them come with their suffixes.
  for (std::u16string& found : names) found.resize(std::min(found.size(), found.find(u'.')));
  candidates.addNames(names, Kind::Function);
}

}  // namespace frontend
