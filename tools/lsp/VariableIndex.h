#pragma once

// Finds variables of code by their names, so that of very many only those are looked at that a statement can mean.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/Host.h"

namespace tools::lsp {

/// Of a list of variables, which is given to each query again: their positions may change, their names may not.
class VariableIndex {
 public:
  using Variables = std::vector<embedded::CodeVariable>;

  explicit VariableIndex(const Variables& variables);

  /// In their order in the code: those that the words name, and the first ones of those that begin with what is typed,
  /// and of all. Whatever else there is would come after them in a completion of one candidate fewer.
  Variables fitting(const Variables& variables, const std::vector<std::string>& words,
                    const std::string& typed, std::size_t most) const;

 private:
  using Places = std::vector<std::size_t>;
  struct Part {
    Places::const_iterator begin, end;
  };

  /// Those whose names begin with the text, in upper or lower case.
  Part beginningWith(const Variables& variables, const std::string& text) const;

  /// By their names.
  Places places_;
};

}  // namespace tools::lsp
