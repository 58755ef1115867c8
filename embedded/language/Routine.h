#pragma once

#include <memory>
#include <string>
#include <vector>

#include "embedded/language/Syntax.h"

namespace embedded {

class Class;

/// A text of code that can be called, and what names mean in it.
class Routine {
 public:
  /// What a text without a `function` line is given as `obj`: nothing, the object, or the new object, which
  /// it answers.
  enum class Receiver { None, Object, NewObject };

  struct Context {
    /// Stands in errors.
    std::string name;
    const Class* ownClass = nullptr;
    std::string component = {};
    std::string inNamespace = {};
    std::vector<std::string> imports = {};
    Receiver receiver = Receiver::None;
    bool isFile = false;
  };

  Routine(Context context, std::u16string text) : context_(std::move(context)), text_(std::move(text)) {}

  const Context& context() const noexcept { return context_; }
  /// Parsed at its first use; throws CodeError.
  const Unit& unit() const;
  /// The function of that name among those of the text, or null.
  const FunctionSyntax* localFunction(const std::string& name) const;

 private:
  Context context_;
  std::u16string text_;
  mutable std::unique_ptr<const Unit> unit_;
};

}  // namespace embedded
