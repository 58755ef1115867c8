#include "embedded/Outline.h"

#include <gtest/gtest.h>

#include <boost/algorithm/string.hpp>
#include <string>
#include <vector>

#include "embedded/Host.h"
#include "tests/support/Table.h"

namespace {

std::string shown(syntax::Position place) {
  return std::to_string(place.line) + ":" + std::to_string(place.column);
}

std::string shown(const std::vector<embedded::CodeVariable>& variables) {
  std::string text;
  for (const auto& variable : variables) {
    text += " " + variable.name + "@" + shown(variable.at);
    if (!variable.maker.empty()) text += "=" + variable.maker;
  }
  return text;
}

/// "name(inputs)->outputs begin-end variable@place=maker ...; " of each function, then the variables of a script.
std::string outlineOf(const std::string& text) {
  const embedded::CodeOutline outline = embedded::outlineOf(wide(text));
  std::string all;
  for (const auto& function : outline.functions) {
    all += function.name + "(" + boost::join(function.inputs, ",") + ")->" +
           boost::join(function.outputs, ",") + " " + shown(function.begin) + "-" + shown(function.end) +
           shown(function.variables) + "; ";
  }
  return boost::trim_copy(all + shown(outline.variables));
}

TEST(Outlines, OfCode) {
  for (const auto& [text, expected] : rowsOf<2>("tests/code/texts.rows", "outlines of code")) {
    EXPECT_EQ(outlineOf(text), expected) << text;
    EXPECT_FALSE(embedded::checkCode(wide(text)).has_value()) << text;
  }
}

TEST(Outlines, OfWhatIsBeingTyped) {
  for (const auto& [text, expected] : rowsOf<2>("tests/code/texts.rows", "outlines of what is being typed")) {
    EXPECT_EQ(outlineOf(text), expected) << text;
    EXPECT_TRUE(embedded::checkCode(wide(text)).has_value()) << text;
  }
}

/// Nothing that somebody can have typed so far is too much.
TEST(Outlines, OfEveryBeginning) {
  const std::string text =
      "function [a, b] = lab.f(x, ~)\n x.y(2).z{3} = [1 -2\n 'a' \"b\"]'; % c\n"
      "for k = {x, @f}, if ~k && 2e3 ..., \n break, elseif x.^2, end, end\nend\nfunction g, end";
  const std::string whole = outlineOf(text);
  for (std::size_t length = 0; length < text.size(); ++length) {
    const std::string outline = outlineOf(text.substr(0, length));
    EXPECT_EQ(outline.empty(), length < 8) << length;
    EXPECT_NE(outline, whole) << length;
  }
}

TEST(Outlines, FailuresHaveTheirPlace) {
  for (const auto& [text, place, id] : rowsOf<3>("tests/code/texts.rows", "failures")) {
    const auto failure = embedded::checkCode(wide(text));
    ASSERT_TRUE(failure.has_value()) << text;
    EXPECT_EQ(shown({failure->line, failure->column}), place) << text;
    EXPECT_EQ(failure->id, id) << text;
    EXPECT_NE(failure->message, "") << text;
  }
}

}  // namespace
