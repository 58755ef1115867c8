#include "embedded/snapshot/Reader.h"

#include "embedded/snapshot/JsonPointer.h"

namespace embedded::snapshot {

namespace {

const char* inWords(Event::Kind kind) {
  switch (kind) {
    case Event::Null:
      return "null";
    case Event::Logical:
      return "true or false";
    case Event::Number:
      return "a number";
    case Event::Text:
      return "a text";
    case Event::Object:
      return "an object";
    case Event::Array:
      return "a list";
  }
  return "";
}

}  // namespace

Handler::~Handler() = default;
void Handler::key(Reader&, const std::string&) {}
void Handler::end(Reader&) {}

Reader::Reader(const TextSource& source, std::unique_ptr<Handler> root)
    : source_(source), root_(std::move(root)) {}

Reader::~Reader() = default;

void Reader::key(const std::string& name) {
  Level& level = levels_.back();
  level.begun = true;
  level.key = name;
  level.handler->key(*this, name);
}

void Reader::value(Event event) {
  // Noted for open(), which the handler calls without saying what it opens.
  openingArray_ = event.kind == Event::Array;
  Handler* handler = root_.get();
  if (!levels_.empty()) {
    Level& level = levels_.back();
    if (level.array && level.begun) ++level.index;
    level.begun = true;
    handler = level.handler.get();
  }
  begun_ = true;
  handler->value(*this, event);
}

void Reader::end() {
  const Level level = std::move(levels_.back());
  // Before the handler is told: what it refuses now is the value as a whole, and not its last part.
  levels_.pop_back();
  level.handler->end(*this);
}

void Reader::open(std::unique_ptr<Handler> handler) {
  if (levels_.size() == deepestLevel)
    fail("snapshot.too-deep", "nested deeper than " + std::to_string(deepestLevel) + " levels");
  levels_.push_back({.handler = std::move(handler), .array = openingArray_, .begun = false, .key = {}});
}

void Reader::fail(const std::string& code, const std::string& reason) const {
  throw SnapshotError(code, source_.file(), pointer(),
                      "line " + std::to_string(source_.line()) + ": " + reason);
}

void Reader::failText(const std::string& code, const std::string& reason) const {
  throw SnapshotError(code, source_.file(), pointer(),
                      "line " + std::to_string(source_.line()) + ", column " +
                          std::to_string(source_.column()) + ": " + reason);
}

void Reader::refuseType(const Event& event, const std::string& expected) const {
  fail("snapshot.wrong-type", "expected " + expected + ", found " + inWords(event.kind));
}

void Reader::refuseRepeated(const std::string& key) const {
  fail("snapshot.duplicate-key", inQuotes(key) + " stands here twice");
}

void Reader::refuseNeed() const {
  fail("snapshot.too-big", "up to here the snapshot takes " + std::to_string(needed_) +
                               " bytes of memory; one of " + std::to_string(source_.total()) +
                               " bytes may take " + std::to_string(mostMemoryOf(source_.total())));
}

std::string Reader::pointer() const {
  std::string pointer;
  for (const Level& level : levels_) {
    if (level.begun) appendStep(pointer, level.array ? std::to_string(level.index) : level.key);
  }
  return pointer;
}

}  // namespace embedded::snapshot
