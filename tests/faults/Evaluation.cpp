#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/ExecutionFrames.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

using Rules = std::vector<Rule>;

/// What is undone afterwards may fail without a trace; what failing to flush and to pop does is open.
Rules withUndoing(Rules rules) {
  rules.insert(rules.begin(), {{"matrix::getErrorMode", ignored, 2},
                               {"matrix::setErrorMode", ignored, 2},
                               {"services::io::KLStream::flush", open},
                               {"services::io::KLStream::pop", open}});
  return rules;
}

Rules evaluationsSwallowed() {
  Rules rules;
  for (const char* operation :
       {"inValidInterpreterAvailable", "services::io::KLStream::KLOut", "services::io::KLStream::KLErr",
        "services::io::KLStream::push", "matrix::getErrorMode", "matrix::setErrorMode", "inEvalExp",
        "results in their slots"})
    rules.push_back({operation, swallowed("nothing")});
  rules.push_back({"*", passes});
  return withUndoing(rules);
}

Question valueOf(const std::u16string& expression, Rules rules) {
  return {"GetValueFromCurrentWorkspace", shown(expression),
          [expression](Answer& a) {
            a.result = GetValueFromCurrentWorkspace(expression) ? "a value" : "nothing";
          },
          std::move(rules)};
}

struct NoVisits : Tamsix::orvo::IFrameVisitor {
  void visitFunctionFrame(const FunctionExecutionFrame&) override {}
};

/// The base class can be made only as a part of a frame.
struct OwnFrame : AutoPushingExecutionFrame {
  void accept(Tamsix::orvo::IFrameVisitor&) const override {}
};

std::vector<Question> frameQuestions() {
  return {{"AutoPushingExecutionFrame::AutoPushingExecutionFrame",
           "",
           [](Answer&) { OwnFrame(); },
           {{"*", passes}}},
          {"FunctionExecutionFrame::FunctionExecutionFrame",
           "",
           [](Answer&) { FunctionExecutionFrame(activeWorld()->function("ws.f")); },
           {{"*", passes}}},
          {"FunctionExecutionFrame::accept",
           "",
           [](Answer&) {
             NoVisits visitor;
             FunctionExecutionFrame(nullptr).accept(visitor);
           },
           {{"*", passes}}}};
}

}  // namespace

std::vector<Question> evaluationQuestions() {
  std::vector<Question> all = frameQuestions();
  all.push_back({"EvalcExpSuccessful", "printing",
                 [](Answer& a) { a.result = shown(EvalcExpSuccessful(u"disp('x'); 1", 0, nullptr, false)); },
                 withUndoing({{"*", passes}})});
  all.push_back({"EvalcExpSuccessful", "value",
                 [](Answer& a) {
                   kxArray_tag* value = nullptr;
                   const auto drop = [&value] { boost::intrusive_ptr<kxArray_tag>(value, false); };
                   try {
                     a.result = shown(EvalcExpSuccessful(u"record.c", 1, &value, true));
                   } catch (...) {
                     drop();
                     throw;
                   }
                   drop();
                 },
                 withUndoing({{"*", passes}})});
  all.push_back(valueOf(u"number", {{"*", passes}}));
  all.push_back(valueOf(u"record.a.b", {{"*", passes}}));
  all.push_back(valueOf(u"record(1).c", evaluationsSwallowed()));
  // What the walk does not find out about an object the evaluation finds out. Interning the name of a member, after that
  // of its class, is no part of the look-up of the class.
  all.push_back(valueOf(u"pump.Flow", {{"kcos::internal::makeInterned", passes, 3},
                                       {"kcos::internal::makeInterned", passes, 5},
                                       {"kcos::internal::makeInterned", ignored},
                                       {"kcos::COSClass::getClass", ignored},
                                       {"kxGetPropertyShared", ignored},
                                       {"*", passes}}));
  all.push_back(valueOf(u"far.host", {{"inCallFcn", ignored},
                                      {"results in their slots", ignored},
                                      {"kcos::internal::makeInterned", ignored},
                                      {"kcos::COSClass::getClass", ignored},
                                      {"kxGetPropertyShared", ignored},
                                      {"*", passes}}));
  return all;
}

}  // namespace faults
