#include "frontend/CandidateDetails.h"

#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include <boost/algorithm/string/join.hpp>
#include <cstddef>
#include <utility>
#include <vector>

#include "frontend/Access.h"
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

kcos::COSPropInfo* ownProperty(const ClassInfo& record, const std::u16string& name) {
  const kcos::COSClass* found = classObjectOf(record);
  const kcos::COSInternedName member = ResolvedClassID::fromKnownResolvedClassID(name);
  const kcos::COSInterfacePtr property = found == nullptr ? nullptr : found->findProperty(member);
  return property ? kcos::cosiToProp(property.get()) : nullptr;
}

/// What a property reads as that was never given a value: nobody has put this there, so it says nothing of size and type.
bool isNothing(const kxArray_tag* value) {
  return kxGetClassID(value) == StorageCode::DoubleArray &&
         heldDimensions(value) == std::vector<std::size_t>{0, 0};
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

void describeMethod(const MethodInfo& method, Candidate& candidate) {
  candidate.declaringClass = method.definingClass;
  candidate.isStatic = method.isStatic;
  candidate.readRunsCode = true;
  // The library's record has no level, so the class's own object is asked.
  const kcos::COSClass* defining = KCOSIntrospection::getCOSClass(method.definingClass);
  if (defining == nullptr) return;
  const kcos::COSInternedName name = ResolvedClassID::fromKnownResolvedClassID(method.name);
  auto methods = defining->findMethods(name);
  if (!methods.hasMoreElements()) return;
  candidate.access = kcos::cosiToMethod(methods.nextElement().get())->getMemberAccess();
}

PropertyDetails::PropertyDetails(RequestContext& request, const ClassInfo& record,
                                 boost::intrusive_ptr<kxArray_tag> value)
    : request_(request), record_(record), value_(std::move(value)) {}

/// The nearest class whose property the caller may use; else it is one that only the caller's own code may use.
const ClassInfo& PropertyDetails::declaring(const std::u16string& property) {
  using Options = PropertyInfo::GetOptions;
  // Without superclasses no other class can have declared it.
  if (record_.structure.superclasses.empty()) return record_;
  const ClassInfo* caller = request_.caller();
  if (!declaring_) {
    declaring_.emplace(record_,
                       Options{usableLevels(caller, record_), {Options::Read, Options::Write}, caller, true});
  }
  if (const ClassInfo* found = declaring_->of(property)) return *found;
  return caller != nullptr && record_.isA(caller->classId) ? *caller : record_;
}

void PropertyDetails::describe(const PropertyInfo& property, Candidate& candidate) {
  const ClassInfo& declares = declaring(property.name);
  candidate.declaringClass = declares.structure.name;
  candidate.type = property.type;
  candidate.size = sizeText(property.sizeStrings);
  candidate.readRunsCode = property.hasCustomGetter;
  if (const kcos::COSPropInfo* own = ownProperty(declares, property.name)) {
    candidate.access = own->getMemberGetAccess();
    candidate.writeAccess = own->getMemberSetAccess();
    candidate.isConstant = own->getMemberSetAccess() == kcos::ConstantAccess;
  }
  // A getter is not run for a detail, whatever the policy: the list would cost one call of user code per candidate.
  if (value_ && !property.hasCustomGetter && request_.options().policy != CodePolicy::Never) {
    describeStored(property, candidate);
  }
}

void PropertyDetails::describeStored(const PropertyInfo& property, Candidate& candidate) const {
  // Each object of an array stores a value of its own.
  if (!kxIsScalar(value_.get())) return;
  const boost::intrusive_ptr<kxArray_tag> stored(kxGetTypeProperty(value_.get(), 0, narrow(property.name)),
                                                 false);
  if (!stored || isNothing(stored.get())) return;
  Candidate found;
  describeValue(request_, stored.get(), found);
  if (!found.size.empty()) candidate.size = found.size;
  // What the class declares says more than what happens to be stored.
  if (candidate.type.empty() || candidate.type == u"any") candidate.type = found.type;
}

}  // namespace frontend
