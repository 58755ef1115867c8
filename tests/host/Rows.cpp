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
  const std::string device = can(Capability::Components) ? "acme" : "";
  Plan plan;
  plan.classes = {
      {.name = "Base",
       .properties = {{.name = "id"}, {.name = "shared"}},
       .methods = {{.name = "start"}, {.name = "stop", .isStatic = true}}},
      {.name = "Other", .properties = {{.name = "other"}}, .methods = {{.name = "start"}}},
      {.name = "lab.Pump",
       .component = device,
       .superclasses = {"Base", "Other"},
       .flag = true,
       .properties =
           {{.name = "flow", .getAccess = 0, .setAccess = 2, .type = "double", .grantedTo = {"Base"}},
            {.name = "shared", .hidden = true, .dependent = true}},
       .methods = {{.name = "start"}, {.name = "hide", .hidden = true}}},
      {.name = "lab.small.Valve", .superclasses = {"lab.Pump"}},
      {.name = "lab.Color", .members = {"Red", "~Secret", "Red"}},
  };
  if (can(Capability::Aliases)) plan.classes[2].aliases = {"OldPump"};
  if (can(Capability::Overloads)) plan.classes[2].methods.push_back({.name = "start", .isStatic = true});
  if (can(Capability::BrokenClasses)) plan.classes.push_back({.name = "Broken", .broken = true});
  if (can(Capability::MissingNames))
    plan.classes.push_back({.name = "Nameless", .properties = {{.name = {}}}, .methods = {{.name = {}}}});
  if (can(Capability::Optimized))
    plan.classes.push_back({.name = "Fast", .properties = {{.name = "rate", .customGetter = true}}});
  if (can(Capability::Validations))
    plan.classes.push_back(
        {.name = "Sized",
         .properties = {{.name = "both", .type = "t", .validation = {{"double", {1, {}, 0}, {"f", "g"}}}},
                        {.name = "none", .type = "t", .validation = {{"", {}, {}}}},
                        {.name = "plain", .type = "t"}}});
  if (can(Capability::FiniteValues))
    plan.classes.push_back(
        {.name = "Finite",
         .properties = {{.name = "mixed",
                         .type = "mixed",
                         .values = {{2.5, u"text", u"", world::PlannedObject{"lab.Color", "Red"},
                                     world::PlannedObject{"Base", "", u"shown"}, world::PlannedObject{"Base"},
                                     world::PlannedObject{"Base", "", {}, true}}}},
                        {.name = "empty", .type = "empty", .values = {std::vector<world::PlannedValue>{}}},
                        {.name = "closed", .type = "closed", .values = {{1.0}}, .conversion = false}}});
  if (can(Capability::Precedence)) plan.classes[2].precedence = {"double", "lab.Color"};
  if (can(Capability::GetMethods)) {
    PlannedClass& read = plan.classes.emplace_back(PlannedClass{.name = "Read"});
    read.properties = {{.name = "level", .getter = "import lab.Pump, 4"}};
    if (can(Capability::Optimized))
      read.properties.push_back({.name = "stored", .customGetter = false, .getter = "4"});
  }
  if (can(Capability::ScopesOfMethods))
    plan.classes.push_back({.name = "Tools", .methods = {{.name = "tune", .code = "import lab.Pump"}}});
  if (can(Capability::Imports)) plan.importing.push_back({.name = "declares", .imports = {"lab.Pump"}});
  if (can(Capability::CodeOfFunctions))
    plan.importing.push_back({.name = "writes", .code = "x = 1;\nimport lab.Pump"});
  if (can(Capability::CodeFiles))
    plan.importing.push_back({.name = "filed", .code = "import lab.*", .isFile = true});
  plan.declaresArguments = can(Capability::ArgumentDeclarations);
  plan.functions = {"lab.run", "plain"};
  plan.objects = {{"pump", "lab.Pump"}};
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
