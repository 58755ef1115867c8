#include "tools/commands/Eval.h"

#include <boost/locale/encoding_utf.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "host/Arrays.h"
#include "host/Interpreter.h"
#include "tools/commands/Answer.h"
#include "tools/render/JsonText.h"
#include "tools/render/Value.h"

namespace tools {

namespace {

using embedded::OutputKind;

constexpr std::size_t longestScript = std::size_t{4} << 20;

struct EvalOptions {
  std::string expression;
  std::string file;
  std::string snapshot;
  bool json = false;
};

std::string readScript(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string text(longestScript + 1, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(stream.gcount()));
  if (!stream.is_open() || stream.bad() || (stream.fail() && !stream.eof())) {
    throw AnswerError{"eval.unreadable-file", "cannot read '" + file + "'"};
  }
  if (text.size() > longestScript) throw AnswerError{"eval.too-long", "'" + file + "' has more than 4 MiB"};
  return text;
}

std::u16string textOf(const EvalOptions& options) {
  const std::string text = options.file.empty() ? options.expression : readScript(options.file);
  if (!isUtf8(text)) throw AnswerError{"eval.not-utf8", "the code is no UTF-8 text"};
  return boost::locale::conv::utf_to_utf<char16_t>(text);
}

/// What code prints goes to where people expect it, when the host delivers it.
void print(OutputKind kind, std::u16string_view text) {
  std::ostream& stream = kind == OutputKind::Output ? std::cout : std::cerr;
  stream << boost::locale::conv::utf_to_utf<char>(text.data(), text.data() + text.size()) << std::flush;
}

AnswerError errorOf(const EvalOptions& options, const embedded::CodeFailure& failure) {
  const bool isScript = failure.source == "expression" && !options.file.empty();
  const std::string source = isScript ? options.file : failure.source;
  const std::string place =
      source + ":" + std::to_string(failure.line) + ":" + std::to_string(failure.column) + ": ";
  return {failure.id,
          options.json ? failure.message : place + failure.message,
          {{"source", jsonOf(source)}, {"line", failure.line}, {"column", failure.column}}};
}

/// Takes the code's output for as long as it lives.
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
  const std::u16string text = textOf(options);
  std::u16string output;
  const auto keep = [&](OutputKind, std::u16string_view printed) { output += printed; };
  const OutputTo printing(host, options.json ? embedded::Output(keep) : embedded::Output(print));
  // The error is told below, with its place.
  matrix::setErrorMode(matrix::ErrorMode::Silent);
  const int nlhs = options.json && options.file.empty() ? 1 : 0;
  kxArray_tag* slot = nullptr;
  const int status = inEvalExp(text, nlhs, &slot, true, Tamsix::orvo::EvalSource::Query);
  const boost::intrusive_ptr<kxArray_tag> value(slot, false);
  if (status != 0) {
    AnswerError error = errorOf(options, host.codeFailure().value());
    error.details["output"] = jsonOf(output);
    throw error;
  }
  if (!options.json) return {};
  Json answer = {{"output", jsonOf(output)}};
  if (nlhs == 1) answer["value"] = jsonOfValue(value.get());
  return {lineOf(answer) + '\n'};
}

int run(const EvalOptions& options) {
  return answerOnce({"eval", options.snapshot, options.json},
                    [&](embedded::Host& host) { return evaluate(options, host); });
}

}  // namespace

void addEval(CLI::App& app, int& status) {
  const auto options = std::make_shared<EvalOptions>();
  CLI::App& command = *app.add_subcommand("eval", "Runs an expression or a script in the session");
  CLI::Option* expression =
      command.add_option("EXPR", options->expression, "For instance 'pump.Flow * 2'")->type_name("");
  CLI::Option* file = command.add_option("--file", options->file, "A script instead")
                          ->type_name("FILE")
                          ->excludes(expression);
  command.add_option("--snapshot", options->snapshot, "The session to run it in")
      ->type_name("FILE")
      ->required();
  command.add_flag("--json", options->json, "Print JSON, for programs");
  command.callback([=, &status] {
    if (expression->empty() && file->empty()) throw CLI::RequiredError("EXPR or --file");
    status = run(*options);
  });
}

}  // namespace tools
