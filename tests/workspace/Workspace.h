#pragma once

#include <gtest/gtest.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "tests/support/Text.h"

namespace workspace {

using Names = std::vector<std::u16string>;
using Value = boost::intrusive_ptr<kxArray_tag>;

/// Every test has the session of world.json, in which every folder of the path is there.
class Workspace : public testing::Test {
 protected:
  Workspace();

  Value variable(const std::string& name) const { return host_->variable(name); }

  std::unique_ptr<embedded::Host> host_;
  embedded::Activation active_;
};

/// The value in a few characters; "nothing" for none.
std::string shownValue(const Value& value);

/// The value of an expression, or of the last statement; null for "nothing".
Value evaluatedText(const std::string& text);

}  // namespace workspace
