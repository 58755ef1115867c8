#include <algorithm>
#include <array>
#include <cmath>

#include "embedded/snapshot/Object.h"
#include "embedded/snapshot/Structures.h"

namespace embedded::snapshot {

namespace {

void takeProperties(Reader& reader, Event& event, ObjectValue& object) {
  if (event.kind != Event::Object) reader.refuseType(event, "an object of properties and their values");
  reader.open<NamedValuesHandler<PropertyValue, &PropertyValue::value>>(object.properties);
}

void takeFields(Reader& reader, Event& event, OpaqueObject& object) {
  if (event.kind != Event::Object) reader.refuseType(event, "an object of fields and their values");
  reader.open<NamedValuesHandler<PropertyValue, &PropertyValue::value>>(object.fields);
}

void takeMethods(Reader& reader, Event& event, OpaqueObject& object) {
  if (event.kind != Event::Object) reader.refuseType(event, "an object of methods and their answers");
  reader.open<NamedValuesHandler<OpaqueMethod, &OpaqueMethod::answer>>(object.methods);
}

void takeTall(Reader& reader, Event& event, TallValue& tall) {
  take(reader, event, tall.inside.emplace_back());
}

Json giveProperties(Writer& writer, const ObjectValue& object) {
  return giveNamedValues<PropertyValue, &PropertyValue::value>(writer, object.properties);
}

Json giveFields(Writer& writer, const OpaqueObject& object) {
  return giveNamedValues<PropertyValue, &PropertyValue::value>(writer, object.fields);
}

Json giveMethods(Writer& writer, const OpaqueObject& object) {
  return giveNamedValues<OpaqueMethod, &OpaqueMethod::answer>(writer, object.methods);
}

// Nobody sees the text of an object that fails when it is asked for it.
Json giveText(Writer& writer, const ObjectValue& object) {
  return object.failing ? Json() : give(writer, object.text);
}

Json giveTall(Writer& writer, const TallValue& tall) {
  return tall.inside.empty() ? Json() : give(writer, tall.inside.front());
}

const Shape<DoubleArray> doubleShape{
    .kind = "an array of doubles",
    .keys = {key<&DoubleArray::elements>("double", Required),
             sizeKey<&DoubleArray::size, &DoubleArray::elements>()},
};
const Shape<LogicalArray> logicalShape{
    .kind = "a logical array",
    .keys = {key<&LogicalArray::elements>("logical", Required),
             sizeKey<&LogicalArray::size, &LogicalArray::elements>()},
};
const Shape<StringScalar> stringShape{
    .kind = "a string",
    .keys = {key<&StringScalar::text>("string", Required)},
};
const Shape<CellArray> cellShape{
    .kind = "a cell array",
    .keys = {key<&CellArray::elements>("cell", Required), sizeKey<&CellArray::size, &CellArray::elements>()},
};
const Shape<ObjectValue> objectShape{
    .kind = "an object value",
    .keys = {key<&ObjectValue::className>("object", Required),
             {"properties", takeProperties, giveProperties},
             key<&ObjectValue::member>("member"),
             {"text", into<&ObjectValue::text>, giveText},
             key<&ObjectValue::failing>("failing")},
    .conflicts = {{"text", "failing"}},
};

const Shape<StringArray> stringsShape{
    .kind = "an array of strings",
    .keys = {key<&StringArray::elements>("strings", Required),
             sizeKey<&StringArray::size, &StringArray::elements>()},
};
const Shape<CharacterArray> charactersShape{
    .kind = "an array of characters",
    .keys = {key<&CharacterArray::elements>("char", Required),
             sizeKey<&CharacterArray::size, &CharacterArray::elements>()},
};
const Shape<ObjectArray> objectsShape{
    .kind = "an array of objects",
    .keys = {key<&ObjectArray::elements>("objects", Required),
             key<&ObjectArray::className>("class", Required),
             sizeKey<&ObjectArray::size, &ObjectArray::elements>(), key<&ObjectArray::foreign>("foreign")},
};
const Shape<OpaqueObject> opaqueShape{
    .kind = "an opaque object",
    .keys = {key<&OpaqueObject::className>("opaque", Required),
             {"fields", takeFields, giveFields},
             {"methods", takeMethods, giveMethods},
             key<&OpaqueObject::java>("java"),
             key<&OpaqueObject::dimensions>("dimensions")},
};
const Shape<FunctionHandleValue> handleShape{
    .kind = "a function handle",
    .keys = {key<&FunctionHandleValue::function>("handle", Required)},
};
const Shape<ClassReferenceValue> classReferenceShape{
    .kind = "a class reference",
    .keys = {key<&ClassReferenceValue::className>("class", Required)},
};
const Shape<TallValue> tallShape{
    .kind = "a tall value",
    .keys = {{"tall", takeTall, giveTall, Required}},
};

const Shape<ForeignMemberValue> foreignMemberShape{
    .kind = "a member of a foreign class",
    .keys = {key<&ForeignMemberValue::className>("foreign", Required),
             key<&ForeignMemberValue::member>("member", Required)},
};

template <class Content, const Shape<Content>& shape>
std::unique_ptr<Handler> begin(ValueDescription& value) {
  return std::make_unique<ObjectHandler<Content>>(value.content.emplace<Content>(), shape);
}

/// A kind of value that is written as an object; the kind's name is the first key.
struct Kind {
  std::string_view name;
  std::unique_ptr<Handler> (*begin)(ValueDescription&);
};

const std::array<Kind, 15> kinds{{{"double", begin<DoubleArray, doubleShape>},
                                  {"logical", begin<LogicalArray, logicalShape>},
                                  {"string", begin<StringScalar, stringShape>},
                                  {"cell", begin<CellArray, cellShape>},
                                  {"struct", begin<StructureArray, structureShape>},
                                  {"structs", begin<StructureArray, structuresShape>},
                                  {"object", begin<ObjectValue, objectShape>},
                                  {"strings", begin<StringArray, stringsShape>},
                                  {"char", begin<CharacterArray, charactersShape>},
                                  {"objects", begin<ObjectArray, objectsShape>},
                                  {"opaque", begin<OpaqueObject, opaqueShape>},
                                  {"handle", begin<FunctionHandleValue, handleShape>},
                                  {"class", begin<ClassReferenceValue, classReferenceShape>},
                                  {"tall", begin<TallValue, tallShape>},
                                  {"foreign", begin<ForeignMemberValue, foreignMemberShape>}}};

/// An object that is a value: what its first key says.
class ValueHandler final : public Handler {
 public:
  explicit ValueHandler(ValueDescription& value) : value_(value) {}

  void key(Reader& reader, const std::string& name) override {
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
    const auto kind =
        std::find_if(kinds.begin(), kinds.end(), [&](const Kind& some) { return some.name == name; });
    if (kind == kinds.end()) {
      reader.fail("snapshot.kind-first",
                  inQuotes(name) + " is no kind of value; the first key must be one of " + allKinds());
    }
    return kind->begin(value_);
  }

  static std::string allKinds() {
    std::string names;
    for (const Kind& kind : kinds) names += (names.empty() ? "" : ", ") + std::string(kind.name);
    return names;
  }

  ValueDescription& value_;
  std::unique_ptr<Handler> content_;
};

/// Every kind in its shortest form.
struct Giver {
  Writer& writer;

  Json operator()(const DoubleArray& array) const {
    if (!isRow(array.size, array.elements.size())) return giveObject(writer, array, doubleShape);
    const bool number = array.elements.size() == 1 && std::isfinite(array.elements.front());
    return number ? give(writer, array.elements.front()) : give(writer, array.elements);
  }
  Json operator()(const LogicalArray& array) const {
    const bool single = array.elements.size() == 1 && isRow(array.size, 1);
    return single ? Json(static_cast<bool>(array.elements.front())) : giveObject(writer, array, logicalShape);
  }
  Json operator()(const CharacterRow& row) const { return give(writer, row.text); }
  Json operator()(const CharacterArray& array) const {
    const bool row = array.elements.empty() ? array.size == std::vector<std::size_t>{0, 0}
                                            : isRow(array.size, array.elements.size());
    return row ? give(writer, array.elements) : giveObject(writer, array, charactersShape);
  }
  Json operator()(const StringScalar& scalar) const { return giveObject(writer, scalar, stringShape); }
  Json operator()(const StringArray& array) const {
    const bool single = array.elements.size() == 1 && isRow(array.size, 1);
    return single ? (*this)(StringScalar{array.elements.front()}) : giveObject(writer, array, stringsShape);
  }
  Json operator()(const CellArray& array) const { return giveObject(writer, array, cellShape); }
  Json operator()(const StructureArray& array) const { return giveStructures(writer, array); }
  Json operator()(const ObjectValue& object) const { return giveObject(writer, object, objectShape); }
  Json operator()(const ObjectArray& array) const { return giveObject(writer, array, objectsShape); }
  Json operator()(const OpaqueObject& object) const { return giveObject(writer, object, opaqueShape); }
  Json operator()(const FunctionHandleValue& handle) const { return giveObject(writer, handle, handleShape); }
  Json operator()(const ClassReferenceValue& reference) const {
    return giveObject(writer, reference, classReferenceShape);
  }
  Json operator()(const TallValue& tall) const { return giveObject(writer, tall, tallShape); }
  Json operator()(const ForeignMemberValue& member) const {
    return giveObject(writer, member, foreignMemberShape);
  }
};

}  // namespace

void take(Reader& reader, Event& event, ValueDescription& destination) {
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
      return take(reader, event, content.emplace<CharacterRow>().text);
    case Event::Object:
      return reader.open<ValueHandler>(destination);
    case Event::Array:
      return take(reader, event, content.emplace<DoubleArray>().elements);
  }
}

void take(Reader& reader, Event& event, std::optional<ValueDescription>& destination) {
  if (event.kind != Event::Null) take(reader, event, destination.emplace());
}

Json give(Writer& writer, const ValueDescription& value) { return std::visit(Giver{writer}, value.content); }

}  // namespace embedded::snapshot
