#include <contextdata/Workspace/SearchPath.h>

#include "tools/query/Operation.h"

namespace tools::query {

namespace {

void listFolder(Question& question) {
  const std::u16string folder = question.arguments.text("folder");
  const std::string kind = question.arguments.narrowText("kind");
  std::vector<std::u16string> names = question.arguments.textsOrNone("names");
  question.ask([&] { return getWhatList(folder, names, kind), nullptr; });
  question.tell("names", names);
}

void getBuiltins(Question& question) { question.ask(getBuiltinFunctionNames); }

}  // namespace

std::vector<Operation> searchPathOperations() {
  return {{"getWhatList", listFolder}, {"getBuiltinFunctionNames", getBuiltins}};
}

}  // namespace tools::query
