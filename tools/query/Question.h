#pragma once

// One request while it runs, and what operations of the library return and append to.

#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <variant>
#include <vector>

#include "embedded/Host.h"
#include "host/Arrays.h"
#include "host/Classes.h"
#include "host/FunctionMetadata.h"
#include "tools/query/Arguments.h"
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
                 kcos::COSClass*, kcos::COSInterface*, std::optional<embedded::CodeFailure>>;

/// Arguments are read, the library is asked once, and then the out-parameters are told.
class Question {
 public:
  /// What is said goes to `answer`. `lastFailure` is what code failed with when some ran last, of whatever question.
  Question(const Arguments& arguments, embedded::Host& host, bool trace,
           std::optional<embedded::CodeFailure>& lastFailure, Json& answer)
      : arguments(arguments), host_(host), trace_(trace), lastFailure_(lastFailure), answer_(answer) {}

  const Arguments& arguments;

  /// Calls the library; nothing else is asked of the host between the beginning and the end of the log.
  void ask(const std::function<Result()>& call);
  void tell(const std::string& name, const Result& parameter);
  /// Tells what else there is to say.
  void finish();

  /// What code failed with when some ran last; nothing when it did not fail.
  const std::optional<embedded::CodeFailure>& lastFailure() const noexcept { return lastFailure_; }
  /// The execution frames that have been pushed, innermost first.
  std::vector<const IExecutionFrame*> frames() const { return host_.frames(); }

 private:
  embedded::Host& host_;
  const bool trace_;
  std::optional<embedded::CodeFailure>& lastFailure_;
  Json& answer_;
  bool interrupted_ = false;
  std::vector<embedded::Call> log_;
  std::vector<std::string> refused_;
  std::optional<embedded::CodeFailure> failed_;
};

}  // namespace tools::query
