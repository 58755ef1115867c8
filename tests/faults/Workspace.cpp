#include <contextdata/PKXContextData.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace.h>

#include "tests/faults/FaultLoop.h"

namespace faults {

namespace {

using Names = std::vector<std::u16string>;

constexpr const char* results = "results in their slots";

Questions sizes() {
  const auto sizeOf = [](const std::string& name, const Rules& rules) {
    const auto ask = [name] {
      std::string all;
      for (const unsigned long extent : getSizeFromKxArray(variable(name).get()))
        all += std::to_string(extent) + " ";
      return all;
    };
    return asks("getSizeFromKxArray", name, rules, ask);
  };
  const Rules ofMethod = rulesOf("getSizeFromKxArray method");
  return {sizeOf("number", allPropagate), sizeOf("sized", ofMethod), sizeOf("silent", ofMethod),
          sizeOf("far", ofMethod), sizeOf("pair", ofMethod)};
}

Questions values() {
  const auto listing = [](const std::string& operation, void (*list)(const kxArray_tag*, Names&)) {
    return asks(operation, "", {{"inCallFcn", swallowed("")}, {results, swallowed("")}, {"*", propagates}},
                [list](Answer& a) { list(variable("far").get(), a.names); });
  };
  return {asks("makeSharedPtr", "", noCalls,
               [] { return makeSharedPtr(variable("number").detach()) != nullptr; }),
          asks("getSharedProperty", "", {{"*", swallowed("false")}},
               [] { return getSharedProperty(variable("sized").get(), "Read", 0) != nullptr; }),
          asks("isObjectOrIsOpaque", "", [] { return isObjectOrIsOpaque(variable("far").get()); }),
          asks("getStringsFromKxarray", "",
               [](Answer& a) { return getStringsFromKxarray(variable("texts").get(), a.names); }),
          asks(
              "StructContextData::getStructFieldNames", "", allPropagate,
              [](Answer& a) { StructContextData::getStructFieldNames(variable("record").get(), a.names); },
              "fl::i18n::to_ustring(codecvt_ascii_to_ustring)"),
          listing("getOpaqueObjectProperties", getOpaqueObjectProperties),
          listing("getOpaqueObjectMethods", getOpaqueObjectMethods),
          asks("GetClassPrecedence", "", [] { return GetClassPrecedence(u"ws.Second", u"ws.First"); }),
          asks("IsJavaFunction", "", [] { return IsJavaFunction(u"net.Socket.open"); })};
}

struct NoVisits : Tamsix::orvo::IFrameVisitor {
  void visitFunctionFrame(const FunctionExecutionFrame&) override {}
};

/// The base class can be made only as a part of a frame.
struct OwnFrame : AutoPushingExecutionFrame {
  void accept(Tamsix::orvo::IFrameVisitor&) const override {}
};

Questions frames() {
  const auto accept = [](Answer&) {
    NoVisits visitor;
    FunctionExecutionFrame(nullptr).accept(visitor);
  };
  return {asks("AutoPushingExecutionFrame::AutoPushingExecutionFrame", "", [](Answer&) { OwnFrame(); }),
          asks("FunctionExecutionFrame::FunctionExecutionFrame", "",
               [](Answer&) { FunctionExecutionFrame(activeWorld()->function("ws.f")); }),
          asks("FunctionExecutionFrame::accept", "", accept)};
}

Questions evaluations() {
  const auto valueOf = [](const std::u16string& expression, const Rules& rules) {
    return asks("GetValueFromCurrentWorkspace", shown(expression), rules,
                [expression] { return GetValueFromCurrentWorkspace(expression) != nullptr; });
  };
  const Rules evaluation = rulesOf("EvalcExpSuccessful");
  const auto evaluateForValue = [] {
    kxArray_tag* value = nullptr;
    const struct Drop {
      ~Drop() { boost::intrusive_ptr<kxArray_tag>(value, false); }
      kxArray_tag*& value;
    } drop{value};
    return EvalcExpSuccessful(u"record.c", 1, &value, true);
  };
  return {asks("EvalcExpSuccessful", "printing", evaluation,
               [] { return EvalcExpSuccessful(u"disp('x'); 1", 0, nullptr, false); }),
          asks("EvalcExpSuccessful", "value", evaluation, evaluateForValue),
          asks("IsPKXPackage", "", evaluation, [] { return IsPKXPackage(u"old"); }),
          valueOf(u"number", allPropagate),
          valueOf(u"record.a.b", allPropagate),
          valueOf(u"record(1).c", rulesOf("GetValueFromCurrentWorkspace evaluation")),
          valueOf(u"pump.Flow", rulesOf("GetValueFromCurrentWorkspace pump.Flow")),
          valueOf(u"far.host", rulesOf("GetValueFromCurrentWorkspace far.host"))};
}

Questions folders() {
  const auto packageStrings = [] {
    Names names;
    const bool any = PKXContextData::getPackageStrings(u"old", names);
    return shownList(names) + " " + shown(any);
  };
  const auto listing = [](const std::string& form, const std::u16string& folder, const Rules& rules) {
    return asks("getWhatList", form, rules, [folder](Answer& a) { getWhatList(folder, a.names, ".k"); });
  };
  const auto builtins = [] {
    const auto names = getBuiltinFunctionNames();
    return names.size() == 2 && names.contains(u"sin") && names.contains(u"cos");
  };
  return {asks("PKXContextData::getPackageStrings", "", rulesOf("getPackageStrings"), packageStrings),
          listing("current folder", u"", allPropagate),
          listing("folder on the path", u"@old", rulesOf("getWhatList folder on the path")),
          asks("getBuiltinFunctionNames", "", builtins)};
}

}  // namespace

Questions workspaceQuestions() { return joined({sizes(), values(), frames(), evaluations(), folders()}); }

}  // namespace faults
