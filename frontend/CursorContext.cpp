#include "frontend/CursorContext.h"

#include <algorithm>
#include <span>
#include <vector>

#include "host/Text.h"
#include "syntax/Brackets.h"
#include "syntax/Characters.h"
#include "syntax/Statements.h"

namespace frontend {

namespace {

using enum syntax::Symbol;
using syntax::Keyword;
using syntax::Token;
using syntax::TokenKind;

std::size_t bounded(const std::u16string& text, std::size_t cursor) {
  if (cursor >= text.size()) return text.size();
  // A cursor never stands between the two halves of a character.
  const bool isInside =
      cursor > 0 && fl::i18n::is_low_surrogate(text[cursor]) && fl::i18n::is_high_surrogate(text[cursor - 1]);
  return isInside ? cursor - 1 : cursor;
}

bool isLiteral(const Token& token) {
  return token.is(TokenKind::Number) || token.is(TokenKind::Text) || token.is(TokenKind::String);
}

bool isOperatorOrPunctuation(const Token& token) {
  return token.is(TokenKind::Symbol) || token.is(TokenKind::Invalid);
}

bool isComparison(const Token& token) {
  switch (token.symbol) {
    case Equal:
    case NotEqual:
    case Less:
    case LessEqual:
    case Greater:
    case GreaterEqual:
      return true;
    default:
      return false;
  }
}

/// After these keywords comes a value, a name to import, or another statement; after the others nothing that is known.
bool isFollowed(const Token& token) {
  return token.is(TokenKind::Keyword) && !token.is(Keyword::Break) && !token.is(Keyword::Continue) &&
         !token.is(Keyword::Function);
}

/// The tokens of the line of an offset, up to it. Lines that go on in the next one are one line, whose ends, and empty
/// lines after them, say nothing.
std::vector<Token> tokensBefore(const std::u16string& text, std::size_t offset) {
  std::vector<Token> tokens = syntax::tokensOf(text, syntax::beginOfLine(text, offset), offset);
  std::erase_if(tokens, [&](const Token& token) {
    const bool isUnfinished = token.end == offset && text[offset - 1] != u'\n';
    return token.is(Newline) || (token.is(TokenKind::Continuation) && !isUnfinished);
  });
  return tokens;
}

/// The tokens before the cursor, read backwards.
class Reader {
 public:
  Reader(const std::u16string& text, std::size_t cursor)
      : text_(text), cursor_(cursor), tokens_(tokensBefore(text, cursor)) {}

  CursorContext read() {
    CursorContext context{CursorContext::Nothing, cursor_, cursor_};
    std::size_t count = tokens_.size();
    const Token* last = count == 0 ? nullptr : &tokens_.back();
    if (last != nullptr && last->isRemark()) return context;
    if (last != nullptr && last->end == cursor_) {
      if (isQuotedMember(count)) return quotedMember();
      if (isLiteral(*last)) return context;
      // It is being typed, so it belongs to what is completed and not to what is before that.
      if (last->isWord() || last->is(TokenKind::OpenText)) --count;
    }
    if (count < tokens_.size()) readTyped(context);
    readContext(context, count);
    return context;
  }

  /// The innermost call around the cursor, past brackets and parentheses that only group.
  std::optional<Call> call() const {
    std::size_t count = tokens_.size();
    if (count > 0 && tokens_.back().is(TokenKind::Comment)) return {};
    if (count > 0 && tokens_.back().end == cursor_ && !isOperatorOrPunctuation(tokens_.back())) --count;
    for (auto open = innermostOpen(count); open; open = innermostOpen(*open)) {
      if (auto found = callThatOpens(*open, count)) return found;
    }
    return {};
  }

  /// Where the chain of names, dots and bracketed groups begins that ends before token `end`; `end` when there is none.
  std::size_t beginOfChain(std::size_t end) const {
    std::size_t begin = end;
    std::size_t at = end;
    while (at > 0) {
      // Backwards, groups are passed over whole: what is in them is no part of the chain.
      if (is(at - 1, CloseParen) || is(at - 1, CloseBrace)) {
        const auto open = innermostOpen(at - 1);
        if (!open || tokens_[*open].blankBefore) return begin;
        at = *open;
        // "obj.('any name')": what is in this group is the name.
        if (at > 1 && is(at - 1, Dot)) --at;
        continue;
      }
      if (!tokens_[at - 1].isWord()) return begin;
      begin = --at;
      if (at < 2 || tokens_[at].blankBefore || !is(at - 1, Dot) || tokens_[at - 1].blankBefore) return begin;
      --at;
    }
    return begin;
  }

  /// Do the first `count` tokens end with a dot and the name of a member in quotes: ".('any name')"?
  bool isQuotedMember(std::size_t count) const {
    if (count <= 4 || !is(count - 1, CloseParen) || !is(count - 3, OpenParen)) return false;
    const Token& name = tokens_[count - 2];
    return (name.is(TokenKind::Text) || name.is(TokenKind::String)) && is(count - 4, Dot);
  }

  /// Of an offset in such a name, or after it, in the line of the reader's cursor.
  std::optional<DottedName> quotedNameAt(std::size_t offset) const {
    for (std::size_t count = 5; count <= tokens_.size(); ++count) {
      const bool isInside = tokens_[count - 3].begin <= offset && offset <= tokens_[count - 1].end;
      if (!isInside || !isQuotedMember(count)) continue;
      const std::size_t first = beginOfChain(count - 4);
      if (first == count - 4) return {};
      return DottedName{tokens_[first].begin, tokens_[count - 3].begin, tokens_[count - 1].end};
    }
    return {};
  }

 private:
  bool is(std::size_t at, syntax::Symbol symbol) const { return tokens_[at].is(symbol); }

  std::u16string textBetween(std::size_t begin, std::size_t end) const {
    if (begin >= end) return {};
    return text_.substr(tokens_[begin].begin, tokens_[end - 1].end - tokens_[begin].begin);
  }

  /// As if the name had been typed after the dot as it is.
  CursorContext quotedMember() const {
    const std::size_t dot = tokens_.size() - 4;
    CursorContext context{CursorContext::Nothing, tokens_[dot].end, cursor_};
    context.typed = syntax::contentOf(tokens_[dot + 2], text_);
    readMember(context, dot);
    return context;
  }

  void readTyped(CursorContext& context) const {
    const Token& last = tokens_.back();
    const std::size_t quote = last.is(TokenKind::OpenText) ? 1 : 0;
    context.begin = last.begin + quote;
    context.typed = text_.substr(context.begin, cursor_ - context.begin);
    if (quote == 0) return;
    context.kind = CursorContext::Text;
    context.quote = text_[last.begin];
  }

  /// What the first `count` tokens say about what follows them.
  void readContext(CursorContext& context, std::size_t count) const {
    if (context.kind != CursorContext::Text) {
      const bool touches = count > 0 && tokens_[count - 1].end == context.begin;
      if (touches && is(count - 1, Dot)) return readMember(context, count - 1);
      if (touches && is(count - 1, At)) {
        context.kind = CursorContext::Handle;
        return;
      }
      // A dot with a blank after it: what would follow it is no name that could be completed.
      if (count > 0 && is(count - 1, Dot)) return;
      if (context.typed.empty() && endsValue(count)) return;
      context.kind = CursorContext::Name;
    }
    context.target = targetBefore(count);
    context.beginsStatement = beginsStatement(count);
    context.call = callAround(count);
  }

  void readMember(CursorContext& context, std::size_t dot) const {
    const std::size_t begin = beginOfChain(dot);
    if (begin == dot || tokens_[dot].blankBefore) return;
    context.kind = CursorContext::Member;
    context.base = textBetween(begin, dot);
    context.call = callAround(begin);
  }

  /// After a value nothing begins: "x |", "f() |"; after "x = |" it does.
  bool endsValue(std::size_t count) const {
    if (count == 0) return false;
    const Token& before = tokens_[count - 1];
    if (before.isWord()) return !isFollowed(before) && !isInBrackets(count);
    if (isLiteral(before)) return !isInBrackets(count);
    return isCloser(before.symbol) && before.end == cursor_;
  }

  bool isInBrackets(std::size_t count) const {
    const auto open = innermostOpen(count);
    return open && !is(*open, OpenParen);
  }

  std::optional<std::size_t> innermostOpen(std::size_t count) const {
    return syntax::innermostOpen({tokens_.data(), count});
  }

  bool beginsStatement(std::size_t count) const {
    if (count == 0) return true;
    return !innermostOpen(count) && (is(count - 1, Semicolon) || is(count - 1, Comma));
  }

  /// The dotted chain before "=" or a comparison.
  std::u16string targetBefore(std::size_t count) const {
    if (count == 0) return {};
    if (!isComparison(tokens_[count - 1]) && !(is(count - 1, Assign) && !innermostOpen(count))) return {};
    const std::size_t begin = beginOfChain(count - 1);
    const std::u16string chain = textBetween(begin, count - 1);
    return chain.find(u'.') == std::u16string::npos ? std::u16string() : chain;
  }

  std::optional<Call> callAround(std::size_t count) const {
    const auto open = innermostOpen(count);
    return open ? callThatOpens(*open, count) : std::nullopt;
  }

  std::optional<Call> callThatOpens(std::size_t open, std::size_t count) const {
    // After a blank a parenthesis groups.
    if (open == 0 || !is(open, OpenParen) || tokens_[open].blankBefore) return {};
    const std::size_t begin = beginOfChain(open);
    if (begin == open) return {};
    Call call{textBetween(begin, open)};
    const auto starts = argumentStarts(open, count);
    call.argument = starts.size() - 1;
    call.name = nameOfArgument(starts, count);
    const std::size_t endOfFirst = starts.size() > 1 ? starts[1] - 1 : count;
    call.firstArgument = textBetween(starts[0], endOfFirst);
    return call;
  }

  /// Where each argument of the call begins whose bracket is token `open`.
  std::vector<std::size_t> argumentStarts(std::size_t open, std::size_t count) const {
    std::vector<std::size_t> starts{open + 1};
    int depth = 0;
    for (std::size_t at = open + 1; at < count; ++at) {
      depth += nestingOf(tokens_[at]);
      if (depth == 0 && is(at, Comma)) starts.push_back(at + 1);
    }
    return starts;
  }

  /// "f(x, Gain=|" and "f(x, 'Gain', |".
  std::u16string nameOfArgument(const std::vector<std::size_t>& starts, std::size_t count) const {
    const std::size_t start = starts.back();
    if (count == start + 2 && tokens_[start].isWord() && is(start + 1, Assign)) {
      return textBetween(start, start + 1);
    }
    if (count != start || starts.size() < 2) return {};
    const std::size_t before = starts[starts.size() - 2];
    const bool isText = tokens_[before].is(TokenKind::Text) || tokens_[before].is(TokenKind::String);
    if (start != before + 2 || !isText) return {};
    const std::u16string text = textBetween(before, before + 1);
    return text.substr(1, text.size() - 2);
  }

  const std::u16string& text_;
  const std::size_t cursor_;
  const std::vector<Token> tokens_;
};

/// Of "|(pump, 3)" after the cursor: "pump".
std::u16string firstArgumentAfter(const std::u16string& text, std::size_t cursor) {
  std::size_t at = cursor;
  while (at < text.size() && syntax::isNamePart(text[at])) ++at;
  if (at == text.size() || text[at] != u'(') return {};
  // Only this line: a call that has not been closed would else run to the end of the text.
  const std::size_t end = std::min(text.find_first_of(u"\r\n", at), text.size());
  const auto tokens = syntax::tokensOf(text, at + 1, end);
  int depth = 0;
  for (const Token& token : tokens) {
    if (depth == 0 && (token.is(Comma) || token.is(CloseParen))) {
      return text.substr(tokens.front().begin, token.begin - tokens.front().begin);
    }
    depth += nestingOf(token);
  }
  return tokens.empty() ? std::u16string() : text.substr(tokens.front().begin, end - tokens.front().begin);
}

}  // namespace

CursorContext contextAt(const std::u16string& text, std::size_t cursor) {
  const std::size_t at = bounded(text, cursor);
  CursorContext context = Reader(text, at).read();
  if (context.kind == CursorContext::Name || context.kind == CursorContext::Handle) {
    context.following = firstArgumentAfter(text, at);
  }
  return context;
}

std::optional<Call> callAt(const std::u16string& text, std::size_t cursor) {
  return Reader(text, bounded(text, cursor)).call();
}

std::optional<DottedName> nameAt(const std::u16string& text, std::size_t offset) {
  std::size_t end = bounded(text, offset);
  const std::size_t endOfLine = std::min(text.find_first_of(u"\r\n", end), text.size());
  if (const auto quoted = Reader(text, endOfLine).quotedNameAt(end)) return quoted;
  while (end < text.size() && syntax::isNamePart(text[end])) ++end;
  const auto tokens = tokensBefore(text, end);
  if (tokens.empty() || !tokens.back().isWord() || tokens.back().end != end) return {};
  const std::size_t first = Reader(text, end).beginOfChain(tokens.size());
  return DottedName{tokens[first].begin, tokens.back().begin, end};
}

}  // namespace frontend
