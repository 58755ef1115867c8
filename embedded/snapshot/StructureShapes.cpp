#include <unordered_map>
#include <unordered_set>

#include "embedded/snapshot/Shape.h"

namespace embedded::snapshot {

namespace {

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

void FirstElementHandler::key(Reader& reader, const std::string& name) {
  if (!seen_.insert(name).second) reader.refuseRepeated(name);
  reader.need(memoryOf<PropertyValue>);
  array_.fields.push_back(name);
}

void FirstElementHandler::value(Reader& reader, Event& event) {
  // The reference stays good: the next value is added when this one has been read to its end.
  read(reader, event, array_.values.emplace_back());
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
  if (seen_[current_]) reader.refuseRepeated(name);
  seen_[current_] = true;
}

void NextElementHandler::value(Reader& reader, Event& event) {
  read(reader, event, array_.values[start_ + current_]);
}

void NextElementHandler::end(Reader& reader) {
  for (std::size_t index = 0; index < seen_.size(); ++index) {
    if (!seen_[index]) {
      reader.fail("snapshot.different-fields", "the first structure of the array has the field " +
                                                   inQuotes(array_.fields[index]) + " too");
    }
  }
}

/// The elements of a structure array.
class ElementsHandler final : public Handler {
 public:
  explicit ElementsHandler(StructureArray& array) : array_(array) {}

  void value(Reader& reader, Event& event) override {
    if (event.kind != Event::Object) reader.refuseType(event, "an object of fields and their values");
    ++count_;
    if (count_ == 1) return reader.open<FirstElementHandler>(array_);
    // Only a second element has fields that are to be found.
    if (count_ == 2) {
      for (std::size_t index = 0; index < array_.fields.size(); ++index)
        indices_[array_.fields[index]] = index;
    }
    reader.need(indices_.size() * memoryOf<ValueDescription>);
    reader.open<NextElementHandler>(array_, indices_);
  }

  void end(Reader& reader) override {
    // Without values nothing tells how many there are.
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

void readElement(Reader& reader, Event& event, StructureArray& array) {
  if (event.kind != Event::Object) reader.refuseType(event, "an object of fields and their values");
  reader.open<FirstElementHandler>(array);
}

void readElements(Reader& reader, Event& event, StructureArray& array) {
  if (event.kind != Event::Array) reader.refuseType(event, "a list of structures");
  reader.open<ElementsHandler>(array);
}

void readFields(Reader& reader, Event& event, StructureArray& array) {
  if (!array.fields.empty())
    reader.fail("snapshot.conflicting-keys",
                "\"fields\" is for an array without elements: these have their own");
  read(reader, event, array.fields);
}

void readSize(Reader& reader, Event& event, StructureArray& array) {
  // The list has set one, of a row, and the dimensions would be appended to it.
  array.size.clear();
  read(reader, event, array.size);
}

Json writeElementAt(Writer& writer, const StructureArray& array, std::size_t start) {
  writer.begin();
  Json result = Json::object();
  for (std::size_t at = 0; at < array.fields.size(); ++at) {
    const Writer::Step step(writer, std::string_view(array.fields[at]));
    Json field = write(writer, array.fields[at]);
    append(result, std::move(field), write(writer, array.values.at(start + at)));
  }
  return result;
}

Json writeElement(Writer& writer, const StructureArray& array) {
  return array.values.size() < array.fields.size() ? Json() : writeElementAt(writer, array, 0);
}

Json writeElements(Writer& writer, const StructureArray& array) {
  writer.begin();
  Json result = Json::array();
  for (std::size_t start = 0; start < array.values.size(); start += array.fields.size()) {
    const Writer::Step step(writer, result.size());
    result.push_back(writeElementAt(writer, array, start));
  }
  return result;
}

Json writeFields(Writer& writer, const StructureArray& array) {
  return array.values.empty() ? write(writer, array.fields) : Json();
}

Json writeSize(Writer& writer, const StructureArray& array) {
  const std::size_t listed = array.fields.empty() ? 0 : array.values.size() / array.fields.size();
  return isRow(array.size, listed) ? Json() : write(writer, array.size);
}

// Without fields there are no values to count the elements by.
void finishStructure(StructureArray& array, const ObjectHandler<StructureArray>&) {
  if (array.fields.empty()) array.size = {1, 1};
}

const Shape<StructureArray> structShape{
    .kind = "a structure",
    .keys = {{"struct", readElement, writeElement, Required}, key<&StructureArray::className>("class")},
    .finish = finishStructure,
};

const Shape<StructureArray> structsShape{
    .kind = "a structure array",
    .keys = {{"structs", readElements, writeElements, Required},
             {"fields", readFields, writeFields},
             {"size", readSize, writeSize},
             key<&StructureArray::className>("class")},
};

}  // namespace

bool isRow(const std::vector<std::size_t>& size, std::size_t count) {
  return size.empty() || size == std::vector<std::size_t>{1, count};
}

const Shape<StructureArray>& oneStructure() { return structShape; }
const Shape<StructureArray>& severalStructures() { return structsShape; }

Json write(Writer& writer, const StructureArray& array) {
  const bool single = array.fields.empty()
                          ? array.size == std::vector<std::size_t>{1, 1}
                          : array.values.size() == array.fields.size() && isRow(array.size, 1);
  return writeObject(writer, array, single ? structShape : structsShape);
}

}  // namespace embedded::snapshot
