#include "tests/host/Rows.h"

#include <iostream>

namespace world {

namespace {

int rowsRun = 0;
int rowsMissing = 0;

/// A suite that could run nothing has not passed.
class RowCount : public ::testing::Environment {
 public:
  void TearDown() override {
    std::cout << "conformance: " << rowsRun << " rows ran, " << rowsMissing << " could not\n";
    if (rowsRun == 0) ADD_FAILURE() << "no row ran";
  }
};
const auto* const rowCount = ::testing::AddGlobalTestEnvironment(new RowCount);

bool can(Capability capability) { return testedHost().capabilities().contains(capability); }

Plan planOfLab() {
  using Argument = embedded::ArgumentDescription;
  using Object = embedded::ObjectValue;
  using Text = embedded::CharacterRow;
  Plan plan;
  auto& classes = plan.world.classes;
  auto& functions = plan.world.functions;
  const auto numbers = [](const std::vector<double>& all) {
    return embedded::ValueDescription{embedded::DoubleArray{{}, all}};
  };
  classes = {
      {.name = "Base",
       .properties = {{.name = "id"}, {.name = "shared"}},
       .methods = {{.name = "start"}, {.name = "stop", .isStatic = true}}},
      {.name = "Other", .properties = {{.name = "other"}}, .methods = {{.name = "start"}}},
      {.name = "lab.Pump",
       .component = can(Capability::Components) ? "acme" : "",
       .superclasses = {"Base", "Other"},
       .flag = true,
       .properties = {{.name = "flow", .get = {0, {"Base"}}, .set = {2}, .type = "double"},
                      {.name = "shared", .hidden = true, .dependent = true}},
       .methods = {{.name = "start"}, {.name = "hide", .hidden = true}}},
      {.name = "lab.small.Valve", .superclasses = {"lab.Pump"}},
      {.name = "lab.Color", .enumeration = true, .members = {{"Red"}, {"Secret", true}, {"Red"}}},
  };
  functions = {{.name = "lab.run"}, {.name = "plain"}};
  plan.world.workspace = {{"pump", {Object{"lab.Pump", {}}}}, {"number", numbers({1, 2, 3})}};
  if (can(Capability::Aliases)) classes[2].aliases = {"OldPump"};
  if (can(Capability::Overloads)) classes[2].methods.push_back({.name = "start", .isStatic = true});
  if (can(Capability::Precedence)) classes[2].precedence = {"double", "lab.Color"};
  if (can(Capability::BrokenClasses)) classes.push_back({.name = "Broken", .broken = true});
  if (can(Capability::MissingNames))
    classes.push_back({.name = "Nameless", .properties = {{.name = {}}}, .methods = {{.name = {}}}});
  if (can(Capability::Optimized))
    classes.push_back({.name = "Fast", .properties = {{.name = "rate", .optimized = {{true}}}}});
  if (can(Capability::Validations))
    classes.push_back(
        {.name = "Sized",
         .properties = {{.name = "both", .type = "t", .validation = {{"double", {1, {}, 0}, {"f", "g"}}}},
                        {.name = "none", .type = "t", .validation = {{"", {}, {}}}},
                        {.name = "plain", .type = "t"}}});
  if (can(Capability::FiniteValues)) {
    const std::vector<embedded::ValueDescription> none, mixed{numbers({2.5}),
                                                              {Text{u"text"}},
                                                              {Text{u""}},
                                                              {Object{"lab.Color", {}, "Red"}},
                                                              {Object{"Base", {}, "", u"shown"}},
                                                              {Object{"Base", {}}},
                                                              {Object{"Base", {}, "", {}, true}}};
    classes.push_back(
        {.name = "Finite",
         .properties = {
             {.name = "mixed", .type = "mixed", .values = mixed},
             {.name = "empty", .type = "empty", .values = none},
             {.name = "closed", .type = "closed", .values = {{numbers({1})}}, .conversion = false}}});
  }
  if (can(Capability::GetMethods)) {
    embedded::ClassDescription& read = classes.emplace_back();
    read.name = "Read";
    read.properties = {{.name = "level", .getter = "import lab.Pump, 4"}};
    if (can(Capability::Optimized))
      read.properties.push_back({.name = "stored", .optimized = {{false}}, .getter = "4"});
  }
  if (can(Capability::ScopesOfMethods))
    classes.push_back({.name = "Tools", .methods = {{.name = "tune", .code = "import lab.Pump"}}});
  if (can(Capability::Imports)) functions.push_back({.name = "declares", .imports = {"lab.Pump"}});
  if (can(Capability::CodeOfFunctions))
    functions.push_back({.name = "writes", .code = "x = 1;\nimport lab.Pump"});
  if (can(Capability::CodeFiles)) plan.files = {{"filed", "import lab.*"}};
  if (can(Capability::ArgumentDeclarations))
    functions.push_back({.name = "lab.declared",
                         .arguments = {{.inputs = {{"x", Argument::Positional, "double", {{}, 3}, {"f", "g"}},
                                                   {"mode", Argument::NameValue, "", {}, {}, {"on", "off"}}},
                                        .furtherOutputs = true}}});
  return plan;
}

/// The name of whatever an interface is; "?" for what is none of them.
std::string nameOf(kcos::COSInterface* element) {
  const char* name = "?";
  if (auto* property = kcos::cosiToProp(element)) name = property->getName();
  if (auto* method = kcos::cosiToMethod(element)) name = method->getName();
  if (auto* member = kcos::cosiToEnum(element)) name = member->getName();
  if (auto* oneClass = kcos::cosiToClass(element)) name = oneClass->getDottedName();
  if (auto* inner = kcos::cosiToNamespace(element)) name = inner->getDottedName();
  return name == nullptr ? "(none)" : name;
}

struct Names : kcos::COSVisitor<kcos::COSInterface*> {
  void visit(kcos::COSInterface* member) override {
    found.push_back(nameOf(member) + "@" + kcos::cosiClassOfMember(member)->getDottedName());
  }
  std::vector<std::string> found;
};

}  // namespace

bool runs(std::optional<Capability> needed) {
  const bool runs = !needed || can(*needed);
  ++(runs ? rowsRun : rowsMissing);
  if (!runs)
    std::cout << "not run: " << ::testing::UnitTest::GetInstance()->current_test_info()->name()
              << ", which needs capability " << static_cast<int>(*needed) << "\n";
  return runs;
}

InLab::InLab() : lab(testedHost().build(planOfLab())) { lab->activate(); }
InLab::~InLab() { lab->deactivate(); }

kcos::COSInternedName named(const std::string& name) { return kcos::internal::makeInterned(name); }

kcos::COSClass& classNamed(const std::string& name) {
  kcos::COSClass* found = kcos::COSClass::getClass(named(name));
  if (found == nullptr) throw std::runtime_error("no class " + name);
  return *found;
}

std::vector<std::string> namesIn(kcos::COSIterator iterator) {
  std::vector<std::string> names;
  while (iterator.hasMoreElements()) names.push_back(nameOf(iterator.nextElement().get()));
  return names;
}

std::vector<std::string> propertiesOf(const kcos::COSClass& oneClass) {
  Names names;
  oneClass.visitProperties(names);
  return names.found;
}

std::vector<std::string> methodsOf(const kcos::COSClass& oneClass) {
  Names names;
  oneClass.visitMethods(names);
  return names.found;
}

}  // namespace world
