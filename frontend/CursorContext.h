#pragma once

// What is being typed at a cursor, as far as the text alone tells.

#include <cstddef>
#include <optional>
#include <string>

namespace frontend {

/// A call whose arguments the cursor is among.
struct Call {
  /// What is called, as typed: "lab.control.tune".
  std::u16string function;
  /// The argument that the cursor is in, from 0.
  std::size_t argument = 0;
  /// The name of a name-value argument whose value the cursor is in: "Gain" of "Gain=", or of "'Gain', ".
  std::u16string name = {};
  /// The text of the first argument, when it is complete or the cursor is after it.
  std::u16string firstArgument = {};
};

struct CursorContext {
  enum Kind {
    Nothing,  ///< a comment, a number, after a value
    Name,     ///< a name begins, or has begun
    Handle,   ///< a name after "@"
    Member,   ///< a name after a dot
    Text      ///< inside a text that is not closed yet
  };
  Kind kind = Nothing;
  /// What a candidate replaces, and what of it has been typed.
  std::size_t begin = 0;
  std::size_t end = 0;
  std::u16string typed = {};
  /// Of a text: its quote.
  char16_t quote = 0;
  /// Of a member: what stands before the dot.
  std::u16string base = {};
  /// The property or field that is assigned here, or compared with what is typed here: "pump.Mode".
  std::u16string target = {};
  std::optional<Call> call = {};
  /// Of a name with "(" after the cursor: the first argument of that call.
  std::u16string following = {};
  /// A name is begun where a statement begins, so that "Name=" is no argument.
  bool beginsStatement = false;
};

/// What is typed at an offset of the text. A larger offset is the end; one inside a surrogate pair is before it.
CursorContext contextAt(const std::u16string& text, std::size_t cursor);

/// The innermost call around an offset, also where nothing is completed: in "f(2|" and in "f([1 2|".
std::optional<Call> callAt(const std::u16string& text, std::size_t cursor);

/// The dotted name around an offset, up to the end of the part that the offset is in or after.
struct DottedName {
  std::size_t begin = 0;
  /// Where its last part begins.
  std::size_t lastPart = 0;
  std::size_t end = 0;
};
/// None where there is no name.
std::optional<DottedName> nameAt(const std::u16string& text, std::size_t offset);

}  // namespace frontend
