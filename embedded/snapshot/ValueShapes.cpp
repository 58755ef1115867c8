#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_set>

#include "embedded/snapshot/Shape.h"

namespace embedded::snapshot {

template <>
const Words<DimensionForm> wordsOf<DimensionForm>{
    {"full", DimensionForm::Full}, {"compact", DimensionForm::Compact}, {"lazy", DimensionForm::Lazy}};

namespace {

/// The size of an array, which is not written for a row.
template <auto size, auto elements, class Type = decltype(ownerOf(size))>
Key<Type> sizeKey() {
  return {"size", into<size, Type>, [](Writer& writer, const Type& array) {
            return isRow(array.*size, (array.*elements).size()) ? Json() : write(writer, array.*size);
          }};
}

/// Values by name, each name once: properties of an object, fields and method results of an opaque one.
template <class Entry, auto content>
class NamedValuesHandler final : public Handler {
 public:
  explicit NamedValuesHandler(std::vector<Entry>& entries) : entries_(entries) {}

  void key(Reader& reader, const std::string& name) override {
    if (!seen_.insert(name).second) reader.refuseRepeated(name);
    reader.need(memoryOf<Entry>);
    // A vector, not a map: the order in the text is the order of the properties.
    entries_.emplace_back().name = name;
  }
  void value(Reader& reader, Event& event) override { read(reader, event, entries_.back().*content); }

 private:
  std::vector<Entry>& entries_;
  std::unordered_set<std::string> seen_;
};

template <class Entry, auto content>
Json writeNamedValues(Writer& writer, const std::vector<Entry>& entries) {
  writer.begin();
  Json result = Json::object();
  std::unordered_set<std::string> seen;
  for (const Entry& entry : entries) {
    const Writer::Step step(writer, std::string_view(entry.name));
    // A session may hold a name twice, but the text could not be read again.
    if (!seen.insert(entry.name).second)
      writer.fail("snapshot.duplicate-key", inQuotes(entry.name) + " would stand here twice");
    Json name = write(writer, entry.name);
    append(result, std::move(name), write(writer, entry.*content));
  }
  return result;
}

void readProperties(Reader& reader, Event& event, ObjectValue& object) {
  if (event.kind != Event::Object) reader.refuseType(event, "an object of properties and their values");
  reader.open<NamedValuesHandler<PropertyValue, &PropertyValue::value>>(object.properties);
}

void readFields(Reader& reader, Event& event, OpaqueObject& object) {
  if (event.kind != Event::Object) reader.refuseType(event, "an object of fields and their values");
  reader.open<NamedValuesHandler<PropertyValue, &PropertyValue::value>>(object.fields);
}

void readMethods(Reader& reader, Event& event, OpaqueObject& object) {
  if (event.kind != Event::Object) reader.refuseType(event, "an object of methods and their answers");
  reader.open<NamedValuesHandler<OpaqueMethod, &OpaqueMethod::answer>>(object.methods);
}

void readTall(Reader& reader, Event& event, TallValue& tall) {
  read(reader, event, tall.inside.emplace_back());
}

Json writeProperties(Writer& writer, const ObjectValue& object) {
  return writeNamedValues<PropertyValue, &PropertyValue::value>(writer, object.properties);
}

Json writeFields(Writer& writer, const OpaqueObject& object) {
  return writeNamedValues<PropertyValue, &PropertyValue::value>(writer, object.fields);
}

Json writeMethods(Writer& writer, const OpaqueObject& object) {
  return writeNamedValues<OpaqueMethod, &OpaqueMethod::answer>(writer, object.methods);
}

// Nobody sees the text of an object that fails when it is asked for it.
Json writeText(Writer& writer, const ObjectValue& object) {
  return object.failing ? Json() : write(writer, object.text);
}

Json writeTall(Writer& writer, const TallValue& tall) {
  return tall.inside.empty() ? Json() : write(writer, tall.inside.front());
}

}  // namespace

template <>
const Shape<DoubleArray> shapeOf<DoubleArray>{
    .kind = "an array of doubles",
    .keys = {key<&DoubleArray::elements>("double", Required),
             sizeKey<&DoubleArray::size, &DoubleArray::elements>()},
    .write =
        [](Writer& writer, const DoubleArray& array) {
          if (!isRow(array.size, array.elements.size()))
            return writeObject(writer, array, shapeOf<DoubleArray>);
          const bool number = array.elements.size() == 1 && std::isfinite(array.elements.front());
          return number ? write(writer, array.elements.front()) : write(writer, array.elements);
        },
};

template <>
const Shape<LogicalArray> shapeOf<LogicalArray>{
    .kind = "a logical array",
    .keys = {key<&LogicalArray::elements>("logical", Required),
             sizeKey<&LogicalArray::size, &LogicalArray::elements>()},
    .write =
        [](Writer& writer, const LogicalArray& array) {
          const bool single = array.elements.size() == 1 && isRow(array.size, 1);
          return single ? Json(static_cast<bool>(array.elements.front()))
                        : writeObject(writer, array, shapeOf<LogicalArray>);
        },
};

/// There is no other way to write a row of characters than as its text.
template <>
const Shape<CharacterRow> shapeOf<CharacterRow>{
    .kind = "a text",
    .keys = {},
    .write = [](Writer& writer, const CharacterRow& row) { return write(writer, row.text); },
};

template <>
const Shape<CharacterArray> shapeOf<CharacterArray>{
    .kind = "an array of characters",
    .keys = {key<&CharacterArray::elements>("char", Required),
             sizeKey<&CharacterArray::size, &CharacterArray::elements>()},
    .write =
        [](Writer& writer, const CharacterArray& array) {
          const bool row = array.elements.empty() ? array.size == std::vector<std::size_t>{0, 0}
                                                  : isRow(array.size, array.elements.size());
          return row ? write(writer, array.elements) : writeObject(writer, array, shapeOf<CharacterArray>);
        },
};

template <>
const Shape<StringScalar> shapeOf<StringScalar>{
    .kind = "a string",
    .keys = {key<&StringScalar::text>("string", Required)},
};

template <>
const Shape<StringArray> shapeOf<StringArray>{
    .kind = "an array of strings",
    .keys = {key<&StringArray::elements>("strings", Required),
             sizeKey<&StringArray::size, &StringArray::elements>()},
    .write =
        [](Writer& writer, const StringArray& array) {
          const bool single = array.elements.size() == 1 && isRow(array.size, 1);
          return single ? write(writer, StringScalar{array.elements.front()})
                        : writeObject(writer, array, shapeOf<StringArray>);
        },
};

template <>
const Shape<CellArray> shapeOf<CellArray>{
    .kind = "a cell array",
    .keys = {key<&CellArray::elements>("cell", Required), sizeKey<&CellArray::size, &CellArray::elements>()},
};

template <>
const Shape<ObjectValue> shapeOf<ObjectValue>{
    .kind = "an object value",
    .keys = {key<&ObjectValue::className>("object", Required),
             {"properties", readProperties, writeProperties},
             key<&ObjectValue::member>("member"),
             {"text", into<&ObjectValue::text>, writeText},
             key<&ObjectValue::failing>("failing")},
    .conflicts = {{"text", "failing"}},
};

template <>
const Shape<ObjectArray> shapeOf<ObjectArray>{
    .kind = "an array of objects",
    .keys = {key<&ObjectArray::elements>("objects", Required),
             key<&ObjectArray::className>("class", Required),
             sizeKey<&ObjectArray::size, &ObjectArray::elements>(), key<&ObjectArray::foreign>("foreign")},
};

template <>
const Shape<OpaqueObject> shapeOf<OpaqueObject>{
    .kind = "an opaque object",
    .keys = {key<&OpaqueObject::className>("opaque", Required),
             {"fields", readFields, writeFields},
             {"methods", readMethods, writeMethods},
             key<&OpaqueObject::java>("java"),
             key<&OpaqueObject::dimensions>("dimensions")},
};

template <>
const Shape<FunctionHandleValue> shapeOf<FunctionHandleValue>{
    .kind = "a function handle",
    .keys = {key<&FunctionHandleValue::function>("handle", Required)},
};

template <>
const Shape<ClassReferenceValue> shapeOf<ClassReferenceValue>{
    .kind = "a class reference",
    .keys = {key<&ClassReferenceValue::className>("class", Required)},
};

template <>
const Shape<TallValue> shapeOf<TallValue>{
    .kind = "a tall value",
    .keys = {{"tall", readTall, writeTall, Required}},
};

template <>
const Shape<ForeignMemberValue> shapeOf<ForeignMemberValue>{
    .kind = "a member of a foreign class",
    .keys = {key<&ForeignMemberValue::className>("foreign", Required),
             key<&ForeignMemberValue::member>("member", Required)},
};

namespace {

template <class Content>
std::unique_ptr<Handler> begin(ValueDescription& value, const Shape<Content>& shape) {
  return std::make_unique<ObjectHandler<Content>>(value.content.emplace<Content>(), shape);
}

template <class Content>
std::unique_ptr<Handler> begin(ValueDescription& value) {
  return begin(value, shapeOf<Content>);
}

/// A kind of value that is written as an object; the kind's name is the first key.
struct Kind {
  std::string_view name;
  std::unique_ptr<Handler> (*begin)(ValueDescription&);
};

const std::array<Kind, 15> kinds{
    {{"double", begin<DoubleArray>},
     {"logical", begin<LogicalArray>},
     {"string", begin<StringScalar>},
     {"cell", begin<CellArray>},
     {"struct", [](ValueDescription& value) { return begin(value, oneStructure()); }},
     {"structs", [](ValueDescription& value) { return begin(value, severalStructures()); }},
     {"object", begin<ObjectValue>},
     {"strings", begin<StringArray>},
     {"char", begin<CharacterArray>},
     {"objects", begin<ObjectArray>},
     {"opaque", begin<OpaqueObject>},
     {"handle", begin<FunctionHandleValue>},
     {"class", begin<ClassReferenceValue>},
     {"tall", begin<TallValue>},
     {"foreign", begin<ForeignMemberValue>}}};

/// An object that is a value: what its first key says.
class ValueHandler final : public Handler {
 public:
  explicit ValueHandler(ValueDescription& value) : value_(value) {}

  void key(Reader& reader, const std::string& name) override {
    // The first key says which kind it is: its handler reads this key and all that follow.
    if (!content_) content_ = begin(reader, name);
    content_->key(reader, name);
  }
  void value(Reader& reader, Event& event) override { content_->value(reader, event); }
  void end(Reader& reader) override {
    if (!content_) reader.fail("snapshot.missing-key", "a value needs a key for its kind: " + allKinds());
    content_->end(reader);
  }

 private:
  std::unique_ptr<Handler> begin(const Reader& reader, const std::string& name) {
    const auto* const kind = std::ranges::find(kinds, name, &Kind::name);
    if (kind == kinds.end()) {
      reader.fail("snapshot.kind-first",
                  inQuotes(name) + " is no kind of value; the first key must be one of " + allKinds());
    }
    return kind->begin(value_);
  }

  static std::string allKinds() { return listed(kinds, &Kind::name); }

  ValueDescription& value_;
  std::unique_ptr<Handler> content_;
};

}  // namespace

void read(Reader& reader, Event& event, ValueDescription& destination) {
  auto& content = destination.content;
  switch (event.kind) {
    case Event::Null:
      reader.refuseType(event, "a value");
    case Event::Logical:
      content = LogicalArray{{}, {event.logical}};
      return;
    case Event::Number:
      content = DoubleArray{{}, {event.number}};
      return;
    case Event::Text:
      return read(reader, event, content.emplace<CharacterRow>().text);
    case Event::Object:
      return reader.open<ValueHandler>(destination);
    case Event::Array:
      return read(reader, event, content.emplace<DoubleArray>().elements);
  }
}

void read(Reader& reader, Event& event, std::optional<ValueDescription>& destination) {
  if (event.kind != Event::Null) read(reader, event, destination.emplace());
}

Json write(Writer& writer, const ValueDescription& value) {
  return std::visit([&](const auto& content) { return write(writer, content); }, value.content);
}

}  // namespace embedded::snapshot
