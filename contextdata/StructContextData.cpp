#include <contextdata/StructContextData.h>

#include "contextdata/internal/Names.h"

namespace StructContextData {

void getStructFieldNames(const kxArray_tag* value, std::vector<std::u16string>& names) {
  const int count = value->get_number_of_struct_fields();
  if (count <= 0) return;
  const fl::i18n::codecvt_ascii_to_ustring converter;
  const char* const* fields = value->get_struct_field_names();
  for (int index = 0; index < count; ++index) names.push_back(asciiMemberName(fields[index], converter));
}

}  // namespace StructContextData
