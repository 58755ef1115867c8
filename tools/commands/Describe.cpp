#include <contextdata/KCOSContextData/ResolvedClassID.h>
#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "host/Exceptions.h"
#include "host/Members.h"
#include "host/Text.h"
#include "tools/commands/Answer.h"
#include "tools/commands/Commands.h"
#include "tools/render/ClassDescription.h"
#include "tools/render/Text.h"
#include "tools/session/Alarm.h"

namespace tools {

namespace {

using KCOSContextData::ResolvedClassID;

/// The identity of the class that code without imports means by the name, or whose identity it is.
ResolvedClassID classOf(const std::string& name) {
  // As users name it first: an identity is rarely typed, and may look like a name.
  for (const ResolvedClassID& id :
       {ResolvedClassID(u"", fl::i18n::to_ustring(name)), ResolvedClassID::fromKnownResolvedClassID(name)}) {
    const kcos::COSClass* found = KCOSIntrospection::getCOSClass(id);
    if (found != nullptr) return ResolvedClassID::fromKnownResolvedClassID(found->getID().text());
  }
  throw AnswerError{"describe.unknown-class", "no class is called '" + name + "'"};
}

std::vector<std::int32_t> levelsOf(const DescribeOptions& options) {
  std::vector<std::int32_t> levels;
  const bool all = std::ranges::count(options.access, "all") > 0;
  for (const kcos::AccessWord& known : kcos::accessWords) {
    if (all || std::ranges::count(options.access, known.word) > 0) levels.push_back(known.level);
  }
  return levels;
}

/// A class of diamonds has more ways to its ancestors than anybody waits for.
frontend::ClassTree treeOf(const DescribeOptions& options, embedded::Host& host) {
  Alarm alarm(host);
  if (options.milliseconds > 0)
    alarm.set(std::chrono::steady_clock::now() + std::chrono::milliseconds(options.milliseconds));
  try {
    return frontend::describeClass(classOf(options.className), levelsOf(options), options.hidden);
  } catch (const Tamsix::System::InterruptException&) {
    // The user's own interrupt is told by whoever handles it.
    if (!alarm.stop()) throw;
    throw AnswerError{"describe.timed-out",
                      "stopped after " + std::to_string(options.milliseconds) + " ms (--timeout)"};
  }
}

Answer answerOf(const DescribeOptions& options, embedded::Host& host) {
  const auto tree = treeOf(options, host);
  // The library may have swallowed it, and what it returns then is not the whole class.
  if (const auto& failure = host.failure())
    throw AnswerError{"describe.failed", failure->operation + ": " + failure->message};
  if (options.json) return {jsonLineOf(tree) + '\n'};
  return {options.dot ? dotOf(tree) : textOf(tree)};
}

}  // namespace

int runDescribe(const DescribeOptions& options) {
  return answerOnce({"describe", options.snapshot, options.json},
                    [&](embedded::Host& host) { return answerOf(options, host); });
}

}  // namespace tools
