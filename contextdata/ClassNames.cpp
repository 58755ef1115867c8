#include <contextdata/Workspace/Values.h>

#include "host/Dispatcher.h"
#include "host/Text.h"

namespace {

std::string toAscii(const std::u16string& text) {
  return fl::i18n::to_string(text, fl::i18n::codecvt_ustring_to_ascii());
}

}  // namespace

unsigned int GetClassPrecedence(const std::u16string& classA, const std::u16string& classB) {
  const std::string nameA = toAscii(classA);
  const std::string nameB = toAscii(classB);
  const KobjectSystem& objectSystem = *kdGetObjectSystem();
  const KclassIdentifier* a = objectSystem.getClassIdentifier(nameA);
  const KclassIdentifier* b = objectSystem.getClassIdentifier(nameB);
  if (objectSystem.precedes(a, b)) return 0xFFFFFFFFU;
  return objectSystem.precedes(b, a) ? 1U : 0U;
}

bool IsJavaFunction(const std::u16string& name) {
  const std::string text = toAscii(name);
  const std::size_t dot = text.rfind('.');
  if (dot == std::string::npos || dot == 0) return false;
  const boost::intrusive_ptr<kxArray_tag> cls = makeSharedPtr(kxCreateClassArray(text.substr(0, dot)));
  if (!cls) return false;
  const boost::intrusive_ptr<kxArray_tag> member =
      makeSharedPtr(kxFindTypeMember(cls.get(), text.substr(dot + 1)));
  return member && kxIsA(member.get(), "java");
}
