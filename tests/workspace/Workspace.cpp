#include "tests/workspace/Workspace.h"

#include "host/Interpreter.h"
#include "tests/support/World.h"

namespace workspace {

namespace {

std::string shownElement(const kxArray_tag* value, std::size_t index) {
  std::ostringstream out;
  if (kxGetClassID(value) == StorageCode::DoubleArray) out << kxGetDoubles(value)[index];
  if (kxGetClassID(value) == StorageCode::Cell) out << shownValue(Value(kxGetCell(value, index)));
  return out.str();
}

}  // namespace

Workspace::Workspace()
    : host_(embedded::Host::load(sourceFile("tests/workspace/world.json"))), active_(*host_) {}

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
  if (code != StorageCode::DoubleArray && code != StorageCode::Cell) return kxGetClassName(value.get());
  std::string all;
  for (std::size_t index = 0; index < kxGetNumberOfElements(value.get()); ++index)
    all += (index == 0 ? "" : " ") + shownElement(value.get(), index);
  return code == StorageCode::Cell ? "{" + all + "}" : kxIsScalar(value.get()) ? all : "[" + all + "]";
}

}  // namespace workspace
