#include "frontend/SignatureHelp.h"

#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "frontend/CursorContext.h"
#include "frontend/Resolution.h"
#include "frontend/Text.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

std::u16string scalarText(const kxArray_tag* text) {
  if (text == nullptr || !Tamsix::String::isNonMissingScalarText(text)) return {};
  return Tamsix::String::getScalarText(text);
}

std::vector<std::u16string> cellTexts(const kxArray_tag* cell) {
  std::vector<std::u16string> texts;
  if (cell != nullptr) getStringsFromKxarray(cell, texts);
  return texts;
}

std::u16string sizeText(const kxArray_tag* row) {
  if (row == nullptr) return {};
  std::u16string text;
  const double* extents = kxGetDoubles(row);
  for (std::size_t at = 0; at < kxGetNumberOfElements(row); ++at) {
    if (at > 0) text += u'x';
    // The host writes NaN for any extent.
    text += std::isnan(extents[at]) ? u":" : decimal(static_cast<std::size_t>(extents[at]));
  }
  return text;
}

Argument::Kind kindOf(const std::u16string& word) {
  if (word == u"optional") return Argument::Optional;
  if (word == u"repeating") return Argument::Repeating;
  if (word == u"name-value") return Argument::NameValue;
  return Argument::Positional;
}

Argument argumentOf(const kxArray_tag* arguments, std::size_t at) {
  const auto field = [&](const char* name) { return kxGetField(arguments, at, name); };
  return {scalarText(field("name")), kindOf(scalarText(field("kind"))), scalarText(field("class")),
          sizeText(field("size")),   cellTexts(field("validators")),    cellTexts(field("values"))};
}

std::vector<Argument> argumentsOf(const boost::intrusive_ptr<kxArray_tag>& declared) {
  std::vector<Argument> arguments;
  const std::size_t count = declared ? kxGetNumberOfElements(declared.get()) : 0;
  for (std::size_t at = 0; at < count; ++at) arguments.push_back(argumentOf(declared.get(), at));
  return arguments;
}

/// Without metadata the call may still be right: an unknown function declares nothing.
FunctionMetadata metadataOf(const std::u16string& function) {
  try {
    return getArgumentBlockMetadata(function, function);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
    // Only the host's own errors: anything else is a failure of the request.
  } catch (const foundation::core::except::Exception&) {
    return {};
  }
}

std::u16string shownArgument(const Argument& argument) {
  switch (argument.kind) {
    case Argument::Positional:
      return argument.name;
    case Argument::Optional:
      return u"[" + argument.name + u"]";
    case Argument::Repeating:
      return argument.name + u"...";
    case Argument::NameValue:
      return argument.name + u"=value";
  }
  return {};
}

std::u16string listOf(const std::vector<Argument>& arguments, bool hasFurther) {
  std::u16string text;
  for (const Argument& argument : arguments) {
    if (!text.empty()) text += u", ";
    text += shownArgument(argument);
  }
  if (hasFurther) text += text.empty() ? u"..." : u", ...";
  return text;
}

std::optional<Signature> methodSignature(const Resolution& object, const std::u16string& method) {
  const auto id = classOf(object);
  if (!id) return {};
  return signatureOf(id->getNonComponentQualifiedName() + u"." + method);
}

}  // namespace

SignatureHelp signatureHelp(Session& session, const std::u16string& text, std::size_t cursor,
                            const Scope& scope, const Options& options) {
  SignatureHelp help;
  help.outcome = answer(session, scope, options, [&](RequestContext& request) {
    const auto call = callAt(text, cursor);
    if (!call) return;
    help.signature = signatureOf(request, *call);
    if (help.signature) help.activeArgument = activeArgument(*help.signature, *call);
  });
  return help;
}

std::u16string Signature::text() const {
  const std::u16string results = listOf(outputs, furtherOutputs);
  const bool isOne = outputs.size() == 1 && !furtherOutputs;
  const std::u16string head = results.empty() ? u"" : (isOne ? results : u"[" + results + u"]") + u" = ";
  return head + name + u"(" + listOf(inputs, furtherInputs) + u")";
}

std::optional<Signature> signatureOf(const std::u16string& function) {
  const FunctionMetadata metadata = metadataOf(function);
  Signature signature{function, argumentsOf(metadata.inputArguments), argumentsOf(metadata.outputArguments),
                      (metadata.flags & FunctionMetadata::TakesFurtherInputs) != 0,
                      (metadata.flags & FunctionMetadata::GivesFurtherOutputs) != 0};
  // A function that declares nothing looks like one without arguments, so nothing is said of either.
  if (metadata.flags == 0 && signature.inputs.empty() && signature.outputs.empty()) return {};
  return signature;
}

std::optional<Signature> signatureOf(RequestContext& request, const Call& call) {
  const std::size_t dot = call.function.rfind(u'.');
  if (dot != std::u16string::npos) {
    const Resolution object = resolve(request, call.function.substr(0, dot));
    if (auto found = methodSignature(object, call.function.substr(dot + 1))) return found;
  } else if (!call.firstArgument.empty()) {
    if (auto found = methodSignature(resolve(request, call.firstArgument), call.function)) return found;
  }
  return signatureOf(call.function);
}

std::optional<std::size_t> activeArgument(const Signature& signature, const Call& call) {
  const auto& inputs = signature.inputs;
  const auto byName = std::ranges::find_if(inputs, [&](const Argument& argument) {
    return argument.kind == Argument::NameValue && argument.name == call.name;
  });
  if (byName != inputs.end()) return static_cast<std::size_t>(byName - inputs.begin());
  std::vector<std::size_t> positional;
  for (std::size_t at = 0; at < inputs.size(); ++at) {
    if (inputs[at].kind != Argument::NameValue) positional.push_back(at);
  }
  if (call.argument < positional.size()) return positional[call.argument];
  // A repeating argument is the last one, and stands for all that follow.
  if (!positional.empty() && inputs[positional.back()].kind == Argument::Repeating) return positional.back();
  return {};
}

}  // namespace frontend
