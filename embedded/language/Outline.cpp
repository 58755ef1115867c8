#include "embedded/Outline.h"

#include <algorithm>
#include <set>
#include <utility>

#include "embedded/Host.h"
#include "embedded/language/Parser.h"
#include "embedded/language/StatementReader.h"

namespace embedded {

namespace {

using enum Symbol;
using Tokens = std::vector<Token>;

CodePlace placeOf(Position at) { return {at.line, at.column}; }

/// The token that is open at the bracket, which closes it; or the first token.
std::size_t openerOf(const Tokens& tokens, std::size_t closer) {
  std::size_t depth = 0;
  for (std::size_t at = closer + 1; at-- > 0;) {
    if (isCloser(tokens[at])) ++depth;
    if (isOpener(tokens[at]) && --depth == 0) return at;
  }
  return 0;
}

/// The "=" outside brackets, or the end.
std::size_t assignmentIn(const Tokens& tokens) {
  int depth = 0;
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    if (isOpener(tokens[at])) ++depth;
    if (isCloser(tokens[at])) --depth;
    if (depth == 0 && tokens[at].is(Assign)) return at;
  }
  return tokens.size();
}

bool isName(const Tokens& tokens, std::size_t at) {
  return at < tokens.size() && tokens[at].kind == Token::Name;
}

/// The name and what follows it behind dots; moves behind it.
std::string dottedNameAt(const Tokens& tokens, std::size_t& at) {
  std::string name;
  if (!isName(tokens, at)) return name;
  name = tokens[at++].name;
  for (; at + 1 < tokens.size() && tokens[at].is(Dot) && isName(tokens, at + 1); at += 2)
    name += "." + tokens[at + 1].name;
  return name;
}

/// The names outside inner brackets between two tokens, but for those behind dots.
Tokens namesBetween(const Tokens& tokens, std::size_t begin, std::size_t end) {
  Tokens names;
  int depth = 0;
  for (std::size_t at = begin; at < std::min(end, tokens.size()); ++at) {
    if (isOpener(tokens[at])) ++depth;
    if (isCloser(tokens[at])) --depth;
    if (depth == 0 && isName(tokens, at) && !tokens[at - 1].is(Dot)) names.push_back(tokens[at]);
  }
  return names;
}

/// What stands before an "=": `[a, b.c]`, `x(3).y`.
Tokens targetsBefore(const Tokens& tokens, std::size_t assignment) {
  std::size_t at = assignment;
  while (at-- > 0) {
    if (tokens[at].is(CloseBracket)) return namesBetween(tokens, openerOf(tokens, at) + 1, at);
    if (isCloser(tokens[at]))
      at = openerOf(tokens, at);
    else if (!isName(tokens, at))
      break;
    else if (at == 0 || !tokens[at - 1].is(Dot))
      return {tokens[at]};
    else
      --at;
  }
  return {};
}

bool isSame(const Token& left, const Token& right) {
  return left.at.line == right.at.line && left.at.column == right.at.column;
}

std::vector<std::string> textsOf(const Tokens& names) {
  std::vector<std::string> texts;
  for (const Token& name : names) texts.push_back(name.name);
  return texts;
}

/// Takes the statements of a text one by one.
class Outliner {
 public:
  CodeOutline outline(std::u16string_view text) {
    StatementReader reader(text);
    while (const auto statement = reader.next()) take(*statement);
    if (open_ > 0) outline_.functions.back().end = placeOf(reader.end());
    return std::move(outline_);
  }

 private:
  void take(const Tokens& statement) {
    const Token& first = statement.front();
    if (first.is(Function)) return begin(statement);
    if (first.is(End)) return end(first);
    if (open_ > 0 && (first.is(If) || first.is(While) || first.is(For))) ++open_;
    const std::size_t assignment = assignmentIn(statement);
    if (assignment == statement.size()) return;
    std::size_t value = assignment + 1;
    std::string maker = dottedNameAt(statement, value);
    if (value < statement.size() && !statement[value].is(OpenParen)) maker.clear();
    const Tokens targets = targetsBefore(statement, assignment);
    // Only what is assigned to the whole variable tells what the variable is.
    if (first.is(For) || targets.empty() || !isSame(targets.front(), statement[assignment - 1]))
      maker.clear();
    for (const Token& target : targets) add({target.name, placeOf(target.at), maker});
  }

  void begin(const Tokens& header) {
    if (open_ > 0) outline_.functions.back().end = placeOf(header.front().at);
    open_ = 1;
    known_.clear();
    CodeFunction function;
    function.begin = function.nameAt = function.end = placeOf(header.front().at);
    const std::size_t assignment = assignmentIn(header);
    std::size_t name = assignment < header.size() ? assignment + 1 : 1;
    if (name > 1 && header[1].is(OpenBracket))
      function.outputs = textsOf(namesBetween(header, 2, assignment - 1));
    else if (name > 1)
      function.outputs = textsOf(namesBetween(header, 1, assignment));
    if (isName(header, name)) function.nameAt = placeOf(header[name].at);
    function.name = dottedNameAt(header, name);
    function.inputs = textsOf(namesBetween(header, name + 1, header.size()));
    outline_.functions.push_back(std::move(function));
  }

  void end(const Token& token) {
    if (open_ == 0 || --open_ > 0) return;
    outline_.functions.back().end = {token.at.line, token.at.column + 3};
  }

  void add(CodeVariable variable) {
    if (!known_.insert(variable.name).second) return;
    auto& variables = outline_.functions.empty() ? outline_.variables : outline_.functions.back().variables;
    variables.push_back(std::move(variable));
  }

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
    return CodeFailure{error.messageId(), error.message(), error.source(), error.at().line,
                       error.at().column};
  }
}

CodeOutline outlineOf(std::u16string_view text) { return Outliner().outline(text); }

}  // namespace embedded
