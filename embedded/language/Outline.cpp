#include "embedded/Outline.h"

#include <algorithm>
#include <set>
#include <utility>

#include "embedded/language/Parser.h"
#include "syntax/Brackets.h"
#include "syntax/Statements.h"

namespace embedded {

namespace {

using enum syntax::Symbol;
using syntax::Keyword;
using syntax::Token;
using syntax::TokenKind;
using Tokens = std::vector<Token>;

/// The "=" outside brackets, or the end.
std::size_t assignmentIn(const Tokens& tokens) {
  int depth = 0;
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    depth += nestingOf(tokens[at]);
    if (depth == 0 && tokens[at].is(Assign)) return at;
  }
  return tokens.size();
}

bool isName(const Tokens& tokens, std::size_t at) {
  return at < tokens.size() && tokens[at].is(TokenKind::Name);
}

/// The names outside inner brackets between two tokens, but for those after dots.
Tokens namesBetween(const Tokens& tokens, std::size_t begin, std::size_t end) {
  Tokens names;
  int depth = 0;
  for (std::size_t at = begin; at < std::min(end, tokens.size()); ++at) {
    depth += nestingOf(tokens[at]);
    // There is a token before: all callers begin after one.
    if (depth == 0 && isName(tokens, at) && !tokens[at - 1].is(Dot)) names.push_back(tokens[at]);
  }
  return names;
}

/// The token that opens what the token at `closer` closes, or the first one.
std::size_t openerOf(const Tokens& tokens, std::size_t closer) {
  return syntax::innermostOpen({tokens.data(), closer}).value_or(0);
}

/// What stands before an "=": `[a, b.c]`, `x(3).y`.
Tokens targetsBefore(const Tokens& tokens, std::size_t assignment) {
  std::size_t at = assignment;
  while (at-- > 0) {
    if (tokens[at].is(CloseBracket)) return namesBetween(tokens, openerOf(tokens, at) + 1, at);
    if (syntax::isCloser(tokens[at].symbol)) {
      at = openerOf(tokens, at);
      // x.('name')
      if (at > 0 && tokens[at - 1].is(Dot)) --at;
    } else if (!isName(tokens, at))
      break;
    else if (at == 0 || !tokens[at - 1].is(Dot))
      return {tokens[at]};
    else
      --at;
  }
  return {};
}

/// Reads the statements of a text one by one.
class Outliner {
 public:
  explicit Outliner(std::u16string_view text) : text_(text) {}

  CodeOutline outline() {
    syntax::Statements statements(text_);
    while (const auto statement = statements.next()) add(*statement);
    if (open_ > 0) outline_.functions.back().end = statements.end();
    return std::move(outline_);
  }

 private:
  void add(const Tokens& statement) {
    const Token& first = statement.front();
    if (first.is(Keyword::Function)) return beginFunction(statement);
    if (first.is(Keyword::End)) return endBlock(first);
    if (first.is(Keyword::Import)) return addImport(statement);
    const bool loops = first.is(Keyword::While) || first.is(Keyword::For);
    // Outside functions blocks are not counted: their `end` closes nothing that is outlined.
    if (open_ > 0 && (first.is(Keyword::If) || loops)) ++open_;
    const std::size_t assignment = assignmentIn(statement);
    if (assignment == statement.size()) return;
    std::size_t value = assignment + 1;
    std::string maker = dottedNameAt(statement, value);
    if (value < statement.size() && !statement[value].is(OpenParen)) maker.clear();
    const Tokens targets = targetsBefore(statement, assignment);
    // Only what is assigned to the whole variable tells what the variable is.
    const bool isWhole = !targets.empty() && targets.front().begin == statement[assignment - 1].begin;
    if (first.is(Keyword::For) || !isWhole) maker.clear();
    for (const Token& target : targets) add({nameOf(target, text_), target.at, maker});
  }

  void beginFunction(const Tokens& header) {
    // A function without its own `end` is ended by the next one.
    if (open_ > 0) outline_.functions.back().end = header.front().at;
    open_ = 1;
    known_.clear();
    CodeFunction function;
    function.begin = function.nameAt = function.end = header.front().at;
    const std::size_t assignment = assignmentIn(header);
    std::size_t name = assignment < header.size() ? assignment + 1 : 1;
    if (name > 1 && header[1].is(OpenBracket))
      function.outputs = namesOf(namesBetween(header, 2, assignment - 1));
    else if (name > 1)
      function.outputs = namesOf(namesBetween(header, 1, assignment));
    if (isName(header, name)) function.nameAt = header[name].at;
    function.name = dottedNameAt(header, name);
    function.inputs = namesOf(namesBetween(header, name + 1, header.size()));
    outline_.functions.push_back(std::move(function));
  }

  void addImport(const Tokens& statement) {
    std::size_t at = 1;
    std::string name = dottedNameAt(statement, at);
    if (at < statement.size() && statement[at].is(ElementTimes)) {
      name += ".*";
      ++at;
    }
    // One that is still being typed imports nothing.
    if (at > 1 && at == statement.size()) outline_.imports.push_back(std::move(name));
  }

  void endBlock(const Token& token) {
    if (open_ == 0 || --open_ > 0) return;
    outline_.functions.back().end = {token.at.line, token.at.column + 3};
  }

  void add(CodeVariable variable) {
    // The first assignment tells what a variable is.
    if (!known_.insert(variable.name).second) return;
    auto& variables = outline_.functions.empty() ? outline_.variables : outline_.functions.back().variables;
    variables.push_back(std::move(variable));
  }

  /// The name and what follows it after dots; moves past it.
  std::string dottedNameAt(const Tokens& tokens, std::size_t& at) const {
    std::string name;
    if (!isName(tokens, at)) return name;
    name = nameOf(tokens[at++], text_);
    for (; at + 1 < tokens.size() && tokens[at].is(Dot) && isName(tokens, at + 1); at += 2)
      name += "." + nameOf(tokens[at + 1], text_);
    return name;
  }

  std::vector<std::string> namesOf(const Tokens& tokens) const {
    std::vector<std::string> names;
    for (const Token& token : tokens) names.push_back(nameOf(token, text_));
    return names;
  }

  std::u16string_view text_;
  CodeOutline outline_;
  /// Of the current function: how many blocks are open, itself included.
  std::size_t open_ = 0;
  std::set<std::string> known_;
};

}  // namespace

std::optional<CodeFailure> checkCode(std::u16string_view text) {
  try {
    Parser(text, "").unit();
    return {};
  } catch (const CodeError& error) {
    return error.failure();
  }
}

CodeOutline outlineOf(std::u16string_view text) { return Outliner(text).outline(); }

}  // namespace embedded
