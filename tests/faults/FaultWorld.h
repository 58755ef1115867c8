#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <memory>
#include <string>

#include "embedded/Host.h"

namespace faults {

/// A world in which every exported operation reaches as much of the host as it can.
std::unique_ptr<embedded::Host> makeWorld();

/// The world that is active, for the questions that need a value or a function of it.
embedded::Host*& activeWorld();

boost::intrusive_ptr<kxArray_tag> variable(const std::string& name);

}  // namespace faults
