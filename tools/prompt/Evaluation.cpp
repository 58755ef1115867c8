#include "tools/prompt/Evaluation.h"

#include <algorithm>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstddef>
#include <iostream>
#include <optional>
#include <string_view>
#include <utility>

#include "host/Arrays.h"
#include "host/Exceptions.h"
#include "host/Interpreter.h"
#include "host/Text.h"
#include "tools/prompt/Terminal.h"
#include "tools/render/Json.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace tools::prompt {

namespace {

using embedded::CodeFailure;
using embedded::OutputKind;

/// Characters of a line on each side of the caret; more are not shown.
constexpr std::size_t mostAround = 30;

std::u16string lineIn(const std::u16string& text, int number) {
  std::size_t begin = 0;
  for (; number > 1 && begin != std::u16string::npos; --number) {
    begin = text.find(u'\n', begin);
    if (begin != std::u16string::npos) ++begin;
  }
  if (begin == std::u16string::npos) return {};
  return text.substr(begin, text.find(u'\n', begin) - begin);
}

/// The line, and below it the caret; nothing of a line that is blank.
std::string lineWithCaret(std::u16string line, std::size_t caret) {
  if (line.find_first_not_of(u" \t") == std::u16string::npos) return {};
  // The caret stands below a column, and nobody knows how wide a tab is.
  std::ranges::replace(line, u'\t', u' ');
  caret = std::min(caret, line.size());
  std::size_t begin = caret > mostAround ? caret - mostAround : 0;
  std::size_t end = std::min(line.size(), caret + mostAround);
  // No character is cut in two.
  if (begin > 0 && fl::i18n::is_high_surrogate(line[begin - 1])) ++begin;
  if (end < line.size() && fl::i18n::is_high_surrogate(line[end - 1])) --end;
  const std::string left = (begin > 0 ? "..." : "") + printable(line.substr(begin, caret - begin));
  const std::string right = printable(line.substr(caret, end - caret)) + (end < line.size() ? "..." : "");
  return "  " + left + right + "\n  " + std::string(widthOf(left), ' ') + "^\n";
}

/// An error of code that was typed, whole lines: the line it is in with a caret, when it is in the text, and
/// position, message and identifier. The first line of the text has this number.
std::string linesOfFailure(const CodeFailure& failure, const std::u16string& text, int firstLine) {
  const bool isTyped = failure.source == "expression";
  const int line = isTyped ? failure.line + firstLine - 1 : failure.line;
  const std::string source = isTyped ? "input" : printable(failure.source);
  const auto column = static_cast<std::size_t>(std::max(1, failure.column));
  return (isTyped ? lineWithCaret(lineIn(text, failure.line), column - 1) : std::string()) + source + ":" +
         std::to_string(line) + ":" + std::to_string(failure.column) + ": " + printable(failure.message) +
         " [" + printable(failure.id) + "]\n";
}

/// Prints the code's output for as long as it lives, and then ends its last line, so that a prompt begins its own.
class Printing {
 public:
  explicit Printing(embedded::Host& host) : host_(host) {
    host.setOutput([this](OutputKind kind, std::u16string_view text) { print(kind, text); });
  }
  ~Printing() {
    // First, because the printer is going.
    host_.setOutput({});
    if (!atBeginning_) std::cout << std::endl;
  }
  Printing(const Printing&) = delete;
  Printing& operator=(const Printing&) = delete;

 private:
  void print(OutputKind kind, std::u16string_view text) {
    std::ostream& stream = kind == OutputKind::Output ? std::cout : std::cerr;
    stream << printableLines(std::u16string(text)) << std::flush;
    if (!text.empty()) atBeginning_ = text.back() == u'\n';
  }

  embedded::Host& host_;
  bool atBeginning_ = true;
};

int run(const std::u16string& text) {
  kxArray_tag* slot = nullptr;
  const int status = inEvalExp(text, 0, &slot, true, Tamsix::orvo::EvalSource::Query);
  // No result is asked for, but what is handed out has to be released.
  boost::intrusive_ptr<kxArray_tag>(slot, false).reset();
  return status;
}

/// Why it failed, whole lines; or nothing.
std::string errorOf(embedded::Host& host, const std::u16string& text, int firstLine) {
  const Printing printing(host);
  try {
    // An error of the code is a status; only what goes wrong around it is thrown.
    if (run(text) == 0) return {};
    const std::optional<CodeFailure> failure = host.codeFailure();
    return failure ? linesOfFailure(*failure, text, firstLine) : "the code failed\n";
  } catch (const Tamsix::System::InterruptException&) {
    return "interrupted\n";
  } catch (...) {
    return "the session failed: " + lineOfCurrentException() + '\n';
  }
}

}  // namespace

Ending evaluate(LiveSession& live, const std::u16string& text, int firstLine) {
  live.host.clearInterrupt();
  std::string error;
  {
    const Interruptible request(live.host);
    if (takeInterrupt()) live.host.requestInterrupt();  // it came between Enter and here
    live.trace.begin();
    error = errorOf(live.host, text, firstLine);
  }
  takeInterrupt();  // it has reached the host, or came too late
  const bool isInterrupted = live.host.interruptRequested();
  live.host.clearInterrupt();
  std::cerr << (isInterrupted ? "interrupted\n" : error) << std::flush;
  std::cout << live.trace.end() << std::flush;
  if (isInterrupted) return Ending::Interrupted;
  return error.empty() ? Ending::Fine : Ending::Failed;
}

bool isUnfinished(const std::u16string& text) {
  const std::optional<CodeFailure> failure = embedded::checkCode(text);
  if (failure) {
    const auto lines = static_cast<int>(std::ranges::count(text, u'\n'));
    // Only an error at the very end may be mended by another line.
    return failure->id == "KORVAL:code:Syntax" && failure->line == lines + 1 && failure->column == 1;
  }
  // A name that begins another line is a statement, and one that continues a line is none.
  const std::size_t lastLine = text.rfind(u'\n', text.size() - 2) + 1;
  return text.find(u"...", lastLine) != std::u16string::npos && embedded::checkCode(text + u"x").has_value();
}

}  // namespace tools::prompt
