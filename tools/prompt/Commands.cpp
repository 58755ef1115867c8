#include "tools/prompt/Commands.h"

#include <algorithm>
#include <array>
#include <boost/algorithm/string/trim.hpp>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <vector>

#include "frontend/Explanation.h"
#include "frontend/Hover.h"
#include "tools/render/FrontEnd.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace tools::prompt {

namespace {

/// "  title: name, name"; nothing without names.
std::string lineOfNames(const char* title, const std::vector<std::u16string>& names) {
  if (names.empty()) return {};
  return std::string("  ") + title + ": " + printable(listed(names)) + '\n';
}

/// "pump.Flow: property of lab.Pump, 1x1 double", and below it what else there is to know.
std::string linesOf(const frontend::Hover& hover) {
  if (hover.isUnknown) return {};
  const std::string details = detailsOf(hover.subject);
  std::string text = printable(hover.subject.label) + ": " + kindOf(hover.subject);
  text += (details.empty() ? "" : ", " + details) + '\n';
  if (hover.signature) text += "  " + printable(hover.signature->text()) + '\n';
  return text + lineOfNames("derives from", hover.superclasses) +
         lineOfNames("values", hover.possibleValues) + lineOfNames("checked by", hover.validators);
}

/// The note, too, when there is something to note.
std::string withNotice(std::string text, const frontend::Outcome& outcome) {
  const std::string notice = noticeOf(outcome);
  return notice.empty() ? text : text + notice + '\n';
}

/// Why a dotted name is offered where its last dot stands, or is not; whole lines.
std::string explanation(LiveSession& live, const std::u16string& name) {
  const std::size_t begin = name.rfind(u'.') + 1;
  const std::u16string before = name.substr(0, begin);
  const Interruptible request(live.host);
  live.trace.begin();
  const frontend::Explanation answer =
      frontend::explain(live.session, before, before.size(), name.substr(begin), {}, live.options());
  return withNotice(textOf(answer), answer.outcome) + live.trace.end();
}

/// What is known of a dotted name, whole lines; empty when nothing is.
std::string description(LiveSession& live, const std::u16string& name) {
  const Interruptible request(live.host);
  live.trace.begin();
  const frontend::Hover answer = frontend::describe(live.session, name, name.size(), {}, live.options());
  return withNotice(linesOf(answer), answer.outcome) + live.trace.end();
}

/// Why a command does nothing.
struct CommandError {
  std::string code;
  std::string message;
};

struct Command {
  std::string_view name;
  std::string_view argument;
  std::string_view help;
  CommandEnding (*run)(LiveSession& live, const std::string& argument);
};

CommandEnding describeName(LiveSession& live, const std::string& argument) {
  if (argument.empty()) throw CommandError{"prompt.usage", "? needs a name"};
  const std::string text = description(live, wide(argument));
  if (text.empty())
    throw CommandError{"prompt.unknown-name", "nothing is known of '" + printable(argument) + "'"};
  std::cout << text << std::flush;
  return CommandEnding::Fine;
}

CommandEnding explainName(LiveSession& live, const std::string& argument) {
  if (argument.empty()) throw CommandError{"prompt.usage", ":explain needs a name"};
  std::cout << explanation(live, wide(argument)) << std::flush;
  return CommandEnding::Fine;
}

CommandEnding trace(LiveSession& live, const std::string& argument) {
  if (argument != "on" && argument != "off") throw CommandError{"prompt.usage", ":trace on, or :trace off"};
  live.trace.turn(argument == "on");
  std::cout << "trace is " << argument << std::endl;
  return CommandEnding::Fine;
}

CommandEnding save(LiveSession& live, const std::string& argument) {
  if (argument.empty()) throw CommandError{"prompt.usage", ":save needs a file"};
  embedded::writeSnapshot(live.host.describe(), argument);
  std::cout << "saved " << printable(argument) << std::endl;
  return CommandEnding::Fine;
}

CommandEnding quit(LiveSession&, const std::string&) { return CommandEnding::Quit; }

CommandEnding help(LiveSession& live, const std::string& argument);

constexpr std::array commands = {
    Command{"?", "NAME", "what a name is", describeName},
    Command{":explain", "NAME", "why a name is offered, or is not, for instance pump.Calibration",
            explainName},
    Command{":trace", "on|off", "show what each request asks the host, and whether code ran", trace},
    Command{":save", "FILE", "write the session as it is now to a snapshot", save},
    Command{":help", "", "show this", help},
    Command{":quit", "", "end the session; so does Ctrl-D", quit},
};

CommandEnding help(LiveSession&, const std::string&) {
  std::cout << "Lines are code, and run in the session when Enter is pressed. TAB completes, a second TAB\n"
               "shows hidden names, too. Ctrl-C stops what is running, or drops the line.\n";
  for (const Command& command : commands) {
    std::string usage =
        std::string(command.name) + (command.name == "?" ? "" : " ") + std::string(command.argument);
    usage.resize(std::max<std::size_t>(usage.size(), 16), ' ');
    std::cout << "  " << usage << " " << command.help << '\n';
  }
  std::cout << std::flush;
  return CommandEnding::Fine;
}

/// "?name" is a command of its own.
CommandEnding run(LiveSession& live, const std::string& line) {
  const std::size_t nameEnd = line.front() == '?' ? 1 : std::min(line.find_first_of(" \t"), line.size());
  const std::string name = line.substr(0, nameEnd);
  const auto found = std::ranges::find(commands, name, &Command::name);
  if (found == commands.end())
    throw CommandError{"prompt.unknown-command",
                       "there is no '" + printable(name) + "'; :help shows what there is"};
  return found->run(live, boost::algorithm::trim_copy(line.substr(nameEnd)));
}

}  // namespace

bool isCommand(const std::u16string& line) {
  const std::size_t begin = line.find_first_not_of(u" \t");
  return begin != std::u16string::npos && (line[begin] == u':' || line[begin] == u'?');
}

CommandEnding runCommand(LiveSession& live, const std::u16string& line) {
  try {
    return run(live, boost::algorithm::trim_copy(narrow(line)));
  } catch (const CommandError& error) {
    std::cerr << error.message << " [" << error.code << "]" << std::endl;
  } catch (const embedded::SnapshotError& error) {
    std::cerr << messageOf(error) << std::endl;
  }
  return CommandEnding::Failed;
}

}  // namespace tools::prompt
