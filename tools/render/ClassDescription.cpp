#include "tools/render/ClassDescription.h"

#include <boost/algorithm/string/join.hpp>
#include <utility>
#include <vector>

#include "tools/render/Text.h"

namespace tools {

using boost::algorithm::join;
using frontend::ClassDescription;
using frontend::ClassTree;
using frontend::Level;
using frontend::MethodDescription;
using frontend::PropertyDescription;

namespace {

using Rows = std::vector<std::vector<std::string>>;

// The parts of a description in words, for the forms that people read.

/// "lab.Recorder", or with an identity that differs "lab.Recorder (logging:lab.Recorder)".
std::string titleOf(const ClassDescription& described) {
  const std::string name = printable(described.name);
  const std::string identity = printable(described.classId);
  return identity == name ? name : name + " (" + identity + ")";
}

/// "1 x :", or nothing.
std::string sizeOf(const PropertyDescription& property) {
  return printable(joined(property.info.sizeStrings, " x "));
}

std::string accessOf(const Level& level) { return level ? accessWord(*level) : "unknown"; }

/// "public", or where the two differ "public, write: private".
std::string accessOf(const PropertyDescription& property) {
  const std::string read = accessOf(property.readLevel);
  const std::string write = accessOf(property.writeLevel);
  return read == write ? read : read + ", write: " + write;
}

/// "hidden; reading runs code; values: 1, 2"
std::string notesOn(const PropertyDescription& property) {
  std::vector<std::string> notes;
  if (property.isHidden) notes.push_back("hidden");
  if (property.info.isDependent) notes.push_back("dependent");
  if (property.info.hasCustomGetter) notes.push_back("reading runs code");
  const auto& functions = property.info.validationFunctions;
  if (!functions.empty()) notes.push_back("checked by: " + printable(joined(functions, ", ")));
  const auto& values = property.info.possibleValues;
  if (!values.empty()) notes.push_back("values: " + printable(joined(values, ", ")));
  return join(notes, "; ");
}

std::string notesOn(const MethodDescription& method) {
  std::vector<std::string> notes;
  if (method.isConstructor) notes.push_back("constructor");
  if (method.info.isStatic) notes.push_back("static");
  if (method.isOperatorOverload) notes.push_back("operator");
  if (method.isHidden) notes.push_back("hidden");
  return join(notes, "; ");
}

// For people.

/// The tree under the class. A class that is met again is not followed again.
void addTree(const std::vector<ClassDescription>& classes, std::size_t at, std::size_t depth,
             std::vector<bool>& shown, std::string& text) {
  text += std::string(2 * depth, ' ') + titleOf(classes[at]);
  const bool again = shown[at];
  shown[at] = true;
  // Without superclasses there is nothing to see above.
  if (again && !classes[at].superclasses.empty()) text += " (see above)";
  text += '\n';
  if (again) return;
  for (const std::size_t superclass : classes[at].superclasses) {
    addTree(classes, superclass, depth + 1, shown, text);
  }
}

Rows propertyRows(const ClassDescription& described) {
  Rows rows;
  for (const PropertyDescription& property : described.properties) {
    rows.push_back({printable(property.info.name), printable(property.info.type), sizeOf(property),
                    accessOf(property), notesOn(property)});
  }
  return rows;
}

Rows methodRows(const ClassDescription& described) {
  Rows rows;
  for (const MethodDescription& method : described.methods) {
    rows.push_back({printable(method.info.name), accessOf(method.level), notesOn(method)});
  }
  return rows;
}

Rows enumerationRows(const ClassDescription& described) {
  Rows rows;
  for (const std::u16string& member : described.enumerationMembers) rows.push_back({printable(member)});
  return rows;
}

/// One section for each class that has something to show.
std::string sections(const ClassTree& tree, const std::string& heading,
                     Rows (*rowsOf)(const ClassDescription&)) {
  std::string text;
  for (const ClassDescription& described : tree.classes) {
    const Rows rows = rowsOf(described);
    if (rows.empty()) continue;
    text += "\n" + heading + " " + titleOf(described) + "\n" + tableOf(rows, 2);
  }
  return text;
}

// For graphviz.

std::string escaped(const std::string& text, const std::string& special) {
  std::string escaped;
  for (const char character : text) {
    if (special.find(character) != std::string::npos) escaped += '\\';
    escaped += character;
  }
  return escaped;
}

/// Text in the label of a record, where some characters draw lines.
std::string labelText(const std::string& text) { return escaped(text, "\\\"{}|<>"); }

std::string shortly(const PropertyDescription& property) {
  std::string line = printable(property.info.name);
  if (!property.info.type.empty()) line += ": " + printable(property.info.type);
  const std::string extents = sizeOf(property);
  return extents.empty() ? line : line + " " + extents;
}

std::string shortly(const MethodDescription& method) { return printable(method.info.name) + "()"; }

std::string shortly(const std::u16string& enumerationMember) { return printable(enumerationMember); }

/// A compartment of the class's box; nothing for no members.
template <class Members>
std::string compartment(const Members& members) {
  std::string lines;
  for (const auto& member : members) lines += labelText(shortly(member)) + "\\l";
  return lines.empty() ? lines : "|" + lines;
}

std::string labelOf(const ClassDescription& described) {
  return "{" + labelText(titleOf(described)) + compartment(described.enumerationMembers) +
         compartment(described.properties) + compartment(described.methods) + "}";
}

std::string nodeOf(std::size_t at) { return "class" + std::to_string(at); }

}  // namespace

std::string textOf(const ClassTree& tree) {
  std::string text;
  std::vector<bool> shown(tree.classes.size());
  addTree(tree.classes, 0, 0, shown, text);
  for (const ClassDescription& described : tree.classes) {
    if (!described.isValid) text += "\n" + titleOf(described) + " is broken: its own members are not known\n";
  }
  text += sections(tree, "members of the enumeration", enumerationRows);
  text += sections(tree, "properties of", propertyRows);
  return text + sections(tree, "methods of", methodRows);
}

std::string dotOf(const ClassTree& tree) {
  const auto& classes = tree.classes;
  std::string dot = "digraph \"" + escaped(printable(classes.front().name), "\\\"") + "\" {\n";
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

}  // namespace tools
