#include "frontend/Metadata.h"

#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>
#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Workspace/Values.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "frontend/Resolution.h"

namespace frontend {

using namespace KCOSContextData;

namespace {

constexpr std::uint64_t takesFurtherInputs = 2;
constexpr std::uint64_t givesFurtherOutputs = 4;

std::u16string textOf(const kxArray_tag* text) {
  if (text == nullptr || !Tamsix::String::isNonMissingScalarText(text)) return {};
  return Tamsix::String::getScalarText(text);
}

std::vector<std::u16string> textsOf(const kxArray_tag* cell) {
  std::vector<std::u16string> texts;
  if (cell != nullptr) getStringsFromKxarray(cell, texts);
  return texts;
}

std::u16string sizeOf(const kxArray_tag* row) {
  if (row == nullptr) return {};
  std::u16string text;
  const double* extents = kxGetDoubles(row);
  for (std::size_t at = 0; at < kxGetNumberOfElements(row); ++at) {
    if (at > 0) text += u'x';
    text += std::isnan(extents[at]) ? u":" : wide(std::to_string(static_cast<std::uint64_t>(extents[at])));
  }
  return text;
}

Argument::Kind kindOf(const std::u16string& word) {
  static const std::array<std::u16string, 4> words = {u"positional", u"optional", u"repeating",
                                                      u"name-value"};
  const auto found = std::ranges::find(words, word);
  return found == words.end() ? Argument::Positional : static_cast<Argument::Kind>(found - words.begin());
}

Argument argumentOf(const kxArray_tag* arguments, std::size_t at) {
  const auto field = [&](const char* name) { return kxGetField(arguments, at, name); };
  return {textOf(field("name")), kindOf(textOf(field("kind"))), textOf(field("class")),
          sizeOf(field("size")), textsOf(field("validators")),  textsOf(field("values"))};
}

std::vector<Argument> argumentsOf(const boost::intrusive_ptr<kxArray_tag>& declared) {
  std::vector<Argument> arguments;
  const std::size_t count = declared ? kxGetNumberOfElements(declared.get()) : 0;
  for (std::size_t at = 0; at < count; ++at) arguments.push_back(argumentOf(declared.get(), at));
  return arguments;
}

FunctionMetadata metadataOf(const std::u16string& function) {
  try {
    return getArgumentBlockMetadata(function, function);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (const foundation::core::except::Exception&) {
    return {};
  }
}

std::u16string listOf(const std::vector<Argument>& arguments, bool hasFurther) {
  std::u16string text;
  for (const Argument& argument : arguments) {
    if (!text.empty()) text += u", ";
    if (argument.kind == Argument::Optional)
      text += u"[" + argument.name + u"]";
    else if (argument.kind == Argument::Repeating)
      text += argument.name + u"...";
    else if (argument.kind == Argument::NameValue)
      text += argument.name + u"=value";
    else
      text += argument.name;
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

std::u16string Signature::text() const {
  const std::u16string results = listOf(outputs, furtherOutputs);
  const bool isOne = outputs.size() == 1 && !furtherOutputs;
  const std::u16string head = results.empty() ? u"" : (isOne ? results : u"[" + results + u"]") + u" = ";
  return head + name + u"(" + listOf(inputs, furtherInputs) + u")";
}

std::optional<Signature> signatureOf(const std::u16string& function) {
  const FunctionMetadata metadata = metadataOf(function);
  Signature signature{function, argumentsOf(metadata.inputArguments), argumentsOf(metadata.outputArguments),
                      (metadata.flags & takesFurtherInputs) != 0,
                      (metadata.flags & givesFurtherOutputs) != 0};
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
  if (!positional.empty() && inputs[positional.back()].kind == Argument::Repeating) return positional.back();
  return {};
}

}  // namespace frontend
