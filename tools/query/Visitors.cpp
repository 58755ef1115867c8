// The visitors are driven by hand: over the one member that a request names, in the visitor of a record.

#include <contextdata/KCOSContextData/ClassInfo.h>

#include "host/Classes.h"
#include "host/Members.h"
#include "tools/query/Operation.h"
#include "tools/query/Records.h"
#include "tools/query/RequestError.h"

namespace tools::query {

namespace {

using namespace KCOSContextData;

struct Properties {
  using Visitor = PropertyVisitorMutable;
  static constexpr const char* member = "property";
  static constexpr auto optionsOf = propertyOptions;
  static constexpr auto infoOf = kcos::cosiToProp;

  static Visitor& visitorOf(const ClassInfo& record) { return record.propertyVisitor; }
  static kcos::COSInterface* find(const kcos::COSClass& cls, const kcos::COSInternedName& name) {
    return cls.findProperty(name).get();
  }
};

struct Methods {
  using Visitor = MethodVisitorMutable;
  static constexpr const char* member = "method";
  static constexpr auto optionsOf = methodOptions;
  static constexpr auto infoOf = kcos::cosiToMethod;

  static Visitor& visitorOf(const ClassInfo& record) { return record.methodVisitor; }
  static kcos::COSInterface* find(const kcos::COSClass& cls, const kcos::COSInternedName& name) {
    kcos::COSIterator found = cls.findMethods(name);
    return found.hasMoreElements() ? found.nextElement().get() : nullptr;
  }
};

/// The member that the request names, own or inherited, the first of that name.
template <class Kind>
kcos::COSInterface* memberOf(const Arguments& arguments, const ClassInfo& asked) {
  const std::string name = arguments.narrowText(Kind::member);
  const kcos::COSClass* cls = name.empty() ? nullptr : kcos::COSClass::getClass(asked.classId);
  auto* member = cls == nullptr ? nullptr : Kind::find(*cls, kcos::internal::makeInterned(name));
  if (member == nullptr) {
    throw RequestError{"query.unknown-member", "the class has no member of this name", Kind::member};
  }
  return member;
}

template <class Kind>
void construct(Question& question) {
  const Record owner = recordOrNone(question.arguments, "owner");
  question.ask([&] { return std::make_unique<typename Kind::Visitor>(owner.get()); });
}

template <class Kind>
void visitOne(Question& question) {
  const Record asked = record(question.arguments, "record");
  const auto read = Kind::optionsOf(question.arguments, "options");
  kcos::COSInterface* member = memberOf<Kind>(question.arguments, *asked);
  auto& visitor = Kind::visitorOf(*asked);
  visitor.clear(read.options);
  if (question.arguments.flag("withInfo")) {
    auto* info = Kind::infoOf(member);
    question.ask([&] { return visitor.visit(kcos::COSInterfacePtr(member), info), nullptr; });
  } else {
    question.ask([&] { return visitor.visit(member), nullptr; });
  }
  question.tell("visitor", visitor);
}

/// Clears a visitor that has visited the member under the options `before`.
template <class Kind>
void clearVisitor(Question& question) {
  const Record asked = record(question.arguments, "record");
  const auto before = Kind::optionsOf(question.arguments, "before");
  auto& visitor = Kind::visitorOf(*asked);
  visitor.clear(before.options);
  visitor.visit(memberOf<Kind>(question.arguments, *asked));
  if (question.arguments.has("options")) {
    const auto read = Kind::optionsOf(question.arguments, "options");
    question.ask([&] { return visitor.clear(read.options), nullptr; });
    question.tell("visitor", visitor);
  } else {
    question.ask([&] { return visitor.clear(), nullptr; });
    question.tell("visitor", visitor);
  }
}

template <class Kind>
void hasAccessing(Question& question) {
  const Record asked = record(question.arguments, "record");
  const auto read = Kind::optionsOf(question.arguments, "options");
  auto* info = Kind::infoOf(memberOf<Kind>(question.arguments, *asked));
  auto& visitor = Kind::visitorOf(*asked);
  visitor.clear(read.options);
  question.ask([&] { return visitor.hasAccessingClass(info); });
}

/// The same for both visitors: the argument that names the member tells which.
template <void (*forProperties)(Question&), void (*forMethods)(Question&)>
void byMember(Question& question) {
  (question.arguments.has(Methods::member) ? forMethods : forProperties)(question);
}

}  // namespace

std::vector<Operation> visitorOperations() {
  return {{"PropertyVisitorMutable", construct<Properties>},
          {"MethodVisitorMutable", construct<Methods>},
          {"visit", byMember<visitOne<Properties>, visitOne<Methods>>},
          {"clear", byMember<clearVisitor<Properties>, clearVisitor<Methods>>},
          {"hasAccessingClass", byMember<hasAccessing<Properties>, hasAccessing<Methods>>}};
}

}  // namespace tools::query
