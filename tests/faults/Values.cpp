#include <contextdata/StructContextData.h>
#include <contextdata/Workspace/Values.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

using Rules = std::vector<Rule>;

std::string shownSize(const std::string& name) {
  std::string all;
  for (const unsigned long extent : getSizeFromKxArray(variable(name).get()))
    all += std::to_string(extent) + " ";
  return all;
}

Question sizeOf(const std::string& name, Rules rules) {
  return {"getSizeFromKxArray", name, [name](Answer& a) { a.result = shownSize(name); }, std::move(rules)};
}

std::vector<Question> sizeQuestions() {
  const Reaction unknown = swallowed("");
  // The kind of the value is asked first, and that of the answer of its class after the call.
  const Rules ofMethod{{"kxGetClassID", passes, 1},
                       {"kxGetClassID", unknown, 2},
                       {"inCallMethodSingleInputSingleOutput", unknown},
                       {"kxIsEmpty", unknown},
                       {"kxGetNumberOfElements", unknown},
                       {"kxGetDoubles", unknown},
                       {"*", passes}};
  return {sizeOf("number", {{"*", passes}}), sizeOf("sized", ofMethod), sizeOf("silent", ofMethod),
          sizeOf("far", ofMethod), sizeOf("pair", ofMethod)};
}

Question listing(const std::string& operation,
                 void (*list)(const kxArray_tag*, std::vector<std::u16string>&)) {
  return {operation,
          "",
          [list](Answer& a) { list(variable("far").get(), a.names); },
          {{"inCallFcn", swallowed("")}, {"results in their slots", swallowed("")}, {"*", passes}}};
}

std::vector<Question> classNameQuestions() {
  return {{"GetClassPrecedence",
           "",
           [](Answer& a) { a.result = std::to_string(GetClassPrecedence(u"ws.Second", u"ws.First")); },
           {{"*", passes}}},
          {"IsJavaFunction",
           "",
           [](Answer& a) { a.result = shown(IsJavaFunction(u"net.Socket.open")); },
           {{"*", passes}}}};
}

}  // namespace

std::vector<Question> valueQuestions() {
  std::vector<Question> all{
      {"makeSharedPtr",
       "",
       [](Answer& a) { a.result = makeSharedPtr(variable("number").detach()) ? "a value" : "nothing"; },
       {}},
      {"getSharedProperty",
       "",
       [](Answer& a) {
         a.result = getSharedProperty(variable("sized").get(), "Read", 0) ? "a value" : "nothing";
       },
       {{"*", swallowed("nothing")}}},
      {"isObjectOrIsOpaque",
       "",
       [](Answer& a) { a.result = shown(isObjectOrIsOpaque(variable("far").get())); },
       {{"*", passes}}},
      {"getStringsFromKxarray",
       "",
       [](Answer& a) { a.result = shown(getStringsFromKxarray(variable("texts").get(), a.names)); },
       {{"*", passes}}},
      {"StructContextData::getStructFieldNames",
       "",
       [](Answer& a) { StructContextData::getStructFieldNames(variable("record").get(), a.names); },
       {{"*", passes}},
       "fl::i18n::to_ustring(codecvt_ascii_to_ustring)"},
      listing("getOpaqueObjectProperties", getOpaqueObjectProperties),
      listing("getOpaqueObjectMethods", getOpaqueObjectMethods)};
  for (const auto& questions : {sizeQuestions(), classNameQuestions()})
    all.insert(all.end(), questions.begin(), questions.end());
  return all;
}

}  // namespace faults
