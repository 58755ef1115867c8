#include "embedded/Outline.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "embedded/Host.h"
#include "tests/support/Table.h"

namespace {

std::string shown(syntax::Position place) {
  return std::to_string(place.line) + ":" + std::to_string(place.column);
}

std::string shown(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ",") + name;
  return text;
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
    all += function.name + "(" + shown(function.inputs) + ")->" + shown(function.outputs) + " " +
           shown(function.begin) + "-" + shown(function.end) + shown(function.variables) + "; ";
  }
  return all + shown(outline.variables);
}

TEST(Outlines, OfCode) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"", ""},
      {"x = 1", " x@1:1"},
      {"p = lab.Pump(3); q = lab.Pump\nr = lab.Pump.Flow + 1", " p@1:1=lab.Pump q@1:18=lab.Pump r@2:1"},
      {"s.a(2).b = lab.Pump; s = 1", " s@1:1"},
      {"[a, ~, b.c] = f(x), [d e{2}] = g", " a@1:2 b@1:8 d@1:22 e@1:24"},
      {"x(y == 1) = 2; if a == b, z = 1; end", " x@1:1 z@1:27"},
      {"f(a == 1); c{3}(2) = 4", " c@1:12"},
      {"for k = 1:3\n  while k < 2, n = k; end\nend", " k@1:5 n@2:16=k"},
      {"if (a) b = 1; else c = 2, end", " b@1:8 c@1:20"},
      {"x = [1, 2\n 3, y == 4]; z = {5\n}\nw = 1", " x@1:1 z@2:14 w@4:1"},
      {"x = 'it''s = 1'; % y = 2\nt = x'; z = \"a = b\"", " x@1:1 t@2:1 z@2:9"},
      {"x = 1 + ...\n  2; y = 3", " x@1:1 y@2:6"},
      {"function f\nend", "f()-> 1:1-2:4; "},
      {"function r = lab.f(a, ~, b)\n  r = a; x = 1;\nend\n", "lab.f(a,b)->r 1:1-3:4 r@2:3=a x@2:10; "},
      {"function [r, s] = f()\n", "f()->r,s 1:1-2:1; "},
      {"function f\n x = 1;\nfunction g(y)\n if y, z = y(end); end\n w = 1; end",
       "f()-> 1:1-3:1 x@2:2; g(y)-> 3:1-5:12 z@4:8=y w@5:2; "},
      {"import lab.*\nfunction f, x = 1, end", "f()-> 2:1-2:23 x@2:13; "}};
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(outlineOf(text), expected) << text;
    EXPECT_FALSE(embedded::checkCode(wide(text)).has_value()) << text;
  }
}

TEST(Outlines, OfWhatIsBeingTyped) {
  const std::vector<std::pair<std::string, std::string>> rows{
      {"x = 1; pump.\ny = 2", " x@1:1 y@2:1"},
      {"x = 'open\ny = 2", " x@1:1 y@2:1"},
      {"x = \xC3\xA4; z = 1\ny = 2", " x@1:1 y@2:1"},
      {"f(1, \ny = 2", " y@2:1"},
      {"x = [1, 2\nif a, y = 2; end", " x@1:1 y@2:7"},
      {"= 3\n) = 4\n[ = 5", ""},
      {"x = ", " x@1:1"},
      {"end end\nx = 1; end\ny = 2", " x@2:1 y@3:1"},
      {"function", "()-> 1:1-1:9; "},
      {"function [a, b\n x = 1", "(a,b)-> 1:1-2:7 x@2:2; "},
      {"function r = \n x = 1;\nend", "()->r 1:1-3:4 x@2:2; "},
      {"function f(a, \n x = a.\nend\nfunction g\n", "f(a)-> 1:1-3:4 x@2:2; g()-> 4:1-5:1; "},
      {"function f\n if a.\n  x = 1;\n end\n y = 2;\nend", "f()-> 1:1-6:4 x@3:3 y@5:2; "},
      {"function f\n if a\n  x = 1;\nfunction g\nend", "f()-> 1:1-4:1 x@3:3; g()-> 4:1-5:4; "}};
  for (const auto& [text, expected] : rows) {
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
  EXPECT_EQ(outlineOf(std::string(100000, '(') + "\nx = 1"), " x@2:1");
  EXPECT_EQ(outlineOf(std::string(100000, '\'') + "\nx = 1"), " x@2:1");
}

TEST(Outlines, FailuresHaveTheirPlace) {
  for (const auto& [text, line, column, id] : std::vector<std::tuple<std::string, int, int, std::string>>{
           {"x = 1;\n  y = )", 2, 7, "KORVAL:code:Syntax"},
           {"x = 'open", 1, 5, "KORVAL:code:Syntax"},
           {"if a", 1, 5, "KORVAL:code:Syntax"},
           {"\xF0\x9F\x98\x80", 1, 1, "KORVAL:code:Syntax"},
           {"'\xF0\x9F\x98\x80' )", 1, 6, "KORVAL:code:Syntax"},
           {std::string(101, '('), 1, 102, "KORVAL:code:NestingLimit"}}) {
    const auto failure = embedded::checkCode(wide(text));
    ASSERT_TRUE(failure.has_value()) << text;
    EXPECT_EQ(shown({failure->line, failure->column}), shown({line, column})) << text;
    EXPECT_EQ(failure->id, id) << text;
    EXPECT_NE(failure->message, "") << text;
  }
}

}  // namespace
