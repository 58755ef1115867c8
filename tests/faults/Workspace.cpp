#include <contextdata/PKXContextData.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace.h>

#include "tests/faults/FaultLoop.h"

namespace faults {

namespace {

using Names = std::vector<std::u16string>;

constexpr const char* makeInterned = "kcos::internal::makeInterned";
constexpr const char* getClass = "kcos::COSClass::getClass";
constexpr const char* readProperty = "kxGetPropertyShared";
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
  const Reaction unknown = swallowed("");
  // The kind of the value is asked first, and that of the answer of its class after the call.
  const Rules ofMethod{{"kxGetClassID", propagates, 1},
                       {"kxGetClassID", unknown, 2},
                       {"inCallMethodSingleInputSingleOutput", unknown},
                       {"kxIsEmpty", unknown},
                       {"kxGetNumberOfElements", unknown},
                       {"kxGetDoubles", unknown},
                       {"*", propagates}};
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
        "services::io::KLStream::push", "matrix::getErrorMode", "matrix::setErrorMode", "inEvalExp", results})
    rules.push_back({operation, swallowed("false")});
  rules.push_back({"*", propagates});
  return withUndoing(rules);
}

Questions evaluations() {
  const auto valueOf = [](const std::u16string& expression, const Rules& rules) {
    return asks("GetValueFromCurrentWorkspace", shown(expression), rules,
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
  return {
      asks("EvalcExpSuccessful", "printing", withUndoing(allPropagate),
           [] { return EvalcExpSuccessful(u"disp('x'); 1", 0, nullptr, false); }),
      asks("EvalcExpSuccessful", "value", withUndoing(allPropagate), evaluateForValue),
      asks("IsPKXPackage", "", withUndoing(allPropagate), [] { return IsPKXPackage(u"old"); }),
      valueOf(u"number", allPropagate), valueOf(u"record.a.b", allPropagate),
      valueOf(u"record(1).c", evaluationsSwallowed()),
      // What the walk does not find out about an object the evaluation finds out. Interning the name of a member,
      // after that of its class, is no part of the look-up of the class.
      valueOf(u"pump.Flow", {{makeInterned, propagates, 3},
                             {makeInterned, propagates, 5},
                             {makeInterned, ignored},
                             {getClass, ignored},
                             {readProperty, ignored},
                             {"*", propagates}}),
      valueOf(u"far.host", {{"inCallFcn", ignored},
                            {results, ignored},
                            {makeInterned, ignored},
                            {getClass, ignored},
                            {readProperty, ignored},
                            {"*", propagates}})};
}

/// The folder is listed three times; whatever fails in a visit of the search path costs the names of that listing.
Rules ofListings() {
  struct Listing {
    const char* hostOperation;
    std::size_t callsOfEach;
  };
  const std::string left[] = {"A B f x.kexa64 Cls true", "A B f f.k Cls true", "A B f f.k x.kexa64 true"};
  Rules rules;
  for (const Listing& listing :
       {Listing{"KsearchPath::visitItems", 1}, Listing{"KpathItem::getService", 2},
        Listing{"KpathItem::getLocation", 2}, Listing{"KnameComparer::equal", 2},
        Listing{"foundation::storage::vfs::AbsoluteIRI::getName", 2}, Listing{"KpathItem::getKind", 1},
        Listing{"foundation::storage::vfs::CanonicalAbsoluteIRI::getParent", 1},
        Listing{"Kdispatcher::GetCurrentWorkingFolder", 1}, Listing{"KcurrentWorkingFolder::get", 1},
        Listing{"foundation::storage::vfs::Folder::getLocation", 1},
        Listing{"Tamsix::PathManagement::GetStringFromIRI", 1}, Listing{"fl::filesystem::status", 1},
        Listing{"ioGetDirList", 1}}) {
    for (std::size_t call = 0; call < 3 * listing.callsOfEach; ++call)
      rules.push_back(
          {listing.hostOperation, swallowedButInterrupt(left[call / listing.callsOfEach]), call + 1});
  }
  // The first dispatcher of a listing is asked for the path, the second, in the visit, for the current folder.
  for (std::size_t at = 0; at < 3; ++at)
    rules.push_back({"Kdispatcher::getDispatcher", swallowedButInterrupt(left[at]), 2 * at + 2});
  return rules;
}

Questions folders() {
  Rules ofPackage = ofListings();
  // In the order of the reads: the classes, their names, the functions, their names.
  std::size_t read = 0;
  for (const char* left : {"f ", "B f ", "A f ", "A B ", "A B "})
    ofPackage.push_back({readProperty, swallowed(left + std::string("f.k x.kexa64 Cls true")), ++read});
  ofPackage.push_back({"*", propagates});
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
  return {asks("PKXContextData::getPackageStrings", "", ofPackage, packageStrings),
          listing("current folder", u"", allPropagate),
          // Only getting the path stands before the visit.
          listing("folder on the path", u"@old",
                  {{"Kdispatcher::getDispatcher", propagates, 1},
                   {"Kdispatcher::GetCurrentPath", propagates},
                   {"*", swallowedButInterrupt("")}}),
          asks("getBuiltinFunctionNames", "", builtins)};
}

}  // namespace

Questions workspaceQuestions() { return joined({sizes(), values(), frames(), evaluations(), folders()}); }

}  // namespace faults
