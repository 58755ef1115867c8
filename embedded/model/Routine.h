#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace embedded {

class Class;
struct Unit;

/// A text of code that can be called, and what names mean in it.
class Routine {
 public:
  /// What a text without a `function` line is given as `obj`: nothing, the object, or the new object, which
  /// it returns.
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
  const std::u16string& text() const noexcept { return text_; }

  /// Where the language keeps what it has made of the text, which it parses at the first use only.
  std::shared_ptr<const Unit>& parsed() const noexcept { return parsed_; }

 private:
  Context context_;
  std::u16string text_;
  mutable std::shared_ptr<const Unit> parsed_;
};

}  // namespace embedded
