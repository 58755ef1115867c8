#include "tools/render/Rendering.h"
#include "tools/render/Words.h"

namespace tools::description {

namespace {

/// Text in the label of a record, where some characters draw lines.
std::string escaped(const std::string& text) {
  std::string escaped;
  for (const char character : text) {
    if (std::string("\\\"{}|<>").find(character) != std::string::npos) escaped += '\\';
    escaped += character;
  }
  return escaped;
}

std::string quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '\\' || character == '"') quoted += '\\';
    quoted += character;
  }
  return quoted + '"';
}

std::string lineOf(const Property& property) {
  std::string line = printable(property.info.name);
  if (!property.info.type.empty()) line += ": " + printable(property.info.type);
  const std::string extents = size(property.info);
  return extents.empty() ? line : line + " " + extents;
}

std::string lineOf(const Method& method) { return printable(method.info.name) + "()"; }

std::string lineOf(const std::u16string& enumerationMember) { return printable(enumerationMember); }

/// A compartment of the class's box; nothing for no members.
template <class Members>
std::string compartment(const Members& members) {
  std::string lines;
  for (const auto& member : members) lines += escaped(lineOf(member)) + "\\l";
  return lines.empty() ? lines : "|" + lines;
}

std::string labelOf(const ClassDescription& described) {
  return "{" + escaped(title(described)) + compartment(described.enumerationMembers) +
         compartment(described.properties) + compartment(described.methods) + "}";
}

std::string nodeOf(std::size_t at) { return "class" + std::to_string(at); }

}  // namespace

std::string dotOf(const Description& description) {
  const auto& classes = description.classes;
  std::string dot = "digraph " + quoted(printable(classes.front().name)) + " {\n";
  dot += "  rankdir=BT;\n  node [shape=record];\n  edge [arrowhead=empty];\n";
  for (std::size_t at = 0; at < classes.size(); ++at) {
    dot += "  " + nodeOf(at) + " [label=\"" + labelOf(classes[at]) + "\"];\n";
  }
  for (std::size_t at = 0; at < classes.size(); ++at) {
    for (const std::size_t superclass : classes[at].superclasses) {
      dot += "  " + nodeOf(at) + " -> " + nodeOf(superclass) + ";\n";
    }
  }
  return dot + "}\n";
}

}  // namespace tools::description
