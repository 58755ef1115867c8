#include "tests/frontend/LineCases.h"

#include <boost/algorithm/string.hpp>
#include <boost/locale/encoding_utf.hpp>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace {

const std::string cursorMark = "\xE2\x80\xB8";

std::u16string wide(const std::string& text) { return boost::locale::conv::utf_to_utf<char16_t>(text); }

std::string folder() {
  const char* source = std::getenv("CONTEXTDATA_SOURCE");
  return std::string(source == nullptr ? "." : source) + "/tests/cases/";
}

LineCase beginCase(std::string line, const std::string& place) {
  boost::replace_all(line, "\\n", "\n");
  const std::size_t mark = line.find(cursorMark);
  if (mark == std::string::npos) throw std::runtime_error(place + ": a case has no cursor");
  const std::u16string before = wide(line.substr(0, mark));
  return {place, before + wide(line.substr(mark + cursorMark.size())), before.size(), {}, "complete", {}};
}

void addLine(const std::string& line, LineCase& made) {
  if (line.starts_with("-> ")) {
    made.status = line.substr(3);
  } else if (line.starts_with(": ")) {
    const std::size_t blank = line.find(' ', 2);
    made.settings[line.substr(2, blank - 2)] = blank == std::string::npos ? "" : line.substr(blank + 1);
  } else {
    made.expected.push_back(line);
  }
}

}  // namespace

std::vector<LineCase> lineCases(const std::string& file) {
  std::ifstream in(folder() + file);
  std::vector<LineCase> cases;
  bool isInside = false;
  std::size_t number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    if (line.starts_with("#")) continue;
    if (!line.empty() && !isInside) cases.push_back(beginCase(line, file + ":" + std::to_string(number)));
    if (!line.empty() && isInside) addLine(line, cases.back());
    isInside = !line.empty();
  }
  return cases;
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

CaseWorld::CaseWorld() : host(embedded::Host::load(folder() + "world.json")), active(*host), session(*host) {}
