#include "frontend/ForeignMembers.h"

#include <contextdata/KCOSIntrospection.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/StructContextData.h>
#include <contextdata/Workspace/Values.h>

#include <string>
#include <vector>

#include "frontend/ValueFacts.h"

namespace frontend {

using namespace KCOSContextData;

using Names = std::vector<std::u16string>;
using ValuePtr = boost::intrusive_ptr<kxArray_tag>;

void offerFields(const RequestContext& request, const ValuePtr& structure, CandidateList& candidates) {
  Names names;
  StructContextData::getStructFieldNames(structure.get(), names);
  candidates.addInOrder(names, Kind::Field, [&request, structure](Candidate& candidate) {
    if (!kxIsScalar(structure.get())) return;
    const kxArray_tag* field = kxGetField(structure.get(), 0, narrow(candidate.label).c_str());
    if (field != nullptr) describeValue(request, field, candidate);
  });
}

void offerForeignObject(RequestContext& request, const ValuePtr& value, CandidateList& candidates) {
  if (!request.mayUse(CodePolicy::Allowed, u"what an opaque object offers")) return;
  Names properties;
  getOpaqueObjectProperties(value.get(), properties);
  candidates.addInOrder(properties, Kind::Property,
                        [](Candidate& candidate) { candidate.readRunsCode = true; });
  if (KCOSIntrospection::isNoDotMethodClass(value.get())) return;
  Names methods;
  getOpaqueObjectMethods(value.get(), methods);
  candidates.addInOrder(methods, Kind::Method, [](Candidate& candidate) { candidate.readRunsCode = true; });
}

}  // namespace frontend
