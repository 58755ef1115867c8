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

CaseWorld::CaseWorld()
    : host(embedded::Host::load(sourceFile("tests/cases/world.json"))), active(*host), session(*host) {}
