#include "tools/render/Rendering.h"
#include "tools/render/Table.h"
#include "tools/render/Words.h"

namespace tools::description {

namespace {

/// The tree under the first class. A class that is met again is not followed again.
void addTree(const std::vector<ClassDescription>& classes, std::size_t at, std::size_t depth,
             std::vector<bool>& shown, std::string& text) {
  text += std::string(2 * depth, ' ') + title(classes[at]);
  const bool again = shown[at];
  shown[at] = true;
  if (again && !classes[at].superclasses.empty()) text += " (see above)";
  text += '\n';
  if (again) return;
  for (const std::size_t superclass : classes[at].superclasses) {
    addTree(classes, superclass, depth + 1, shown, text);
  }
}

using Rows = std::vector<std::vector<std::string>>;

Rows propertyRows(const ClassDescription& described) {
  Rows rows;
  for (const Property& property : described.properties) {
    rows.push_back({printable(property.info.name), printable(property.info.type), size(property.info),
                    access(property), joined(notes(property), "; ")});
  }
  return rows;
}

Rows methodRows(const ClassDescription& described) {
  Rows rows;
  for (const Method& method : described.methods) {
    rows.push_back({printable(method.info.name), access(method), joined(notes(method), "; ")});
  }
  return rows;
}

Rows enumerationRows(const ClassDescription& described) {
  Rows rows;
  for (const std::u16string& member : described.enumerationMembers) rows.push_back({printable(member)});
  return rows;
}

/// One section for each class that has something to show.
std::string sections(const Description& description, const std::string& heading,
                     Rows (*rowsOf)(const ClassDescription&)) {
  std::string text;
  for (const ClassDescription& described : description.classes) {
    const Rows rows = rowsOf(described);
    if (rows.empty()) continue;
    text += "\n" + heading + " " + title(described) + "\n" + tableOf(rows, 2);
  }
  return text;
}

}  // namespace

std::string textOf(const Description& description) {
  std::string text;
  std::vector<bool> shown(description.classes.size());
  addTree(description.classes, 0, 0, shown, text);
  for (const ClassDescription& described : description.classes) {
    if (!described.isValid) text += "\n" + title(described) + " is broken: its own members are not known\n";
  }
  text += sections(description, "members of the enumeration", enumerationRows);
  text += sections(description, "properties of", propertyRows);
  return text + sections(description, "methods of", methodRows);
}

}  // namespace tools::description
