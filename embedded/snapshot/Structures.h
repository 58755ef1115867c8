#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "embedded/snapshot/Object.h"

namespace embedded::snapshot {

/// {"struct": {"a": 1}}: one element.
extern const Shape<StructureArray> structureShape;
/// {"structs": [{"a": 1}, {"a": 2}]}: several; without any, "fields" names the fields.
extern const Shape<StructureArray> structuresShape;

/// In the shorter of both ways.
Json giveStructures(Writer& writer, const StructureArray& array);

/// One element of a structure array whose first element it is: every key is a new field.
class FirstElementHandler final : public Handler {
 public:
  explicit FirstElementHandler(StructureArray& array) : array_(array) {}
  void key(Reader& reader, const std::string& name) override;
  void value(Reader& reader, Event& event) override;

 private:
  StructureArray& array_;
  std::unordered_set<std::string> seen_;
};

/// A later element: it has the fields of the first one, in whatever order.
class NextElementHandler final : public Handler {
 public:
  using FieldIndices = std::unordered_map<std::string, std::size_t>;

  NextElementHandler(StructureArray& array, const FieldIndices& indices);
  void key(Reader& reader, const std::string& name) override;
  void value(Reader& reader, Event& event) override;
  void end(Reader& reader) override;

 private:
  StructureArray& array_;
  const FieldIndices& indices_;
  std::size_t start_;
  std::size_t current_ = 0;
  std::vector<bool> seen_;
};

[[noreturn]] void refuseRepeated(const Reader& reader, const std::string& name);

/// Values by name, each name once: properties of an object, fields and answers of an opaque one.
template <class Entry, auto content>
class NamedValuesHandler final : public Handler {
 public:
  explicit NamedValuesHandler(std::vector<Entry>& entries) : entries_(entries) {}

  void key(Reader& reader, const std::string& name) override {
    if (!seen_.insert(name).second) refuseRepeated(reader, name);
    entries_.emplace_back().name = name;
  }
  void value(Reader& reader, Event& event) override { take(reader, event, entries_.back().*content); }

 private:
  std::vector<Entry>& entries_;
  std::unordered_set<std::string> seen_;
};

template <class Entry, auto content>
Json giveNamedValues(Writer& writer, const std::vector<Entry>& entries) {
  writer.begin();
  Json result = Json::object();
  std::unordered_set<std::string> seen;
  for (const Entry& entry : entries) {
    const Writer::Step step(writer, std::string_view(entry.name));
    if (!seen.insert(entry.name).second)
      writer.fail("snapshot.duplicate-key", inQuotes(entry.name) + " would stand here twice");
    Json name = give(writer, entry.name);
    append(result, std::move(name), give(writer, entry.*content));
  }
  return result;
}

}  // namespace embedded::snapshot
