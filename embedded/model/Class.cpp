#include "embedded/model/Class.h"

#include <atomic>
#include <utility>

namespace embedded {

Class::Class(Names names, Namespace* inNamespace, int number, const ClassDescription& description)
    : names_(names),
      simpleName_(interned(simpleNameOf(names.dotted.text()))),
      namespace_(inNamespace),
      number_(number),
      order_(description.order),
      hidden_(description.hidden),
      broken_(description.broken),
      flag_(description.flag),
      enumeration_(description.enumeration),
      attributeNames_(description.attributeNames) {
  for (const EnumerationMemberDescription& member : description.members)
    members_.push_back(std::make_unique<EnumerationMember>(*this, member));
}

void Class::complete(Parts parts) {
  parts_ = std::move(parts);
  propertiesByName_ = NameIndex(parts_.properties);
  methodsByName_ = NameIndex(parts_.methods);
}

std::vector<const Class*> Class::lineage() const {
  // Of all hosts of the process: each of them may be in another thread, but their classes are not shared.
  static constinit std::atomic<std::uint64_t> walks = 0;
  if (parts_.superclasses.empty()) return {this};
  const std::uint64_t walk = ++walks;
  struct Step {
    const Class* at;
    std::size_t nextSuperclass = 0;
  };
  std::vector<const Class*> line;
  std::vector<Step> way;  // from this class up: the graph can be deeper than the stack
  const auto meet = [&](const Class* oneClass) {
    if (std::exchange(oneClass->metBy_, walk) == walk) return;
    if (oneClass->order_ == WalkOrder::OwnFirst) line.push_back(oneClass);
    way.push_back({oneClass});
  };
  meet(this);
  while (!way.empty()) {
    Step& step = way.back();
    if (step.nextSuperclass < step.at->parts_.superclasses.size()) {
      meet(step.at->parts_.superclasses[step.nextSuperclass++]);
    } else {
      if (step.at->order_ == WalkOrder::InheritedFirst) line.push_back(step.at);
      way.pop_back();
    }
  }
  return line;
}

bool Class::derivesFrom(const Class& base) const {
  if (this == &base) return true;
  const std::vector<const Class*> line = lineage();
  return std::ranges::find(line, &base) != line.end();
}

Property* Class::property(kcos::COSInternedName name) const {
  // Own ones come first, whatever the order of the class's walk is.
  if (const auto own = propertiesByName_.find(name); !own.empty()) return own.front();
  for (const Class* oneClass : lineage())
    if (const auto found = oneClass->propertiesByName_.find(name); !found.empty()) return found.front();
  return nullptr;
}

const Method* Class::method(kcos::COSInternedName name) const {
  const auto among = [](std::span<Method* const> methods) {
    // Of several methods of one name one that has code is the better one to call.
    const auto callable = std::ranges::find_if(
        methods, [](const Method* method) { return method->content().routine != nullptr; });
    return callable == methods.end() ? methods.front() : *callable;
  };
  if (const auto own = methodsByName_.find(name); !own.empty()) return among(own);
  for (const Class* oneClass : lineage())
    if (const auto found = oneClass->methodsByName_.find(name); !found.empty()) return among(found);
  return nullptr;
}

const EnumerationMember* Class::member(kcos::COSInternedName name) const noexcept {
  for (const auto& member : members_)
    // A member may lack a name, but nobody can ask for it then.
    if (member->name() == name && !name.isNull()) return member.get();
  return nullptr;
}

std::vector<std::string> Class::attributeNames(std::size_t list, bool argument) const {
  std::vector<std::string> names = attributeNames_[list].names;
  const std::vector<std::string>& further = attributeNames_[list].further;
  if (argument) names.insert(names.end(), further.begin(), further.end());
  return names;
}

}  // namespace embedded
