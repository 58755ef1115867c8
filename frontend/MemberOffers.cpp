#include "frontend/MemberOffers.h"

#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/Workspace/Values.h>
#include <contextdata/Workspace/VariableMethods.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <set>
#include <unordered_set>
#include <utility>

#include "frontend/Access.h"
#include "frontend/CandidateDetails.h"
#include "frontend/NameOffers.h"
#include "frontend/Text.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

using Names = std::vector<std::u16string>;
using ValuePtr = boost::intrusive_ptr<kxArray_tag>;
using List = bool (*)(const ResolvedClassID&, Names&, bool&);

Names listOf(const ResolvedClassID& id, List list) {
  Names names;
  bool classFlag = false;
  list(id, names, classFlag);
  return names;
}

/// A class's record, what it offers, and what describes that; kept as long as the list of candidates.
struct Described {
  Described(RequestContext& asking, const ResolvedClassID& id, ValuePtr described)
      : request(asking), record(id), value(std::move(described)), usable(asking, record) {}

  class Properties final : public CandidateList::Source {
   public:
    explicit Properties(const Described& described) : described_(described) {}
    void describe(std::size_t at, Candidate& candidate) override {
      describeProperty(described_.request, list[at], described_.value.get(), candidate);
    }
    OfferedProperties list;

   private:
    const Described& described_;
  };

  class Methods final : public CandidateList::Source {
   public:
    void describe(std::size_t at, Candidate& candidate) override { describeMethod(list[at], candidate); }
    OfferedMethods list;
  };

  const RequestContext& request;
  const ClassInfo record;
  const ValuePtr value;
  UsableMembers usable;
  Properties properties{*this};
  Methods methods;
  /// Read for the first detail of those that are known by name only.
  OfferedMethods publicMethods;
};

class ClassMembers {
 public:
  ClassMembers(RequestContext& request, const ResolvedClassID& id, ValuePtr value, CandidateList& candidates)
      : request_(request),
        id_(id),
        value_(value),
        described_(candidates.keep(std::make_shared<Described>(request, id, std::move(value)))),
        candidates_(candidates) {}

  void offerObject() {
    offerProperties([](std::uint32_t) { return std::optional(Kind::Property); });
    if (isEnumeration())
      candidates_.addInOrder(listOf(id_, getClassPropertyNames), Kind::Property, describePublicProperty());
    offerDynamicProperties();
    offerMethods(MethodInfo::GetContext::AfterDot);
    offerPublicMethods();
  }

  void offerClass() {
    std::vector<bool> constants;
    offerProperties([&](std::uint32_t name) {
      if (constants.empty()) constants = constantNames();
      return constants[name] ? std::optional(Kind::Constant) : std::nullopt;
    });
    offerMethods(MethodInfo::GetContext::Any, Kind::StaticMethod);
    if (isEnumeration()) {
      candidates_.addInOrder(listOf(id_, getClassConstantPropertyNames), Kind::Constant,
                             describePublicProperty());
      candidates_.addInOrder(listOf(id_, getClassStaticMethodNames), Kind::StaticMethod,
                             describePublicMethod());
    }
    offerEnumerationMembers();
  }

  void offerMethods(MethodInfo::GetContext context) { offerMethods(context, Kind::Method); }

 private:
  /// `kindOf` tells the kind of a property, or that it is left out.
  template <class KindOf>
  void offerProperties(KindOf kindOf) {
    const auto ask = [&](bool hidden) { return usable().properties(hidden); };
    const auto isHidden =
        readMembers(described_->properties.list, ask, [&] { return hasProperty(candidates_.typed()); });
    const OfferedProperties& list = described_->properties.list;
    for (std::size_t at = 0; at < list.size(); ++at) {
      if (const std::optional<Kind> kind = kindOf(list[at].name))
        offer(list[at].name, *kind, isHidden, described_->properties, at);
    }
  }

  void offerMethods(MethodInfo::GetContext context, Kind kind) {
    const auto ask = [&](bool hidden) { return usable().methods(context, hidden); };
    const auto isHidden =
        readMembers(described_->methods.list, ask, [&] { return hasMethod(candidates_.typed()); });
    const OfferedMethods& list = described_->methods.list;
    for (std::size_t at = 0; at < list.size(); ++at) {
      if (list[at].info->isStatic() == (kind == Kind::StaticMethod))
        offer(list[at].name, kind, isHidden, described_->methods, at);
    }
  }

  void offer(std::uint32_t name, Kind kind, const std::vector<bool>& isHidden, CandidateList::Source& source,
             std::size_t at) {
    candidates_.add({.label = usable().names()[name],
                     .kind = kind,
                     .isHidden = !isHidden.empty() && isHidden[name],
                     .order = at,
                     .source = &source,
                     .at = at});
  }

  /// Reads what is offered; returns which names among it are hidden, nothing when none is. Hidden members need another
  /// question, which is asked only where one may be shown.
  template <class Members, class Ask, class IsTypedMember>
  std::vector<bool> readMembers(Members& members, Ask ask, IsTypedMember isTypedMember) const {
    members = ask(false);
    const bool isShown = candidates_.includesHidden() || (isUnknown(members) && isTypedMember());
    if (!isShown) return {};
    // A name is hidden that only the second list has: a member of it may be, and another one not.
    const Members visible = std::exchange(members, ask(true));
    std::vector<bool> isHidden(usable().names().size(), true);
    for (const auto& member : visible) isHidden[member.name] = false;
    return isHidden;
  }

  /// Something is typed that is none of these.
  template <class Members>
  bool isUnknown(const Members& members) const {
    const std::u16string& typed = candidates_.typed();
    return !typed.empty() && std::ranges::none_of(members, [&](const auto& member) {
      return usable().names()[member.name] == typed;
    });
  }

  UsableMembers& usable() const { return described_->usable; }

  bool hasProperty(const std::u16string& name) const {
    const kcos::COSClass* found = KCOSIntrospection::getCOSClass(id_);
    const kcos::COSInternedName member = ResolvedClassID::fromKnownResolvedClassID(name);
    return found != nullptr && found->findProperty(member);
  }

  bool hasMethod(const std::u16string& name) const {
    bool isStatic = false;
    return KCOSIntrospection::hasMethod(id_, narrow(name), isStatic);
  }

  void offerEnumerationMembers() {
    const auto describe = [described = described_](Candidate& candidate) {
      candidate.declaringClass = described->record.structure.name;
      candidate.type = described->record.structure.name;
      candidate.size = u"1x1";
    };
    candidates_.addInOrder(listOf(id_, getClassEnumerationNames), Kind::EnumerationMember, describe);
    const kcos::COSClass* found = KCOSIntrospection::getCOSClass(id_);
    if (found == nullptr || (!candidates_.includesHidden() && candidates_.typed().empty())) return;
    for (kcos::COSIterator members = found->getEnumerationMembers(); members.hasMoreElements();) {
      const kcos::COSEnumInfo* member = kcos::cosiToEnum(members.nextElement().get());
      if (member == nullptr || !member->isHidden() || member->getName() == nullptr) continue;
      candidates_.add({.label = wide(member->getName()),
                       .insertion = {},
                       .kind = Kind::EnumerationMember,
                       .isHidden = true},
                      describe);
    }
  }

  std::vector<bool> constantNames() const {
    const OfferedProperties constants = usable().constants();
    std::vector<bool> among(usable().names().size());
    for (const OfferedProperty& constant : constants) among[constant.name] = true;
    return among;
  }

  /// A record of an enumeration offers nothing of its own.
  bool isEnumeration() const {
    const kcos::COSClass* found = KCOSIntrospection::getCOSClass(id_);
    return found != nullptr && found->isEnumeration();
  }

  /// What an object says itself, when its class has a say.
  void offerDynamicProperties() {
    // Looking the method up runs no code, but asking the object does.
    if (!value_ || !KCOSIntrospection::hasMethod(value_.get(), "properties")) return;
    if (!request_.mayUse(CodePolicy::Allowed, u"what the object says of its properties")) return;
    Names names;
    KCOSIntrospection::getObjectPropertyNames(value_.get(), names);
    candidates_.addInOrder(names, Kind::Property, {}, described_->properties.list.size());
  }

  /// What completes after a variable, whoever asks. A record offers all of it but for enumerations.
  void offerPublicMethods() {
    const auto& record = described_->record;
    if (!isEnumeration()) return;
    // Records of other classes have left them out themselves.
    if (isNoDotClass() && !request_.lenience().anyContext) return;
    Names names;
    if (value_ && !request_.lenience().operators) {
      names = getMethodsForWSVariable(KCOSIntrospection::getConstructorName(record.structure.name), value_);
    } else {
      names = listOf(id_, getClassMethodNames);
      const Names statics = listOf(id_, getClassStaticMethodNames);
      const std::unordered_set<std::u16string> ofClass(statics.begin(), statics.end());
      const auto excluded =
          request_.lenience().operators ? std::set<std::u16string>() : getKCOSMethodsExcludeSet();
      std::erase_if(names, [&](const std::u16string& name) {
        return excluded.contains(name) || ofClass.contains(name);
      });
    }
    // What the record has listed already is not listed again.
    const OfferedMethods& listed = described_->methods.list;
    std::unordered_set<std::u16string_view> known;
    for (const OfferedMethod& method : listed) known.insert(usable().names()[method.name]);
    std::erase_if(names, [&](const std::u16string& name) { return known.contains(name); });
    candidates_.addInOrder(names, Kind::Method, describePublicMethod(), listed.size());
  }

  bool isNoDotClass() const {
    if (value_) return KCOSIntrospection::isNoDotMethodClass(value_.get());
    return std::ranges::any_of(getNoDotMethodClassesExcludeSet(),
                               [&](const std::u16string& name) { return described_->record.isA(name); });
  }

  /// Fills in the details of properties that are known by name only: of an enumeration the library's record offers none.
  CandidateList::Details describePublicProperty() const {
    return [described = described_](Candidate& candidate) {
      const kcos::COSClass* asked = classObjectOf(described->record);
      const auto name = ResolvedClassID::fromKnownResolvedClassID(candidate.label);
      const kcos::COSInterfacePtr member =
          asked == nullptr ? nullptr : asked->findProperty(static_cast<const kcos::COSInternedName&>(name));
      const ClassInfo* declares = member ? recordOfClass(described->record, member.get()) : nullptr;
      if (declares == nullptr) return;
      describeProperty(described->request,
                       {declares, member.get(), kcos::cosiToProp(member.get()), 0, false, false},
                       described->value.get(), candidate);
    };
  }

  /// The record in the tree whose class defines the member.
  static const ClassInfo* recordOfClass(const ClassInfo& record, kcos::COSInterface* member) {
    if (kcos::cosiClassOfMember(member)->getID() == record.classId) return &record;
    for (const auto& superclass : record.structure.superclasses)
      if (const ClassInfo* found = recordOfClass(*superclass, member)) return found;
    return nullptr;
  }

  /// Fills in the details of methods that are known by name only.
  CandidateList::Details describePublicMethod() const {
    return [described = described_](Candidate& candidate) {
      if (described->publicMethods.empty()) described->publicMethods = described->usable.publicMethods();
      for (const OfferedMethod& method : described->publicMethods) {
        if (described->usable.names()[method.name] == candidate.label)
          return describeMethod(method, candidate);
      }
      candidate.declaringClass = described->record.structure.name;
    };
  }

  RequestContext& request_;
  const ResolvedClassID id_;
  const ValuePtr value_;
  Described* const described_;
  CandidateList& candidates_;
};

/// The fields of a structure; with type and size when it is a scalar.
void offerFields(const RequestContext& request, const ValuePtr& structure, CandidateList& candidates) {
  // Not by the library's list, which tells names in ASCII: code may have made others.
  Names names;
  const int count = structure->get_number_of_struct_fields();
  const char* const* fields = count > 0 ? structure->get_struct_field_names() : nullptr;
  for (int at = 0; at < count; ++at) names.push_back(wide(fields[at]));
  // The structure is kept by its own reference until details are read; the request lives longer than its
  // list.
  candidates.addInOrder(names, Kind::Field, [&request, structure](Candidate& candidate) {
    // Of several elements there is no one field to describe.
    if (!kxIsScalar(structure.get())) return;
    const kxArray_tag* field = kxGetField(structure.get(), 0, narrow(candidate.label).c_str());
    if (field != nullptr) describeValue(request, field, candidate);
  });
}

/// What an object of another object system says itself, when the policy lets it.
void offerForeignObject(RequestContext& request, const ValuePtr& value, CandidateList& candidates) {
  if (!request.mayUse(CodePolicy::Allowed, u"what an opaque object offers")) return;
  Names properties;
  getOpaqueObjectProperties(value.get(), properties);
  candidates.addInOrder(properties, Kind::Property,
                        [](Candidate& candidate) { candidate.readRunsCode = true; });
  if (KCOSIntrospection::isNoDotMethodClass(value.get())) return;
  Names methods;
  getOpaqueObjectMethods(value.get(), methods);
  candidates.addInOrder(methods, Kind::Method, [](Candidate& candidate) { candidate.readRunsCode = true; });
}

bool offerValue(RequestContext& request, const ValuePtr& value, CandidateList& candidates) {
  if (KCOSIntrospection::isKCOSObject(value.get())) {
    ClassMembers(request, ResolvedClassID(value.get()), value, candidates).offerObject();
  } else if (isStructure(value.get())) {
    offerFields(request, value, candidates);
  } else if (isObjectOrIsOpaque(value.get())) {
    offerForeignObject(request, value, candidates);
  } else {
    return false;
  }
  return true;
}

}  // namespace

bool offerMembers(RequestContext& request, const Resolution& resolution, CandidateList& candidates) {
  switch (resolution.kind) {
    case Resolution::Value:
      return offerValue(request, resolution.value, candidates);
    case Resolution::Object:
      ClassMembers(request, *resolution.id, {}, candidates).offerObject();
      return true;
    case Resolution::Class:
      ClassMembers(request, *resolution.id, {}, candidates).offerClass();
      return true;
    case Resolution::Namespace:
      offerNamespace(request, resolution.name, candidates);
      return true;
    case Resolution::Package:
      offerPackage(request, resolution.name, candidates);
      return true;
    case Resolution::Unknown:
      return false;
  }
  return false;
}

void offerMethodsBeforeDot(RequestContext& request, const Resolution& argument, CandidateList& candidates) {
  const auto id = classOf(argument);
  if (!id || argument.kind == Resolution::Class) return;
  ClassMembers(request, *id, argument.value, candidates).offerMethods(MethodInfo::GetContext::BeforeDot);
}

}  // namespace frontend
