#pragma once

// take() puts the value of an event where it belongs, or opens the handler that will, or refuses it. There is
// one for every type that a description is made of.

#include <array>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "embedded/Description.h"
#include "embedded/snapshot/Reader.h"

namespace embedded::snapshot {

void take(Reader& reader, Event& event, bool& destination);
void take(Reader& reader, Event& event, std::optional<bool>& destination);
void take(Reader& reader, Event& event, int& destination);
void take(Reader& reader, Event& event, std::size_t& destination);
/// The dimensions of an array, at least two.
void take(Reader& reader, Event& event, std::vector<std::size_t>& destination);
/// A number, or one of the texts "NaN", "Inf", "-Inf".
void take(Reader& reader, Event& event, double& destination);
void take(Reader& reader, Event& event, std::string& destination);
/// A name, or null for a missing one.
void take(Reader& reader, Event& event, MemberName& destination);
void take(Reader& reader, Event& event, std::u16string& destination);
void take(Reader& reader, Event& event, std::optional<std::u16string>& destination);
void take(Reader& reader, Event& event, WalkOrder& destination);
void take(Reader& reader, Event& event, DimensionForm& destination);
void take(Reader& reader, Event& event, Access& destination);

void take(Reader& reader, Event& event, AttributeDescription& destination);
/// An extent of a declared size: a number, or ":" for any.
void take(Reader& reader, Event& event, std::optional<std::size_t>& destination);
void take(Reader& reader, Event& event, std::optional<ValidationDescription>& destination);
void take(Reader& reader, Event& event, std::optional<std::vector<ValueDescription>>& destination);
void take(Reader& reader, Event& event, std::optional<OptimizedStorage>& destination);
void take(Reader& reader, Event& event, PropertyDescription& destination);
void take(Reader& reader, Event& event, MethodDescription& destination);
void take(Reader& reader, Event& event, EnumerationMemberDescription& destination);
void take(Reader& reader, Event& event, AttributeNames& destination);
void take(Reader& reader, Event& event, std::array<AttributeNames, 4>& destination);
void take(Reader& reader, Event& event, ClassDescription& destination);
void take(Reader& reader, Event& event, ArgumentDescription::Kind& destination);
void take(Reader& reader, Event& event, ArgumentDescription& destination);
void take(Reader& reader, Event& event, std::optional<ArgumentsDescription>& destination);
void take(Reader& reader, Event& event, FunctionDescription& destination);
void take(Reader& reader, Event& event, PackageDescription& destination);
void take(Reader& reader, Event& event, ForeignClassDescription& destination);

void take(Reader& reader, Event& event, ValueDescription& destination);
void take(Reader& reader, Event& event, std::optional<ValueDescription>& destination);
void take(Reader& reader, Event& event, VariableDescription& destination);

void take(Reader& reader, Event& event, PathItemDescription::Kind& destination);
void take(Reader& reader, Event& event, PathItemDescription& destination);
void take(Reader& reader, Event& event, ActiveScopeDescription& destination);
void take(Reader& reader, Event& event, std::optional<DebuggerDescription>& destination);
void take(Reader& reader, Event& event, ScopesDescription& destination);
void take(Reader& reader, Event& event, Description& destination);

/// The elements of a list.
template <class Element>
class ListHandler final : public Handler {
 public:
  explicit ListHandler(std::vector<Element>& list) : list_(list) {}

  void value(Reader& reader, Event& event) override {
    if constexpr (std::is_same_v<Element, bool>) {
      bool element = false;
      take(reader, event, element);
      list_.push_back(element);
    } else {
      take(reader, event, list_.emplace_back());
    }
  }

 private:
  std::vector<Element>& list_;
};

template <class Element>
void take(Reader& reader, Event& event, std::vector<Element>& destination) {
  if (event.kind != Event::Array) reader.refuseType(event, "a list");
  reader.open<ListHandler<Element>>(destination);
}

}  // namespace embedded::snapshot
