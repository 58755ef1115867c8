#include "embedded/snapshot/Checks.h"

namespace embedded::snapshot {

namespace {

void requireNew(const CheckContext& context, const std::string& name, const Place& place) {
  const auto owner = context.classes.owner(name);
  if (!owner) return;
  const ClassDescription& other = context.description.classes[*owner];
  context.fail(
      "snapshot.duplicate-class", place,
      inQuotes(name) + " stands already for the class " + inQuotes(identityOf(other.component, other.name)));
}

template <class Member>
void checkMemberNames(const CheckContext& context, const std::vector<Member>& members, const Place& place) {
  for (std::size_t index = 0; index < members.size(); ++index) {
    const Place member(place, index);
    if (members[index].name) checkName(context, *members[index].name, member);
  }
}

void checkNamesOf(CheckContext& context, const ClassDescription& described, std::size_t index,
                  const Place& place) {
  checkDottedName(context, described.name, {place, "name"});
  if (!described.component.empty()) checkName(context, described.component, {place, "component"});
  const std::string identity = identityOf(described.component, described.name);
  requireNew(context, identity, {place, "name"});
  context.classes.addIdentity(identity, index);
  context.classes.addDotted(described.name, index);
  const Place aliases(place, "aliases");
  for (std::size_t alias = 0; alias < described.aliases.size(); ++alias) {
    checkDottedName(context, described.aliases[alias], {aliases, alias});
    requireNew(context, described.aliases[alias], {aliases, alias});
    context.classes.addAlias(described.aliases[alias], index);
  }
  checkMemberNames(context, described.properties, {place, "properties"});
  checkMemberNames(context, described.methods, {place, "methods"});
  checkMemberNames(context, described.members, {place, "members"});
}

// A snapshot has several ways to write an access, so a fault of one is placed at its member.
void checkAccess(const CheckContext& context, const Access& access, const Place& member) {
  constexpr int highestLevel = 5;
  if (access.level < 0 || access.level > highestLevel)
    context.fail("snapshot.bad-level", member, "there is no access level " + std::to_string(access.level));
  for (const auto& name : access.classes) context.requireClass(name, member, "the access class");
}

void checkReferencesOf(CheckContext& context, const ClassDescription& described, const Place& place) {
  auto& indices = context.superclasses.emplace_back();
  const Place superclasses(place, "superclasses");
  for (std::size_t index = 0; index < described.superclasses.size(); ++index) {
    const Place superclass(superclasses, index);
    indices.push_back(context.requireClass(described.superclasses[index], superclass, "the superclass"));
  }
  const Place properties(place, "properties");
  for (std::size_t index = 0; index < described.properties.size(); ++index) {
    const Place property(properties, index);
    checkAccess(context, described.properties[index].get, property);
    checkAccess(context, described.properties[index].set, property);
    const std::string& type = described.properties[index].type;
    if (!type.empty()) checkName(context, type, {property, "type"});
  }
  const Place methods(place, "methods");
  for (std::size_t index = 0; index < described.methods.size(); ++index)
    checkAccess(context, described.methods[index].access, {methods, index});
}

}  // namespace

void checkClassNames(CheckContext& context) {
  const Place root;
  const Place classes(root, "classes");
  for (std::size_t index = 0; index < context.description.classes.size(); ++index)
    checkNamesOf(context, context.description.classes[index], index, {classes, index});
}

void checkClassReferences(CheckContext& context) {
  const Place root;
  const Place classes(root, "classes");
  for (std::size_t index = 0; index < context.description.classes.size(); ++index)
    checkReferencesOf(context, context.description.classes[index], {classes, index});
}

}  // namespace embedded::snapshot
