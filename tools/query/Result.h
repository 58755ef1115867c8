#pragma once

// What operations of the library return and append to, and its JSON.

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_set>
#include <variant>
#include <vector>

#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/FunctionMetadata.h"
#include "tools/render/Json.h"

namespace tools::query {

/// nullptr for an operation that returns nothing. Records and visitors are borrowed: they can be neither copied nor moved.
using Result =
    std::variant<std::nullptr_t, bool, unsigned int, std::u16string, std::vector<std::u16string>,
                 std::vector<std::string>, std::set<std::u16string>, std::unordered_set<std::u16string>,
                 std::vector<std::int32_t>, std::vector<std::size_t>, boost::intrusive_ptr<kxArray_tag>,
                 std::vector<boost::intrusive_ptr<kxArray_tag>>, FunctionMetadata,
                 KCOSContextData::ResolvedClassID, KCOSContextData::ResolvedClassID::DebuggerFocus,
                 KCOSContextData::AttributeSets, std::vector<KCOSContextData::PropertyInfo>,
                 std::vector<KCOSContextData::MethodInfo>, const KCOSContextData::ClassInfo*,
                 const KCOSContextData::PropertyVisitorMutable*, const KCOSContextData::MethodVisitorMutable*,
                 kcos::COSClass*, kcos::COSInterface*>;

/// Some of it is asked of the host: only when the operation is over.
Json jsonOf(const Result& result);

}  // namespace tools::query
