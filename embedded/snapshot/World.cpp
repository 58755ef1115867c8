#include "embedded/snapshot/InVariable.h"
#include "embedded/snapshot/Object.h"

namespace embedded::snapshot {

namespace {

constexpr int knownFormat = 1;

void takeFormat(Reader& reader, Event& event, Description&) {
  int format = 0;
  take(reader, event, format);
  if (format < 1) reader.fail("snapshot.out-of-range", "formats are counted from 1");
  if (format > knownFormat) {
    reader.fail("snapshot.newer-format",
                "this is format " + std::to_string(format) + "; a reader reads its own format, here " +
                    std::to_string(knownFormat) +
                    ", and older ones. The number grows when an older reader would misread the file");
  }
}

Json giveFormat(Writer&, const Description&) { return knownFormat; }

/// Editors find the schema by this key; it says nothing about the session.
void takeSchema(Reader& reader, Event& event, Description&) {
  std::string schema;
  take(reader, event, schema);
}

const Shape<ArgumentDescription> argumentShape{
    .kind = "an argument",
    .keys = {key<&ArgumentDescription::name>("name", Required), key<&ArgumentDescription::kind>("kind"),
             key<&ArgumentDescription::className>("class"), key<&ArgumentDescription::size>("size"),
             key<&ArgumentDescription::validators>("validators"),
             key<&ArgumentDescription::values>("values")},
};

const Shape<ArgumentsDescription> argumentsShape{
    .kind = "the object of arguments",
    .keys = {key<&ArgumentsDescription::inputs>("inputs"), key<&ArgumentsDescription::outputs>("outputs"),
             key<&ArgumentsDescription::furtherInputs>("furtherInputs"),
             key<&ArgumentsDescription::furtherOutputs>("furtherOutputs")},
};

const Shape<FunctionDescription> functionShape{
    .kind = "a function",
    .keys = {key<&FunctionDescription::name>("name", Required),
             key<&FunctionDescription::component>("component"), key<&FunctionDescription::imports>("imports"),
             key<&FunctionDescription::hidden>("hidden"), key<&FunctionDescription::visible>("visible"),
             key<&FunctionDescription::arguments>("arguments"), key<&FunctionDescription::code>("code")},
};

const Shape<PackageDescription> packageShape{
    .kind = "a package",
    .keys = {key<&PackageDescription::name>("name", Required), key<&PackageDescription::classes>("classes"),
             key<&PackageDescription::functions>("functions")},
};

const Shape<ForeignClassDescription> foreignClassShape{
    .kind = "a foreign class",
    .keys = {key<&ForeignClassDescription::name>("name", Required),
             key<&ForeignClassDescription::members>("members")},
};

const Shape<VariableDescription> variableShape{
    .kind = "a variable",
    .keys = {key<&VariableDescription::name>("name", Required),
             key<&VariableDescription::value>("value", Required)},
};

const Shape<ActiveScopeDescription> activeScopeShape{
    .kind = "an active scope",
    .keys = {key<&ActiveScopeDescription::function>("function", Required),
             key<&ActiveScopeDescription::eligible>("eligible")},
};

const Shape<DebuggerDescription> debuggerShape{
    .kind = "a debugger",
    .keys = {key<&DebuggerDescription::focus>("focus", Required), key<&DebuggerDescription::first>("first"),
             key<&DebuggerDescription::second>("second")},
};

const Shape<PathItemDescription> pathItemShape{
    .kind = "a search path item",
    .keys = {key<&PathItemDescription::folder>("folder", Required), key<&PathItemDescription::kind>("kind")},
};

const Shape<ScopesDescription> scopesShape{
    .kind = "the object of scopes",
    .keys = {key<&ScopesDescription::queryable>("queryable"), key<&ScopesDescription::executing>("executing"),
             key<&ScopesDescription::active>("active"), key<&ScopesDescription::bridge>("bridge"),
             key<&ScopesDescription::debugger>("debugger")},
};

const Shape<Description> worldShape{
    .kind = "a snapshot",
    .keys = {{"format", takeFormat, giveFormat, Required},
             {"$schema", takeSchema},
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

}  // namespace

void take(Reader& reader, Event& event, ArgumentDescription& destination) {
  takeObject(reader, event, destination, argumentShape);
}

void take(Reader& reader, Event& event, std::optional<ArgumentsDescription>& destination) {
  takeObject(reader, event, destination.emplace(), argumentsShape);
}

void take(Reader& reader, Event& event, FunctionDescription& destination) {
  takeObject(reader, event, destination, functionShape);
}

void take(Reader& reader, Event& event, PackageDescription& destination) {
  takeObject(reader, event, destination, packageShape);
}

void take(Reader& reader, Event& event, ForeignClassDescription& destination) {
  takeObject(reader, event, destination, foreignClassShape);
}

void take(Reader& reader, Event& event, VariableDescription& destination) {
  takeObject(reader, event, destination, variableShape);
}

void take(Reader& reader, Event& event, PathItemDescription& destination) {
  takeObject(reader, event, destination, pathItemShape);
}

void take(Reader& reader, Event& event, ActiveScopeDescription& destination) {
  takeObject(reader, event, destination, activeScopeShape);
}

void take(Reader& reader, Event& event, std::optional<DebuggerDescription>& destination) {
  takeObject(reader, event, destination.emplace(), debuggerShape);
}

void take(Reader& reader, Event& event, ScopesDescription& destination) {
  takeObject(reader, event, destination, scopesShape);
}

void take(Reader& reader, Event& event, Description& destination) {
  takeObject(reader, event, destination, worldShape);
}

Json give(Writer& writer, const ArgumentDescription& value) {
  return giveObject(writer, value, argumentShape);
}

Json give(Writer& writer, const ArgumentsDescription& value) {
  return giveObject(writer, value, argumentsShape);
}

Json give(Writer& writer, const FunctionDescription& value) {
  return giveObject(writer, value, functionShape);
}

Json give(Writer& writer, const PackageDescription& value) { return giveObject(writer, value, packageShape); }

Json give(Writer& writer, const ForeignClassDescription& value) {
  return giveObject(writer, value, foreignClassShape);
}

Json give(Writer& writer, const VariableDescription& value) {
  Json object;
  inVariable(value.name, [&] { object = giveObject(writer, value, variableShape); });
  return object;
}

Json give(Writer& writer, const PathItemDescription& value) {
  return giveObject(writer, value, pathItemShape);
}

Json give(Writer& writer, const ActiveScopeDescription& value) {
  return giveObject(writer, value, activeScopeShape);
}

Json give(Writer& writer, const DebuggerDescription& value) {
  return giveObject(writer, value, debuggerShape);
}

Json give(Writer& writer, const ScopesDescription& value) { return giveObject(writer, value, scopesShape); }

Json give(Writer& writer, const Description& value) { return giveObject(writer, value, worldShape); }

}  // namespace embedded::snapshot
