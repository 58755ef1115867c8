#pragma once

// Results of the library as JSON. Some are asked of the host: render only when the query is over.

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/FunctionMetadata.h"
#include "tools/render/JsonText.h"

namespace tools::query {

/// The answer of an operation that has none.
Json render(std::nullptr_t);
Json render(bool answer);
Json render(unsigned int number);
Json render(const std::u16string& text);
Json render(const std::vector<std::u16string>& texts);
Json render(const std::vector<std::string>& texts);
Json render(const std::set<std::u16string>& texts);
/// Sorted.
Json render(const std::unordered_set<std::u16string>& texts);
Json render(const std::vector<std::int32_t>& numbers);
Json render(const std::vector<std::size_t>& numbers);
/// The component-qualified name; "" for the null identifier.
Json render(const KCOSContextData::ResolvedClassID& id);
Json render(const KCOSContextData::ResolvedClassID::DebuggerFocus& focus);
/// Records with all their fields, under the names of the fields; an accessing class and an owner by identity.
Json render(const KCOSContextData::PropertyInfo& property);
Json render(const std::vector<KCOSContextData::PropertyInfo>& properties);
Json render(const KCOSContextData::MethodInfo& method);
Json render(const std::vector<KCOSContextData::MethodInfo>& methods);
Json render(const KCOSContextData::AttributeSets& sets);
Json render(const KCOSContextData::PropertyVisitorMutable& visitor);
Json render(const KCOSContextData::MethodVisitorMutable& visitor);
/// As jsonOfValue() has it.
Json render(const boost::intrusive_ptr<kxArray_tag>& value);
Json render(const std::vector<boost::intrusive_ptr<kxArray_tag>>& values);
Json render(const FunctionMetadata& metadata);
/// Name, superclasses with theirs, and identity; the visitors' state is told by operations on visitors.
Json render(const KCOSContextData::ClassInfo& record);

template <class Record>
Json render(const std::unique_ptr<Record>& record) {
  return render(*record);
}

/// The identity of the class, or null.
Json render(kcos::COSClass* found);
/// The dotted name of the namespace, or null.
Json render(kcos::COSInterface* found);

}  // namespace tools::query
