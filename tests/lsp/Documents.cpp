#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

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

}  // namespace
