#include "tools/query/Handlers.h"

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/ExecutionFrames.h>
#include <contextdata/Workspace/Values.h>

#include <memory>

#include "host/Classes.h"
#include "host/Members.h"

namespace tools::query {

namespace {

using namespace KCOSContextData;

struct Properties {
  using Visitor = PropertyVisitorMutable;
  static constexpr const char* member = "property";
  static constexpr auto optionsOf = &Arguments::propertyOptions;
  static constexpr auto infoOf = kcos::cosiToProp;
  static constexpr auto visitor = &ClassInfo::propertyVisitor;

  static kcos::COSInterface* find(const kcos::COSClass& cls, const kcos::COSInternedName& name) {
    return cls.findProperty(name).get();
  }
};

struct Methods {
  using Visitor = MethodVisitorMutable;
  static constexpr const char* member = "method";
  static constexpr auto optionsOf = &Arguments::methodOptions;
  static constexpr auto infoOf = kcos::cosiToMethod;
  static constexpr auto visitor = &ClassInfo::methodVisitor;

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
void handleVisitor(Question& question) {
  // Kept until the answer is rendered, for the visitor points to it.
  const Record owner = question.arguments.recordOrNone("owner");
  std::unique_ptr<typename Kind::Visitor> visitor;
  question.ask([&] {
    visitor = std::make_unique<typename Kind::Visitor>(owner.get());
    return visitor.get();
  });
}

template <class Kind>
void visitOne(Question& question) {
  const Record asked = question.arguments.record("record");
  const auto read = (question.arguments.*Kind::optionsOf)("options");
  kcos::COSInterface* member = memberOf<Kind>(question.arguments, *asked);
  auto& visitor = (*asked).*Kind::visitor;
  visitor.clear(read.options);
  if (question.arguments.flag("withInfo")) {
    auto* info = Kind::infoOf(member);
    question.ask([&] { return visitor.visit(kcos::COSInterfacePtr(member), info), nullptr; });
  } else {
    question.ask([&] { return visitor.visit(member), nullptr; });
  }
  question.tell("visitor", &visitor);
}

/// Clears a visitor that has visited the member under the options `before`.
template <class Kind>
void clearVisitor(Question& question) {
  const Record asked = question.arguments.record("record");
  const auto before = (question.arguments.*Kind::optionsOf)("before");
  auto& visitor = (*asked).*Kind::visitor;
  visitor.clear(before.options);
  visitor.visit(memberOf<Kind>(question.arguments, *asked));
  if (question.arguments.has("options")) {
    const auto read = (question.arguments.*Kind::optionsOf)("options");
    question.ask([&] { return visitor.clear(read.options), nullptr; });
    question.tell("visitor", &visitor);
  } else {
    question.ask([&] { return visitor.clear(), nullptr; });
    question.tell("visitor", &visitor);
  }
}

template <class Kind>
void hasAccessing(Question& question) {
  const Record asked = question.arguments.record("record");
  const auto read = (question.arguments.*Kind::optionsOf)("options");
  auto* info = Kind::infoOf(memberOf<Kind>(question.arguments, *asked));
  auto& visitor = (*asked).*Kind::visitor;
  visitor.clear(read.options);
  question.ask([&] { return visitor.hasAccessingClass(info); });
}

/// The same for both visitors: the argument that names the member tells which.
template <void (*forProperties)(Question&), void (*forMethods)(Question&)>
void byMember(Question& question) {
  (question.arguments.has(Methods::member) ? forMethods : forProperties)(question);
}

/// A frame of a client's own kind, which no visitor knows.
class PlainFrame final : public AutoPushingExecutionFrame {
 public:
  void accept(Tamsix::orvo::IFrameVisitor&) const override {}
};

/// Keeps what it reaches.
class FunctionVisitor final : public Tamsix::orvo::IFrameVisitor {
 public:
  void visitFunctionFrame(const FunctionExecutionFrame& frame) override { reached = &frame; }

  const FunctionExecutionFrame* reached = nullptr;
};

/// The depth of the stack at each of three moments.
struct Depth {
  explicit Depth(Question& asked) : question(asked), before(now()) {}

  std::size_t now() const { return question.frames().size(); }
  void tell(std::size_t during) const {
    question.tell("depth", std::vector<std::size_t>{before, during, now()});
  }

  Question& question;
  std::size_t before;
};

template <class Make>
void live(Question& question, Make make) {
  const Depth depth(question);
  std::size_t during = depth.before;
  question.ask([&] {
    // It is pushed as long as it lives, so the depth is read before it goes.
    const auto frame = make();
    during = depth.now();
    return nullptr;
  });
  depth.tell(during);
}

constexpr std::uint32_t mostResults = 1000;

}  // namespace

void handleIdentifier(Question& question) {
  construct(question.arguments, [&](const auto& make) { question.ask(make); });
}

void handleRecord(Question& question) {
  constructRecord(question.arguments, [&](const auto& make) {
    Record made;
    question.ask([&] {
      made = make();
      return made.get();
    });
  });
}

void handlePropertyVisitor(Question& question) { handleVisitor<Properties>(question); }

void handleMethodVisitor(Question& question) { handleVisitor<Methods>(question); }

void handleVisit(Question& question) { byMember<visitOne<Properties>, visitOne<Methods>>(question); }

void handleClear(Question& question) { byMember<clearVisitor<Properties>, clearVisitor<Methods>>(question); }

void handleHasAccessingClass(Question& question) {
  byMember<hasAccessing<Properties>, hasAccessing<Methods>>(question);
}

/// The library adopts a reference, which is made for it.
void handleAdoption(Question& question) {
  boost::intrusive_ptr<kxArray_tag> value = question.arguments.value("value");
  question.ask([&] { return makeSharedPtr(value.detach()); });
}

/// What is in the slots is told also after an exception.
void handleEvaluation(Question& question) {
  const std::u16string expression = question.arguments.text("expression");
  const std::uint32_t nlhs = question.arguments.count("nlhs", mostResults);
  const bool flag = question.arguments.flag("flag");
  std::vector<kxArray_tag*> slots(nlhs);
  question.ask([&] { return EvalcExpSuccessful(expression, static_cast<int>(nlhs), slots.data(), flag); });
  std::vector<boost::intrusive_ptr<kxArray_tag>> plhs;
  // Taken over here, so that they are released whatever happens next.
  for (kxArray_tag* slot : slots) plhs.emplace_back(slot, false);
  question.tell("plhs", plhs);
}

void handlePlainFrame(Question& question) {
  live(question, [] { return std::make_unique<PlainFrame>(); });
}

void handleFunctionFrame(Question& question) {
  const Kfh_KORVAL_fn* function = question.arguments.scope("function");
  live(question, [&] { return std::make_unique<FunctionExecutionFrame>(function); });
}

/// The visitor walks to the innermost frame of the stack.
void handleAccept(Question& question) {
  const Arguments& arguments = question.arguments;
  const Kfh_KORVAL_fn* function = arguments.scope("function");
  const Depth depth(question);
  std::size_t during = depth.before;
  FunctionVisitor visitor;
  bool isFunction = false;
  {
    const FunctionExecutionFrame frame(function);
    during = depth.now();
    // From the host, as a client would come by it, and not the frame that has just been made.
    const IExecutionFrame* innermost = question.frames().front();
    question.ask([&] { return innermost->accept(visitor), nullptr; });
    isFunction = visitor.reached == &frame && visitor.reached->function() == function;
  }
  question.tell("reachedFunction", isFunction);
  depth.tell(during);
}

void handleCodeFailure(Question& question) {
  question.ask([&] { return question.lastFailure(); });
}

}  // namespace tools::query
