#include "embedded/Host.h"
#include "tests/host/World.h"
#include "tests/support/TempFolder.h"

namespace {

using world::Capability;

embedded::ValueDescription describe(const world::PlannedValue& plan) {
  if (const double* number = std::get_if<double>(&plan)) return {embedded::DoubleArray{{}, {*number}}};
  if (const auto* text = std::get_if<std::u16string>(&plan)) return {embedded::CharacterRow{*text}};
  const auto& object = std::get<world::PlannedObject>(plan);
  return {embedded::ObjectValue{object.className, {}, object.member, object.text, object.failing}};
}

embedded::ClassDescription describe(const world::PlannedClass& plan) {
  embedded::ClassDescription result;
  result.name = plan.name;
  result.component = plan.component;
  result.aliases = plan.aliases;
  result.superclasses = plan.superclasses;
  result.broken = plan.broken;
  result.flag = plan.flag;
  result.precedence = plan.precedence;
  result.enumeration = !plan.members.empty();
  for (const auto& property : plan.properties) {
    embedded::PropertyDescription& made = result.properties.emplace_back();
    made.name = property.name;
    made.get = {property.getAccess, property.grantedTo};
    made.set = {property.setAccess, {}};
    made.hidden = property.hidden;
    made.dependent = property.dependent;
    made.type = property.type;
    made.conversion = property.conversion;
    made.getter = property.getter;
    if (property.validation)
      made.validation = {property.validation->className, property.validation->size,
                         property.validation->functions};
    if (property.values)
      for (made.values.emplace(); const auto& value : *property.values)
        made.values->push_back(describe(value));
    if (property.customGetter) made.optimized = embedded::OptimizedStorage{*property.customGetter, false};
  }
  for (const auto& method : plan.methods) {
    embedded::MethodDescription& made = result.methods.emplace_back();
    made.name = method.name;
    made.isStatic = method.isStatic;
    made.hidden = method.hidden;
    made.code = method.code;
  }
  for (const std::string& member : plan.members)
    result.members.push_back({member.substr(member.starts_with("~") ? 1 : 0), member.starts_with("~")});
  return result;
}

class EmbeddedWorld : public world::World {
 public:
  EmbeddedWorld(std::unique_ptr<TempFolder> path, const embedded::Description& description)
      : path_(std::move(path)), host_(description) {}
  void activate() override { active_.emplace(host_); }
  void deactivate() override { active_.reset(); }

 private:
  std::unique_ptr<TempFolder> path_;
  embedded::Host host_;
  std::optional<embedded::Activation> active_;
};

class EmbeddedHost : public world::TestedHost {
 public:
  std::set<Capability> capabilities() const override {
    using enum Capability;
    return {Aliases,      Components,      BrokenClasses, MissingNames,         Overloads,  Optimized,
            CountsValues, Validations,     FiniteValues,  ArgumentDeclarations, Precedence, GetMethods,
            Imports,      CodeOfFunctions, CodeFiles,     ScopesOfMethods};
  }

  std::unique_ptr<world::World> build(const world::Plan& plan) override {
    embedded::Description description;
    for (const auto& oneClass : plan.classes) description.classes.push_back(describe(oneClass));
    for (const std::string& name : plan.functions) description.functions.emplace_back().name = name;
    auto path = std::make_unique<TempFolder>();
    description.path.push_back({.folder = path->path().string()});
    for (const auto& [name, imports, code, isFile] : plan.importing) {
      if (isFile)
        path->write(name + ".k", code);
      else
        description.functions.push_back({.name = name, .imports = imports, .code = code});
    }
    using Argument = embedded::ArgumentDescription;
    if (plan.declaresArguments)
      description.functions.push_back(
          {.name = "lab.declared",
           .arguments = {{.inputs = {{"x", Argument::Positional, "double", {{}, 3}, {"f", "g"}},
                                     {"mode", Argument::NameValue, "", {}, {}, {"on", "off"}}},
                          .furtherOutputs = true}}});
    for (const auto& [name, className] : plan.objects)
      description.workspace.push_back({name, {embedded::ObjectValue{className, {}, ""}}});
    description.workspace.push_back({"number", {embedded::DoubleArray{{}, {1, 2, 3}}}});
    return std::make_unique<EmbeddedWorld>(std::move(path), description);
  }

  std::int64_t liveValues() const override { return embedded::Host::references().values; }
};

}  // namespace

world::TestedHost& world::testedHost() {
  static EmbeddedHost host;
  return host;
}
