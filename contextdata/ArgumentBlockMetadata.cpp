#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>

#include "host/Components.h"
#include "host/Dispatcher.h"
#include "host/Text.h"

namespace KCOSContextData {

FunctionMetadata getArgumentBlockMetadata(const std::u16string& functionReference,
                                          const std::u16string& functionName) {
  const std::string name = functionName.empty()
                               ? std::string()
                               : fl::i18n::to_string(functionName, fl::i18n::codecvt_ustring_to_string());
  // Without components the reference plays no part: the host looks the function up by its name.
  if (!Tamsix::KorvalComponents::ComponentFeature::IsOn()) return omGetFunctionMetadata(name, nullptr);
  return omGetFunctionMetadata(name, Kdispatcher::getDispatcher()->findFunction(functionReference));
}

}  // namespace KCOSContextData
