#include "frontend/CursorContext.h"

#include <algorithm>
#include <array>
#include <vector>

#include "frontend/Tokens.h"

namespace frontend {

namespace {

bool isTrail(char16_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool isLead(char16_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }

std::size_t bounded(const std::u16string& text, std::size_t cursor) {
  if (cursor >= text.size()) return text.size();
  const bool isInside = cursor > 0 && isTrail(text[cursor]) && isLead(text[cursor - 1]);
  return isInside ? cursor - 1 : cursor;
}

/// The tokens before the cursor, read backwards.
class Reader {
 public:
  Reader(const std::u16string& text, std::size_t cursor)
      : text_(text), cursor_(cursor), tokens_(tokensOf(text, beginOfLine(text, cursor), cursor)) {}

  CursorContext read() {
    CursorContext context{CursorContext::Nothing, cursor_, cursor_};
    std::size_t count = tokens_.size();
    const Token* last = count == 0 ? nullptr : &tokens_.back();
    if (last != nullptr && last->kind == TokenKind::Comment) return context;
    if (last != nullptr && last->end == cursor_) {
      if (last->kind == TokenKind::Number || last->kind == TokenKind::Text) return context;
      if (last->kind == TokenKind::Name || last->kind == TokenKind::OpenText) --count;
    }
    if (count < tokens_.size()) takeTyped(context);
    readContext(context, count);
    return context;
  }

  /// The innermost call around the cursor, past brackets and parentheses that only group.
  std::optional<Call> call() const {
    std::size_t count = tokens_.size();
    if (count > 0 && tokens_.back().kind == TokenKind::Comment) return {};
    if (count > 0 && tokens_.back().end == cursor_ && tokens_.back().kind != TokenKind::Symbol) --count;
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
      if (is(at - 1, u')') || is(at - 1, u'}')) {
        const std::size_t open = opening(at - 1);
        if (open == at - 1 || tokens_[open].isSeparated) return begin;
        at = open;
        continue;
      }
      if (tokens_[at - 1].kind != TokenKind::Name) return begin;
      begin = --at;
      if (at < 2 || tokens_[at].isSeparated || !is(at - 1, u'.') || tokens_[at - 1].isSeparated) return begin;
      --at;
    }
    return begin;
  }

 private:
  bool is(std::size_t at, char16_t symbol) const {
    const Token& token = tokens_[at];
    return token.kind == TokenKind::Symbol && token.end == token.begin + 1 && text_[token.begin] == symbol;
  }

  bool is(std::size_t at, std::u16string_view symbol) const {
    const Token& token = tokens_[at];
    return token.kind == TokenKind::Symbol && textOf(at, at + 1) == symbol;
  }

  std::u16string textOf(std::size_t begin, std::size_t end) const {
    if (begin >= end) return {};
    return text_.substr(tokens_[begin].begin, tokens_[end - 1].end - tokens_[begin].begin);
  }

  void takeTyped(CursorContext& context) const {
    const Token& last = tokens_.back();
    const std::size_t quote = last.kind == TokenKind::OpenText ? 1 : 0;
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
      if (touches && is(count - 1, u'.')) return readMember(context, count - 1);
      if (touches && is(count - 1, u'@')) {
        context.kind = CursorContext::Handle;
        return;
      }
      if (count > 0 && is(count - 1, u'.')) return;
      if (context.typed.empty() && endsValue(count)) return;
      context.kind = CursorContext::Name;
    }
    context.target = targetBefore(count);
    context.beginsStatement = beginsStatement(count);
    context.call = callAround(count);
  }

  void readMember(CursorContext& context, std::size_t dot) const {
    const std::size_t begin = beginOfChain(dot);
    if (begin == dot || tokens_[dot].isSeparated) return;
    context.kind = CursorContext::Member;
    context.base = textOf(begin, dot);
    context.call = callAround(begin);
  }

  /// Behind a value nothing begins: "x |", "f() |"; behind "x = |" it does.
  bool endsValue(std::size_t count) const {
    if (count == 0) return false;
    const Token& before = tokens_[count - 1];
    if (before.kind == TokenKind::Name) return !isKeyword(textOf(count - 1, count)) && !isInBrackets(count);
    if (before.kind == TokenKind::Number || before.kind == TokenKind::Text) return !isInBrackets(count);
    const bool closes = is(count - 1, u')') || is(count - 1, u']') || is(count - 1, u'}');
    return closes && before.end == cursor_;
  }

  static bool isKeyword(const std::u16string& word) {
    static const std::vector<std::u16string> keywords = {u"if",  u"elseif", u"else",   u"while",
                                                         u"for", u"return", u"import", u"end"};
    return std::ranges::count(keywords, word) > 0;
  }

  bool isInBrackets(std::size_t count) const {
    const auto open = innermostOpen(count);
    return open && !is(*open, u'(');
  }

  std::optional<std::size_t> innermostOpen(std::size_t count) const {
    std::size_t depth = 0;
    for (std::size_t at = count; at-- > 0;) {
      if (is(at, u')') || is(at, u']') || is(at, u'}')) ++depth;
      if (!is(at, u'(') && !is(at, u'[') && !is(at, u'{')) continue;
      if (depth == 0) return at;
      --depth;
    }
    return {};
  }

  /// The token that opens the group which token `close` closes; `close` itself when nothing does.
  std::size_t opening(std::size_t close) const {
    const auto open = innermostOpen(close);
    return open.value_or(close);
  }

  bool beginsStatement(std::size_t count) const {
    if (count == 0) return true;
    if (innermostOpen(count)) return false;
    return is(count - 1, u';') || is(count - 1, u',') || isEndOfLine(count - 1);
  }

  bool isEndOfLine(std::size_t at) const { return is(at, u'\n') || is(at, u'\r'); }

  /// The dotted chain before "=" or a comparison.
  std::u16string targetBefore(std::size_t count) const {
    if (count == 0) return {};
    static constexpr std::array<std::u16string_view, 6> comparisons = {u"==", u"~=", u"<",
                                                                       u"<=", u">",  u">="};
    const bool compares =
        std::ranges::any_of(comparisons, [&](std::u16string_view each) { return is(count - 1, each); });
    if (!compares && !(is(count - 1, u'=') && !innermostOpen(count))) return {};
    const std::size_t begin = beginOfChain(count - 1);
    const std::u16string chain = textOf(begin, count - 1);
    return chain.find(u'.') == std::u16string::npos ? std::u16string() : chain;
  }

  std::optional<Call> callAround(std::size_t count) const {
    const auto open = innermostOpen(count);
    return open ? callThatOpens(*open, count) : std::nullopt;
  }

  std::optional<Call> callThatOpens(std::size_t open, std::size_t count) const {
    if (open == 0 || !is(open, u'(') || tokens_[open].isSeparated) return {};
    const std::size_t begin = beginOfChain(open);
    if (begin == open) return {};
    Call call{textOf(begin, open)};
    const auto starts = argumentStarts(open, count);
    call.argument = starts.size() - 1;
    call.name = nameOfArgument(starts, count);
    const std::size_t endOfFirst = starts.size() > 1 ? starts[1] - 1 : count;
    call.firstArgument = textOf(starts[0], endOfFirst);
    return call;
  }

  /// Where each argument of the call begins whose bracket is token `open`.
  std::vector<std::size_t> argumentStarts(std::size_t open, std::size_t count) const {
    std::vector<std::size_t> starts{open + 1};
    std::size_t depth = 0;
    for (std::size_t at = open + 1; at < count; ++at) {
      if (is(at, u'(') || is(at, u'[') || is(at, u'{')) ++depth;
      if (is(at, u')') || is(at, u']') || is(at, u'}')) --depth;
      if (depth == 0 && is(at, u',')) starts.push_back(at + 1);
    }
    return starts;
  }

  /// "f(x, Gain=|" and "f(x, 'Gain', |".
  std::u16string nameOfArgument(const std::vector<std::size_t>& starts, std::size_t count) const {
    const std::size_t start = starts.back();
    if (count == start + 2 && tokens_[start].kind == TokenKind::Name && is(start + 1, u'=')) {
      return textOf(start, start + 1);
    }
    if (count != start || starts.size() < 2) return {};
    const std::size_t before = starts[starts.size() - 2];
    if (start != before + 2 || tokens_[before].kind != TokenKind::Text) return {};
    const std::u16string text = textOf(before, before + 1);
    return text.substr(1, text.size() - 2);
  }

  const std::u16string& text_;
  const std::size_t cursor_;
  const std::vector<Token> tokens_;
};

/// Of "|(pump, 3)" behind the cursor: "pump".
std::u16string firstArgumentBehind(const std::u16string& text, std::size_t cursor) {
  std::size_t at = cursor;
  while (at < text.size() && isNamePart(text[at])) ++at;
  if (at == text.size() || text[at] != u'(') return {};
  const std::size_t end = std::min(text.find_first_of(u"\r\n", at), text.size());
  const auto tokens = tokensOf(text, at + 1, end);
  std::size_t depth = 0;
  for (const Token& token : tokens) {
    const std::u16string_view symbol(text.data() + token.begin, token.end - token.begin);
    if (depth == 0 && (symbol == u"," || symbol == u")")) {
      return text.substr(tokens.front().begin, token.begin - tokens.front().begin);
    }
    if (symbol == u"(" || symbol == u"[" || symbol == u"{") ++depth;
    if (symbol == u")" || symbol == u"]" || symbol == u"}") --depth;
  }
  return tokens.empty() ? std::u16string() : text.substr(tokens.front().begin, end - tokens.front().begin);
}

}  // namespace

CursorContext contextAt(const std::u16string& text, std::size_t cursor) {
  const std::size_t at = bounded(text, cursor);
  CursorContext context = Reader(text, at).read();
  if (context.kind == CursorContext::Name || context.kind == CursorContext::Handle) {
    context.following = firstArgumentBehind(text, at);
  }
  return context;
}

std::optional<Call> callAt(const std::u16string& text, std::size_t cursor) {
  return Reader(text, bounded(text, cursor)).call();
}

std::optional<DottedName> nameAt(const std::u16string& text, std::size_t offset) {
  std::size_t end = bounded(text, offset);
  while (end < text.size() && isNamePart(text[end])) ++end;
  const auto tokens = tokensOf(text, beginOfLine(text, end), end);
  if (tokens.empty() || tokens.back().kind != TokenKind::Name || tokens.back().end != end) return {};
  const std::size_t first = Reader(text, end).beginOfChain(tokens.size());
  return DottedName{tokens[first].begin, tokens.back().begin, end};
}

}  // namespace frontend
