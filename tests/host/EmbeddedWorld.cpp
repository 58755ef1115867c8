#include "embedded/Host.h"
#include "tests/host/World.h"
#include "tests/support/TempFolder.h"

namespace {

using world::Capability;

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
    embedded::Description description = plan.world;
    auto path = std::make_unique<TempFolder>();
    description.path.push_back({.folder = path->path().string()});
    for (const auto& [name, code] : plan.files) path->write(name + ".k", code);
    return std::make_unique<EmbeddedWorld>(std::move(path), description);
  }

  std::int64_t liveValues() const override { return embedded::Host::references().values; }
};

}  // namespace

world::TestedHost& world::testedHost() {
  static EmbeddedHost host;
  return host;
}
