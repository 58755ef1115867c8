#include "embedded/Outline.h"
#include "embedded/model/Unicode.h"
#include "embedded/snapshot/Checks.h"

namespace embedded::snapshot {

namespace {

void checkText(const CheckContext& context, const std::string& code, const Place& place) {
  if (code.empty()) return;
  if (const auto failure = embedded::checkCode(widened(code)))
    context.fail("snapshot.bad-code", place,
                 "line " + std::to_string(failure->line) + ", column " + std::to_string(failure->column) +
                     " of the code: " + failure->message);
}

void checkMembers(const CheckContext& context, const ClassDescription& described, const Place& place) {
  const Place properties(place, "properties");
  for (std::size_t index = 0; index < described.properties.size(); ++index) {
    const Place property(properties, index);
    checkText(context, described.properties[index].getter, {property, "getter"});
  }
  const Place methods(place, "methods");
  for (std::size_t index = 0; index < described.methods.size(); ++index) {
    const Place method(methods, index);
    checkText(context, described.methods[index].code, {method, "code"});
  }
}

}  // namespace

void checkCode(const CheckContext& context) {
  const Place root;
  const Place classes(root, "classes");
  const Place functions(root, "functions");
  for (std::size_t index = 0; index < context.description.classes.size(); ++index)
    checkMembers(context, context.description.classes[index], {classes, index});
  for (std::size_t index = 0; index < context.description.functions.size(); ++index) {
    const Place function(functions, index);
    checkText(context, context.description.functions[index].code, {function, "code"});
  }
}

}  // namespace embedded::snapshot
