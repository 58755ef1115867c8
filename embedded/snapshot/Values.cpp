#include <algorithm>
#include <array>

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

const Shape<DoubleArray> doubleShape{
    .kind = "an array of doubles",
    .keys = {{"double", into<&DoubleArray::elements>}, {"size", into<&DoubleArray::size>}},
};
const Shape<LogicalArray> logicalShape{
    .kind = "a logical array",
    .keys = {{"logical", into<&LogicalArray::elements>}, {"size", into<&LogicalArray::size>}},
};
const Shape<StringScalar> stringShape{
    .kind = "a string",
    .keys = {{"string", into<&StringScalar::text>}},
};
const Shape<CellArray> cellShape{
    .kind = "a cell array",
    .keys = {{"cell", into<&CellArray::elements>}, {"size", into<&CellArray::size>}},
};
const Shape<ObjectValue> objectShape{
    .kind = "an object value",
    .keys = {{"object", into<&ObjectValue::className>},
             {"properties", takeProperties},
             {"member", into<&ObjectValue::member>},
             {"text", into<&ObjectValue::text>},
             {"failing", into<&ObjectValue::failing>}},
    .conflicts = {{"text", "failing"}},
};

const Shape<StringArray> stringsShape{
    .kind = "an array of strings",
    .keys = {{"strings", into<&StringArray::elements>}, {"size", into<&StringArray::size>}},
};
const Shape<CharacterArray> charactersShape{
    .kind = "an array of characters",
    .keys = {{"char", into<&CharacterArray::elements>}, {"size", into<&CharacterArray::size>}},
};
const Shape<ObjectArray> objectsShape{
    .kind = "an array of objects",
    .keys = {{"objects", into<&ObjectArray::elements>},
             {"class", into<&ObjectArray::className>, Required},
             {"size", into<&ObjectArray::size>}},
};
const Shape<OpaqueObject> opaqueShape{
    .kind = "an opaque object",
    .keys = {{"opaque", into<&OpaqueObject::className>},
             {"fields", takeFields},
             {"methods", takeMethods},
             {"java", into<&OpaqueObject::java>},
             {"dimensions", into<&OpaqueObject::dimensions>}},
};
const Shape<FunctionHandleValue> handleShape{
    .kind = "a function handle",
    .keys = {{"handle", into<&FunctionHandleValue::function>}},
};
const Shape<ClassReferenceValue> classReferenceShape{
    .kind = "a class reference",
    .keys = {{"class", into<&ClassReferenceValue::className>}},
};
const Shape<TallValue> tallShape{
    .kind = "a tall value",
    .keys = {{"tall", takeTall}},
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

const std::array<Kind, 14> kinds{{{"double", begin<DoubleArray, doubleShape>},
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
                                  {"tall", begin<TallValue, tallShape>}}};

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

}  // namespace embedded::snapshot
