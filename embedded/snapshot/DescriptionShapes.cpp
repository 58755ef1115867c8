#include <array>

#include "embedded/snapshot/Shape.h"
#include "host/Members.h"

namespace embedded::snapshot {

template <>
const Words<WalkOrder> wordsOf<WalkOrder>{{"own-first", WalkOrder::OwnFirst},
                                          {"inherited-first", WalkOrder::InheritedFirst}};

template <>
const Words<ArgumentDescription::Kind> wordsOf<ArgumentDescription::Kind>{
    {"positional", ArgumentDescription::Positional},
    {"optional", ArgumentDescription::Optional},
    {"repeating", ArgumentDescription::Repeating},
    {"name-value", ArgumentDescription::NameValue}};

template <>
const Words<PathItemDescription::Kind> wordsOf<PathItemDescription::Kind>{
    {"path", PathItemDescription::Path},
    {"class", PathItemDescription::Class},
    {"package", PathItemDescription::Package},
    {"current", PathItemDescription::Current}};

// Members of classes.

namespace {

void readLevel(Reader& reader, Event& event, Access& access) {
  std::string word;
  read(reader, event, word);
  const auto level = kcos::accessLevel(word);
  if (!level)
    reader.fail("snapshot.bad-level",
                inQuotes(word) + " is none of " + listed(kcos::accessWords, &kcos::AccessWord::word));
  access.level = *level;
}

Json writeLevel(Writer& writer, const Access& access) {
  const std::string_view word = kcos::accessWord(access.level);
  if (word.empty()) writer.fail("snapshot.bad-level", std::to_string(access.level) + " is no access level");
  return word;
}

/// A level alone is its word; a list alone lists the classes that may use the member.
bool readShortAccess(Reader& reader, Event& event, Access& access) {
  if (event.kind == Event::Object) return false;
  if (event.kind == Event::Text) {
    readLevel(reader, event, access);
    return true;
  }
  if (event.kind != Event::Array) reader.refuseType(event, "a level, a list of classes or an object of both");
  access.level = kcos::ListedAccess;
  read(reader, event, access.classes);
  return true;
}

}  // namespace

template <>
const Shape<Access> shapeOf<Access>{
    .kind = "an access",
    .keys = {{"level", readLevel, writeLevel, Required}, key<&Access::classes>("classes")},
    .readShort = readShortAccess,
    .write =
        [](Writer& writer, const Access& access) {
          if (access.level == kcos::ListedAccess) return write(writer, access.classes);
          return access.classes.empty() ? writeLevel(writer, access)
                                        : writeObject(writer, access, shapeOf<Access>);
        },
};

template <>
const Shape<AttributeDescription> shapeOf<AttributeDescription>{
    .kind = "an attribute",
    .keys = {key<&AttributeDescription::name>("name", Required), key<&AttributeDescription::type>("type"),
             key<&AttributeDescription::value>("value")},
};

template <>
const Shape<OptimizedStorage> shapeOf<OptimizedStorage>{
    .kind = "the object of an optimised storage",
    .keys = {key<&OptimizedStorage::customGetter>("customGetter"), key<&OptimizedStorage::flag>("flag")},
};

template <>
const Shape<ValidationDescription> shapeOf<ValidationDescription>{
    .kind = "a validation",
    .keys = {key<&ValidationDescription::className>("class"), key<&ValidationDescription::size>("size"),
             key<&ValidationDescription::functions>("functions")},
};

namespace {

void readConstant(Reader& reader, Event& event, PropertyDescription& property) {
  bool constant = false;
  read(reader, event, constant);
  if (constant) property.set.level = kcos::ConstantAccess;
}

// "access" has been read as the get access; "constant" may have been read before or after it.
void finishProperty(PropertyDescription& property, const ObjectHandler<PropertyDescription>& read) {
  if (!read.has("access")) return;
  const bool constant = property.set.level == kcos::ConstantAccess;
  property.set = property.get;
  if (constant) property.set.level = kcos::ConstantAccess;
}

bool same(const Access& one, const Access& other) {
  return one.level == other.level && one.classes == other.classes;
}
bool isConstant(const PropertyDescription& property) {
  return same(property.set, {.level = kcos::ConstantAccess}) && !same(property.get, property.set);
}

// One "access" stands for two that are the same; "constant" for the plainest one that nobody may set.
Json writeAccess(Writer& writer, const PropertyDescription& property) {
  return same(property.get, property.set) ? write(writer, property.get) : Json();
}
Json writeGet(Writer& writer, const PropertyDescription& property) {
  return same(property.get, property.set) || same(property.get, {}) ? Json() : write(writer, property.get);
}
Json writeSet(Writer& writer, const PropertyDescription& property) {
  if (same(property.get, property.set) || isConstant(property) || same(property.set, {})) return {};
  return write(writer, property.set);
}
Json writeConstant(Writer&, const PropertyDescription& property) {
  return isConstant(property) ? Json(true) : Json();
}

/// A member that has nothing but a name may be written as that name.
template <class Member>
bool readName(Reader& reader, Event& event, Member& member) {
  if (event.kind != Event::Text) return false;
  read(reader, event, member.name);
  return true;
}

template <class Member>
Json writeMember(Writer& writer, const Member& member) {
  // Written whole first: whether the name alone is enough shows by what else there is to write.
  Json object = writeObject(writer, member, shapeOf<Member>);
  return object.size() == 1 && member.name ? object.front() : object;
}

}  // namespace

template <>
const Shape<PropertyDescription> shapeOf<PropertyDescription>{
    .kind = "a property",
    .keys = {key<&PropertyDescription::name>("name", Required),
             {"access", into<&PropertyDescription::get>, writeAccess},
             {"get", into<&PropertyDescription::get>, writeGet},
             {"set", into<&PropertyDescription::set>, writeSet},
             {"constant", readConstant, writeConstant},
             key<&PropertyDescription::hidden>("hidden"),
             key<&PropertyDescription::dependent>("dependent"),
             key<&PropertyDescription::type>("type"),
             key<&PropertyDescription::validation>("validation"),
             key<&PropertyDescription::values>("values"),
             key<&PropertyDescription::conversion>("conversion"),
             key<&PropertyDescription::attributes>("attributes"),
             key<&PropertyDescription::optimized>("optimized"),
             key<&PropertyDescription::value>("value"),
             key<&PropertyDescription::getter>("getter")},
    .conflicts = {{"access", "get"}, {"access", "set"}, {"constant", "set"}},
    .finish = finishProperty,
    .readShort = readName<PropertyDescription>,
    .write = writeMember<PropertyDescription>,
};

template <>
const Shape<MethodDescription> shapeOf<MethodDescription>{
    .kind = "a method",
    .keys = {key<&MethodDescription::name>("name", Required), key<&MethodDescription::access>("access"),
             key<&MethodDescription::isStatic>("static"), key<&MethodDescription::hidden>("hidden"),
             key<&MethodDescription::visible>("visible"), key<&MethodDescription::code>("code")},
    .readShort = readName<MethodDescription>,
    .write = writeMember<MethodDescription>,
};

template <>
const Shape<EnumerationMemberDescription> shapeOf<EnumerationMemberDescription>{
    .kind = "an enumeration member",
    .keys = {key<&EnumerationMemberDescription::name>("name", Required),
             key<&EnumerationMemberDescription::hidden>("hidden")},
    .readShort = readName<EnumerationMemberDescription>,
    .write = writeMember<EnumerationMemberDescription>,
};

// Classes.

template <>
const Shape<AttributeNames> shapeOf<AttributeNames>{
    .kind = "the object of a list of attribute names",
    .keys = {key<&AttributeNames::names>("names"), key<&AttributeNames::further>("further")},
};

namespace {

/// The lists of attribute names: always all of them.
class AttributeListsHandler final : public Handler {
 public:
  using Lists = std::array<AttributeNames, 4>;

  explicit AttributeListsHandler(Lists& lists) : lists_(lists) {}

  void value(Reader& reader, Event& event) override {
    if (count_ == lists_.size()) refuseCount(reader);
    read(reader, event, lists_[count_++]);
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

void readAttributeNames(Reader& reader, Event& event, ClassDescription& description) {
  if (event.kind != Event::Array) reader.refuseType(event, "a list of four objects");
  reader.open<AttributeListsHandler>(description.attributeNames);
}

Json writeAttributeNames(Writer& writer, const ClassDescription& description) {
  return writeList(writer, description.attributeNames);
}

}  // namespace

template <>
const Shape<ClassDescription> shapeOf<ClassDescription>{
    .kind = "a class",
    .keys = {key<&ClassDescription::name>("name", Required),
             key<&ClassDescription::component>("component"),
             key<&ClassDescription::aliases>("aliases"),
             key<&ClassDescription::superclasses>("superclasses"),
             key<&ClassDescription::order>("order"),
             key<&ClassDescription::hidden>("hidden"),
             key<&ClassDescription::broken>("broken"),
             key<&ClassDescription::flag>("flag"),
             key<&ClassDescription::enumeration>("enumeration"),
             key<&ClassDescription::properties>("properties"),
             key<&ClassDescription::methods>("methods"),
             key<&ClassDescription::members>("members"),
             {"attributeNames", readAttributeNames, writeAttributeNames},
             key<&ClassDescription::precedence>("precedence")},
};

// Functions and the surroundings.

template <>
const Shape<ArgumentDescription> shapeOf<ArgumentDescription>{
    .kind = "an argument",
    .keys = {key<&ArgumentDescription::name>("name", Required), key<&ArgumentDescription::kind>("kind"),
             key<&ArgumentDescription::className>("class"), key<&ArgumentDescription::size>("size"),
             key<&ArgumentDescription::validators>("validators"),
             key<&ArgumentDescription::values>("values")},
};

template <>
const Shape<ArgumentsDescription> shapeOf<ArgumentsDescription>{
    .kind = "the object of arguments",
    .keys = {key<&ArgumentsDescription::inputs>("inputs"), key<&ArgumentsDescription::outputs>("outputs"),
             key<&ArgumentsDescription::furtherInputs>("furtherInputs"),
             key<&ArgumentsDescription::furtherOutputs>("furtherOutputs")},
};

template <>
const Shape<FunctionDescription> shapeOf<FunctionDescription>{
    .kind = "a function",
    .keys = {key<&FunctionDescription::name>("name", Required),
             key<&FunctionDescription::component>("component"), key<&FunctionDescription::imports>("imports"),
             key<&FunctionDescription::hidden>("hidden"), key<&FunctionDescription::visible>("visible"),
             key<&FunctionDescription::arguments>("arguments"), key<&FunctionDescription::code>("code")},
};

template <>
const Shape<PackageDescription> shapeOf<PackageDescription>{
    .kind = "a package",
    .keys = {key<&PackageDescription::name>("name", Required), key<&PackageDescription::classes>("classes"),
             key<&PackageDescription::functions>("functions")},
};

template <>
const Shape<ForeignClassDescription> shapeOf<ForeignClassDescription>{
    .kind = "a foreign class",
    .keys = {key<&ForeignClassDescription::name>("name", Required),
             key<&ForeignClassDescription::members>("members")},
};

template <>
const Shape<VariableDescription> shapeOf<VariableDescription>{
    .kind = "a variable",
    .keys = {key<&VariableDescription::name>("name", Required),
             key<&VariableDescription::value>("value", Required)},
    .write =
        [](Writer& writer, const VariableDescription& variable) {
          Json object;
          inVariable(variable.name,
                     [&] { object = writeObject(writer, variable, shapeOf<VariableDescription>); });
          return object;
        },
};

template <>
const Shape<ActiveScopeDescription> shapeOf<ActiveScopeDescription>{
    .kind = "an active scope",
    .keys = {key<&ActiveScopeDescription::function>("function", Required),
             key<&ActiveScopeDescription::eligible>("eligible")},
};

template <>
const Shape<DebuggerDescription> shapeOf<DebuggerDescription>{
    .kind = "a debugger",
    .keys = {key<&DebuggerDescription::focus>("focus", Required), key<&DebuggerDescription::first>("first"),
             key<&DebuggerDescription::second>("second")},
};

template <>
const Shape<PathItemDescription> shapeOf<PathItemDescription>{
    .kind = "a search path item",
    .keys = {key<&PathItemDescription::folder>("folder", Required), key<&PathItemDescription::kind>("kind")},
};

template <>
const Shape<ScopesDescription> shapeOf<ScopesDescription>{
    .kind = "the object of scopes",
    .keys = {key<&ScopesDescription::queryable>("queryable"), key<&ScopesDescription::executing>("executing"),
             key<&ScopesDescription::active>("active"), key<&ScopesDescription::bridge>("bridge"),
             key<&ScopesDescription::debugger>("debugger")},
};

namespace {

constexpr int knownFormat = 1;

void readFormat(Reader& reader, Event& event, Description&) {
  int format = 0;
  read(reader, event, format);
  if (format < 1) reader.fail("snapshot.out-of-range", "formats are counted from 1");
  if (format > knownFormat) {
    reader.fail("snapshot.newer-format",
                "this is format " + std::to_string(format) + "; a reader reads its own format, here " +
                    std::to_string(knownFormat) +
                    ", and older ones. The number grows when an older reader would misread the file");
  }
}

Json writeFormat(Writer&, const Description&) { return knownFormat; }

/// Editors find the schema by this key; it says nothing about the session.
void readSchema(Reader& reader, Event& event, Description&) {
  // Read all the same, so that something else than a text is refused.
  std::string schema;
  read(reader, event, schema);
}

}  // namespace

template <>
const Shape<Description> shapeOf<Description>{
    .kind = "a snapshot",
    .keys = {{"format", readFormat, writeFormat, Required},
             {"$schema", readSchema},
             key<&Description::components>("components"),
             key<&Description::namespaces>("namespaces"),
             key<&Description::classes>("classes"),
             key<&Description::functions>("functions"),
             key<&Description::packages>("packages"),
             key<&Description::foreignClasses>("foreignClasses"),
             key<&Description::workspace>("workspace"),
             key<&Description::scopes>("scopes"),
             key<&Description::path>("path"),
             key<&Description::currentFolder>("currentFolder"),
             key<&Description::builtins>("builtins")},
};

void read(Reader& reader, Event& event, Description& destination) {
  readObject(reader, event, destination, shapeOf<Description>);
}

Json write(Writer& writer, const Description& value) {
  return writeObject(writer, value, shapeOf<Description>);
}

}  // namespace embedded::snapshot
