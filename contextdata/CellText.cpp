#include <contextdata/Workspace/Values.h>

#include <iterator>

bool getStringsFromKxarray(const kxArray_tag* value, std::vector<std::u16string>& strings) {
  if (value == nullptr || kxGetClassID(value) != StorageCode::Cell) return false;
  const std::size_t count = kxGetNumberOfElements(value);
  strings.reserve(strings.size() + count);
  // Gathered apart, so that neither an early end nor an exception leaves some of them behind.
  std::vector<std::u16string> texts;
  texts.reserve(count);
  for (std::size_t index = 0; index < count; ++index) {
    const kxArray_tag* element = kxGetCell(value, index);
    if (element == nullptr || !Tamsix::String::isNonMissingScalarText(element)) return false;
    texts.push_back(Tamsix::String::getScalarText(element));
  }
  strings.insert(strings.end(), std::move_iterator(texts.begin()), std::move_iterator(texts.end()));
  return true;
}
