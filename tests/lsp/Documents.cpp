#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/Growth.h"
#include "tests/support/Table.h"
#include "tests/support/Text.h"
#include "tools/lsp/Documents.h"

using tools::lsp::Document;
using tools::lsp::PositionEncoding;
using tools::lsp::ProtocolPosition;

namespace {

constexpr auto utf8 = PositionEncoding::Utf8;
constexpr auto utf16 = PositionEncoding::Utf16;

/// A two-byte, a three-byte and a four-byte character, and ends of lines of every kind.
const std::u16string mixed = u"a\u00e4b\r\n\u20ac\U0001F600c\rd\n\ne";

TEST(Documents, PositionsAreOffsets) {
  for (const auto& [encoding, asked, expected, expectedBack] :
       rowsOf<4>("tests/lsp/tables.rows", "Documents.PositionsAreOffsets")) {
    const Document document(mixed, encoding == "utf8" ? utf8 : utf16);
    ProtocolPosition position;
    std::istringstream(asked) >> position.line >> position.character;
    const std::size_t offset = document.offsetOf(position);
    const ProtocolPosition back = document.positionOf(offset);
    EXPECT_EQ(std::to_string(offset), expected) << asked;
    EXPECT_EQ(std::to_string(back.line) + ":" + std::to_string(back.character), expectedBack) << asked;
  }
}

TEST(Documents, EveryOffsetHasAPositionAndEveryPositionAnOffset) {
  const std::u16string lone{0xD800, u'a', 0xDC00, 0xD800, u'\r', 0xDC00, u'\n'};
  for (const std::u16string& text : {mixed, lone, std::u16string(), std::u16string(u"\r\r\n\n\r")}) {
    for (const PositionEncoding encoding : {utf8, utf16}) {
      const Document document(text, encoding);
      for (std::size_t offset = 0; offset <= text.size() + 3; ++offset) {
        const ProtocolPosition position = document.positionOf(offset);
        const std::size_t back = document.offsetOf(position);
        EXPECT_LE(back, std::min(offset, text.size()));
        EXPECT_EQ(document.positionOf(back).character, position.character) << offset;
        EXPECT_EQ(document.positionOf(back).line, position.line) << offset;
      }
    }
  }
}

TEST(Documents, LinesEndInEveryWay) {
  for (const Cells& row : rowsOf("tests/lsp/tables.rows", "Documents.LinesEndInEveryWay")) {
    const Document document(wide(row.front()), utf16);
    Cells lines;
    for (std::size_t number = 0; number < document.lineCount(); ++number)
      lines.push_back(narrow(std::u16string(document.line(number))));
    EXPECT_EQ(lines, Cells(row.begin() + 1, row.end())) << row.front();
  }
}

TEST(Documents, AreEdited) {
  for (const auto& [before, edited, text, after] :
       rowsOf<4>("tests/lsp/tables.rows", "Documents.AreEdited")) {
    tools::lsp::Range range;
    std::istringstream(edited) >> range.start.line >> range.start.character >> range.end.line >>
        range.end.character;
    Document document(wide(before), utf16);
    document.replace(range, wide(text));
    EXPECT_EQ(document.text(), wide(after)) << before;
    EXPECT_EQ(document.positionOf(1000).line, Document(wide(after), utf16).positionOf(1000).line) << before;
  }
}

TEST(Documents, ALongLineIsQuickEnough) {
  const Document document(std::u16string(1 << 20, u'\u00e4'), utf8);
  EXPECT_EQ(document.offsetOf({0, 2 << 20}), std::size_t{1} << 20);
  EXPECT_EQ(document.positionOf(1 << 20).character, std::uint64_t{2} << 20);
}

/// Edits at random of a text with all line ends, long enough to be kept in several pieces: each time it is the text that a
/// plain one becomes, with the same lines.
TEST(Documents, StayWhatAPlainTextBecomes) {
  std::mt19937 random(7);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  const std::u16string parts[] = {
      u"\r",     u"\n",    u"\r\n",  u"word \u00e4\u20ac", u"", std::u16string(3000, u'x'),
      u"y\nz\r", {0xD83D}, {0xDE00}, u"\U0001F600"};
  std::u16string plain;
  tools::lsp::EditedText edited(plain);
  for (int edit = 0; edit < 3000; ++edit) {
    const std::size_t begin = below(plain.size() + 1);
    const std::size_t end = std::min(plain.size(), begin + (below(40) == 0 ? 9000 : below(4)));
    const std::u16string& text = parts[below(std::size(parts))];
    plain.replace(begin, end - begin, text);
    edited.replace(begin, end, text);
    ASSERT_EQ(edited.size(), plain.size()) << edit;
    if (edit % 50 != 0) continue;
    ASSERT_EQ(edited.whole(), plain) << edit;
    const tools::lsp::EditedText fresh(plain);
    const std::size_t at = below(plain.size() + 1), number = edited.lineNumberAt(at);
    const auto before = plain.substr(0, at);
    const std::size_t linesBefore = static_cast<std::size_t>(std::ranges::count(before, u'\n'));
    EXPECT_EQ((std::vector{edited.lineCount(), edited.codeLineNumberAt(at), edited.codeLineStart(linesBefore),
                           number, edited.lineStart(number)}),
              (std::vector{fresh.lineCount(), linesBefore, before.rfind(u'\n') + 1, fresh.lineNumberAt(at),
                           fresh.lineStart(number)}))
        << edit;
    EXPECT_LE(edited.lineStart(number), at);
    EXPECT_EQ(edited.lineEnd(number),
              std::min(plain.find_first_of(u"\r\n", edited.lineStart(number)), plain.size()));
    const std::u16string part = plain.substr(at / 2, at - at / 2);
    EXPECT_EQ(edited.slice(at / 2, at), part);
    const tools::lsp::EditedText alone(part);
    const std::size_t bytes = alone.bytesBetween(0, part.size());
    EXPECT_EQ(edited.bytesBetween(at / 2, at), bytes);
    EXPECT_EQ(edited.isInsidePair(at), fresh.isInsidePair(at));
    EXPECT_EQ(edited.offsetAfterBytes(at / 2, plain.size(), bytes), edited.isInsidePair(at) ? at - 1 : at);
  }
  EXPECT_GT(plain.size(), 20000U);
}

std::u16string linesOfCode(std::size_t count) {
  std::u16string text;
  for (; count > 0; --count) text += u"x = y + 1;\n";
  return text;
}

/// As many edits in one message as the document has words, each on a line of its own or all on one.
TEST(Documents, TakeThousandsOfEditsInLinearTime) {
  for (const auto encoding : {utf8, utf16}) {
    const auto edit = [&](std::size_t count, bool isOneLine) {
      std::u16string text;
      for (std::size_t at = 0; at < count; ++at)
        text += std::u16string(99, u'a') + (isOneLine ? u'b' : u'\n');
      Document document(text, encoding);
      for (std::size_t at = 0; at < count; ++at) {
        const ProtocolPosition begin{isOneLine ? 0 : at, isOneLine ? 100 * at : 0};
        document.replace({begin, {begin.line, begin.character + 1}}, u"z");
        text[100 * at] = u'z';
      }
      EXPECT_EQ(document.text(), text);
    };
    for (const bool isOneLine : {false, true})
      EXPECT_TRUE(isLinear([&] { edit(100, isOneLine); }, [&] { edit(800, isOneLine); }));
  }
}

/// What a key costs in a document of 100,000 lines is far from a thousand times what it costs in one of 100, also where each
/// line gives a value to another variable.
TEST(Documents, TakeAKeyWhateverTheirLength) {
  const auto open = [](std::size_t lines, bool isDistinct) {
    std::u16string text;
    for (std::size_t at = 0; at < lines; ++at)
      text += wide("x" + (isDistinct ? std::to_string(at) : "") + " = y + 1;\n");
    return tools::lsp::OpenDocument{Document(text, utf16), 0, true};
  };
  const auto type = [](tools::lsp::OpenDocument& document) {
    for (std::uint64_t key = 0; key < 50; ++key) {
      document.change({{50, key}, {50, key}}, key % 10 == 9 ? u"\n" : u"p");
      const auto& variables = document.outlineAtHand().variables;
      const auto few = document.variablesFor(variables, {"x50"}, "x", 10);
      EXPECT_EQ(few.front().name, variables.front().name);
      EXPECT_LE(few.size(), 100U);
      EXPECT_GT(document.content.positionInCode(document.content.lineStart(51)).line, 51);
    }
  };
  for (const bool isDistinct : {false, true}) {
    auto small = open(100, isDistinct), large = open(100'000, isDistinct);
    for (auto* document : {&small, &large}) document->outline(), type(*document);
    EXPECT_TRUE(isLinear([&] { type(small); }, [&] { type(large); })) << isDistinct;
    EXPECT_TRUE(large.isOutlineOld);
  }
}

/// Whatever is named and the first ones that fit, in their order, as among all of them.
TEST(Documents, FindVariablesByTheirNames) {
  const tools::lsp::VariableIndex::Variables all = {{"b2", {}}, {"Abc", {}}, {"abd", {}},
                                                    {"b", {}},  {"aB", {}},  {"c", {}},
                                                    {"ab", {}}, {"c1", {}},  {"B", {}}};
  const tools::lsp::VariableIndex index(all);
  for (const auto& [words, typed, most, expected] :
       rowsOf<4>("tests/lsp/tables.rows", "Documents.FindVariablesByTheirNames")) {
    std::string names;
    for (const auto& variable : index.fitting(all, {words}, typed, std::stoul(most)))
      names += variable.name + " ";
    EXPECT_EQ(names, expected + " ") << words << typed;
  }
}

/// Positions of what has been read move with lines that come and go above them.
TEST(Documents, KeepAnOutlineThatMoves) {
  tools::lsp::OpenDocument document{
      Document(linesOfCode(10'000) + u"function f(a)\nlocal = 1;\nend\n", utf16), 0, true};
  const int line = document.outline().functions.front().begin.line;
  document.change({{5, 0}, {5, 0}}, u"new\n\n");
  const auto moved = document.outlineAtHand().functions.front();
  EXPECT_EQ(std::pair(moved.begin.line, moved.variables.front().at.line), std::pair(line + 2, line + 3));
  document.change({{5, 0}, {9, 0}}, u"");
  EXPECT_EQ(document.outlineAtHand().functions.front().begin.line, line - 2);
  EXPECT_EQ(document.outline().functions.front().begin.line, line - 2);
}

}  // namespace
