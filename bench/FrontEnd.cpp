// The front end's completion after an object and a dot, against the same members in one flat table.

#include <algorithm>
#include <tuple>
#include <utility>

#include "bench/Row.h"
#include "bench/Worlds.h"
#include "embedded/Host.h"
#include "frontend/Completion.h"
#include "tools/session/HostSession.h"

namespace bench {

namespace {

using frontend::Candidate;
using frontend::Match;

struct Session {
  explicit Session(const embedded::Description& description) : host(description) {}

  embedded::Host host;
  embedded::Activation active{host};
  tools::HostSession session{host};
};

std::u16string widened(const std::string& text) { return {text.begin(), text.end()}; }
std::string narrowed(const std::u16string& text) { return {text.begin(), text.end()}; }

frontend::Completion completed(Session& session, const std::u16string& typed, std::size_t limit) {
  const std::u16string text = u"object." + typed;
  frontend::Options options;
  options.limit = limit;
  return frontend::complete(session.session, text, text.size(), {}, options);
}

/// A member as the flat table holds it: what a candidate tells, in narrow texts.
struct Entry {
  std::string name, declaringClass, type, size;
  /// What else is told.
  Candidate rest;
};

using Table = std::vector<Entry>;

Table tableOf(const std::vector<Candidate>& candidates) {
  Table table;
  for (const Candidate& candidate : candidates) {
    Entry entry{narrowed(candidate.label), narrowed(candidate.declaringClass), narrowed(candidate.type),
                narrowed(candidate.size), candidate};
    entry.rest.label = entry.rest.insertion = {};
    entry.rest.declaringClass = entry.rest.type = entry.rest.size = {};
    table.push_back(std::move(entry));
  }
  return table;
}

bool beginsIgnoringCase(const std::string& name, const std::string& typed) {
  const auto lower = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter; };
  return typed.size() <= name.size() &&
         std::equal(typed.begin(), typed.end(), name.begin(),
                    [&](char left, char right) { return lower(left) == lower(right); });
}

Match matchOf(const std::string& typed, const std::string& name) {
  if (typed == name) return Match::Exact;
  if (name.starts_with(typed)) return Match::Prefix;
  return beginsIgnoringCase(name, typed) ? Match::PrefixIgnoringCase : Match::None;
}

/// Tests each member, ranks those that fit, and makes the entries that are shown.
std::size_t shown(const Table& table, const std::string& typed, std::size_t limit) {
  struct Key {
    Match match;
    std::size_t at;
  };
  std::vector<Key> keys;
  keys.reserve(table.size());
  for (std::size_t at = 0; at < table.size(); ++at) {
    const Match match = matchOf(typed, table[at].name);
    if (match != Match::None) keys.push_back({match, at});
  }
  const std::size_t count = std::min(limit, keys.size());
  std::ranges::partial_sort(keys, keys.begin() + static_cast<std::ptrdiff_t>(count),
                            [&](const Key& left, const Key& right) {
                              const Candidate& first = table[left.at].rest;
                              const Candidate& second = table[right.at].rest;
                              return std::tie(left.match, first.kind, first.order) <
                                     std::tie(right.match, second.kind, second.order);
                            });
  std::vector<Candidate> candidates;
  candidates.reserve(count);
  for (std::size_t at = 0; at < count; ++at) {
    const Entry& entry = table[keys[at].at];
    Candidate& candidate = candidates.emplace_back(entry.rest);
    candidate.label = widened(entry.name);
    candidate.insertion = candidate.label;
    candidate.declaringClass = widened(entry.declaringClass);
    candidate.type = widened(entry.type);
    candidate.size = widened(entry.size);
    candidate.match = keys[at].match;
  }
  return candidates.size();
}

Measured completion(Size size, const std::string& typed) {
  constexpr std::size_t limit = 200;
  auto session = std::make_shared<Session>(chainOfMembers(size));
  const std::u16string wideTyped = widened(typed);
  return {session,
          [&session = *session, wideTyped] { return completed(session, wideTyped, limit).candidates.size(); },
          [table = tableOf(completed(*session, u"", size.members).candidates), typed] {
            return shown(table, typed, limit);
          }};
}

}  // namespace

void addFrontEndRows(std::vector<Row>& rows) {
  for (const std::size_t members : {16, 256, 4096}) {
    for (const std::size_t depth : {1, 8, 64}) {
      if (members < 4 * depth) continue;
      const Size size{members, depth};
      rows.push_back({rowName("complete-object", size), [=] { return completion(size, ""); }});
      // One name of 26 begins so.
      rows.push_back({rowName("complete-object-typed", size), [=] { return completion(size, "c"); }});
    }
  }
}

}  // namespace bench
