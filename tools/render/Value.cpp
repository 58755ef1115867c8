#include "tools/render/Value.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "frontend/CandidateDetails.h"

namespace tools {

namespace {

// An answer is for a line of output, and readers of JSON have limits of their own.
constexpr int deepest = 100;
constexpr std::size_t mostElements = 100'000;
constexpr double exactNumbers = 9007199254740992.0;

using Size = std::vector<std::size_t>;

Size sizeOf(const kxArray_tag* value) {
  // The host refuses to tell dimensions that are not held in the form that is asked for.
  if (kxHasLazyDimensions(value)) kxCompleteDimensions(value);
  return frontend::heldDimensions(value);
}

/// What is written without its size.
bool isRow(const Size& size) { return size.size() == 2 && size[0] == 1 && size[1] > 0; }

Json withSize(Json json, const Size& size) {
  if (!isRow(size)) json["size"] = size;
  return json;
}

Json jsonOfNumber(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number > 0 ? "Inf" : "-Inf";
  const bool isNegativeZero = number == 0 && std::signbit(number);
  // What an integer would not tell exactly stays a double: a big number, and the sign of zero.
  if (std::trunc(number) != number || std::abs(number) > exactNumbers || isNegativeZero) return number;
  return static_cast<std::int64_t>(number);
}

/// Writes one value; the elements of everything in it are counted together.
class ValueWriter {
 public:
  Json write(const kxArray_tag* value, int level) {
    if (value == nullptr) return nullptr;
    const Size size = sizeOf(value);
    const std::size_t count = kxGetNumberOfElements(value);
    if (level > deepest || count >= elementsLeft_) return summary(value, size);
    // One for the value itself, so that empty ones are not for nothing.
    elementsLeft_ -= count + 1;
    switch (kxGetClassID(value)) {
      case StorageCode::Cell:
        return cell(value, size, level);
      case StorageCode::Structure:
      case StorageCode::StructureObject:
        return structures(value, size, level);
      case StorageCode::CharacterArray:
        return characters(value, size);
      case StorageCode::DoubleArray:
        return doubles(value, size);
      default:
        return count == 1 ? scalar(value, size) : summary(value, size);
    }
  }

 private:
  static Json summary(const kxArray_tag* value, const Size& size) {
    return {{"class", jsonOf(kxGetClassName(value))}, {"size", size}};
  }

  static Json scalar(const kxArray_tag* value, const Size& size) {
    const std::string className = kxGetClassName(value);
    if (className == "logical") return kxIsLogicalScalarTrue(value);
    if (Tamsix::String::isString(value)) {
      if (!Tamsix::String::isNonMissingScalarText(value)) return {{"string", nullptr}};
      return {{"string", jsonOf(Tamsix::String::getString(value))}};
    }
    if (kxIsOpaque(value)) return {{"opaque", jsonOf(className)}};
    if (kxIsObject(value)) return {{"object", jsonOf(className)}};
    return summary(value, size);
  }

  static Json characters(const kxArray_tag* value, const Size& size) {
    Json text = jsonOf(std::u16string(kxGetCharacters(value), kxGetNumberOfElements(value)));
    if (isRow(size) || size == Size{0, 0}) return text;
    return {{"char", std::move(text)}, {"size", size}};
  }

  static Json doubles(const kxArray_tag* value, const Size& size) {
    Json numbers = Json::array();
    const double* elements = kxGetDoubles(value);
    for (std::size_t at = 0; at < kxGetNumberOfElements(value); ++at) {
      numbers.push_back(jsonOfNumber(elements[at]));
    }
    if (isRow(size)) return numbers.size() == 1 && numbers[0].is_number() ? Json(numbers[0]) : numbers;
    return {{"double", std::move(numbers)}, {"size", size}};
  }

  Json cell(const kxArray_tag* value, const Size& size, int level) {
    Json elements = Json::array();
    for (std::size_t at = 0; at < kxGetNumberOfElements(value); ++at) {
      elements.push_back(write(kxGetCell(value, at), level + 1));
    }
    return withSize({{"cell", std::move(elements)}}, size);
  }

  Json structures(const kxArray_tag* value, const Size& size, int level) {
    const std::size_t count = kxGetNumberOfElements(value);
    const std::vector<std::string> fields = fieldsOf(value);
    Json elements = Json::array();
    for (std::size_t at = 0; at < count; ++at) {
      Json element = Json::object();
      for (const std::string& field : fields) {
        element[field] = write(kxGetField(value, at, field.c_str()), level + 1);
      }
      elements.push_back(std::move(element));
    }
    Json json = size == Size{1, 1} ? Json{{"struct", elements[0]}} : Json{{"structs", std::move(elements)}};
    if (count == 0) json["fields"] = fields;
    if (kxGetClassID(value) == StorageCode::StructureObject) json["class"] = jsonOf(kxGetClassName(value));
    return size == Size{1, 1} ? json : withSize(std::move(json), size);
  }

  static std::vector<std::string> fieldsOf(const kxArray_tag* value) {
    const int count = value->get_number_of_struct_fields();
    if (count <= 0) return {};
    const char* const* names = value->get_struct_field_names();
    return std::vector<std::string>(names, names + count);
  }

  std::size_t elementsLeft_ = mostElements;
};

}  // namespace

Json jsonOfValue(const kxArray_tag* value) { return ValueWriter().write(value, 1); }

std::string jsonLineOf(const std::u16string& output) { return lineOf({{"output", jsonOf(output)}}); }

std::string jsonLineOf(const std::u16string& output, const kxArray_tag* value) {
  return lineOf({{"output", jsonOf(output)}, {"value", jsonOfValue(value)}});
}

}  // namespace tools
