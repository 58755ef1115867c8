#include "frontend/CandidateDetails.h"

#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include <boost/algorithm/string/join.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstddef>
#include <vector>

#include "frontend/Text.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

std::u16string sizeText(const std::vector<std::u16string>& extents) {
  return boost::algorithm::join(extents, std::u16string(u"x"));
}

std::u16string sizeText(const std::vector<std::size_t>& extents) {
  std::vector<std::u16string> texts;
  for (const std::size_t extent : extents) texts.push_back(decimal(extent));
  return sizeText(texts);
}

/// The value's own size, whatever its class says.
std::u16string ownSizeOf(const kxArray_tag* value) {
  if (kxIsA(value, "tall")) return {};
  if (kxIsOpaque(value) && kxHasLazyDimensions(value)) return {};
  return sizeText(heldDimensions(value));
}

/// What a property reads as that was never given a value: nobody has put this there, so it says nothing of size and type.
bool isNothing(const kxArray_tag* value) {
  if (kxGetClassID(value) != StorageCode::DoubleArray) return false;
  if (kxHasCompactDimensions(value)) return kxGetRowCount(value) == 0 && kxGetColumnCount(value) == 0;
  return heldDimensions(value) == std::vector<std::size_t>{0, 0};
}

void describeStored(const RequestContext& request, const char* property, const kxArray_tag* object,
                    Candidate& candidate) {
  // Each object of an array stores a value of its own.
  if (!kxIsScalar(object)) return;
  const boost::intrusive_ptr<kxArray_tag> stored(kxGetTypeProperty(object, 0, property), false);
  if (!stored || isNothing(stored.get())) return;
  Candidate found;
  describeValue(request, stored.get(), found);
  if (!found.size.empty()) candidate.size = found.size;
  // What the class declares says more than what happens to be stored.
  if (candidate.type.empty() || candidate.type == u"any") candidate.type = found.type;
}

}  // namespace

std::vector<std::size_t> heldDimensions(const kxArray_tag* value) {
  // Held in this form there is no list of dimensions to point to.
  if (kxHasCompactDimensions(value)) return {kxGetRowCount(value), kxGetColumnCount(value)};
  const std::size_t* dimensions = kxGetDimensions(value);
  return std::vector<std::size_t>(dimensions, dimensions + kxGetNumberOfDimensions(value));
}

bool isStructure(const kxArray_tag* value) { return StorageCode::isStructure(kxGetClassID(value)); }

std::u16string sizeOf(const RequestContext& request, const kxArray_tag* value) {
  // Classes of objects may say themselves what their size is.
  const bool runsNoCode = kxGetClassID(value) < StorageCode::ObjectArray && !kxIsOpaque(value);
  if (runsNoCode || request.options().policy == CodePolicy::Allowed)
    return sizeText(getSizeFromKxArray(value));
  return ownSizeOf(value);
}

void describeValue(const RequestContext& request, const kxArray_tag* value, Candidate& candidate) {
  candidate.type = KCOSIntrospection::getClassName(value);
  candidate.size = sizeOf(request, value);
}

void describeMethod(const OfferedMethod& method, Candidate& candidate) {
  const auto record = recordOf(method);
  if (!record) return;
  candidate.declaringClass = record->definingClass;
  candidate.isStatic = record->isStatic;
  candidate.readRunsCode = true;
  candidate.access = method.info->getMemberAccess();
}

void describeProperty(const RequestContext& request, const OfferedProperty& property,
                      const kxArray_tag* value, Candidate& candidate) {
  const auto record = recordOf(property);
  if (!record) return;
  candidate.declaringClass = property.declares->structure.name;
  candidate.type = record->type;
  candidate.size = sizeText(record->sizeStrings);
  candidate.readRunsCode = record->hasCustomGetter;
  candidate.access = property.info->getMemberGetAccess();
  candidate.writeAccess = property.info->getMemberSetAccess();
  candidate.isConstant = candidate.writeAccess == kcos::ConstantAccess;
  // What is stored is not shown to those who may only write it; code of a class is offered what it may use.
  const bool mayRead = candidate.access == kcos::PublicAccess || !request.scope().className.empty();
  // A getter is not run for a detail, whatever the policy: the list would cost one call of user code per candidate.
  if (value != nullptr && mayRead && !record->hasCustomGetter &&
      request.options().policy != CodePolicy::Never) {
    describeStored(request, property.info->getName(), value, candidate);
  }
}

}  // namespace frontend
