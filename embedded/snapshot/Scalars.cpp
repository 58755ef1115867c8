#include <utf8.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>

#include "embedded/snapshot/Give.h"
#include "embedded/snapshot/Place.h"
#include "embedded/snapshot/Take.h"

namespace embedded::snapshot {

namespace {

constexpr double biggestWhole = 9007199254740992;  // up to here every whole number is a double

double takeWhole(Reader& reader, Event& event, double least, double most) {
  if (event.kind != Event::Number || std::trunc(event.number) != event.number)
    reader.refuseType(event, "a whole number");
  if (event.number < least || event.number > most)
    reader.fail("snapshot.out-of-range", "too small or too big");
  return event.number;
}

std::string& textOf(Reader& reader, Event& event, const std::string& expected) {
  if (event.kind != Event::Text) reader.refuseType(event, expected);
  return *event.text;
}

/// A few words, each with its meaning.
template <class Meaning, std::size_t count>
using Words = std::array<std::pair<std::string_view, Meaning>, count>;

constexpr Words<WalkOrder, 2> orders{
    {{"own-first", WalkOrder::OwnFirst}, {"inherited-first", WalkOrder::InheritedFirst}}};

constexpr Words<DimensionForm, 3> forms{
    {{"full", DimensionForm::Full}, {"compact", DimensionForm::Compact}, {"lazy", DimensionForm::Lazy}}};

constexpr Words<ArgumentDescription::Kind, 4> argumentKinds{{{"positional", ArgumentDescription::Positional},
                                                             {"optional", ArgumentDescription::Optional},
                                                             {"repeating", ArgumentDescription::Repeating},
                                                             {"name-value", ArgumentDescription::NameValue}}};

constexpr Words<PathItemDescription::Kind, 4> itemKinds{{{"path", PathItemDescription::Path},
                                                         {"class", PathItemDescription::Class},
                                                         {"package", PathItemDescription::Package},
                                                         {"current", PathItemDescription::Current}}};

constexpr Words<double, 3> unusualNumbers{{{"NaN", std::numeric_limits<double>::quiet_NaN()},
                                           {"Inf", std::numeric_limits<double>::infinity()},
                                           {"-Inf", -std::numeric_limits<double>::infinity()}}};

constexpr Words<std::optional<std::size_t>, 1> anyExtent{{{":", std::nullopt}}};

template <class Meaning, std::size_t count>
void takeWord(Reader& reader, Event& event, Meaning& destination, const Words<Meaning, count>& words) {
  std::string known;
  for (const auto& [word, meaning] : words) known += (known.empty() ? "" : ", ") + std::string(word);
  const std::string& text = textOf(reader, event, "one of " + known);
  for (const auto& [word, meaning] : words) {
    if (word != text) continue;
    destination = meaning;
    return;
  }
  reader.fail("snapshot.unknown-word", inQuotes(text) + " is none of " + known);
}

/// An enumerator that has no word is none that its type has.
template <class Meaning, std::size_t count>
Json wordOf(const Writer& writer, Meaning value, const Words<Meaning, count>& words) {
  for (const auto& [word, meaning] : words)
    if (meaning == value) return word;
  writer.fail("snapshot.unknown-word", "there is no word for " + std::to_string(static_cast<int>(value)));
}

class SizeHandler final : public Handler {
 public:
  explicit SizeHandler(std::vector<std::size_t>& size) : size_(size) {}

  void value(Reader& reader, Event& event) override { take(reader, event, size_.emplace_back()); }
  void end(Reader& reader) override {
    if (size_.size() < 2) reader.fail("snapshot.wrong-size", "a size has at least two dimensions");
  }

 private:
  std::vector<std::size_t>& size_;
};

}  // namespace

void take(Reader& reader, Event& event, std::vector<std::size_t>& destination) {
  if (event.kind != Event::Array) reader.refuseType(event, "a list of dimensions");
  reader.open<SizeHandler>(destination);
}

void take(Reader& reader, Event& event, bool& destination) {
  if (event.kind != Event::Logical) reader.refuseType(event, "true or false");
  destination = event.logical;
}

void take(Reader& reader, Event& event, std::optional<bool>& destination) {
  take(reader, event, destination.emplace());
}

void take(Reader& reader, Event& event, int& destination) {
  using Limits = std::numeric_limits<int>;
  destination = static_cast<int>(takeWhole(reader, event, Limits::min(), Limits::max()));
}

void take(Reader& reader, Event& event, std::size_t& destination) {
  destination = static_cast<std::size_t>(takeWhole(reader, event, 0, biggestWhole));
}

void take(Reader& reader, Event& event, std::optional<std::size_t>& destination) {
  if (event.kind == Event::Number) return take(reader, event, destination.emplace());
  takeWord(reader, event, destination, anyExtent);
}

void take(Reader& reader, Event& event, double& destination) {
  destination = event.number;
  if (event.kind != Event::Number) takeWord(reader, event, destination, unusualNumbers);
}

void take(Reader& reader, Event& event, std::string& destination) {
  destination = std::move(textOf(reader, event, "a text"));
}

void take(Reader& reader, Event& event, MemberName& destination) {
  if (event.kind != Event::Null) destination = std::move(textOf(reader, event, "a name or null"));
}

void take(Reader& reader, Event& event, std::u16string& destination) {
  const std::string& text = textOf(reader, event, "a text");
  utf8::utf8to16(text.begin(), text.end(), std::back_inserter(destination));
}

void take(Reader& reader, Event& event, std::optional<std::u16string>& destination) {
  if (event.kind != Event::Null) take(reader, event, destination.emplace());
}

void take(Reader& reader, Event& event, WalkOrder& destination) {
  takeWord(reader, event, destination, orders);
}

void take(Reader& reader, Event& event, DimensionForm& destination) {
  takeWord(reader, event, destination, forms);
}

void take(Reader& reader, Event& event, ArgumentDescription::Kind& destination) {
  takeWord(reader, event, destination, argumentKinds);
}

void take(Reader& reader, Event& event, PathItemDescription::Kind& destination) {
  takeWord(reader, event, destination, itemKinds);
}

Json give(Writer&, bool value) { return value; }
Json give(Writer&, int value) { return value; }
Json give(Writer&, std::size_t value) { return value; }

Json give(Writer& writer, const std::optional<std::size_t>& value) {
  return value ? give(writer, *value) : Json(anyExtent.front().first);
}

Json give(Writer&, double value) {
  if (std::isnan(value)) return unusualNumbers[0].first;
  if (std::isinf(value)) return unusualNumbers[value > 0 ? 1 : 2].first;
  const bool whole = std::trunc(value) == value && std::abs(value) < biggestWhole;
  const bool negativeZero = value == 0 && std::signbit(value);
  return whole && !negativeZero ? Json(static_cast<std::int64_t>(value)) : Json(value);
}

Json give(Writer& writer, const std::string& value) {
  if (!utf8::is_valid(value.begin(), value.end()))
    writer.fail("snapshot.not-utf8", "the text is not UTF-8, as a snapshot must be");
  return value;
}

Json give(Writer& writer, const std::u16string& value) {
  std::string text;
  try {
    utf8::utf16to8(value.begin(), value.end(), std::back_inserter(text));
  } catch (const utf8::exception&) {
    writer.fail("snapshot.lone-surrogate", "the text holds a lone surrogate, which UTF-8 cannot carry");
  }
  return text;
}

Json give(Writer& writer, WalkOrder value) { return wordOf(writer, value, orders); }
Json give(Writer& writer, DimensionForm value) { return wordOf(writer, value, forms); }
Json give(Writer& writer, ArgumentDescription::Kind value) { return wordOf(writer, value, argumentKinds); }
Json give(Writer& writer, PathItemDescription::Kind value) { return wordOf(writer, value, itemKinds); }

}  // namespace embedded::snapshot
