#pragma once

// The middle of the reader: events of the text come in, and go to the handler of the innermost object or
// array that is open. Above it, Snapshot.cpp makes events of JSON; below it, each kind of object has a
// handler.

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "embedded/snapshot/Limits.h"
#include "embedded/snapshot/TextSource.h"

namespace embedded::snapshot {

class Reader;

/// A value of the text, or the beginning of one.
struct Event {
  enum Kind { Null, Logical, Number, Text, Object, Array };
  Kind kind;
  bool logical = false;
  double number = 0;
  /// The text may be moved away.
  std::string* text = nullptr;
};

/// Reads the contents of one open object or array.
class Handler {
 public:
  virtual ~Handler();
  /// A key of an object. The value follows.
  virtual void key(Reader& reader, const std::string& name);
  /// A value. At the beginning of an object or an array it opens the handler of its contents, or fails.
  virtual void value(Reader& reader, Event& event) = 0;
  /// The object or array is whole.
  virtual void end(Reader& reader);
};

class Reader {
 public:
  Reader(const TextSource& source, std::unique_ptr<Handler> root);
  ~Reader();

  // Events.

  void key(const std::string& name);
  void value(Event event);
  void end();

  /// The snapshot is whole.
  bool complete() const { return begun_ && levels_.empty(); }

  // For handlers.

  /// The value that has just begun is taken by this handler.
  void open(std::unique_ptr<Handler> handler);
  template <class SomeHandler, class... Arguments>
  void open(Arguments&&... arguments) {
    open(std::make_unique<SomeHandler>(std::forward<Arguments>(arguments)...));
  }

  /// What has just been read takes that many bytes of memory, in the description and in the session that is made of it.
  /// Fails when all of it takes more than a text of this size may.
  void need(std::size_t bytes) {
    needed_ += bytes;
    if (needed_ > mostMemoryOf(source_.total())) refuseNeed();
  }

  /// Throws a SnapshotError with the place of the value or key that came last; at the end of an object or
  /// array, with the place of that.
  [[noreturn]] void fail(const std::string& code, const std::string& reason) const;
  /// The same, for a syntax error: the reason has the column too.
  [[noreturn]] void failText(const std::string& code, const std::string& reason) const;
  [[noreturn]] void refuseType(const Event& event, const std::string& expected) const;
  [[noreturn]] void refuseRepeated(const std::string& key) const;

 private:
  /// One open object or array, and how far it has come.
  struct Level {
    std::unique_ptr<Handler> handler;
    bool array = false;
    bool begun = false;
    std::string key;
    std::size_t index = 0;
  };

  [[noreturn]] void refuseNeed() const;
  std::string pointer() const;

  const TextSource& source_;
  std::unique_ptr<Handler> root_;
  std::vector<Level> levels_;
  bool begun_ = false;
  bool openingArray_ = false;
  std::size_t needed_ = 0;
};

}  // namespace embedded::snapshot
