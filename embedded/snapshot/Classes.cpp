#include "embedded/snapshot/Object.h"

namespace embedded::snapshot {

namespace {

const Shape<AttributeNames> attributeNamesShape{
    .kind = "the object of a list of attribute names",
    .keys = {{"names", into<&AttributeNames::names>}, {"further", into<&AttributeNames::further>}},
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
    .keys = {{"name", into<&ClassDescription::name>, Required},
             {"component", into<&ClassDescription::component>},
             {"aliases", into<&ClassDescription::aliases>},
             {"superclasses", into<&ClassDescription::superclasses>},
             {"order", into<&ClassDescription::order>},
             {"hidden", into<&ClassDescription::hidden>},
             {"broken", into<&ClassDescription::broken>},
             {"flag", into<&ClassDescription::flag>},
             {"enumeration", into<&ClassDescription::enumeration>},
             {"properties", into<&ClassDescription::properties>},
             {"methods", into<&ClassDescription::methods>},
             {"members", into<&ClassDescription::members>},
             {"attributeNames", into<&ClassDescription::attributeNames>},
             {"precedence", into<&ClassDescription::precedence>}},
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

}  // namespace embedded::snapshot
