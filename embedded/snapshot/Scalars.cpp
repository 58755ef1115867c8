#include <utf8.h>

#include <cmath>
#include <initializer_list>
#include <iterator>
#include <limits>

#include "embedded/snapshot/Place.h"
#include "embedded/snapshot/Take.h"

namespace embedded::snapshot {

namespace {

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

/// One of a few words, each with its meaning.
template <class Meaning>
void takeWord(Reader& reader, Event& event, Meaning& destination,
              std::initializer_list<std::pair<std::string_view, Meaning>> words) {
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
  constexpr double biggestWhole = 9007199254740992;  // up to here every whole number is a double
  destination = static_cast<std::size_t>(takeWhole(reader, event, 0, biggestWhole));
}

void take(Reader& reader, Event& event, std::optional<std::size_t>& destination) {
  if (event.kind == Event::Number) return take(reader, event, destination.emplace());
  takeWord<std::optional<std::size_t>>(reader, event, destination, {{":", std::nullopt}});
}

void take(Reader& reader, Event& event, double& destination) {
  using Limits = std::numeric_limits<double>;
  destination = event.number;
  if (event.kind == Event::Number) return;
  takeWord<double>(
      reader, event, destination,
      {{"NaN", Limits::quiet_NaN()}, {"Inf", Limits::infinity()}, {"-Inf", -Limits::infinity()}});
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
  takeWord<WalkOrder>(reader, event, destination,
                      {{"own-first", WalkOrder::OwnFirst}, {"inherited-first", WalkOrder::InheritedFirst}});
}

void take(Reader& reader, Event& event, DimensionForm& destination) {
  takeWord<DimensionForm>(
      reader, event, destination,
      {{"full", DimensionForm::Full}, {"compact", DimensionForm::Compact}, {"lazy", DimensionForm::Lazy}});
}

void take(Reader& reader, Event& event, ArgumentDescription::Kind& destination) {
  using Argument = ArgumentDescription;
  takeWord<Argument::Kind>(reader, event, destination,
                           {{"positional", Argument::Positional},
                            {"optional", Argument::Optional},
                            {"repeating", Argument::Repeating},
                            {"name-value", Argument::NameValue}});
}

void take(Reader& reader, Event& event, PathItemDescription::Kind& destination) {
  using Item = PathItemDescription;
  takeWord<Item::Kind>(
      reader, event, destination,
      {{"path", Item::Path}, {"class", Item::Class}, {"package", Item::Package}, {"current", Item::Current}});
}

}  // namespace embedded::snapshot
