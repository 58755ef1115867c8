#include "frontend/Declarations.h"

#include <contextdata/KCOSIntrospection.h>

#include <set>
#include <utility>

#include "frontend/Text.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

class Search {
 public:
  explicit Search(const std::u16string& name)
      : name_(name), id_(ResolvedClassID::fromKnownResolvedClassID(narrow(name))) {}

  void visit(const ClassInfo& record) {
    // An ancestor may be reached in several ways.
    if (!seen_.insert(record.classId).second) return;
    if (const kcos::COSClass* found = classObjectOf(record)) {
      addProperty(record, *found);
      addMethod(record, *found);
      addEnumerationMember(record, *found);
    }
    for (const auto& superclass : record.structure.superclasses) visit(*superclass);
  }

  std::vector<Declaration> take() { return std::move(declarations_); }

 private:
  void addProperty(const ClassInfo& record, const kcos::COSClass& owner) {
    const kcos::COSInterfacePtr member = owner.findProperty(id_);
    // The class system finds inherited members, too, which are told with their own class.
    if (!member || kcos::cosiClassOfMember(member.get()) != &owner) return;
    const kcos::COSPropInfo* property = kcos::cosiToProp(member.get());
    auto classes = property->getExtendedGetAccess().classes;
    classes.merge(property->getExtendedSetAccess().classes);
    declarations_.push_back({&record, u"property", property->getMemberGetAccess(), texts(classes), false});
  }

  void addMethod(const ClassInfo& record, const kcos::COSClass& owner) {
    for (kcos::COSIterator methods = owner.findMethods(id_); methods.hasMoreElements();) {
      const kcos::COSInterfacePtr member = methods.nextElement();
      if (kcos::cosiClassOfMember(member.get()) != &owner) continue;
      const kcos::COSMethodInfo* method = kcos::cosiToMethod(member.get());
      declarations_.push_back({&record, u"method", method->getMemberAccess(),
                               texts(method->getExtendedAccess().classes), method->isStatic()});
      return;
    }
  }

  void addEnumerationMember(const ClassInfo& record, const kcos::COSClass& owner) {
    for (kcos::COSIterator members = owner.getEnumerationMembers(); members.hasMoreElements();) {
      const kcos::COSEnumInfo* member = kcos::cosiToEnum(members.nextElement().get());
      if (member == nullptr || member->getName() == nullptr || wide(member->getName()) != name_) continue;
      declarations_.push_back({&record, u"enumeration member", kcos::PublicAccess, {}, true});
      return;
    }
  }

  static std::vector<std::u16string> texts(const std::set<kcos::COSInternedName>& names) {
    std::vector<std::u16string> texts;
    for (const kcos::COSInternedName& name : names) texts.push_back(wide(name.text()));
    return texts;
  }

  const std::u16string& name_;
  const kcos::COSInternedName id_;
  std::set<kcos::COSInternedName> seen_;
  std::vector<Declaration> declarations_;
};

}  // namespace

std::vector<Declaration> declarationsOf(const ClassInfo& record, const std::u16string& name) {
  Search search(name);
  search.visit(record);
  return search.take();
}

/// A record's identity is one that the class system has resolved before.
kcos::COSClass* classObjectOf(const ClassInfo& record) {
  return KCOSIntrospection::getCOSClass(ResolvedClassID::fromKnownResolvedClassID(record.classId.text()));
}

LoneRecord::LoneRecord(const ClassInfo& record)
    // An empty record first: that of the class would read its superclasses, which this is to be without.
    : ClassInfo(ResolvedClassID::fromKnownResolvedClassID(std::string())) {
  structure.name = record.structure.name;
  classId = record.classId;
}

}  // namespace frontend
