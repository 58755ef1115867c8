#include "embedded/snapshot/Structures.h"

namespace embedded::snapshot {

void refuseRepeated(const Reader& reader, const std::string& name) {
  reader.fail("snapshot.duplicate-key", inQuotes(name) + " stands here twice");
}

namespace {

/// The elements of a structure array.
class ElementsHandler final : public Handler {
 public:
  explicit ElementsHandler(StructureArray& array) : array_(array) {}

  void value(Reader& reader, Event& event) override {
    if (event.kind != Event::Object) reader.refuseType(event, "an object of fields and their values");
    ++count_;
    if (count_ == 1) return reader.open<FirstElementHandler>(array_);
    if (count_ == 2) {
      for (std::size_t index = 0; index < array_.fields.size(); ++index)
        indices_[array_.fields[index]] = index;
    }
    reader.open<NextElementHandler>(array_, indices_);
  }

  void end(Reader& reader) override {
    if (count_ > 0 && array_.fields.empty())
      reader.fail("snapshot.missing-key",
                  "structures without fields cannot be listed: give an empty list and a size");
    array_.size = {1, count_};
  }

 private:
  StructureArray& array_;
  std::size_t count_ = 0;
  NextElementHandler::FieldIndices indices_;
};

void takeElement(Reader& reader, Event& event, StructureArray& array) {
  if (event.kind != Event::Object) reader.refuseType(event, "an object of fields and their values");
  reader.open<FirstElementHandler>(array);
}

void takeElements(Reader& reader, Event& event, StructureArray& array) {
  if (event.kind != Event::Array) reader.refuseType(event, "a list of structures");
  reader.open<ElementsHandler>(array);
}

void takeFields(Reader& reader, Event& event, StructureArray& array) {
  if (!array.fields.empty())
    reader.fail("snapshot.conflicting-keys",
                "\"fields\" is for an array without elements: these have their own");
  take(reader, event, array.fields);
}

void takeSize(Reader& reader, Event& event, StructureArray& array) {
  array.size.clear();
  take(reader, event, array.size);
}

Json giveElementAt(Writer& writer, const StructureArray& array, std::size_t start) {
  writer.begin();
  Json result = Json::object();
  for (std::size_t at = 0; at < array.fields.size(); ++at) {
    const Writer::Step step(writer, std::string_view(array.fields[at]));
    Json field = give(writer, array.fields[at]);
    append(result, std::move(field), give(writer, array.values.at(start + at)));
  }
  return result;
}

Json giveElement(Writer& writer, const StructureArray& array) {
  return array.values.size() < array.fields.size() ? Json() : giveElementAt(writer, array, 0);
}

Json giveElements(Writer& writer, const StructureArray& array) {
  writer.begin();
  Json result = Json::array();
  for (std::size_t start = 0; start < array.values.size(); start += array.fields.size()) {
    const Writer::Step step(writer, result.size());
    result.push_back(giveElementAt(writer, array, start));
  }
  return result;
}

Json giveFields(Writer& writer, const StructureArray& array) {
  return array.values.empty() ? give(writer, array.fields) : Json();
}

Json giveSize(Writer& writer, const StructureArray& array) {
  const std::size_t listed = array.fields.empty() ? 0 : array.values.size() / array.fields.size();
  return isRow(array.size, listed) ? Json() : give(writer, array.size);
}

// Without fields there are no values to count the elements by.
void finishStructure(StructureArray& array, const ObjectHandler<StructureArray>&) {
  if (array.fields.empty()) array.size = {1, 1};
}

}  // namespace

const Shape<StructureArray> structureShape{
    .kind = "a structure",
    .keys = {{"struct", takeElement, giveElement, Required}, key<&StructureArray::className>("class")},
    .finish = finishStructure,
};

const Shape<StructureArray> structuresShape{
    .kind = "a structure array",
    .keys = {{"structs", takeElements, giveElements, Required},
             {"fields", takeFields, giveFields},
             {"size", takeSize, giveSize},
             key<&StructureArray::className>("class")},
};

Json giveStructures(Writer& writer, const StructureArray& array) {
  const bool single = array.fields.empty()
                          ? array.size == std::vector<std::size_t>{1, 1}
                          : array.values.size() == array.fields.size() && isRow(array.size, 1);
  return giveObject(writer, array, single ? structureShape : structuresShape);
}

void FirstElementHandler::key(Reader& reader, const std::string& name) {
  if (!seen_.insert(name).second) refuseRepeated(reader, name);
  array_.fields.push_back(name);
}

void FirstElementHandler::value(Reader& reader, Event& event) {
  take(reader, event, array_.values.emplace_back());
}

NextElementHandler::NextElementHandler(StructureArray& array, const FieldIndices& indices)
    : array_(array), indices_(indices), start_(array.values.size()), seen_(indices.size()) {
  array_.values.resize(start_ + indices.size());
}

void NextElementHandler::key(Reader& reader, const std::string& name) {
  const auto found = indices_.find(name);
  if (found == indices_.end())
    reader.fail("snapshot.different-fields",
                "the first structure of the array has no field " + inQuotes(name));
  current_ = found->second;
  if (seen_[current_]) refuseRepeated(reader, name);
  seen_[current_] = true;
}

void NextElementHandler::value(Reader& reader, Event& event) {
  take(reader, event, array_.values[start_ + current_]);
}

void NextElementHandler::end(Reader& reader) {
  for (std::size_t index = 0; index < seen_.size(); ++index) {
    if (!seen_[index]) {
      reader.fail("snapshot.different-fields", "the first structure of the array has the field " +
                                                   inQuotes(array_.fields[index]) + " too");
    }
  }
}

}  // namespace embedded::snapshot
