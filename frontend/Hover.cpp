#include "frontend/Hover.h"

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/MemberNames.h>

#include <algorithm>
#include <deque>
#include <utility>

#include "frontend/Access.h"
#include "frontend/CursorContext.h"
#include "frontend/Declarations.h"
#include "frontend/Resolution.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

/// The dotted name that is described.
struct Subject {
  std::u16string whole;
  /// Before its last dot, and after it.
  std::u16string base;
  std::u16string last;
};

Subject subjectOf(const std::u16string& text, const DottedName& name) {
  Subject subject{text.substr(name.begin, name.end - name.begin), {}, {}};
  subject.last = text.substr(name.lastPart, name.end - name.lastPart);
  if (name.lastPart > name.begin) subject.base = text.substr(name.begin, name.lastPart - 1 - name.begin);
  return subject;
}

/// All ancestors, each once: those above the class, then those above these.
std::vector<std::u16string> superclassesOf(const ClassInfo& record) {
  std::vector<std::u16string> names;
  std::deque<const ClassInfo*> next{&record};
  for (; !next.empty(); next.pop_front()) {
    for (const auto& superclass : next.front()->structure.superclasses) {
      // A vector is searched: few classes have more than a handful of ancestors, and the order counts.
      if (std::ranges::count(names, superclass->structure.name) > 0) continue;
      names.push_back(superclass->structure.name);
      next.push_back(superclass.get());
    }
  }
  return names;
}

class Describing {
 public:
  Describing(RequestContext& request, const CursorContext& context, Subject subject, Hover& hover)
      : request_(request), cursorContext_(context), subject_(std::move(subject)), hover_(hover) {}

  void run() {
    if (!describeOffered(request_) && !describeWithheld()) return;
    hover_.isUnknown = false;
    if (hover_.subject.kind == Kind::Class) describeClass(classNamed(request_, subject_.whole));
    if (hover_.subject.kind == Kind::Variable) describeClass(classOf(resolve(request_, subject_.whole)));
    describeCall();
    hover_.subject.label = subject_.whole;
  }

 private:
  /// What completion leaves out here: operators and constructors, and what only code of some classes may use.
  bool describeWithheld() {
    if (describeIn(request_.scope())) return true;
    if (cursorContext_.kind != CursorContext::Member) return false;
    const auto id = classOf(resolve(request_, cursorContext_.base));
    if (!id) return false;
    const ClassInfo record(*id);
    const auto declarations = declarationsOf(record, subject_.last);
    return std::ranges::any_of(declarations, [&](const Declaration& declaration) {
      Scope scope = request_.scope();
      scope.className = declaration.record->structure.name;
      return describeIn(scope);
    });
  }

  bool describeIn(const Scope& scope) {
    RequestContext varied(request_, scope, request_.options(), {true, true, true});
    return describeOffered(varied);
  }

  /// What completion says of it.
  bool describeOffered(RequestContext& request) {
    Completion completion;
    // An exact match comes first, so one candidate is enough.
    offerAt(request, cursorContext_, {.limit = 1, .details = true}, completion);
    const bool isFound = completion.total > 0 && completion.candidates[0].match == Match::Exact;
    if (!isFound) return false;
    hover_.subject = std::move(completion.candidates[0]);
    if (cursorContext_.kind == CursorContext::Member) describeDeclaration(request);
    return true;
  }

  /// What the class declares about a property.
  void describeDeclaration(RequestContext& request) {
    const auto id = classOf(resolve(request, cursorContext_.base));
    if (!id) return;
    const auto property = usableProperty(request, ClassInfo(*id), subject_.last);
    if (!property) return;
    hover_.possibleValues = property->possibleValues;
    hover_.validators = property->validationFunctions;
  }

  void describeClass(const std::optional<ResolvedClassID>& id) {
    if (!id) return;
    hover_.superclasses = superclassesOf(ClassInfo(*id));
    bool classFlag = false;
    if (hover_.subject.kind == Kind::Class) getClassEnumerationNames(*id, hover_.possibleValues, classFlag);
  }

  void describeCall() {
    const Kind kind = hover_.subject.kind;
    if (kind != Kind::Function && kind != Kind::Method && kind != Kind::StaticMethod &&
        kind != Kind::CodeFile && kind != Kind::BuiltinFunction)
      return;
    hover_.signature = signatureOf(request_, {subject_.whole, 0, {}, cursorContext_.following});
    const std::u16string& declaring = hover_.subject.declaringClass;
    if (!hover_.signature && !declaring.empty())
      hover_.signature = signatureOf(declaring + u"." + subject_.last);
  }

  RequestContext& request_;
  const CursorContext& cursorContext_;
  const Subject subject_;
  Hover& hover_;
};

}  // namespace

Hover describe(Session& session, const std::u16string& text, std::size_t offset, const Scope& scope,
               const Options& options) {
  Hover hover;
  hover.outcome = answer(session, scope, options, [&](RequestContext& request) {
    const auto name = nameAt(text, offset);
    if (!name) return;
    hover.begin = name->begin;
    hover.end = name->end;
    const CursorContext context = contextAt(text, name->end);
    Subject subject = subjectOf(text, *name);
    // Which may stand in quotes.
    if (context.kind == CursorContext::Member) subject.last = context.typed;
    Describing(request, context, std::move(subject), hover).run();
  });
  return hover;
}

}  // namespace frontend
