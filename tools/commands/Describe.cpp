#include "tools/commands/Describe.h"

#include <contextdata/KCOSContextData/ResolvedClassID.h>
#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "host/Text.h"
#include "tools/commands/Answer.h"
#include "tools/render/Rendering.h"

namespace tools {

namespace {

using KCOSContextData::ResolvedClassID;

struct DescribeOptions {
  std::string className;
  std::string snapshot;
  bool json = false;
  bool dot = false;
  std::vector<std::string> access{"public"};
  bool hidden = false;
};

/// The identity of the class that code without imports means by the name, or whose identity it is.
ResolvedClassID classOf(const std::string& name) {
  for (const ResolvedClassID& id :
       {ResolvedClassID(u"", fl::i18n::to_ustring(name)), ResolvedClassID::fromKnownResolvedClassID(name)}) {
    const kcos::COSClass* found = KCOSIntrospection::getCOSClass(id);
    if (found != nullptr) return ResolvedClassID::fromKnownResolvedClassID(found->getID().text());
  }
  throw AnswerError{"describe.unknown-class", "no class is called '" + name + "'"};
}

description::Options wantedMembers(const DescribeOptions& options) {
  description::Options wanted{{}, options.hidden};
  const auto& words = description::levelWords();
  const bool all = std::ranges::count(options.access, "all") > 0;
  for (std::int32_t level = 0; level <= description::highestLevel; ++level) {
    if (all || std::ranges::count(options.access, words.at(level)) > 0) wanted.levels.push_back(level);
  }
  return wanted;
}

Answer answerOf(const DescribeOptions& options) {
  const auto described = describe(classOf(options.className), wantedMembers(options));
  if (options.json) return {lineOf(jsonOf(described)) + '\n'};
  return {options.dot ? dotOf(described) : textOf(described)};
}

int run(const DescribeOptions& options) {
  return answerOnce({"describe", options.snapshot, options.json},
                    [&](embedded::Host&) { return answerOf(options); });
}

std::vector<std::string> accessWords() {
  std::vector<std::string> words = description::levelWords();
  words.push_back("all");
  return words;
}

}  // namespace

void addDescribe(CLI::App& app, int& status) {
  const auto options = std::make_shared<DescribeOptions>();
  CLI::App& command = *app.add_subcommand("describe", "Shows a class: its superclasses and what it offers");
  command.add_option("CLASS", options->className, "For instance 'lab.Pump'")->type_name("")->required();
  command.add_option("--snapshot", options->snapshot, "The session to ask about")
      ->type_name("FILE")
      ->required();
  CLI::Option* json = command.add_flag("--json", options->json, "Print JSON, for programs");
  command.add_flag("--dot", options->dot, "Print a picture of the superclasses, for graphviz")
      ->excludes(json);
  command.add_option("--access", options->access, "The access levels to show, 'public' by default")
      ->delimiter(',')
      ->check(CLI::IsMember(accessWords()))
      ->type_name("LEVEL,...");
  command.add_flag("--hidden", options->hidden, "Show hidden members too");
  command.callback([options, &status] { status = run(*options); });
}

}  // namespace tools
