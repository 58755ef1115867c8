#include "tests/faults/FaultWorld.h"

#include <cstdlib>

namespace faults {

std::unique_ptr<embedded::Host> makeWorld() {
  const char* source = std::getenv("CONTEXTDATA_SOURCE");
  return embedded::Host::load(std::string(source != nullptr ? source : ".") + "/tests/faults/world.json");
}

embedded::Host*& activeWorld() {
  static embedded::Host* world = nullptr;
  return world;
}

boost::intrusive_ptr<kxArray_tag> variable(const std::string& name) { return activeWorld()->variable(name); }

}  // namespace faults
