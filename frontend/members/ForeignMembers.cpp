#include "frontend/members/ForeignMembers.h"

#include <contextdata/KCOSIntrospection.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace/Values.h>

#include <string>
#include <vector>

#include "frontend/members/ValueFacts.h"

namespace frontend {

using namespace KCOSContextData;

using Names = std::vector<std::u16string>;
using ValuePtr = boost::intrusive_ptr<kxArray_tag>;

void offerFields(const Inquiry& inquiry, const ValuePtr& structure, Gathering& gathering) {
  Names names;
  StructContextData::getStructFieldNames(structure.get(), names);
  gathering.addInOrder(names, Kind::Field, [&inquiry, structure](Candidate& candidate) {
    if (!kxIsScalar(structure.get())) return;
    const kxArray_tag* field = kxGetField(structure.get(), 0, narrow(candidate.label).c_str());
    if (field != nullptr) describeValue(inquiry, field, candidate);
  });
}

void offerForeignObject(Inquiry& inquiry, const ValuePtr& value, Gathering& gathering) {
  if (!inquiry.mayUse(CodePolicy::Allowed, u"what an opaque object offers")) return;
  Names properties;
  getOpaqueObjectProperties(value.get(), properties);
  gathering.addInOrder(properties, Kind::Property,
                       [](Candidate& candidate) { candidate.readRunsCode = true; });
  if (KCOSIntrospection::isNoDotMethodClass(value.get())) return;
  Names methods;
  getOpaqueObjectMethods(value.get(), methods);
  gathering.addInOrder(methods, Kind::Method, [](Candidate& candidate) { candidate.readRunsCode = true; });
}

}  // namespace frontend
