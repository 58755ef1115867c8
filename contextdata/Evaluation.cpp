#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/Values.h>

#include <algorithm>
#include <boost/smart_ptr/make_shared.hpp>
#include <utility>

#include "contextdata/internal/Names.h"
#include "contextdata/internal/ResultSlot.h"
#include "host/Interpreter.h"
#include "host/Streams.h"
#include "host/Text.h"

namespace {

using services::io::KLStream;
using Value = boost::intrusive_ptr<kxArray_tag>;

/// Keeps a sink on a stream. Taking it away never throws: a stream that fails to flush is still popped.
class PushedSink {
 public:
  PushedSink(KLStream& stream, boost::shared_ptr<klutil::io::KLSink> sink) : stream_(stream) {
    stream_.push(std::move(sink));
  }
  ~PushedSink() {
    try {
      // On its own, before the pop: what is held back must end in this sink, not in the one below.
      stream_.flush();
    } catch (...) {
    }
    try {
      // Also after a flush that failed: a sink left on the stream would swallow what others print.
      stream_.pop();
    } catch (...) {
    }
  }
  PushedSink(const PushedSink&) = delete;
  PushedSink& operator=(const PushedSink&) = delete;

 private:
  KLStream& stream_;
};

/// Keeps errors of Korval code quiet. A failure while restoring the mode is ignored.
class SilentErrorMode {
 public:
  SilentErrorMode() : saved_(matrix::getErrorMode()) { matrix::setErrorMode(matrix::ErrorMode::Silent); }
  ~SilentErrorMode() {
    try {
      // Nobody needs the mode here, but a host that watches sees it read before it is set, as at the
      // beginning.
      matrix::getErrorMode();
      matrix::setErrorMode(saved_);
    } catch (...) {
    }
  }
  SilentErrorMode(const SilentErrorMode&) = delete;
  SilentErrorMode& operator=(const SilentErrorMode&) = delete;

 private:
  matrix::ErrorMode saved_;
};

}  // namespace

bool EvalcExpSuccessful(const std::u16string& expression, int nlhs, kxArray_tag** plhs, bool flag) {
  // First, before any stream is touched: where nothing can be evaluated, nothing is prepared.
  if (!inValidInterpreterAvailable()) return false;
  // One sink for both streams, whose text nobody reads. The mode comes last and so is restored first: what a
  // host prints about that is thrown away too.
  const auto sink = boost::make_shared<services::io::KLStringSink>();
  const PushedSink output(KLStream::KLOut(), sink);
  const PushedSink errors(KLStream::KLErr(), sink);
  const SilentErrorMode mode;
  return inEvalExp(expression, nlhs, plhs, flag, Tamsix::orvo::EvalSource::Query) == 0;
}

namespace {

/// One step of the walk: to a value, to nothing at all, or off the path that can be walked.
struct Step {
  enum Kind { ToValue, ToNothing, OffPath } kind;
  Value value = {};

  // A member that cannot be read may still have a value when the whole expression is evaluated.
  static Step to(Value value) { return value ? Step{ToValue, std::move(value)} : Step{OffPath}; }
};

/// The valid name that stands at `position`; empty when none does.
std::string nameAt(const std::string& text, std::size_t position) {
  const int count = kxIsValidKorvalNameCount(text.c_str() + position);
  return text.substr(position, static_cast<std::size_t>(std::max(count, 0)));
}

Step stepIntoObject(const Value& object, const std::string& field) {
  // Methods come first: evaluating the expression would call it, which nobody asked for.
  if (KCOSIntrospection::hasMethod(object.get(), field)) return {Step::ToNothing};
  if (!KCOSIntrospection::hasProperty(object.get(), field)) return {Step::OffPath};
  return Step::to(getSharedProperty(object.get(), field, 0));
}

Step stepIntoOpaque(const Value& object, const std::string& field) {
  const std::u16string name = fl::i18n::to_ustring(field, fl::i18n::codecvt_ascii_to_ustring());
  std::vector<std::u16string> methods;
  // Both lists run code of the object. Properties are asked for only when no method has the name.
  getOpaqueObjectMethods(object.get(), methods);
  if (std::ranges::find(methods, name) != methods.end()) return {Step::ToNothing};
  std::vector<std::u16string> properties;
  getOpaqueObjectProperties(object.get(), properties);
  if (std::ranges::find(properties, name) == properties.end()) return {Step::OffPath};
  return Step::to(getSharedProperty(object.get(), field, 0));
}

Step stepInto(const Value& value, const std::string& field) {
  // A field of an array of several elements is a list, and no value.
  if (!kxIsScalar(value.get())) return {Step::ToNothing};
  // Structures come first: an object that is stored as one is walked by its fields, whatever its class
  // offers.
  if (StorageCode::isStructure(kxGetClassID(value.get()))) {
    // The field is borrowed from its structure; this adds the reference that keeps it when the structure
    // goes.
    return Step::to(Value(kxGetField(value.get(), 0, field.c_str())));
  }
  if (KCOSIntrospection::isKCOSObject(value.get())) return stepIntoObject(value, field);
  if (isObjectOrIsOpaque(value.get())) return stepIntoOpaque(value, field);
  return {Step::ToNothing};
}

/// The value of the expression as typed; whatever goes wrong, an interrupt too, means that there is none.
Value evaluate(const std::u16string& expression) {
  ResultSlot result;
  try {
    if (!EvalcExpSuccessful(expression, 1, result.address(), false)) return {};
    return result.take();
  } catch (...) {
    return {};
  }
}

}  // namespace

boost::intrusive_ptr<kxArray_tag> GetValueFromCurrentWorkspace(const std::u16string& expression) {
  if (IsJavaFunction(expression)) return {};
  // The walk is for names, which are ASCII; the evaluation gets the text as it was typed.
  const std::string text = toAscii(expression);
  const std::string variable = nameAt(text, 0);
  Value value = makeSharedPtr(inGetValueFromCurrentWorkspace(variable));
  if (!value) return {};
  std::size_t position = variable.size();
  while (position < text.size()) {
    if (text[position] != '.') return evaluate(expression);
    const std::string field = nameAt(text, position + 1);
    if (field.empty()) return evaluate(expression);
    Step step = stepInto(value, field);
    if (step.kind == Step::ToNothing) return {};
    if (step.kind == Step::OffPath) return evaluate(expression);
    value = std::move(step.value);
    position += 1 + field.size();
  }
  return value;
}
