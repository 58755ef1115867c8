#include "embedded/snapshot/DescribeValue.h"

#include "embedded/Snapshot.h"
#include "embedded/model/ClassSystem.h"
#include "embedded/snapshot/JsonPointer.h"
#include "embedded/snapshot/Limits.h"

namespace embedded {

namespace {

// Values may share what they hold, and a few of them can be described as more than any file could take.
constexpr std::size_t mostValues = 4'000'000;

[[noreturn]] void fail(const std::string& code, const std::string& reason) {
  throw SnapshotError(code, "", "", reason);
}

}  // namespace

/// One more value, inside those that are being described.
class ValueDescriber::Level {
 public:
  explicit Level(ValueDescriber& describer) : describer_(describer) {
    // The depth at which reading stops, so that nothing is described that could not be read again.
    if (describer.depth_ == snapshot::deepestLevel)
      fail("snapshot.too-deep", "nested deeper than " + std::to_string(snapshot::deepestLevel) + " levels");
    if (++describer.count_ > mostValues)
      fail("snapshot.too-big", "there are more than " + std::to_string(mostValues) + " values");
    ++describer.depth_;
  }
  ~Level() { --describer_.depth_; }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;

 private:
  ValueDescriber& describer_;
};

struct ValueDescriber::ByKind {
  ValueDescriber& describer;
  const Value& value;

  ValueDescription operator()(const std::vector<double>& elements) const {
    return {DoubleArray{value.size(), elements}};
  }
  ValueDescription operator()(const std::vector<bool>& elements) const {
    return {LogicalArray{value.size(), elements}};
  }
  ValueDescription operator()(const std::u16string& elements) const {
    return {CharacterArray{value.size(), elements}};
  }
  ValueDescription operator()(const Strings& strings) const {
    return {StringArray{value.size(), strings.elements}};
  }

  ValueDescription operator()(const Cells& cells) const {
    CellArray array{value.size(), {}};
    for (const ValuePtr& element : cells.elements) {
      auto& described = array.elements.emplace_back();
      if (element) described = describer.describe(*element);
    }
    return {std::move(array)};
  }

  ValueDescription operator()(const Structures& structures) const {
    StructureArray array{value.size(), structures.fields, {}, structures.className};
    for (const ValuePtr& field : structures.values) array.values.push_back(describer.describeOrEmpty(field));
    return {std::move(array)};
  }

  ValueDescription operator()(const Object& object) const {
    return {ObjectValue{object.classId.text(), describer.describeNamed(object.properties), object.member,
                        object.text, object.failing}};
  }

  ValueDescription operator()(const Objects& objects) const {
    // It lives for the time of a query only, and no text of a snapshot makes one.
    if (objects.ofPossibleValues)
      fail("snapshot.unknown-kind", "the conversion of a possible value cannot be written");
    const std::string className = value.className();
    const bool described =
        value.object() != nullptr || className == namespaceObjectClass || describer.classes_.find(className);
    ObjectArray array{value.size(), className, {}, value.opaque() != nullptr || !described};
    // Where the name that users know means another class, by an alias for instance, only the identity tells which it is.
    const kcos::COSInternedName id =
        objects.elements.empty() ? objects.classId : objects.elements.front()->classId();
    const Class* named = describer.classes_.find(className);
    if (named != nullptr && id != kcos::COSInternedName() && named->names().id != id)
      array.className = id.text();
    for (const ValuePtr& element : objects.elements) array.elements.push_back(describer.describe(*element));
    return {std::move(array)};
  }

  ValueDescription operator()(const Opaque& opaque) const {
    OpaqueObject object{
        opaque.className, describer.describeNamed(opaque.fields), {}, opaque.java, value.dimensionForm()};
    for (const auto& [name, answer] : opaque.methods) {
      auto& method = object.methods.emplace_back(OpaqueMethod{name, {}});
      if (answer) method.answer = describer.describe(*answer);
    }
    return {std::move(object)};
  }

  ValueDescription operator()(const FunctionHandle& handle) const {
    return {FunctionHandleValue{handle.function}};
  }
  ValueDescription operator()(const ClassReference& reference) const {
    return {ClassReferenceValue{reference.className}};
  }
  ValueDescription operator()(const ForeignMember& member) const {
    return {ForeignMemberValue{member.className, member.name}};
  }

  ValueDescription operator()(const Tall& tall) const {
    TallValue described;
    described.inside.push_back(describer.describe(*tall.inside));
    return {std::move(described)};
  }
};

ValueDescription ValueDescriber::describe(const Value& value) {
  const Level level(*this);
  return std::visit(ByKind{*this, value}, value.content());
}

ValueDescription ValueDescriber::describeOrEmpty(const ValuePtr& value) {
  return value ? describe(*value) : ValueDescription{DoubleArray{{0, 0}, {}}};
}

std::vector<PropertyValue> ValueDescriber::describeNamed(
    const std::vector<std::pair<std::string, ValuePtr>>& values) {
  std::vector<PropertyValue> described;
  for (const auto& [name, value] : values) described.push_back({name, describeOrEmpty(value)});
  return described;
}

}  // namespace embedded
