#pragma once

// From one kind of value to another, and arrays out of the elements of others.

#include <span>
#include <string>
#include <vector>

#include "embedded/language/Interpreter.h"

namespace embedded {

/// The numbers of a value of numbers, logicals or characters, at a step for each; an error for any other.
std::vector<double> numbersOf(Interpreter& interpreter, const Value& value);
/// One number, or an error.
double numberOf(Interpreter& interpreter, const Value& value);
/// The text of a row of characters or of a string that is not missing, at a step for each character; or an error.
const std::u16string& textOf(Interpreter& interpreter, const Value& value);
/// The same, narrow.
std::string narrowTextOf(Interpreter& interpreter, const Value& value);
bool isText(const Value& value) noexcept;
/// The characters of all texts of an array.
std::size_t lengthOf(const Strings& strings) noexcept;
/// A condition: not empty, and every element is true.
bool isTrue(Interpreter& interpreter, const Value& value);
/// The character of that code, without a fraction; NaN and what is too small is U+0000, what is too big U+FFFF.
char16_t characterOf(double code) noexcept;
/// The shortest text that means the number.
std::string shownNumber(double number);

/// A string for each number, logical or string, or for a text; an error for any other value.
ValuePtr asStrings(Interpreter& interpreter, const ValuePtr& value);
/// A character for each number, logical or character; an error for any other value.
ValuePtr asCharacters(Interpreter& interpreter, const ValuePtr& value);

/// Dimensions after the second one count only when they are not 1.
Value::Size withoutTrailingOnes(Value::Size size);

/// No element, to which elementsAt() gives a default.
constexpr std::size_t noElement = static_cast<std::size_t>(-1);

/// An array of these elements (by linear index) of a value.
ValuePtr elementsAt(Interpreter& interpreter, const Value& value, const std::vector<std::size_t>& elements,
                    Value::Size size);

/// The values as one kind, so that their elements can stand in one array: numbers become strings beside
/// strings, whatever stands beside a cell becomes a cell, and so on. An error when there is no such kind.
Values unified(Interpreter& interpreter, Values values);

/// The elements of all of them one after another, as a row.
ValuePtr joined(Interpreter& interpreter, const Values& unifiedValues);

/// Rows of values side by side, below each other. What is empty says nothing beside what is not.
ValuePtr concatenated(Interpreter& interpreter, const std::vector<Values>& rows);

}  // namespace embedded
