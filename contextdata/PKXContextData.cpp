#include <contextdata/PKXContextData.h>
#include <contextdata/Workspace/SearchPath.h>
#include <contextdata/Workspace/Values.h>

#include "contextdata/internal/ResultSlot.h"
#include "host/Interpreter.h"

namespace PKXContextData {

namespace {

/// Appends the names of what a property of a package object lists. What cannot be read is left out.
void appendListed(const kxArray_tag* package, const std::string& property,
                  std::vector<std::u16string>& names) {
  const auto listed = getSharedProperty(package, property, 0);
  if (!listed) return;
  const std::size_t count = kxGetNumberOfElements(listed.get());
  for (std::size_t index = 0; index < count; ++index) {
    const auto name = getSharedProperty(listed.get(), "Name", index);
    if (name) names.push_back(matrix::get_ustring(name.get()));
  }
}

}  // namespace

bool getPackageStrings(const std::u16string& package, std::vector<std::u16string>& names) {
  const std::size_t before = names.size();
  // Now: `package` may be an element of `names`, which moves when the list grows.
  const std::u16string folder = u"@" + package;
  const auto packageName = makeSharedPtr(matrix::create(package));
  kxArray_tag* arguments[] = {packageName.get()};
  ResultSlot found;
  const int status = inCallFcnWithTrap(1, found.address(), 1, arguments, "findpackage", true);
  // A package that cannot be found is no reason to stop: its folders are listed all the same.
  if (status == 0 && found.get() != nullptr && kxIsScalar(found.get())) {
    appendListed(found.get(), "Classes", names);
    appendListed(found.get(), "Functions", names);
  }
  // Any word but the two others selects compiled files.
  for (const char* kind : {".k", ".kex", "classes"}) getWhatList(folder, names, kind);
  return names.size() != before;
}

}  // namespace PKXContextData
