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

// Without fields there are no values to count the elements by.
void finishStructure(StructureArray& array, const ObjectHandler<StructureArray>&) {
  if (array.fields.empty()) array.size = {1, 1};
}

}  // namespace

const Shape<StructureArray> structureShape{
    .kind = "a structure",
    .keys = {{"struct", takeElement}, {"class", into<&StructureArray::className>}},
    .finish = finishStructure,
};

const Shape<StructureArray> structuresShape{
    .kind = "a structure array",
    .keys = {{"structs", takeElements},
             {"fields", takeFields},
             {"size", takeSize},
             {"class", into<&StructureArray::className>}},
};

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
