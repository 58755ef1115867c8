#include "tests/oracle/Rules.h"

#include <algorithm>

namespace oracle {

namespace {

using embedded::Access;
using embedded::ClassDescription;
using embedded::Description;
using Answers = std::vector<std::string>;

template <class List, class Element>
bool has(const List& list, const Element& element) {
  return std::find(list.begin(), list.end(), element) != list.end();
}

std::size_t placeOf(const Description& world, const std::string& name) {
  std::size_t at = 0;
  while (world.classes[at].name != name) ++at;
  return at;
}

bool isA(const Description& world, std::size_t at, const std::string& name) {
  const ClassDescription& here = world.classes[at];
  if (here.name == name) return true;
  for (const std::string& superclass : here.superclasses)
    if (isA(world, placeOf(world, superclass), name)) return true;
  return false;
}

bool isGranted(const Description& world, const Access& access, const Question& question) {
  for (const std::string& name : access.classes)
    if (question.accessing >= 0 && isA(world, static_cast<std::size_t>(question.accessing), name))
      return true;
  return false;
}

/// What all superclasses answer to the question without its first level 2.
template <class Ask>
Answers ofSuperclasses(const Description& world, std::size_t at, Question question, Ask ask) {
  for (std::size_t level = 0; level < question.levels.size(); ++level) {
    if (question.levels[level] != 2) continue;
    question.levels.erase(question.levels.begin() + static_cast<long>(level));
    break;
  }
  Answers all;
  for (const std::string& superclass : world.classes[at].superclasses)
    for (const std::string& answer : ask(world, placeOf(world, superclass), question)) all.push_back(answer);
  return all;
}

bool isConstructor(const std::string& method, const std::string& className) {
  for (std::size_t from = 0; from < className.size(); ++from)
    if ((from == 0 || className[from - 1] == '.') && className.substr(from) == method) return true;
  return false;
}

bool takesPart(const std::string& className, int context) {
  const bool builtIn = className == "double", withoutDot = className == "table";
  if (context == 1) return !builtIn;
  if (context == 2) return !builtIn && !withoutDot;
  return context == 3;
}

}  // namespace

Answers properties(const Description& world, std::size_t at, const Question& question) {
  const ClassDescription& here = world.classes[at];
  Answers own, hidden;
  for (const auto& property : here.properties) {
    bool accepted = false;
    if (has(question.kinds, 0) && has(question.levels, property.get.level)) accepted = true;
    if (has(question.kinds, 1) && has(question.levels, property.set.level)) accepted = true;
    if (isGranted(world, property.get, question) || isGranted(world, property.set, question)) accepted = true;
    if (!accepted || here.enumeration || here.broken) continue;
    (property.hidden && !question.includeHidden ? hidden : own).push_back(*property.name);
  }
  Answers all;
  for (const std::string& name : ofSuperclasses(world, at, question, properties))
    if (!has(own, name) && !has(hidden, name)) all.push_back(name);
  all.insert(all.end(), own.begin(), own.end());
  return all;
}

Answers methods(const Description& world, std::size_t at, const Question& question) {
  const ClassDescription& here = world.classes[at];
  if (!takesPart(here.name, question.context)) return {};
  Answers own, hidden;
  for (const auto& method : here.methods) {
    const bool accepted =
        has(question.levels, method.access.level) || isGranted(world, method.access, question);
    if (!accepted || here.enumeration || here.broken) continue;
    if (method.hidden && !question.includeHidden) {
      hidden.push_back(*method.name);
      continue;
    }
    if (isConstructor(*method.name, here.name) && !question.constructors) continue;
    if (*method.name == "plus" && !question.operators) continue;
    own.push_back(*method.name + "@" + here.name + (method.isStatic ? "!" : ""));
  }
  Answers all;
  for (const std::string& answer : ofSuperclasses(world, at, question, methods))
    if (!has(hidden, answer.substr(0, answer.find('@')))) all.push_back(answer);
  all.insert(all.end(), own.begin(), own.end());
  return all;
}

}  // namespace oracle
