#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/MemberNames.h>

#include <algorithm>
#include <deque>
#include <utility>

#include "frontend/Hover.h"
#include "frontend/Offers.h"
#include "frontend/arguments/Metadata.h"
#include "frontend/explanation/Declarations.h"
#include "frontend/inquiry/Denotation.h"
#include "frontend/line/Position.h"
#include "frontend/members/Access.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

/// The dotted name that is described.
struct Subject {
  std::u16string whole;
  /// Before its last dot, and behind it.
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
      if (std::ranges::count(names, superclass->structure.name) > 0) continue;
      names.push_back(superclass->structure.name);
      next.push_back(superclass.get());
    }
  }
  return names;
}

class Describing {
 public:
  Describing(Inquiry& inquiry, const Position& position, Subject subject, Hover& hover)
      : inquiry_(inquiry), position_(position), subject_(std::move(subject)), hover_(hover) {}

  void run() {
    if (!describeOffered(inquiry_) && !describeWithheld()) return;
    hover_.isUnknown = false;
    if (hover_.subject.kind == Kind::Class) describeClass(classNamed(inquiry_, subject_.whole));
    if (hover_.subject.kind == Kind::Variable) describeClass(classOf(denote(inquiry_, subject_.whole)));
    describeCall();
    hover_.subject.label = subject_.whole;
  }

 private:
  /// What completion leaves out here: operators and constructors, and what only code of some classes may use.
  bool describeWithheld() {
    if (describeIn(inquiry_.place())) return true;
    if (position_.kind != Position::Member) return false;
    const auto id = classOf(denote(inquiry_, position_.base));
    if (!id) return false;
    const ClassInfo record(*id);
    const auto declarations = declarationsOf(record, subject_.last);
    return std::ranges::any_of(declarations, [&](const Declaration& declaration) {
      Place place = inquiry_.place();
      place.className = declaration.record->structure.name;
      return describeIn(place);
    });
  }

  bool describeIn(const Place& place) {
    Inquiry varied(inquiry_, place, inquiry_.options(), {true, true, true});
    return describeOffered(varied);
  }

  /// What completion says of it.
  bool describeOffered(Inquiry& inquiry) {
    Completion completion;
    offerAt(inquiry, position_, {.limit = 1, .details = true}, completion);
    const bool isFound = completion.total > 0 && completion.candidates[0].match == Match::Exact;
    if (!isFound) return false;
    hover_.subject = std::move(completion.candidates[0]);
    if (position_.kind == Position::Member) describeDeclaration(inquiry);
    return true;
  }

  /// What the class declares about a property.
  void describeDeclaration(Inquiry& inquiry) {
    const auto id = classOf(denote(inquiry, position_.base));
    if (!id) return;
    for (const PropertyInfo& property : usableProperties(inquiry, ClassInfo(*id), true)) {
      if (property.name != subject_.last) continue;
      hover_.possibleValues = property.possibleValues;
      hover_.validators = property.validationFunctions;
    }
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
    hover_.signature = signatureOf(inquiry_, {subject_.whole, 0, {}, position_.following});
    const std::u16string& declaring = hover_.subject.declaringClass;
    if (!hover_.signature && !declaring.empty())
      hover_.signature = signatureOf(declaring + u"." + subject_.last);
  }

  Inquiry& inquiry_;
  const Position& position_;
  const Subject subject_;
  Hover& hover_;
};

}  // namespace

Hover describe(Session& session, const std::u16string& text, std::size_t offset, const Place& place,
               const Options& options) {
  Hover hover;
  hover.outcome = answer(session, place, options, [&](Inquiry& inquiry) {
    const auto name = nameAt(text, offset);
    if (!name) return;
    hover.begin = name->begin;
    hover.end = name->end;
    const Position position = positionAt(text, name->end);
    Describing(inquiry, position, subjectOf(text, *name), hover).run();
  });
  return hover;
}

}  // namespace frontend
