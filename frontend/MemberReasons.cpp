#include "frontend/MemberReasons.h"

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <boost/algorithm/string/join.hpp>

#include "frontend/CandidateList.h"
#include "frontend/Declarations.h"
#include "frontend/MemberOffers.h"
#include "frontend/OfferedMembers.h"
#include "frontend/Text.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

/// A class in whose code a name may be offered that is not offered elsewhere.
struct Caller {
  std::u16string className;
  Reason reason;
};

/// The question in other words: all that is set here differs from the request.
struct Relaxed {
  bool hidden = false;
  Lenience lenience = {};
  const Caller* caller = nullptr;
  AccessForm form = AccessForm::Object;
};

class MemberReasons {
 public:
  MemberReasons(const RequestContext& request, const Resolution& resolution, const ResolvedClassID& id,
                AccessForm form, const std::u16string& name)
      : request_(request),
        resolution_(resolution),
        id_(id),
        form_(form),
        name_(name),
        record_(id),
        declarations_(declarationsOf(record_, name)) {}

  Reasons find() {
    if (declarations_.empty()) return {};
    const auto callers = callersWhoMay();
    Reasons reasons;
    if (const auto relaxed = everythingRelaxed(callers)) reasons = reasonsOf(withoutNeedless(*relaxed));
    if (const ClassInfo* above = superclassThatOffers()) addShadow(*above, reasons);
    if (reasons.empty()) reasons.push_back({Rule::NotOfferedHere, whatIsThere()});
    return reasons;
  }

 private:
  /// The first question under which the name comes, of those that relax everything.
  std::optional<Relaxed> everythingRelaxed(const std::vector<Caller>& callers) const {
    std::vector<const Caller*> asking{nullptr};
    for (const Caller& caller : callers) asking.push_back(&caller);
    // In this order, so that of several questions that help the one is told that differs least.
    for (const AccessForm form : forms()) {
      for (const Caller* caller : asking) {
        const Relaxed relaxed{true, {true, true, true}, caller, form};
        if (isOffered(relaxed, resolution_)) return relaxed;
      }
    }
    return {};
  }

  /// Its own form first.
  std::vector<AccessForm> forms() const {
    switch (form_) {
      case AccessForm::Object:
        return {AccessForm::Object, AccessForm::Class};
      case AccessForm::Class:
        return {AccessForm::Class, AccessForm::Object};
      case AccessForm::BeforeDot:
        return {AccessForm::BeforeDot, AccessForm::Object, AccessForm::Class};
    }
    return {};
  }

  /// Drops each relaxation without which the name still comes; a caller was only tried when it did not come without.
  Relaxed withoutNeedless(Relaxed relaxed) const {
    static constexpr void (*takenBack[])(Relaxed&) = {
        [](Relaxed& less) { less.lenience.anyContext = false; },
        [](Relaxed& less) { less.lenience.constructors = false; },
        [](Relaxed& less) { less.lenience.operators = false; },
        [](Relaxed& less) { less.hidden = false; },
    };
    for (const auto takeBack : takenBack) {
      Relaxed less = relaxed;
      takeBack(less);
      if (isOffered(less, resolution_)) relaxed = less;
    }
    return relaxed;
  }

  Reasons reasonsOf(const Relaxed& relaxed) const {
    Reasons reasons;
    const auto add = [&](bool isInTheWay, Rule rule, const std::u16string& detail) {
      if (isInTheWay) reasons.push_back({rule, detail});
    };
    add(relaxed.form != form_, Rule::Position, positionText(relaxed.form));
    if (relaxed.caller != nullptr) reasons.push_back(relaxed.caller->reason);
    add(relaxed.hidden, Rule::Hidden, u"a hidden " + declarations_.front().what + u" of " + declaring());
    add(relaxed.lenience.constructors, Rule::Constructor, u"a constructor of " + declaring());
    add(relaxed.lenience.operators, Rule::Operator,
        u"overloads an operator, or indexing, for " + declaring());
    if (relaxed.lenience.anyContext) reasons.push_back(contextReason());
    return reasons;
  }

  std::u16string positionText(AccessForm form) const {
    const std::u16string& name = record_.structure.name;
    return form == AccessForm::Class ? u"static: offered after " + name + u" and a dot"
                                     : u"offered after objects of " + name + u" and a dot";
  }

  /// Why the class's methods take no part.
  Reason contextReason() const {
    static const auto table = getNoDotMethodClassesExcludeSet();
    const std::u16string& asked = record_.structure.name;
    // Before the table: a class may be left out on both grounds, and the mixin is its author's own choice.
    if (record_.isA(noDotMethodsMixin)) return {Rule::Mixin, asked + u" derives from " + noDotMethodsMixin};
    const auto found =
        std::ranges::find_if(table, [this](const std::u16string& name) { return record_.isA(name); });
    if (found == table.end()) return {Rule::ExclusionTable, u"methods of " + asked + u", a built-in type"};
    return {Rule::ExclusionTable, u"classes without methods after the dot: " + *found};
  }

  /// The classes in whose code the name may be used, each with what it says of the name's access.
  std::vector<Caller> callersWhoMay() const {
    std::vector<Caller> callers;
    for (const Declaration& declaration : declarations_) {
      if (declaration.level == kcos::PublicAccess) continue;
      const std::u16string& own = declaration.record->structure.name;
      // With a list, the level says no more than that there is one.
      const bool isListed = declaration.level == kcos::ListedAccess && !declaration.classes.empty();
      if (!isListed) callers.push_back({own, {Rule::AccessLevel, accessOf(declaration)}});
      for (const std::u16string& listed : declaration.classes) {
        const auto id = ResolvedClassID::fromKnownResolvedClassID(narrow(listed));
        // A list may name classes that do not exist, in whose code nobody can be.
        if (KCOSIntrospection::isKCOSClass(id)) {
          callers.push_back({id.getNonComponentQualifiedName(), {Rule::AccessList, accessOf(declaration)}});
        }
      }
    }
    return callers;
  }

  /// "private in lab.Pump, also for code of lab.Controller"
  static std::u16string accessOf(const Declaration& declaration) {
    const std::string_view word = kcos::accessWord(declaration.level);
    std::u16string text =
        wide(word.empty() ? "level " + std::to_string(declaration.level) : std::string(word));
    text += u" in " + declaration.record->structure.name;
    if (declaration.classes.empty()) return text;
    return text + u", for code of " + boost::algorithm::join(declaration.classes, std::u16string(u" and "));
  }

  /// The nearest one after whose objects the name comes, with the request as it is.
  const ClassInfo* superclassThatOffers() const {
    const auto ancestors = ancestorsOf(record_);
    const auto found = std::ranges::find_if(ancestors, [this](const ClassInfo* ancestor) {
      const auto id = ResolvedClassID::fromKnownResolvedClassID(ancestor->classId.text());
      const auto kind = form_ == AccessForm::Class ? Resolution::Class : Resolution::Object;
      return isOffered({request_.options().hidden, {}, nullptr, form_}, {kind, {}, id, {}});
    });
    return found == ancestors.end() ? nullptr : *found;
  }

  static std::vector<const ClassInfo*> ancestorsOf(const ClassInfo& record) {
    std::vector<const ClassInfo*> ancestors;
    for (const auto& superclass : record.structure.superclasses) ancestors.push_back(superclass.get());
    for (const auto& superclass : record.structure.superclasses) {
      const auto more = ancestorsOf(*superclass);
      ancestors.insert(ancestors.end(), more.begin(), more.end());
    }
    return ancestors;
  }

  /// The class in between is the nearest one that declares the name and derives from the one above.
  void addShadow(const ClassInfo& above, Reasons& reasons) const {
    for (const Declaration& declaration : declarations_) {
      const ClassInfo& between = *declaration.record;
      if (between.classId == above.classId || !between.isA(above.classId)) continue;
      reasons.push_back({Rule::ShadowedBy, between.structure.name + u" declares it anew, what " +
                                               above.structure.name + u" offers is out of sight"});
      return;
    }
  }

  std::u16string whatIsThere() const {
    const Declaration& declaration = declarations_.front();
    kcos::COSClass* owner = classObjectOf(*declaration.record);
    if (owner != nullptr && owner->checkClass(false) == nullptr) return declaring() + u" fails its check";
    if (owner != nullptr && owner->isEnumeration())
      return u"of " + declaring() + u", an enumeration, only what is public and visible is offered";
    return u"a " + declaration.what + u", " + accessOf(declaration);
  }

  const std::u16string& declaring() const { return declarations_.front().record->structure.name; }

  bool isOffered(const Relaxed& relaxed, const Resolution& resolution) const {
    Scope scope = request_.scope();
    if (relaxed.caller != nullptr) scope.className = relaxed.caller->className;
    Options options = request_.options();
    // A reason is looked for without running code, whatever the request itself may do.
    options.policy = CodePolicy::Never;
    options.hidden = options.hidden || relaxed.hidden;
    RequestContext varied(request_, scope, options, relaxed.lenience);
    // With nothing typed every name fits.
    using Place = CandidateList::Place;
    CandidateList candidates(varied, u"",
                             relaxed.form == AccessForm::BeforeDot ? Place::Name : Place::Member);
    offer(varied, relaxed.form, resolution, candidates);
    Completion completion;
    candidates.finish(everyName, completion);
    return std::ranges::any_of(completion.candidates,
                               [this](const Candidate& candidate) { return candidate.label == name_; });
  }

  void offer(RequestContext& varied, AccessForm form, const Resolution& resolution,
             CandidateList& candidates) const {
    if (form == AccessForm::BeforeDot) return offerMethodsBeforeDot(varied, resolution, candidates);
    if (form == form_) {
      offerMembers(varied, resolution, candidates);
      return;
    }
    const auto kind = form == AccessForm::Class ? Resolution::Class : Resolution::Object;
    offerMembers(varied, {kind, {}, id_, record_.structure.name}, candidates);
  }

  const RequestContext& request_;
  const Resolution& resolution_;
  const ResolvedClassID& id_;
  const AccessForm form_;
  const std::u16string& name_;
  const ClassInfo record_;
  const std::vector<Declaration> declarations_;
};

}  // namespace

Reasons whyNoMember(const RequestContext& request, const Resolution& resolution, const ResolvedClassID& id,
                    AccessForm form, const std::u16string& name) {
  return MemberReasons(request, resolution, id, form, name).find();
}

}  // namespace frontend
