#pragma once

// What a function declares about its arguments.

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstdint>
#include <string>

#include "host/Arrays.h"
#include "host/Export.h"

struct Kfh_KORVAL_fn;

/// The record holds one reference of each array; either may be null when the function declares nothing of it.
/// Both arrays are structures with one element per argument, in the order of declaration, and with the fields
/// "name", "class" (text), "size" (double row, NaN for an unrestricted extent), "validators" (cell of text),
/// "values" (cell of text, the possible values), and "kind" ("positional", "optional", "repeating" or
/// "name-value").
struct FunctionMetadata {
  boost::intrusive_ptr<kxArray_tag> inputArguments;
  boost::intrusive_ptr<kxArray_tag> outputArguments;
  /// What `flags` is made of; its other bits are 0.
  enum Flag : std::uint64_t {
    DeclaresArguments = 1,  ///< the function has argument declarations
    TakesFurtherInputs = 2,
    GivesFurtherOutputs = 4,
  };
  std::uint64_t flags = 0;
};

/// The metadata of the named function: of the one that the name means in code of `function`, which an empty name means
/// itself. With a null function the host resolves the name itself. May throw. Runs no Korval code.
KORVAL_HOST_API FunctionMetadata omGetFunctionMetadata(const std::string& name,
                                                       const Kfh_KORVAL_fn* function);
