#include "frontend/NameOffers.h"

#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/SearchPath.h>

#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "frontend/Namespaces.h"
#include "frontend/Resolution.h"
#include "frontend/ValueFacts.h"

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
    if (!isDotted(known.name) || matchOf(candidates.typed(), last) == Match::None) continue;
    const auto meant = classNamed(request, last);
    if (!meant || meant->getNonComponentQualifiedName() != known.name) continue;
    candidates.add({.label = last, .insertion = {}, .kind = Kind::Class, .isHidden = known.hidden},
                   [whole = known.name](Candidate& candidate) { candidate.type = whole; });
  }
}

/// The outermost ones: what is inside them comes behind a dot.
void offerNamespaces(RequestContext& request, CandidateList& candidates) {
  std::set<std::u16string> outermost;
  for (const SessionName& known : request.session().namespaceNames()) {
    const std::u16string first = known.name.substr(0, known.name.find(u'.'));
    if (!known.hidden && !isExcludedNamespace(first)) outermost.insert(first);
  }
  for (const SessionName& function : request.session().functionNames()) {
    if (!function.hidden && isDotted(function.name))
      outermost.insert(function.name.substr(0, function.name.find(u'.')));
  }
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

void offerBuiltins(CandidateList& candidates) {
  const auto names = getBuiltinFunctionNames();
  candidates.addNames(Names(names.begin(), names.end()), Kind::BuiltinFunction);
}

}  // namespace

void offerFunctions(RequestContext& request, CandidateList& candidates) {
  offerPlain(request.session().functionNames(), Kind::Function, candidates);
  offerFiles(candidates);
  offerClasses(request, candidates);
  offerNamespaces(request, candidates);
  offerBuiltins(candidates);
}

void offerNames(RequestContext& request, CandidateList& candidates) {
  offerVariables(request, candidates);
  offerFunctions(request, candidates);
}

}  // namespace frontend
