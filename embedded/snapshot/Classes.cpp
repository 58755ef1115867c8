#include "embedded/snapshot/Object.h"

namespace embedded::snapshot {

namespace {

const Shape<AttributeNames> attributeNamesShape{
    .kind = "the object of a list of attribute names",
    .keys = {key<&AttributeNames::names>("names"), key<&AttributeNames::further>("further")},
};

/// The lists of attribute names: always all of them.
class AttributeListsHandler final : public Handler {
 public:
  using Lists = std::array<AttributeNames, 4>;

  explicit AttributeListsHandler(Lists& lists) : lists_(lists) {}

  void value(Reader& reader, Event& event) override {
    if (count_ == lists_.size()) refuseCount(reader);
    take(reader, event, lists_[count_++]);
  }
  void end(Reader& reader) override {
    if (count_ < lists_.size()) refuseCount(reader);
  }

 private:
  [[noreturn]] static void refuseCount(const Reader& reader) {
    reader.fail("snapshot.wrong-size", "a class has exactly four lists of attribute names");
  }

  Lists& lists_;
  std::size_t count_ = 0;
};

const Shape<ClassDescription> classShape{
    .kind = "a class",
    .keys = {key<&ClassDescription::name>("name", Required), key<&ClassDescription::component>("component"),
             key<&ClassDescription::aliases>("aliases"), key<&ClassDescription::superclasses>("superclasses"),
             key<&ClassDescription::order>("order"), key<&ClassDescription::hidden>("hidden"),
             key<&ClassDescription::broken>("broken"), key<&ClassDescription::flag>("flag"),
             key<&ClassDescription::enumeration>("enumeration"),
             key<&ClassDescription::properties>("properties"), key<&ClassDescription::methods>("methods"),
             key<&ClassDescription::members>("members"),
             key<&ClassDescription::attributeNames>("attributeNames"),
             key<&ClassDescription::precedence>("precedence")},
};

}  // namespace

void take(Reader& reader, Event& event, AttributeNames& destination) {
  takeObject(reader, event, destination, attributeNamesShape);
}

void take(Reader& reader, Event& event, std::array<AttributeNames, 4>& destination) {
  if (event.kind != Event::Array) reader.refuseType(event, "a list of four objects");
  reader.open<AttributeListsHandler>(destination);
}

void take(Reader& reader, Event& event, ClassDescription& destination) {
  takeObject(reader, event, destination, classShape);
}

Json give(Writer& writer, const AttributeNames& value) {
  return giveObject(writer, value, attributeNamesShape);
}

Json give(Writer& writer, const std::array<AttributeNames, 4>& value) { return giveList(writer, value); }
Json give(Writer& writer, const ClassDescription& value) { return giveObject(writer, value, classShape); }

}  // namespace embedded::snapshot
