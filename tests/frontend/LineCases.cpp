#include "tests/frontend/LineCases.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "tests/support/Text.h"
#include "tests/support/World.h"

namespace {

/// What the one reader of case files says, which is in Python; a failure of it is no JSON.
std::string readCases(const std::string& file) {
  const char* python = std::getenv("CONTEXTDATA_PYTHON");
  const std::string command = "'" + std::string(python == nullptr ? "python3" : python) + "' -B '" +
                              sourceFile("tests/support/Cases.py") + "' " + file;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  if (!pipe) throw std::runtime_error("cannot run " + command);
  std::string text;
  std::array<char, 4096> part{};
  while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe.get()))
    text.append(part.data(), count);
  return text;
}

std::string joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts)
    if (!part.empty()) text += (text.empty() ? "" : ", ") + part;
  return text;
}

template <class Texts>
std::string line(const std::string& head, const Texts& texts) {
  std::vector<std::string> parts;
  for (const auto& text : texts) parts.push_back(shown(text));
  return parts.empty() ? "" : head + ": " + joined(parts) + "\n";
}

std::string shownSubject(const frontend::Candidate& subject) {
  static const char* const levels[] = {"public", "protected", "private", "immutable", "listed"};
  const std::string size = shown(subject.size);
  const std::string facts =
      joined({size + (size.empty() || subject.type.empty() ? "" : " ") + shown(subject.type),
              subject.declaringClass.empty() ? "" : "of " + shown(subject.declaringClass),
              subject.access ? levels[*subject.access] : "", subject.isConstant ? "constant" : "",
              subject.isHidden ? "hidden" : "",
              subject.readRunsCode && subject.kind == frontend::Kind::Property ? "reading runs code" : ""});
  return std::string(nameOf(subject.kind)) + " " + shown(subject.label) + ":" + (facts.empty() ? "" : " ") +
         facts + "\n";
}

}  // namespace

std::vector<LineCase> lineCases(const std::string& file) {
  std::vector<LineCase> cases;
  for (const auto& read : nlohmann::json::parse(readCases(file))) {
    const std::u16string before = wide(read.at("before"));
    cases.push_back({read.at("place"), before + wide(read.at("after")), before.size(), read.at("settings"),
                     read.at("status"), read.at("rows")});
  }
  return cases;
}

std::string LineCase::rows() const {
  std::string text;
  for (const std::string& row : expected) text += row + "\n";
  return text;
}

frontend::Scope LineCase::where() const {
  const auto setting = [this](const char* key) {
    const auto found = settings.find(key);
    return found == settings.end() ? std::u16string() : wide(found->second);
  };
  return {setting("in"), setting("class")};
}

frontend::Options LineCase::options() const {
  using frontend::CodePolicy;
  frontend::Options options;
  options.hidden = settings.contains("hidden");
  if (const auto limit = settings.find("limit"); limit != settings.end())
    options.limit = std::stoul(limit->second);
  if (const auto code = settings.find("code"); code != settings.end())
    options.policy = code->second == "never" ? CodePolicy::Never : CodePolicy::Allowed;
  return options;
}

std::string shownHover(const frontend::Hover& hover) {
  if (hover.isUnknown) return "unknown\n";
  return shownSubject(hover.subject) + line("above", hover.superclasses) +
         line("values", hover.possibleValues) + line("checked", hover.validators) +
         (hover.signature ? "signature: " + shown(hover.signature->text()) + "\n" : "");
}

CaseWorld::CaseWorld(std::unique_ptr<embedded::Host> made)
    : host(made ? std::move(made) : embedded::Host::load(sourceFile("tests/cases/world.json"))),
      active(*host),
      session(*host) {}
