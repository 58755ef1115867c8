#include "tools/prompt/LiveSession.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "tools/render/Text.h"

namespace tools::prompt {

namespace {

constexpr std::size_t mostOperations = 20;

/// Each operation with how often it was called, in the order of the first calls.
std::vector<std::pair<std::string, std::size_t>> countsOf(const std::vector<embedded::Call>& log) {
  std::vector<std::pair<std::string, std::size_t>> counts;
  for (const embedded::Call& call : log) {
    const auto found =
        std::ranges::find(counts, call.operation, [](const auto& count) { return count.first; });
    if (found == counts.end())
      counts.emplace_back(call.operation, 1);
    else
      ++found->second;
  }
  return counts;
}

}  // namespace

void Trace::begin() {
  if (isOn_) host_.startLog();
}

std::string Trace::end() {
  if (!isOn_) return {};
  const std::vector<embedded::Call> log = host_.takeLog();
  const bool ranCode = embedded::Host::ranKorvalCode(log);
  std::string text = "trace: " + std::to_string(log.size()) +
                     (log.size() == 1 ? " host call, " : " host calls, ") +
                     (ranCode ? "Korval code ran\n" : "no Korval code ran\n");
  const auto counts = countsOf(log);
  for (std::size_t at = 0; at < std::min(counts.size(), mostOperations); ++at)
    text += "  " + std::to_string(counts[at].second) + " x " + printable(counts[at].first) + "\n";
  if (counts.size() > mostOperations)
    text += "  and " + std::to_string(counts.size() - mostOperations) + " other operations\n";
  return text;
}

}  // namespace tools::prompt
