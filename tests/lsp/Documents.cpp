#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/Table.h"
#include "tests/support/Text.h"
#include "tools/lsp/Documents.h"

using tools::lsp::Document;
using tools::lsp::Position;
using tools::lsp::PositionEncoding;

namespace {

constexpr auto utf8 = PositionEncoding::Utf8;
constexpr auto utf16 = PositionEncoding::Utf16;

/// A two-byte, a three-byte and a four-byte character, and ends of lines of every kind.
const std::u16string mixed = u"a\u00e4b\r\n\u20ac\U0001F600c\rd\n\ne";

TEST(Documents, PositionsAreOffsets) {
  struct Row {
    PositionEncoding encoding;
    Position position;
    std::size_t offset;
    Position back;
  };
  const std::vector<Row> rows{
      {utf16, {0, 0}, 0, {0, 0}},  {utf16, {0, 2}, 2, {0, 2}},      {utf16, {0, 3}, 3, {0, 3}},
      {utf16, {0, 4}, 3, {0, 3}},  {utf16, {0, 5}, 3, {0, 3}},      {utf16, {0, 2147483647}, 3, {0, 3}},
      {utf16, {1, 0}, 5, {1, 0}},  {utf16, {1, 1}, 6, {1, 1}},      {utf16, {1, 2}, 6, {1, 1}},
      {utf16, {1, 3}, 8, {1, 3}},  {utf16, {1, 4}, 9, {1, 4}},      {utf16, {1, 9}, 9, {1, 4}},
      {utf16, {2, 0}, 10, {2, 0}}, {utf16, {2, 9}, 11, {2, 1}},     {utf16, {3, 0}, 12, {3, 0}},
      {utf16, {3, 1}, 12, {3, 0}}, {utf16, {4, 0}, 13, {4, 0}},     {utf16, {4, 1}, 14, {4, 1}},
      {utf16, {5, 0}, 14, {4, 1}}, {utf16, {~0ULL, 0}, 14, {4, 1}}, {utf16, {0, ~0ULL}, 3, {0, 3}},
      {utf8, {0, 1}, 1, {0, 1}},   {utf8, {0, 2}, 1, {0, 1}},       {utf8, {0, 3}, 2, {0, 3}},
      {utf8, {0, 4}, 3, {0, 4}},   {utf8, {0, 5}, 3, {0, 4}},       {utf8, {1, 1}, 5, {1, 0}},
      {utf8, {1, 2}, 5, {1, 0}},   {utf8, {1, 3}, 6, {1, 3}},       {utf8, {1, 4}, 6, {1, 3}},
      {utf8, {1, 6}, 6, {1, 3}},   {utf8, {1, 7}, 8, {1, 7}},       {utf8, {1, 8}, 9, {1, 8}},
      {utf8, {1, 99}, 9, {1, 8}},  {utf8, {4, 1}, 14, {4, 1}},      {utf8, {9, 9}, 14, {4, 1}}};
  for (const Row& row : rows) {
    const Document document(mixed, row.encoding);
    const std::size_t offset = document.offsetOf(row.position);
    const Position back = document.positionOf(offset);
    SCOPED_TRACE(std::to_string(row.position.line) + ":" + std::to_string(row.position.character));
    EXPECT_EQ(offset, row.offset);
    EXPECT_EQ(back.line, row.back.line);
    EXPECT_EQ(back.character, row.back.character);
  }
}

TEST(Documents, EveryOffsetHasAPositionAndEveryPositionAnOffset) {
  const std::u16string lone{0xD800, u'a', 0xDC00, 0xD800, u'\r', 0xDC00, u'\n'};
  for (const std::u16string& text : {mixed, lone, std::u16string(), std::u16string(u"\r\r\n\n\r")}) {
    for (const PositionEncoding encoding : {utf8, utf16}) {
      const Document document(text, encoding);
      for (std::size_t offset = 0; offset <= text.size() + 3; ++offset) {
        const Position position = document.positionOf(offset);
        const std::size_t back = document.offsetOf(position);
        EXPECT_LE(back, std::min(offset, text.size()));
        EXPECT_EQ(document.positionOf(back).character, position.character) << offset;
        EXPECT_EQ(document.positionOf(back).line, position.line) << offset;
      }
    }
  }
}

TEST(Documents, LinesEndInEveryWay) {
  const std::vector<std::pair<std::u16string, std::vector<std::u16string>>> rows{
      {u"", {u""}},
      {u"a", {u"a"}},
      {u"a\n", {u"a", u""}},
      {u"a\r\nb", {u"a", u"b"}},
      {u"\r", {u"", u""}},
      {u"\n\r", {u"", u"", u""}},
      {u"\r\r\n", {u"", u"", u""}},
      {u"a\u2028b\x0b", {u"a\u2028b\x0b"}}};
  for (const auto& [text, expected] : rows) {
    const Document document(text, utf16);
    std::vector<std::u16string> lines;
    for (std::size_t number = 0; number < document.lineCount(); ++number)
      lines.emplace_back(document.line(number));
    EXPECT_EQ(lines, expected) << shown(text);
  }
}

TEST(Documents, AreEdited) {
  struct Row {
    std::u16string before;
    tools::lsp::Range range;
    std::u16string text;
    std::u16string after;
  };
  const std::vector<Row> rows{{u"", {{0, 0}, {0, 0}}, u"a", u"a"},
                              {u"abc", {{0, 1}, {0, 2}}, u"", u"ac"},
                              {u"abc", {{0, 2}, {0, 1}}, u"X", u"aXc"},
                              {u"a\nb\nc", {{0, 1}, {2, 0}}, u"", u"ac"},
                              {u"a\r\nb", {{0, 9}, {0, 9}}, u"!", u"a!\r\nb"},
                              {u"a\r\nb", {{0, 1}, {1, 0}}, u"", u"ab"},
                              {u"a\nb", {{7, 0}, {9, 9}}, u"!", u"a\nb!"},
                              {u"\U0001F600", {{0, 1}, {0, 2}}, u"x", u"x"},
                              {u"\U0001F600a", {{0, 2}, {0, 2}}, u"x", u"\U0001F600xa"},
                              {u"a\rb", {{1, 0}, {1, 0}}, u"\n", u"a\r\nb"}};
  for (const Row& row : rows) {
    Document document(row.before, utf16);
    document.replace(row.range, row.text);
    EXPECT_EQ(document.text(), row.after) << shown(row.before);
    EXPECT_EQ(document.positionOf(1000).line, Document(row.after, utf16).positionOf(1000).line)
        << shown(row.before);
  }
}

TEST(Documents, ALongLineIsQuickEnough) {
  const Document document(std::u16string(1 << 20, u'\u00e4'), utf8);
  EXPECT_EQ(document.offsetOf({0, 2 << 20}), std::size_t{1} << 20);
  EXPECT_EQ(document.positionOf(1 << 20).character, std::uint64_t{2} << 20);
}

}  // namespace
