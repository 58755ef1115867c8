#include "embedded/snapshot/Shape.h"

#include <utf8.h>

#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>

namespace embedded::snapshot {

namespace {

constexpr double biggestWhole = 9007199254740992;  // up to here every whole number is a double

double readWhole(Reader& reader, Event& event, double least, double most) {
  if (event.kind != Event::Number || std::trunc(event.number) != event.number)
    reader.refuseType(event, "a whole number");
  if (event.number < least || event.number > most)
    reader.fail("snapshot.out-of-range", "too small or too big");
  return event.number;
}

const Words<double> unusualNumbers{{"NaN", std::numeric_limits<double>::quiet_NaN()},
                                   {"Inf", std::numeric_limits<double>::infinity()},
                                   {"-Inf", -std::numeric_limits<double>::infinity()}};

const Words<std::optional<std::size_t>> anyExtent{{":", std::nullopt}};

class SizeHandler final : public Handler {
 public:
  explicit SizeHandler(std::vector<std::size_t>& size) : size_(size) {}

  void value(Reader& reader, Event& event) override { read(reader, event, size_.emplace_back()); }
  void end(Reader& reader) override {
    if (size_.size() < 2) reader.fail("snapshot.wrong-size", "a size has at least two dimensions");
  }

 private:
  std::vector<std::size_t>& size_;
};

}  // namespace

std::string& requireText(Reader& reader, Event& event, const std::string& expected) {
  if (event.kind != Event::Text) reader.refuseType(event, expected);
  return *event.text;
}

void read(Reader& reader, Event& event, std::vector<std::size_t>& destination) {
  if (event.kind != Event::Array) reader.refuseType(event, "a list of dimensions");
  reader.open<SizeHandler>(destination);
}

void read(Reader& reader, Event& event, bool& destination) {
  if (event.kind != Event::Logical) reader.refuseType(event, "true or false");
  destination = event.logical;
}

void read(Reader& reader, Event& event, int& destination) {
  using Limits = std::numeric_limits<int>;
  destination = static_cast<int>(readWhole(reader, event, Limits::min(), Limits::max()));
}

void read(Reader& reader, Event& event, std::size_t& destination) {
  // Beyond, the number in the text may have been another one than the double that came of it.
  destination = static_cast<std::size_t>(readWhole(reader, event, 0, biggestWhole));
}

void read(Reader& reader, Event& event, std::optional<std::size_t>& destination) {
  if (event.kind == Event::Number) return read(reader, event, destination.emplace());
  readWord(reader, event, destination, anyExtent);
}

void read(Reader& reader, Event& event, double& destination) {
  destination = event.number;
  if (event.kind != Event::Number) readWord(reader, event, destination, unusualNumbers);
}

void read(Reader& reader, Event& event, std::string& destination) {
  destination = std::move(requireText(reader, event, "a text"));
}

void read(Reader& reader, Event& event, MemberName& destination) {
  if (event.kind != Event::Null) destination = std::move(requireText(reader, event, "a name or null"));
}

void read(Reader& reader, Event& event, std::u16string& destination) {
  // It is valid: the source lets no other bytes through, and the parser no lone surrogates.
  const std::string& text = requireText(reader, event, "a text");
  utf8::utf8to16(text.begin(), text.end(), std::back_inserter(destination));
}

void read(Reader& reader, Event& event, std::optional<std::u16string>& destination) {
  if (event.kind != Event::Null) read(reader, event, destination.emplace());
}

Json write(Writer&, bool value) { return value; }
Json write(Writer&, int value) { return value; }
Json write(Writer&, std::size_t value) { return value; }

Json write(Writer& writer, const std::optional<std::size_t>& value) {
  return value ? write(writer, *value) : Json(anyExtent.front().first);
}

Json write(Writer&, double value) {
  if (std::isnan(value)) return unusualNumbers[0].first;
  if (std::isinf(value)) return unusualNumbers[value > 0 ? 1 : 2].first;
  const bool whole = std::trunc(value) == value && std::abs(value) < biggestWhole;
  // As an integer it would lose its sign.
  const bool negativeZero = value == 0 && std::signbit(value);
  return whole && !negativeZero ? Json(static_cast<std::int64_t>(value)) : Json(value);
}

Json write(Writer& writer, const std::string& value) {
  if (!utf8::is_valid(value.begin(), value.end()))
    writer.fail("snapshot.not-utf8", "the text is not UTF-8, as a snapshot must be");
  return value;
}

Json write(Writer& writer, const std::u16string& value) {
  std::string text;
  try {
    utf8::utf16to8(value.begin(), value.end(), std::back_inserter(text));
  } catch (const utf8::exception&) {
    writer.fail("snapshot.lone-surrogate", "the text holds a lone surrogate, which UTF-8 cannot carry");
  }
  return text;
}

}  // namespace embedded::snapshot
