#include "tools/Completion.h"

#include <contextdata/KCOSContextData.h>
#include <contextdata/KCOSIntrospection.h>

#include <set>
#include <utility>

#include "host/Text.h"
#include "tools/Answer.h"

namespace tools {

namespace {

using KCOSContextData::ResolvedClassID;

using Names = std::vector<std::u16string>;
using List = bool (*)(const ResolvedClassID&, Names&, bool&);

Names namesOf(const ResolvedClassID& id, List list) {
  Names names;
  bool classFlag = false;
  list(id, names, classFlag);
  return names;
}

/// Gathers the names that begin as what has been typed does, each once.
class Candidates {
 public:
  explicit Candidates(std::u16string typed) : typed_(std::move(typed)) {}

  void add(const Names& names, const std::string& kind) {
    for (const std::u16string& name : names) {
      if (name.starts_with(typed_) && seen_.insert(name).second) candidates_.push_back({name, kind});
    }
  }

  /// Names that are never offered.
  template <class Excluded>
  void exclude(const Excluded& names) {
    seen_.insert(names.begin(), names.end());
  }

  std::vector<Candidate> take() { return std::move(candidates_); }

 private:
  const std::u16string typed_;
  std::set<std::u16string> seen_;
  std::vector<Candidate> candidates_;
};

std::vector<Candidate> membersOfObject(const ResolvedClassID& id, Candidates candidates) {
  candidates.add(namesOf(id, KCOSContextData::getClassPropertyNames), "property");
  candidates.exclude(namesOf(id, KCOSContextData::getClassStaticMethodNames));
  candidates.exclude(KCOSContextData::getKCOSMethodsExcludeSet());
  candidates.add(namesOf(id, KCOSContextData::getClassMethodNames), "method");
  return candidates.take();
}

std::vector<Candidate> membersOfClass(const ResolvedClassID& id, Candidates candidates) {
  candidates.add(namesOf(id, KCOSContextData::getClassConstantPropertyNames), "constant");
  candidates.add(namesOf(id, KCOSContextData::getClassStaticMethodNames), "static method");
  candidates.add(namesOf(id, KCOSContextData::getClassEnumerationNames), "enumeration member");
  return candidates.take();
}

}  // namespace

std::vector<Candidate> complete(const embedded::Host& host, const std::string& text) {
  const std::size_t dot = text.rfind('.');
  if (dot == std::string::npos) {
    throw AnswerError{"complete.no-dot", "there is no dot to complete after in '" + text + "'"};
  }
  const std::string before = text.substr(0, dot);
  Candidates candidates(fl::i18n::to_ustring(text.substr(dot + 1)));
  if (const auto value = host.variable(before)) {
    if (!KCOSIntrospection::isKCOSObject(value.get())) {
      throw AnswerError{"complete.no-object", "'" + before + "' is no object of a valid class"};
    }
    return membersOfObject(ResolvedClassID(value.get()), std::move(candidates));
  }
  const ResolvedClassID id(u"", fl::i18n::to_ustring(before));
  if (!KCOSIntrospection::isKCOSClass(id)) {
    throw AnswerError{"complete.unknown-name", "no variable and no class is called '" + before + "'"};
  }
  return membersOfClass(id, std::move(candidates));
}

}  // namespace tools
