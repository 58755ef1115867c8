#pragma once

#include <string>
#include <string_view>

#include "embedded/language/Interpreter.h"

namespace embedded {

/// A value in one line, written as code would write it where that is short; else its size and class.
std::u16string shownValue(Interpreter& interpreter, const Value& value);

/// What `disp` prints: texts as they are.
std::u16string displayed(Interpreter& interpreter, const Value& value);

/// The arguments put into a format: %d %i %u %x %g %f %e %s %c %%, with flags, width and precision, and the
/// escapes \n \t \\. The format is used again while arguments are left.
std::u16string formatted(Interpreter& interpreter, const std::u16string& format, const Values& arguments);

}  // namespace embedded
