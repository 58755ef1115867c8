// What names are, and the call around a cursor.

#include "frontend/Hover.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/frontend/LineCases.h"
#include "tests/support/Table.h"
#include "tests/support/Text.h"

namespace {

using frontend::Candidate;
using frontend::Hover;
using frontend::SignatureHelp;

TEST(Hover, SaysWhatANameIs) {
  CaseWorld world;
  std::size_t known = 0;
  for (const LineCase& asked : lineCases("hover.txt")) {
    SCOPED_TRACE(asked.place);
    const Hover hover = describe(world.session, asked.text, asked.cursor, asked.where(), asked.options());
    EXPECT_EQ(shownHover(hover), asked.rows());
    if (hover.isUnknown) continue;
    EXPECT_EQ(asked.text.substr(hover.begin, hover.end - hover.begin), hover.subject.label);
    ++known;
  }
  EXPECT_GT(known, 24U);
}

/// Whatever completion offers can be described, without running code.
TEST(Hover, DescribesWhatIsOfferedAndRunsNoCode) {
  CaseWorld world;
  TrappedSession session(*world.host);
  std::size_t described = 0;
  for (const LineCase& asked : lineCases("completion.txt")) {
    frontend::Options options = asked.options();
    options.policy = frontend::CodePolicy::Never;
    options.hidden = true;
    const auto offered = complete(session, asked.text, asked.cursor, asked.where(), options);
    for (const Candidate& candidate : offered.candidates) {
      const bool isName = candidate.kind != frontend::Kind::Value &&
                          candidate.kind != frontend::Kind::CodeFile &&
                          candidate.kind != frontend::Kind::ClassFolder;
      if (!isName || asked.text.find_first_of(u"'\"") != std::u16string::npos) continue;
      const std::u16string rest = asked.text.substr(asked.cursor);
      // Names that code cannot write are described as they are inserted.
      const std::u16string name = asked.text.substr(0, offered.begin - (candidate.replacesDot ? 1 : 0)) +
                                  (candidate.replacesDot ? candidate.insertion : candidate.label);
      const std::u16string text = name + (rest.starts_with(u"(") ? rest : u"");
      const Hover hover = describe(session, text, name.size(), asked.where(), options);
      EXPECT_FALSE(hover.isUnknown) << asked.place << ": " << shown(text);
      EXPECT_EQ(hover.subject.declaringClass, candidate.declaringClass) << asked.place << ": " << shown(text);
      ++described;
    }
  }
  EXPECT_GT(described, 200U);
}

TEST(SignatureHelp, FindsTheCallAndItsArgument) {
  CaseWorld world;
  const std::string tune = "result = lab.control.tune(device, speed, [mode], Gain=value, Label=value)";
  // The text up to the cursor, and the name of the argument there; "-" without one, "none" without a call.
  for (const auto& [text, argument] :
       rowsOf<2>("tests/frontend/tables.rows", "SignatureHelp.FindsTheCallAndItsArgument")) {
    const std::u16string asked = wide(text);
    const SignatureHelp help = signatureHelp(world.session, asked, asked.size(), {});
    EXPECT_EQ(shown(help.signature ? help.signature->text() : u""), argument == "none" ? "" : tune) << text;
    if (!help.signature) continue;
    const std::string active =
        help.activeArgument ? shown(help.signature->inputs[*help.activeArgument].name) : "-";
    EXPECT_EQ(active, argument) << text;
  }
}

}  // namespace
