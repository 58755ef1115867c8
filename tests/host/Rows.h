#pragma once

// The world that most rows ask, and the count of the rows.

#include <gtest/gtest.h>

#include "host/Classes.h"
#include "tests/host/World.h"

namespace world {

/// Whether the row runs; says so and counts it when it does not.
bool runs(std::optional<Capability> needed = {});

/// What of the plan needs a capability that the tested host lacks is left out.
class InLab : public ::testing::Test {
 protected:
  InLab();
  ~InLab() override;

  std::unique_ptr<World> lab;
};

kcos::COSInternedName named(const std::string& name);
kcos::COSClass& classNamed(const std::string& name);

/// The names of what an iterator or a walk answers, "(none)" for a missing name.
std::vector<std::string> namesIn(kcos::COSIterator iterator);
std::vector<std::string> propertiesOf(const kcos::COSClass& oneClass);
std::vector<std::string> methodsOf(const kcos::COSClass& oneClass);

}  // namespace world
