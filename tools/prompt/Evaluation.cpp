#include "tools/prompt/Evaluation.h"

#include <algorithm>
#include <boost/locale/encoding_utf.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <iostream>
#include <optional>
#include <string_view>
#include <utility>

#include "host/Arrays.h"
#include "host/Exceptions.h"
#include "host/Interpreter.h"
#include "tools/prompt/ErrorPlace.h"
#include "tools/render/Errors.h"
#include "tools/render/Text.h"
#include "tools/session/Process.h"

namespace tools::prompt {

namespace {

using boost::locale::conv::utf_to_utf;
using embedded::CodeFailure;
using embedded::OutputKind;

/// Prints the code's output for as long as it lives, and then ends its last line, so that a prompt begins its own.
class Printing {
 public:
  explicit Printing(embedded::Host& host) : host_(host) {
    host.setOutput([this](OutputKind kind, std::u16string_view text) { print(kind, text); });
  }
  ~Printing() {
    host_.setOutput({});
    if (!atBeginning_) std::cout << std::endl;
  }
  Printing(const Printing&) = delete;
  Printing& operator=(const Printing&) = delete;

 private:
  void print(OutputKind kind, std::u16string_view text) {
    std::ostream& stream = kind == OutputKind::Output ? std::cout : std::cerr;
    stream << utf_to_utf<char>(text.data(), text.data() + text.size()) << std::flush;
    if (!text.empty()) atBeginning_ = text.back() == u'\n';
  }

  embedded::Host& host_;
  bool atBeginning_ = true;
};

int run(const std::u16string& text) {
  kxArray_tag* slot = nullptr;
  const int status = inEvalExp(text, 0, &slot, true, Tamsix::orvo::EvalSource::Query);
  boost::intrusive_ptr<kxArray_tag>(slot, false).reset();
  return status;
}

/// Why it failed, whole lines; or nothing.
std::string errorOf(embedded::Host& host, const std::u16string& text, int firstLine) {
  const Printing printing(host);
  try {
    if (run(text) == 0) return {};
    const std::optional<CodeFailure> failure = host.codeFailure();
    return failure ? describe(*failure, text, firstLine) : "the code failed\n";
  } catch (const Tamsix::System::InterruptException&) {
    return "interrupted\n";
  } catch (...) {
    return "the session failed: " + describeCurrentException() + '\n';
  }
}

}  // namespace

Ending evaluate(LiveSession& live, const std::u16string& text, int firstLine) {
  live.host.clearInterrupt();
  std::string error;
  {
    const Interruptible request(live.host);
    if (takeInterrupt()) live.host.requestInterrupt();
    live.trace.begin();
    error = errorOf(live.host, text, firstLine);
  }
  takeInterrupt();
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
    return failure->id == "KORVAL:code:Syntax" && failure->line == lines + 1 && failure->column == 1;
  }
  // A name that begins another line is a statement, and one that continues a line is none.
  const std::size_t lastLine = text.rfind(u'\n', text.size() - 2) + 1;
  return text.find(u"...", lastLine) != std::u16string::npos && embedded::checkCode(text + u"x").has_value();
}

}  // namespace tools::prompt
