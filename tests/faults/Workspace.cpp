#include <contextdata/PKXContextData.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace.h>

#include "tests/faults/FaultLoop.h"

namespace faults {

namespace {

using Names = std::vector<std::u16string>;

Questions sizes() {
  const auto sizeOf = [](const std::string& name) {
    const auto ask = [name] {
      std::string all;
      for (const unsigned long extent : getSizeFromKxArray(variable(name).get()))
        all += std::to_string(extent) + " ";
      return all;
    };
    return asks("getSizeFromKxArray", name, ask);
  };
  return {sizeOf("number"), sizeOf("sized"), sizeOf("silent"), sizeOf("far"), sizeOf("pair")};
}

Questions values() {
  const auto listing = [](const std::string& operation, void (*list)(const kxArray_tag*, Names&)) {
    return asks(operation, "", [list](Answer& a) { list(variable("far").get(), a.names); });
  };
  return {asks("makeSharedPtr", "", [] { return makeSharedPtr(variable("number").detach()) != nullptr; }),
          asks("getSharedProperty", "",
               [] { return getSharedProperty(variable("sized").get(), "Read", 0) != nullptr; }),
          asks("isObjectOrIsOpaque", "", [] { return isObjectOrIsOpaque(variable("far").get()); }),
          asks("getStringsFromKxarray", "",
               [](Answer& a) { return getStringsFromKxarray(variable("texts").get(), a.names); }),
          asks(
              "StructContextData::getStructFieldNames", "",
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
  const auto valueOf = [](const std::u16string& expression) {
    return asks("GetValueFromCurrentWorkspace", shown(expression),
                [expression] { return GetValueFromCurrentWorkspace(expression) != nullptr; });
  };
  const auto evaluateForValue = [] {
    kxArray_tag* value = nullptr;
    const struct Drop {
      ~Drop() { boost::intrusive_ptr<kxArray_tag>(value, false); }
      kxArray_tag*& value;
    } drop{value};
    return EvalcExpSuccessful(u"record.c", 1, &value, true);
  };
  return {asks("EvalcExpSuccessful", "printing",
               [] { return EvalcExpSuccessful(u"disp('x'); 1", 0, nullptr, false); }),
          asks("EvalcExpSuccessful", "value", evaluateForValue),
          asks("IsPKXPackage", "", [] { return IsPKXPackage(u"old"); }),
          valueOf(u"number"),
          valueOf(u"record.a.b"),
          valueOf(u"record(1).c"),
          valueOf(u"pump.Flow"),
          valueOf(u"far.host")};
}

Questions folders() {
  const auto packageStrings = [] {
    Names names;
    const bool any = PKXContextData::getPackageStrings(u"old", names);
    return shownList(names) + " " + shown(any);
  };
  const auto listing = [](const std::string& form, const std::u16string& folder) {
    return asks("getWhatList", form, [folder](Answer& a) { getWhatList(folder, a.names, ".k"); });
  };
  const auto builtins = [] {
    const auto names = getBuiltinFunctionNames();
    return names.size() == 2 && names.contains(u"sin") && names.contains(u"cos");
  };
  return {asks("PKXContextData::getPackageStrings", "", packageStrings), listing("current folder", u""),
          listing("folder on the path", u"@old"), asks("getBuiltinFunctionNames", "", builtins)};
}

}  // namespace

Questions workspaceQuestions() { return joined({sizes(), values(), frames(), evaluations(), folders()}); }

}  // namespace faults
