#include "tools/commands/FrontEnd.h"

#include <boost/locale/encoding_utf.hpp>
#include <chrono>
#include <vector>

#include "tools/commands/Answer.h"

namespace tools {

namespace {

using boost::locale::conv::utf_to_utf;

const std::vector<std::string>& policies() {
  static const std::vector<std::string> words = {"never", "stored-values", "allowed"};
  return words;
}

frontend::CodePolicy policyOf(const std::string& word) {
  if (word == policies()[0]) return frontend::CodePolicy::Never;
  return word == policies()[1] ? frontend::CodePolicy::StoredValues : frontend::CodePolicy::Allowed;
}

bool isLead(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

std::size_t unitsOf(const std::u16string& text, std::size_t characters) {
  std::size_t at = 0;
  for (; characters > 0 && at < text.size(); --characters)
    at += isLead(text[at]) && at + 1 < text.size() ? 2 : 1;
  return at;
}

void add(Json& json, const char* key, const std::u16string& text) {
  if (!text.empty()) json[key] = jsonOf(text);
}

}  // namespace

void addFrontEndOptions(CLI::App& command, FrontEndOptions& options) {
  command.add_option("TEXT", options.text, "A line of code, for instance 'pump.Fl'")
      ->type_name("")
      ->required();
  command.add_option("--snapshot", options.snapshot, "The session to ask about")
      ->type_name("FILE")
      ->required();
  command.add_option("--cursor", options.cursor, "How many characters are before the cursor; by default all")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  command.add_option("--in", options.function, "The function whose code it is")->type_name("FUNCTION");
  command.add_option("--class", options.className, "The class whose code it is")->type_name("CLASS");
  addPolicyOption(command, options);
  command.add_option("--limit", options.limit, "How many candidates at most, 200 by default")
      ->check(CLI::NonNegativeNumber)
      ->type_name("N");
  command.add_option("--timeout", options.milliseconds, "Stop looking after so many milliseconds")
      ->check(CLI::Range(0, 86'400'000))
      ->type_name("MS");
  command.add_flag("--hidden", options.hidden, "Hidden names too");
  command.add_flag("--json", options.json, "Print JSON, for programs");
}

void addPolicyOption(CLI::App& command, FrontEndOptions& options) {
  command
      .add_option("--code", options.policy,
                  "How far code may run: never, stored-values (the default), allowed")
      ->check(CLI::IsMember(policies()))
      ->type_name("POLICY");
}

Line lineOf(const FrontEndOptions& options, const std::string& command) {
  if (!isUtf8(options.text)) throw AnswerError{command + ".not-utf8", "the text is no UTF-8"};
  Line line{utf_to_utf<char16_t>(options.text)};
  line.cursor = options.cursor ? unitsOf(line.text, *options.cursor) : line.text.size();
  return line;
}

frontend::Scope placeOf(const FrontEndOptions& options) {
  return {utf_to_utf<char16_t>(options.function), utf_to_utf<char16_t>(options.className)};
}

frontend::Options optionsOf(const FrontEndOptions& options) {
  frontend::Options asked{policyOf(options.policy), {}, options.limit, options.hidden};
  if (options.milliseconds > 0) {
    asked.deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(options.milliseconds);
  }
  return asked;
}

Json jsonOf(const frontend::Outcome& outcome) {
  Json json = {{"status", nameOf(outcome.status)}};
  add(json, "reason", outcome.reason);
  json["neededPolicy"] = nameOf(outcome.neededPolicy);
  add(json, "printed", outcome.printed);
  return json;
}

Json jsonOf(const frontend::Candidate& candidate) {
  Json json = {{"label", jsonOf(candidate.label)},
               {"insertion", jsonOf(candidate.insertion)},
               {"kind", nameOf(candidate.kind)},
               {"match", nameOf(candidate.match)},
               {"order", candidate.order}};
  add(json, "declaringClass", candidate.declaringClass);
  if (candidate.access) json["access"] = wordOfAccess(*candidate.access);
  add(json, "type", candidate.type);
  add(json, "size", candidate.size);
  if (candidate.isStatic) json["static"] = true;
  if (candidate.isConstant) json["constant"] = true;
  if (candidate.isHidden) json["hidden"] = true;
  if (candidate.readRunsCode) json["readRunsCode"] = true;
  return json;
}

std::string wordOfAccess(std::int32_t level) {
  static const char* const words[] = {"public", "protected", "private", "immutable", "listed", "constant"};
  return level >= 0 && level < 6 ? words[level] : std::to_string(level);
}

std::string kindOf(const frontend::Candidate& candidate) {
  std::string kind = nameOf(candidate.kind);
  for (char& character : kind) character = character == '-' ? ' ' : character;
  return candidate.declaringClass.empty() ? kind : kind + " of " + printable(candidate.declaringClass);
}

std::string detailsOf(const frontend::Candidate& candidate) {
  std::vector<std::string> parts;
  const std::string type = printable(candidate.type);
  const std::string size = printable(candidate.size);
  if (!type.empty() || !size.empty())
    parts.push_back(size + (size.empty() || type.empty() ? "" : " ") + type);
  if (candidate.access.value_or(0) != 0) parts.push_back(wordOfAccess(*candidate.access));
  if (candidate.isConstant && candidate.kind != frontend::Kind::Constant) parts.push_back("constant");
  if (candidate.isHidden) parts.push_back("hidden");
  const bool isProperty = candidate.kind == frontend::Kind::Property;
  if (candidate.readRunsCode && isProperty) parts.push_back("reading runs code");
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

std::string noticeOf(const frontend::Outcome& outcome) {
  if (outcome.status == frontend::Status::Complete) return {};
  const std::string status = nameOf(outcome.status);
  const std::string reason = printable(outcome.reason);
  return reason.empty() || reason == status ? status : status + ": " + reason;
}

}  // namespace tools
