#include "syntax/Tokenizer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "embedded/Host.h"
#include "syntax/Characters.h"
#include "syntax/Statements.h"
#include "tests/support/Table.h"

namespace {

using syntax::Token;
using syntax::TokenKind;

std::string printable(std::u16string_view text) {
  std::string result;
  for (const char16_t unit : text)
    result += unit == u'\n' ? '$' : unit < 0x80 ? static_cast<char>(unit) : '?';
  return result;
}

/// "letter of the kind:text", a "_" for each blank or remark before a token. The letters stand in the order of the kinds.
std::string shown(const std::vector<Token>& tokens, const std::u16string& text) {
  std::string all;
  for (const Token& token : tokens) {
    all += all.empty() ? "" : " ";
    all += token.blankBefore ? "_" : "";
    all += "$skn1tSoc.!"[static_cast<std::size_t>(token.kind)];
    all += ":" + printable(token.in(text));
  }
  return all;
}

std::vector<Token> tokensOf(const std::u16string& text) { return syntax::tokensOf(text, 0, text.size()); }

const std::u16string program =
    u"function [a, b] = lab.f(x, ~)\n x.y(2).z{3} = [1 -2\n 'a' \"b\"]'; % c\n"
    u"for k = {x, @f}, if ~k && 2e3 ..., \n break, elseif x.^2, end, end\nend\nfunction g, p._flow = p.end, "
    u"end";

/// Every beginning and every end of a program, and what else somebody can have typed.
std::vector<std::u16string> typedTexts() {
  std::vector<std::u16string> texts{
      u"x = 'open", u"\u00e4",    u"x = \u00e4 'b\nc", u"_x",        std::u16string(1, u'\0'),
      u"1...",      u"...",       u"x ...\n'",         u"a\r\nb\rc", u"]})",
      u"'''",       u"p. ...\n x"};
  for (std::size_t at = 0; at <= program.size(); ++at) {
    texts.push_back(program.substr(0, at));
    texts.push_back(program.substr(at));
  }
  return texts;
}

TEST(Tokens, OfCode) {
  for (const auto& [code, expected] : rowsOf<2>("tests/code/texts.rows", "tokens")) {
    const std::u16string text = wide(code);
    EXPECT_EQ(shown(tokensOf(text), text), expected) << code;
  }
}

TEST(Tokens, SayWhatTheyAre) {
  const std::u16string text = u"1e400, 'it''s', \"a\"\"b\", elseif";
  const auto tokens = tokensOf(text);
  ASSERT_EQ(tokens.size(), 7U);
  EXPECT_GT(numberOf(tokens[0], text), 1e300);
  EXPECT_EQ(contentOf(tokens[2], text), u"it's");
  EXPECT_EQ(contentOf(tokens[4], text), u"a\"b");
  EXPECT_EQ(nameOf(tokens[6], text), "elseif");
  EXPECT_TRUE(tokens[6].is(syntax::Keyword::ElseIf));
}

/// Tokens follow each other, between them are blanks, and each knows its position.
TEST(Tokens, CoverEveryText) {
  for (const std::u16string& text : typedTexts()) {
    const auto areBlank = [&](std::size_t from, std::size_t to) {
      return from <= to && std::ranges::all_of(text.substr(from, to - from), syntax::isBlank);
    };
    std::size_t covered = 0;
    for (const Token& token : tokensOf(text)) {
      ASSERT_LT(token.begin, token.end) << printable(text);
      EXPECT_TRUE(areBlank(std::exchange(covered, token.end), token.begin)) << printable(text);
      const std::u16string before = text.substr(0, token.begin);
      const auto line = static_cast<int>(std::count(before.begin(), before.end(), u'\n')) + 1;
      const auto column = static_cast<int>(before.size() - (before.rfind(u'\n') + 1)) + 1;
      EXPECT_EQ(token.at, (syntax::Position{line, column})) << printable(text) << token.begin;
    }
    EXPECT_TRUE(areBlank(covered, text.size())) << printable(text);
  }
}

/// What the tokenizer calls a problem is what the evaluator refuses, in these words, if nothing before it is wrong.
TEST(Tokens, AreWhatTheEvaluatorReads) {
  std::size_t problems = 0;
  for (const std::u16string& text : typedTexts()) {
    const auto failure = embedded::checkCode(text);
    const std::string message = failure ? failure->message : std::string();
    const bool isOfTokens = message.find("lacks its closing") != std::string::npos ||
                            message.find("cannot stand here") != std::string::npos;
    const auto tokens = tokensOf(text);
    const auto problem =
        std::find_if(tokens.begin(), tokens.end(), [](const Token& each) { return each.isProblem(); });
    if (problem == tokens.end()) {
      EXPECT_FALSE(isOfTokens) << printable(text);
      continue;
    }
    ++problems;
    ASSERT_TRUE(failure.has_value()) << printable(text);
    if (!isOfTokens) {
      EXPECT_LE(failure->line, problem->at.line) << printable(text);
      continue;
    }
    EXPECT_EQ(message, problemOf(*problem, text));
    EXPECT_EQ((syntax::Position{failure->line, failure->column}), problem->at) << printable(text);
  }
  EXPECT_GE(problems, 10U);
}

TEST(Tokens, LinesGoOnAfterDots) {
  for (const auto& [marked] : rowsOf<1>("tests/code/texts.rows", "begins of lines")) {
    std::u16string text = wide(marked);
    const std::size_t begin = text.find(u'^');
    text.erase(begin, 1);
    const std::size_t offset = text.find(u'|');
    text.erase(offset, 1);
    EXPECT_EQ(syntax::beginOfLine(text, offset), begin) << printable(text);
  }
}

}  // namespace
