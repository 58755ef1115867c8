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

/// Editors find the schema by this key; it says nothing about the session.
void takeSchema(Reader& reader, Event& event, Description&) {
  std::string schema;
  take(reader, event, schema);
}

const Shape<ArgumentDescription> argumentShape{
    .kind = "an argument",
    .keys = {{"name", into<&ArgumentDescription::name>, Required},
             {"kind", into<&ArgumentDescription::kind>},
             {"class", into<&ArgumentDescription::className>},
             {"size", into<&ArgumentDescription::size>},
             {"validators", into<&ArgumentDescription::validators>},
             {"values", into<&ArgumentDescription::values>}},
};

const Shape<ArgumentsDescription> argumentsShape{
    .kind = "the object of arguments",
    .keys = {{"inputs", into<&ArgumentsDescription::inputs>},
             {"outputs", into<&ArgumentsDescription::outputs>},
             {"furtherInputs", into<&ArgumentsDescription::furtherInputs>},
             {"furtherOutputs", into<&ArgumentsDescription::furtherOutputs>}},
};

const Shape<FunctionDescription> functionShape{
    .kind = "a function",
    .keys = {{"name", into<&FunctionDescription::name>, Required},
             {"component", into<&FunctionDescription::component>},
             {"imports", into<&FunctionDescription::imports>},
             {"hidden", into<&FunctionDescription::hidden>},
             {"visible", into<&FunctionDescription::visible>},
             {"arguments", into<&FunctionDescription::arguments>},
             {"code", into<&FunctionDescription::code>}},
};

const Shape<PackageDescription> packageShape{
    .kind = "a package",
    .keys = {{"name", into<&PackageDescription::name>, Required},
             {"classes", into<&PackageDescription::classes>},
             {"functions", into<&PackageDescription::functions>}},
};

const Shape<ForeignClassDescription> foreignClassShape{
    .kind = "a foreign class",
    .keys = {{"name", into<&ForeignClassDescription::name>, Required},
             {"members", into<&ForeignClassDescription::members>}},
};

const Shape<VariableDescription> variableShape{
    .kind = "a variable",
    .keys = {{"name", into<&VariableDescription::name>, Required},
             {"value", into<&VariableDescription::value>, Required}},
};

const Shape<ActiveScopeDescription> activeScopeShape{
    .kind = "an active scope",
    .keys = {{"function", into<&ActiveScopeDescription::function>, Required},
             {"eligible", into<&ActiveScopeDescription::eligible>}},
};

const Shape<DebuggerDescription> debuggerShape{
    .kind = "a debugger",
    .keys = {{"focus", into<&DebuggerDescription::focus>, Required},
             {"first", into<&DebuggerDescription::first>},
             {"second", into<&DebuggerDescription::second>}},
};

const Shape<PathItemDescription> pathItemShape{
    .kind = "a search path item",
    .keys = {{"folder", into<&PathItemDescription::folder>, Required},
             {"kind", into<&PathItemDescription::kind>}},
};

const Shape<ScopesDescription> scopesShape{
    .kind = "the object of scopes",
    .keys = {{"queryable", into<&ScopesDescription::queryable>},
             {"executing", into<&ScopesDescription::executing>},
             {"active", into<&ScopesDescription::active>},
             {"bridge", into<&ScopesDescription::bridge>},
             {"debugger", into<&ScopesDescription::debugger>}},
};

const Shape<Description> worldShape{
    .kind = "a snapshot",
    .keys = {{"format", takeFormat, Required},
             {"$schema", takeSchema},
             {"components", into<&Description::components>},
             {"namespaces", into<&Description::namespaces>},
             {"classes", into<&Description::classes>},
             {"functions", into<&Description::functions>},
             {"packages", into<&Description::packages>},
             {"foreignClasses", into<&Description::foreignClasses>},
             {"workspace", into<&Description::workspace>},
             {"scopes", into<&Description::scopes>},
             {"path", into<&Description::path>},
             {"currentFolder", into<&Description::currentFolder>},
             {"builtins", into<&Description::builtins>}},
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

}  // namespace embedded::snapshot
