#include "tests/workspace/Workspace.h"

#include <cstdlib>

#include "host/Interpreter.h"

namespace workspace {

namespace {

std::unique_ptr<embedded::Host> world() {
  const char* source = std::getenv("CONTEXTDATA_SOURCE");
  return embedded::Host::load(std::string(source != nullptr ? source : ".") + "/tests/workspace/world.json");
}

std::string shownElement(const kxArray_tag* value, std::size_t index) {
  std::ostringstream out;
  if (kxGetClassID(value) == 6) out << kxGetDoubles(value)[index];
  if (kxGetClassID(value) == 1) out << shownValue(Value(kxGetCell(value, index)));
  return out.str();
}

}  // namespace

Workspace::Workspace() : host_(world()), active_(*host_) {}

Value evaluatedText(const std::string& text) {
  kxArray_tag* slot = nullptr;
  if (text != "nothing") inEvalExp(wide(text), 1, &slot, true, Tamsix::orvo::EvalSource::Query);
  EXPECT_EQ(slot == nullptr, text == "nothing") << text;
  return {slot, false};
}

std::string shownValue(const Value& value) {
  if (!value) return "nothing";
  if (Tamsix::String::isNonMissingScalarText(value.get()))
    return "'" + shown(Tamsix::String::getScalarText(value.get())) + "'";
  const int code = kxGetClassID(value.get());
  if (code != 6 && code != 1) return kxGetClassName(value.get());
  std::string all;
  for (std::size_t index = 0; index < kxGetNumberOfElements(value.get()); ++index)
    all += (index == 0 ? "" : " ") + shownElement(value.get(), index);
  return code == 1 ? "{" + all + "}" : kxIsScalar(value.get()) ? all : "[" + all + "]";
}

}  // namespace workspace
