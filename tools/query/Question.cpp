#include "tools/query/Question.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "tools/render/ClassDescription.h"
#include "tools/render/Json.h"
#include "tools/render/Value.h"

namespace tools::query {

namespace {

using KCOSContextData::ClassInfo;
using KCOSContextData::ResolvedClassID;

Json identityOf(const ClassInfo* record) {
  return record == nullptr ? Json() : jsonOf(record->classId.text());
}

/// The JSON of each thing that a result can be, or hold.
struct Rendering {
  Json operator()(std::nullptr_t) const { return nullptr; }
  Json operator()(bool flag) const { return flag; }
  Json operator()(unsigned int number) const { return number; }
  Json operator()(std::int32_t number) const { return number; }
  Json operator()(std::size_t number) const { return number; }
  Json operator()(const std::u16string& text) const { return jsonOf(text); }
  Json operator()(const std::string& text) const { return jsonOf(text); }
  Json operator()(const KCOSContextData::PropertyInfo& property) const { return jsonOf(property); }
  Json operator()(const KCOSContextData::MethodInfo& method) const { return jsonOf(method); }

  /// As snapshots have it where that is short.
  Json operator()(const boost::intrusive_ptr<kxArray_tag>& value) const { return jsonOfValue(value.get()); }

  template <class Element>
  Json operator()(const std::vector<Element>& elements) const {
    return listOf(elements);
  }

  Json operator()(const std::set<std::u16string>& texts) const { return listOf(texts); }

  /// Sorted.
  Json operator()(const std::unordered_set<std::u16string>& texts) const {
    return listOf(std::set<std::u16string>(texts.begin(), texts.end()));
  }

  Json operator()(const FunctionMetadata& metadata) const {
    return {{"inputArguments", (*this)(metadata.inputArguments)},
            {"outputArguments", (*this)(metadata.outputArguments)},
            {"flags", metadata.flags}};
  }

  /// The component-qualified name; "" for the null identifier.
  Json operator()(const ResolvedClassID& id) const {
    const kcos::COSInternedName& name = id;
    return jsonOf(name.text());
  }

  Json operator()(const ResolvedClassID::DebuggerFocus& focus) const {
    return {{"name", jsonOf(focus.name)}, {"first", focus.first}, {"second", focus.second}};
  }

  Json operator()(const KCOSContextData::AttributeSets& sets) const {
    return {{"attributeList1", listOf(sets.attributeList1)},
            {"attributeList2", listOf(sets.attributeList2)},
            {"attributeList3", listOf(sets.attributeList3)},
            {"attributeList4", listOf(sets.attributeList4)}};
  }

  /// Name, superclasses with theirs, and identity; the visitors' state is told by operations on visitors.
  Json operator()(const ClassInfo* record) const {
    Json superclasses = Json::array();
    for (const auto& superclass : record->structure.superclasses) {
      superclasses.push_back((*this)(superclass.get()));
    }
    Json answer = Json::object();
    // An object that grows copies what it holds, and here that would be the whole tree above, at every level.
    answer.get_ref<Json::object_t&>().reserve(3);
    answer["name"] = jsonOf(record->structure.name);
    answer["superclasses"] = std::move(superclasses);
    answer["classId"] = jsonOf(record->classId.text());
    return answer;
  }

  Json operator()(const KCOSContextData::PropertyVisitorMutable* visitor) const {
    return {{"owner", identityOf(visitor->owner)},
            {"accessLevels", visitor->accessLevels},
            {"accessorKinds", visitor->accessorKinds},
            {"accessingClass", identityOf(visitor->accessingClass)},
            {"includeHidden", visitor->includeHidden},
            {"properties", listOf(visitor->properties)},
            {"hiddenProperties", listOf(visitor->hiddenProperties)}};
  }

  Json operator()(const KCOSContextData::MethodVisitorMutable* visitor) const {
    return {{"owner", identityOf(visitor->owner)},
            {"access", visitor->access},
            {"accessingClass", identityOf(visitor->accessingClass)},
            {"context", static_cast<std::int32_t>(visitor->context)},
            {"includeConstructors", visitor->includeConstructors},
            {"includeOperatorOverloads", visitor->includeOperatorOverloads},
            {"includeHidden", visitor->includeHidden},
            {"methods", listOf(visitor->methods)},
            {"hiddenMethods", listOf(visitor->hiddenMethods)}};
  }

  /// The identity of the class, or null.
  Json operator()(kcos::COSClass* found) const {
    return found == nullptr ? Json() : jsonOf(found->getID().text());
  }

  Json operator()(const std::optional<embedded::CodeFailure>& failure) const {
    if (!failure) return nullptr;
    return {{"id", jsonOf(failure->id)},
            {"message", jsonOf(failure->message)},
            {"source", jsonOf(failure->source)},
            {"line", failure->line},
            {"column", failure->column}};
  }

  /// The dotted name of the namespace, or null.
  Json operator()(kcos::COSInterface* found) const {
    const kcos::COSNamespace* space = kcos::cosiToNamespace(found);
    return space == nullptr ? Json() : jsonOf(std::string(space->getDottedName()));
  }

  template <class Elements>
  Json listOf(const Elements& elements) const {
    Json list = Json::array();
    for (const auto& element : elements) list.push_back((*this)(element));
    return list;
  }
};

/// Some of it is asked of the host: only when the operation is over.
Json rendered(const Result& result) { return std::visit(Rendering(), result); }

}  // namespace

void Question::ask(const std::function<Result()>& call) {
  // Before the library is asked: a request that is wrong has no effect.
  arguments.finish();
  std::optional<Result> result;
  // The record goes on from request to request; only what this one is refused counts.
  host_.clearCodeRecord();
  if (trace_) host_.startLog();
  try {
    result.emplace(call());
  } catch (...) {
    answer_["exception"] = jsonOfCurrentException();
  }
  // After an exception, too: the calls before it are worth knowing.
  if (trace_) log_ = host_.takeLog();
  refused_ = host_.codeRecord().refused;
  failed_ = host_.codeRecord().failure;
  if (!failed_) failed_ = host_.codeFailure();
  // What ran none leaves it as it is.
  if (failed_ || host_.codeRecord().runs > 0) lastFailure_ = failed_;
  interrupted_ = host_.interruptRequested();
  // Only now: rendering asks the host, too.
  if (result) answer_["result"] = rendered(*result);
}

void Question::tell(const std::string& name, const Result& parameter) { answer_[name] = rendered(parameter); }

void Question::finish() {
  if (interrupted_) answer_["status"] = "interrupted";
  if (failed_) answer_["failed"] = rendered(failed_);
  if (!refused_.empty()) {
    Json& refused = answer_["refused"] = Json::array();
    for (const std::string& what : refused_) refused.push_back(jsonOf(what));
  }
  if (trace_) {
    Json calls = Json::array();
    for (const embedded::Call& call : log_) {
      calls.push_back({{"operation", call.operation}, {"arguments", jsonOf(call.arguments)}});
    }
    answer_["calls"] = std::move(calls);
    answer_["ranKorvalCode"] = embedded::Host::ranKorvalCode(log_);
  }
}

}  // namespace tools::query
