#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>

#include "host/Arrays.h"
#include "host/Interpreter.h"
#include "tools/commands/Answer.h"
#include "tools/commands/Commands.h"
#include "tools/render/Text.h"
#include "tools/render/Value.h"

namespace tools {

namespace {

using embedded::OutputKind;

constexpr std::size_t longestScript = std::size_t{4} << 20;

std::string readScript(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  // One byte more, which tells that the file is too long, whatever its size is said to be.
  std::string text(longestScript + 1, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(stream.gcount()));
  // Reading up to the end of a short file sets the fail bit, too.
  if (!stream.is_open() || stream.bad() || (stream.fail() && !stream.eof())) {
    throw AnswerError{"eval.unreadable-file", "cannot read '" + file + "'"};
  }
  if (text.size() > longestScript) throw AnswerError{"eval.too-long", "'" + file + "' has more than 4 MiB"};
  return text;
}

std::u16string codeFrom(const EvalOptions& options) {
  const std::string text = options.file.empty() ? options.expression : readScript(options.file);
  if (!isUtf8(text)) throw AnswerError{"eval.not-utf8", "the code is no UTF-8 text"};
  return wide(text);
}

/// What code prints goes to where people expect it, when the host delivers it.
void print(OutputKind kind, std::u16string_view text) {
  std::ostream& stream = kind == OutputKind::Output ? std::cout : std::cerr;
  stream << printableLines(std::u16string(text)) << std::flush;
}

/// People are told the position in the message, programs in keys of their own.
AnswerError errorOf(const EvalOptions& options, const embedded::CodeFailure& failure,
                    const std::u16string& output) {
  const bool isScript = failure.source == "expression" && !options.file.empty();
  const std::string source = isScript ? options.file : failure.source;
  const std::string position =
      source + ":" + std::to_string(failure.line) + ":" + std::to_string(failure.column) + ": ";
  return {failure.id, options.json ? failure.message : position + failure.message, NoAnswer,
          FailedCode{source, failure.line, failure.column, output}};
}

/// Receives the code's output for as long as it lives.
class OutputTo {
 public:
  OutputTo(embedded::Host& host, embedded::Output output) : host_(host) {
    host_.setOutput(std::move(output));
  }
  ~OutputTo() { host_.setOutput({}); }
  OutputTo(const OutputTo&) = delete;
  OutputTo& operator=(const OutputTo&) = delete;

 private:
  embedded::Host& host_;
};

/// For programs, an expression gives its value; otherwise statements run and print as they say.
Answer evaluate(const EvalOptions& options, embedded::Host& host) {
  const std::u16string text = codeFrom(options);
  std::u16string output;
  const auto keep = [&](OutputKind, std::u16string_view printed) { output += printed; };
  const OutputTo printing(host, options.json ? embedded::Output(keep) : embedded::Output(print));
  // The error is told below, with its position.
  matrix::setErrorMode(matrix::ErrorMode::Silent);
  const int nlhs = options.json && options.file.empty() ? 1 : 0;
  kxArray_tag* slot = nullptr;
  const int status = inEvalExp(text, nlhs, &slot, true, Tamsix::orvo::EvalSource::Query);
  // Before the status is looked at: there may be a value to release after a failure, too.
  const boost::intrusive_ptr<kxArray_tag> value(slot, false);
  if (status != 0) throw errorOf(options, host.codeFailure().value(), output);
  if (!options.json) return {};
  return {(nlhs == 1 ? jsonLineOf(output, value.get()) : jsonLineOf(output)) + '\n'};
}

}  // namespace

int runEval(const EvalOptions& options) {
  return answerOnce({"eval", options.snapshot, options.json},
                    [&](embedded::Host& host) { return evaluate(options, host); });
}

}  // namespace tools
