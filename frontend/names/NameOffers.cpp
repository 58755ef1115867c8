#include "frontend/names/NameOffers.h"

#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/SearchPath.h>

#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "frontend/inquiry/Denotation.h"
#include "frontend/members/ValueFacts.h"
#include "frontend/names/Namespaces.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

using Names = std::vector<std::u16string>;

bool isDotted(const std::u16string& name) { return name.find(u'.') != std::u16string::npos; }

void offerVariables(Inquiry& inquiry, Gathering& gathering) {
  std::size_t order = 0;
  for (const LocalName& local : inquiry.place().locals) {
    gathering.add({.label = local.name, .insertion = {}, .kind = Kind::Variable, .order = order++},
                  [type = local.className](Candidate& candidate) { candidate.type = type; });
  }
  if (!inquiry.place().workspace) return;
  const Names names = inquiry.session().variableNames();
  for (const std::u16string& name : names) {
    gathering.add({.label = name, .insertion = {}, .kind = Kind::Variable, .order = order++},
                  [&inquiry](Candidate& candidate) {
                    const auto value = inquiry.session().variable(candidate.label);
                    if (value) describeValue(inquiry, value.get(), candidate);
                  });
  }
}

/// Those without a namespace.
void offerPlain(const std::vector<SessionName>& names, Kind kind, Gathering& gathering) {
  for (const SessionName& known : names) {
    if (isDotted(known.name)) continue;
    gathering.add({.label = known.name, .insertion = {}, .kind = kind, .isHidden = known.hidden});
  }
}

/// Also the classes that imports make known under their last part.
void offerClasses(Inquiry& inquiry, Gathering& gathering) {
  const std::vector<SessionName> names = inquiry.session().classNames();
  offerPlain(names, Kind::Class, gathering);
  if (inquiry.place().function.empty()) return;
  for (const SessionName& known : names) {
    inquiry.check();
    const std::u16string last = KCOSIntrospection::getConstructorName(known.name);
    if (!isDotted(known.name) || matchOf(gathering.typed(), last) == Match::None) continue;
    const auto meant = classNamed(inquiry, last);
    if (!meant || meant->getNonComponentQualifiedName() != known.name) continue;
    gathering.add({.label = last, .insertion = {}, .kind = Kind::Class, .isHidden = known.hidden},
                  [whole = known.name](Candidate& candidate) { candidate.type = whole; });
  }
}

/// The outermost ones: what is inside them comes behind a dot.
void offerNamespaces(Inquiry& inquiry, Gathering& gathering) {
  std::set<std::u16string> outermost;
  for (const SessionName& known : inquiry.session().namespaceNames()) {
    const std::u16string first = known.name.substr(0, known.name.find(u'.'));
    if (!known.hidden && !isExcludedNamespace(first)) outermost.insert(first);
  }
  for (const SessionName& function : inquiry.session().functionNames()) {
    if (!function.hidden && isDotted(function.name))
      outermost.insert(function.name.substr(0, function.name.find(u'.')));
  }
  for (const std::u16string& name : outermost) {
    gathering.add({.label = name, .insertion = {}, .kind = Kind::Namespace});
  }
  offerPlain(inquiry.session().packageNames(), Kind::Package, gathering);
}

Names folderEntries(const std::string& kind) {
  Names names;
  getWhatList(u"", names, kind);
  return names;
}

/// Of the current folder.
void offerFiles(Gathering& gathering) {
  for (const std::string& kind : {std::string(".k"), std::string(".kex")}) {
    for (std::u16string& name : folderEntries(kind)) {
      name.resize(name.rfind(u'.'));
      if (!name.empty()) gathering.add({.label = std::move(name), .insertion = {}, .kind = Kind::CodeFile});
    }
  }
  gathering.addNames(folderEntries("classes"), Kind::ClassFolder);
}

void offerBuiltins(Gathering& gathering) {
  const auto names = getBuiltinFunctionNames();
  gathering.addNames(Names(names.begin(), names.end()), Kind::BuiltinFunction);
}

}  // namespace

void offerFunctions(Inquiry& inquiry, Gathering& gathering) {
  offerPlain(inquiry.session().functionNames(), Kind::Function, gathering);
  offerFiles(gathering);
  offerClasses(inquiry, gathering);
  offerNamespaces(inquiry, gathering);
  offerBuiltins(gathering);
}

void offerNames(Inquiry& inquiry, Gathering& gathering) {
  offerVariables(inquiry, gathering);
  offerFunctions(inquiry, gathering);
}

}  // namespace frontend
