#include "tests/workspace/Queries.h"

#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>
#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/SearchPath.h>
#include <contextdata/Workspace/Values.h>
#include <contextdata/Workspace/VariableMethods.h>

#include <boost/algorithm/string.hpp>
#include <functional>
#include <map>
#include <set>

#include "tests/support/Table.h"
#include "tests/support/Trap.h"

namespace workspace {

namespace {

using Texts = std::vector<std::u16string>;

struct Query {
  /// Whether its first argument stands for a value.
  bool asksValue;
  bool runsCode;
  std::function<std::string(const kxArray_tag*, const Texts&)> ask;
};

std::string kept(const std::function<void(Names&)>& append) {
  Names names{u"kept"};
  append(names);
  return shownList(names);
}

std::string answered(const std::function<bool(Names&)>& ask) {
  bool answer = false;
  const std::string names = kept([&](Names& list) { answer = ask(list); });
  return shown(answer) + " " + names;
}

std::string answerText(bool answer) { return shown(answer); }
std::string answerText(unsigned answer) { return std::to_string(answer); }
std::string answerText(const Value& answer) { return shownValue(answer); }
std::string answerText(const std::vector<unsigned long>& extents) {
  std::string all;
  for (const unsigned long extent : extents) all += (all.empty() ? "" : "x") + std::to_string(extent);
  return all;
}

constexpr bool isQuiet = false, mayRunCode = true;

template <auto query>
Query ofValue(bool runs) {
  return {true, runs, [](const kxArray_tag* value, const Texts&) { return answerText(query(value)); }};
}
template <auto query>
Query ofText(bool runs) {
  return {false, runs, [](auto, const Texts& t) { return answerText(query(t.at(0))); }};
}
template <auto append>
Query listOfValue(bool runs) {
  return {true, runs, [](const kxArray_tag* value, const Texts&) {
            return kept([&](Names& names) { append(value, names); });
          }};
}
template <auto list>
Query listOfText(bool runs) {
  return {false, runs,
          [](auto, const Texts& t) { return answered([&](Names& names) { return list(t.at(0), names); }); }};
}
using Ask = std::function<std::string(const kxArray_tag*, const Texts&)>;
Query valueAndTexts(bool runs, Ask ask) { return {true, runs, std::move(ask)}; }
Query texts(bool runs, const std::function<std::string(const Texts&)>& ask) {
  return {false, runs, [ask](auto, const Texts& t) { return ask(t); }};
}

std::string shownShape(const Value& value) {
  const std::size_t* dimensions = kxGetDimensions(value.get());
  return std::to_string(dimensions[0]) + "x" + std::to_string(dimensions[1]) + " " + shownValue(value);
}

std::string shownEvaluation(const Texts& t) {
  kxArray_tag* slot = nullptr;
  const bool answer = EvalcExpSuccessful(t.at(0), 1, &slot, true);
  return shown(answer) + " " + shownValue(makeSharedPtr(slot));
}

std::string shownArguments(const Texts& t) {
  return std::to_string(KCOSContextData::getArgumentBlockMetadata(t.at(0), t.at(1)).flags);
}

std::string shownBuiltins(const Texts&) {
  const auto names = getBuiltinFunctionNames();
  return std::to_string(names.size()) + " " + shownList(std::set(names.begin(), names.end()));
}

std::string shownTexts(const kxArray_tag* value, const Texts&) {
  return answered([&](Names& names) { return getStringsFromKxarray(value, names); });
}

std::string shownMethods(const kxArray_tag* value, const Texts& t) {
  return shownList(getMethodsForWSVariable(t.at(0), value));
}

std::string shownListing(const Texts& t) {
  return kept([&](Names& names) { getWhatList(t.at(0), names, narrow(t.at(1))); });
}

std::string shownCall(const kxArray_tag* value, const Texts& t) {
  return answered(
      [&](Names& names) { return KCOSIntrospection::callFunctionOnObject(value, narrow(t.at(0)), names); });
}

std::string shownProperty(const kxArray_tag* value, const Texts& t) {
  return shownValue(getSharedProperty(value, narrow(t.at(0)), std::stoul(narrow(t.at(1)))));
}

const std::map<std::string, Query>& queries() {
  using namespace KCOSContextData;
  using namespace KCOSIntrospection;
  static const std::map<std::string, Query> all{
      {"value", ofText<GetValueFromCurrentWorkspace>(mayRunCode)},
      {"evaluates", texts(mayRunCode, shownEvaluation)},
      {"size", ofValue<getSizeFromKxArray>(mayRunCode)},
      {"property", valueAndTexts(mayRunCode, shownProperty)},
      {"is object", ofValue<isObjectOrIsOpaque>(isQuiet)},
      {"fields", listOfValue<StructContextData::getStructFieldNames>(isQuiet)},
      {"opaque properties", listOfValue<getOpaqueObjectProperties>(mayRunCode)},
      {"opaque methods", listOfValue<getOpaqueObjectMethods>(mayRunCode)},
      {"property names", listOfValue<getObjectPropertyNames>(mayRunCode)},
      {"texts", valueAndTexts(isQuiet, shownTexts)},
      {"call", valueAndTexts(mayRunCode, shownCall)},
      {"no-dot class", ofValue<isNoDotMethodClass>(isQuiet)},
      {"methods", valueAndTexts(mayRunCode, shownMethods)},
      {"precedence",
       texts(isQuiet, [](const Texts& t) { return answerText(GetClassPrecedence(t.at(0), t.at(1))); })},
      {"foreign", ofText<IsJavaFunction>(isQuiet)},
      {"arguments", texts(isQuiet, shownArguments)},
      {"arguments without components", texts(isQuiet, shownArguments)},
      {"list", texts(isQuiet, shownListing)},
      {"builtins", texts(isQuiet, shownBuiltins)},
      {"package", listOfText<PKXContextData::getPackageStrings>(mayRunCode)},
      {"is package", ofText<IsPKXPackage>(mayRunCode)},
      {"functions", listOfText<getNamespaceFunctionNames>(isQuiet)},
      {"classes", listOfText<getNamespaceClassNames>(isQuiet)},
      {"namespaces", listOfText<getNamespaceNamespaceNames>(isQuiet)},
      {"all namespaces", texts(mayRunCode, [](const Texts&) { return shownShape(getKCOSAllNamespaces()); })}};
  return all;
}

/// Of the calls of one operation the arguments, of several operations the names.
std::string shownCalls(const std::vector<embedded::Call>& log, const std::string& operation) {
  std::vector<std::string> arguments, names;
  for (const embedded::Call& call : log) {
    if (call.operation == operation) arguments.push_back(call.arguments);
    if (call.operation.find(operation) != std::string::npos)
      names.push_back(call.operation.substr(call.operation.rfind(':') + 1));
  }
  return arguments.empty() ? boost::join(names, " ") : boost::join(arguments, "; ");
}

bool evaluated(const std::vector<embedded::Call>& log, const Row& row) {
  if (row.query != "value") return embedded::Host::ranKorvalCode(log);
  return shownCalls(log, "inEvalExp") != "";
}

Row rowOf(const Cells& cells) {
  Row row{boost::join(cells, " | ").substr(0, 100), cells.front(), {}, {}, cells.back()};
  row.arguments = {cells.begin() + 1, cells.end() - 1};
  if (const std::size_t sign = row.query.find(" > "); sign != std::string::npos) {
    row.hostOperation = row.query.substr(sign + 3);
    row.query.resize(sign);
  }
  return row;
}

}  // namespace

std::vector<Row> rowsOfQueries() {
  std::vector<Row> rows;
  for (const Cells& cells : rowsOf("tests/workspace/queries.txt")) rows.push_back(rowOf(cells));
  return rows;
}

std::vector<std::string> queryNames() {
  std::vector<std::string> names;
  for (const auto& [name, query] : queries()) names.push_back(name);
  return names;
}

Value valueFor(const Row& row) {
  return queries().at(row.query).asksValue ? evaluatedText(row.arguments.at(0)) : Value();
}

std::string answerTo(embedded::Host& host, const Row& row, const Value& value) {
  const Query& query = queries().at(row.query);
  Texts given;
  for (std::size_t at = query.asksValue ? 1 : 0; at < row.arguments.size(); ++at)
    given.push_back(wide(row.arguments[at]));
  host.setComponents(row.query != "arguments without components");
  if (!query.runsCode) trapCode(host);
  host.startLog();
  std::string answer = query.ask(value.get(), given);
  const std::vector<embedded::Call> log = host.takeLog();
  host.setCodePolicy(embedded::CodePolicy::Allowed);
  if (!row.hostOperation.empty()) return shownCalls(log, row.hostOperation);
  if (evaluated(log, row)) answer += answer.empty() ? "evaluated" : " evaluated";
  return answer;
}

}  // namespace workspace
