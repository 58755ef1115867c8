#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "embedded/Snapshot.h"
#include "embedded/snapshot/Checks.h"
#include "embedded/snapshot/Reader.h"
#include "embedded/snapshot/Shape.h"
#include "embedded/snapshot/TextSource.h"

namespace embedded {

namespace {

using nlohmann::json;
using snapshot::Event;
using snapshot::Handler;
using snapshot::Reader;
using snapshot::TextIterator;
using snapshot::TextSource;

std::string message(const std::string& code, const std::string& file, const std::string& pointer,
                    const std::string& reason) {
  const std::string start = file.empty() ? "" : file + ": ";
  const std::string place = pointer.empty() ? "" : " at " + pointer;
  return start + reason + " [" + code + place + "]";
}

class RootHandler final : public Handler {
 public:
  explicit RootHandler(Description& description) : description_(description) {}
  void value(Reader& reader, Event& event) override { read(reader, event, description_); }

 private:
  Description& description_;
};

/// The parser's events, as events of the reader.
class JsonEvents final : public nlohmann::json_sax<json> {
 public:
  JsonEvents(Reader& reader, const TextSource& source) : reader_(reader), source_(source) {}

  bool null() override { return pass({Event::Null}); }
  bool boolean(bool value) override { return pass({.kind = Event::Logical, .logical = value}); }
  // The parser takes integers without a sign as unsigned ones: this zero is a negative one.
  bool number_integer(number_integer_t value) override {
    return number(value == 0 ? -0.0 : static_cast<double>(value));
  }
  bool number_unsigned(number_unsigned_t value) override { return number(static_cast<double>(value)); }
  bool number_float(number_float_t value, const string_t&) override { return number(value); }
  bool string(string_t& text) override { return pass({.kind = Event::Text, .text = &text}); }
  // Text has no such values.
  bool binary(binary_t&) override { return false; }
  bool start_object(std::size_t) override { return pass({Event::Object}); }
  bool start_array(std::size_t) override { return pass({Event::Array}); }
  bool end_object() override { return end(); }
  bool end_array() override { return end(); }

  bool key(string_t& name) override {
    reader_.key(name);
    return true;
  }

  bool parse_error(std::size_t, const std::string&, const json::exception& error) override {
    constexpr int numberOverflow = 406;
    if (error.id == numberOverflow) reader_.failText("snapshot.out-of-range", "the number is too big");
    // Told apart from bad syntax, because nobody would look for a mistake in what is not there.
    if (source_.exhausted() && source_.blank()) reader_.failText("snapshot.empty", "there is nothing in it");
    if (source_.exhausted() && !reader_.complete())
      reader_.failText("snapshot.truncated", "the text ends before the snapshot does");
    reader_.failText("snapshot.syntax", detailOf(error));
  }

 private:
  bool pass(Event event) {
    reader_.value(event);
    return true;
  }
  bool number(double value) { return pass({.kind = Event::Number, .number = value}); }
  bool end() {
    reader_.end();
    return true;
  }

  /// What the parser says, without its own way of naming error and position.
  static std::string detailOf(const json::exception& error) {
    const std::string text = error.what();
    const auto start = text.find(": ");
    return start == std::string::npos ? text : text.substr(start + 2);
  }

  Reader& reader_;
  const TextSource& source_;
};

/// Looks for the place of a JSON pointer in a text that has been read before.
class PlaceSearch final : public nlohmann::json_sax<json> {
 public:
  PlaceSearch(const TextSource& source, std::string pointer)
      : source_(source), pointer_(std::move(pointer)) {}

  /// Of the value, or of the innermost one around it that the text has; 0 for none.
  std::size_t line() const { return line_; }

  bool null() override { return value(); }
  bool boolean(bool) override { return value(); }
  bool number_integer(number_integer_t) override { return value(); }
  bool number_unsigned(number_unsigned_t) override { return value(); }
  bool number_float(number_float_t, const string_t&) override { return value(); }
  bool string(string_t&) override { return value(); }
  bool binary(binary_t&) override { return false; }
  bool start_object(std::size_t) override { return begin(false); }
  bool start_array(std::size_t) override { return begin(true); }
  bool end_object() override { return end(); }
  bool end_array() override { return end(); }
  bool key(string_t& name) override {
    way_.back().step = name;
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const json::exception&) override { return false; }

 private:
  struct Level {
    bool array;
    std::size_t next = 0;
    std::string step = {};
  };

  /// False ends the search.
  bool value() {
    if (!way_.empty() && way_.back().array) way_.back().step = std::to_string(way_.back().next++);
    std::string here;
    for (const Level& level : way_) snapshot::appendStep(here, level.step);
    if (here == pointer_ || pointer_.starts_with(here + "/")) line_ = source_.line();
    return here != pointer_;
  }
  bool begin(bool array) {
    if (!value()) return false;
    way_.push_back({array});
    return true;
  }
  bool end() {
    way_.pop_back();
    return true;
  }

  const TextSource& source_;
  const std::string pointer_;
  std::vector<Level> way_;
  std::size_t line_ = 0;
};

// Nothing but blanks may follow the snapshot.
constexpr bool strict = true;
constexpr bool ignoreComments = true;

/// 0: the text has no such place any more.
std::size_t lineOf(const std::string& pointer, const std::string& file, std::istream& stream) {
  const LoadProgress none;
  TextSource source(stream, file, 0, none);
  PlaceSearch search(source, pointer);
  try {
    json::sax_parse(TextIterator(source), TextIterator(), &search, nlohmann::detail::input_format_t::json,
                    strict, ignoreComments);
  } catch (const SnapshotError&) {
    // Somebody has written another file meanwhile; what was wrong with the one before is told all the same.
  }
  return search.line();
}

/// What is wrong with a description only the whole of it tells, when its text has been read; so the text is read once more
/// for the line.
void check(const Description& description, const std::string& file,
           const std::function<std::unique_ptr<std::istream>()>& open) {
  try {
    checkDescription(description, file);
  } catch (const SnapshotError& error) {
    const std::size_t line = lineOf(error.pointer(), file, *open());
    if (line == 0) throw;
    throw SnapshotError(error.code(), error.file(), error.pointer(),
                        "line " + std::to_string(line) + ": " + error.reason());
  }
}

Description read(TextSource& source) {
  Description description;
  Reader reader(source, std::make_unique<RootHandler>(description));
  JsonEvents events(reader, source);
  json::sax_parse(TextIterator(source), TextIterator(), &events, nlohmann::detail::input_format_t::json,
                  strict, ignoreComments);
  return description;
}

void requireReadable(const std::filesystem::path& file) {
  std::error_code error;
  // `error` is not looked at: what cannot be asked about fails when it is opened.
  const auto kind = std::filesystem::status(file, error).type();
  if (kind == std::filesystem::file_type::not_found)
    throw SnapshotError("snapshot.missing-file", file.string(), "", "there is no such file");
  if (kind == std::filesystem::file_type::directory)
    throw SnapshotError("snapshot.directory", file.string(), "", "this is a directory, not a file");
  // Opening a pipe waits for somebody who writes, and a device may have no end.
  if (kind != std::filesystem::file_type::regular && kind != std::filesystem::file_type::none)
    throw SnapshotError("snapshot.unreadable", file.string(), "",
                        "this is no file, but a pipe, a device or a socket");
}

/// Folders of a snapshot are relative to its file.
void placeFolders(Description& description, const std::filesystem::path& file) {
  const auto folder = std::filesystem::absolute(file).parent_path();
  const auto place = [&](std::string& path) { path = (folder / path).lexically_normal().string(); };
  for (auto& item : description.path) place(item.folder);
  if (!description.currentFolder.empty()) place(description.currentFolder);
}

}  // namespace

SnapshotError::SnapshotError(std::string code, std::string file, std::string pointer, std::string reason)
    : std::runtime_error(message(code, file, pointer, reason)),
      code_(std::move(code)),
      file_(std::move(file)),
      pointer_(std::move(pointer)),
      reason_(std::move(reason)) {}

SnapshotError::~SnapshotError() = default;

Description readSnapshot(const std::filesystem::path& file, const LoadProgress& progress) {
  requireReadable(file);
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw SnapshotError("snapshot.unreadable", file.string(), "", "the file cannot be opened");
  std::error_code sizeUnknown;
  // For the progress only, so that it need not be known.
  const auto size = std::filesystem::file_size(file, sizeUnknown);
  TextSource source(stream, file.string(), sizeUnknown ? 0 : size, progress);
  Description description = read(source);
  check(description, file.string(), [&] { return std::make_unique<std::ifstream>(file, std::ios::binary); });
  placeFolders(description, file);
  return description;
}

Description readSnapshotText(std::string_view text, const std::string& name) {
  std::istringstream stream{std::string(text)};
  const LoadProgress none;
  TextSource source(stream, name, text.size(), none);
  Description description = read(source);
  check(description, name, [&] { return std::make_unique<std::istringstream>(std::string(text)); });
  return description;
}

}  // namespace embedded
