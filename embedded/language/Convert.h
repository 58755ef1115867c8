#pragma once

// From one kind of value to another, and arrays out of the elements of others.

#include <span>
#include <string>
#include <vector>

#include "embedded/language/Interpreter.h"

namespace embedded {

/// The numbers of a value of numbers, logicals or characters; an error for any other.
std::vector<double> numbersOf(const Value& value);
/// One number, or an error.
double numberOf(const Value& value);
/// The text of a row of characters or of a string that is not missing, or an error.
std::u16string textOf(const Value& value);
/// The same, narrow.
std::string nameOf(const Value& value);
bool isText(const Value& value) noexcept;
/// A condition: not empty, and every element is true.
bool isTrue(const Value& value);
/// The shortest text that means the number.
std::string shownNumber(double number);

/// A string for each number, logical or string, or for a text; an error for any other value.
ValuePtr asStrings(const ValuePtr& value);
/// A character for each number, logical or character; an error for any other value.
ValuePtr asCharacters(const ValuePtr& value);

/// Dimensions behind the second one count only when they are not 1.
Value::Size withoutTrailingOnes(Value::Size size);

/// No element, to which gathered() gives a default.
constexpr std::size_t noElement = static_cast<std::size_t>(-1);

/// An array of these elements (by linear index) of a value.
ValuePtr gathered(const Value& value, const std::vector<std::size_t>& elements, Value::Size size);

/// The values as one kind, so that their elements can stand in one array: numbers become strings beside
/// strings, whatever stands beside a cell becomes a cell, and so on. An error when there is no such kind.
Values unified(Values values);

/// The elements of all of them behind one another, as a row.
ValuePtr joined(const Values& unifiedValues);

}  // namespace embedded
