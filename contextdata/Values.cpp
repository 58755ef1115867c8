#include <contextdata/KCOSIntrospection.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace/Values.h>

#include "contextdata/MemberName.h"
#include "host/Text.h"

boost::intrusive_ptr<kxArray_tag> makeSharedPtr(kxArray_tag* value) { return {value, false}; }

boost::intrusive_ptr<kxArray_tag> getSharedProperty(const kxArray_tag* object, const std::string& name,
                                                    unsigned long index) {
  try {
    return makeSharedPtr(kxGetPropertyShared(object, index, name));
  } catch (...) {
    return {};
  }
}

bool isObjectOrIsOpaque(const kxArray_tag* value) { return kxIsObject(value) || kxIsOpaque(value); }

void getOpaqueObjectProperties(const kxArray_tag* value, std::vector<std::u16string>& names) {
  KCOSIntrospection::callFunctionOnObject(value, "fieldnames", names);
}

void getOpaqueObjectMethods(const kxArray_tag* value, std::vector<std::u16string>& names) {
  KCOSIntrospection::callFunctionOnObject(value, "methods", names);
}

namespace StructContextData {

void getStructFieldNames(const kxArray_tag* value, std::vector<std::u16string>& names) {
  const int count = value->get_number_of_struct_fields();
  if (count <= 0) return;
  const fl::i18n::codecvt_ascii_to_ustring converter;
  const char* const* fields = value->get_struct_field_names();
  for (int index = 0; index < count; ++index) names.push_back(asciiMemberName(fields[index], converter));
}

}  // namespace StructContextData
