#include "embedded/language/Indexing.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "embedded/language/Convert.h"

namespace embedded {

namespace {

using Size = Value::Size;
using Positions = std::vector<std::size_t>;

[[noreturn]] void failIndex(Interpreter& interpreter, const std::string& message) {
  interpreter.fail("KORVAL:code:Index", message);
}

/// As many extents as subscripts: the last one holds all that are left.
Size folded(const Size& size, std::size_t count) {
  Size result(size.begin(), size.begin() + static_cast<std::ptrdiff_t>(std::min(count, size.size())));
  result.resize(count, 1);
  for (std::size_t rest = count; rest < size.size(); ++rest) result.back() *= size[rest];
  return result;
}

/// The positions that a subscript selects along an extent. Those of every element are not listed: an extent can be long
/// where there is not one element.
class Along {
 public:
  Along(const Subscript& subscript, std::size_t extent) : subscript_(subscript), extent_(extent) {}

  std::size_t count() const { return subscript_.every ? extent_ : subscript_.positions.size(); }
  std::size_t operator[](std::size_t at) const { return subscript_.every ? at : subscript_.positions[at]; }
  /// The extent that holds them all.
  std::size_t needed() const {
    if (subscript_.every) return extent_;
    return subscript_.positions.empty() ? 0 : *std::ranges::max_element(subscript_.positions) + 1;
  }

 private:
  const Subscript& subscript_;
  std::size_t extent_;
};

std::vector<Along> selectedBy(std::span<const Subscript> subscripts, const Size& extents) {
  std::vector<Along> all;
  for (std::size_t at = 0; at < subscripts.size(); ++at) all.emplace_back(subscripts[at], extents[at]);
  return all;
}

Size countsOf(const std::vector<Along>& selected) {
  Size counts;
  for (const Along& each : selected) counts.push_back(each.count());
  return counts;
}

/// The linear indices of all combinations, the first subscript running fastest.
Positions combinations(Interpreter& interpreter, const std::vector<Along>& selected, const Size& extents) {
  const Size counts = countsOf(selected);
  // Before the list is made: x(i, i) of a long i would be longer than any array may be.
  interpreter.checkSize(counts);
  if (Value::elementsOf(counts) == 0) return {};
  Positions result{0};
  std::size_t stride = 1;
  for (std::size_t at = 0; at < selected.size(); stride *= extents[at++]) {
    Positions longer;
    longer.reserve(result.size() * counts[at]);
    for (std::size_t position = 0; position < counts[at]; ++position)
      for (const std::size_t before : result) longer.push_back(before + selected[at][position] * stride);
    result = std::move(longer);
  }
  return result;
}

void checkRange(Interpreter& interpreter, const std::vector<Along>& selected, const Size& extents) {
  for (std::size_t at = 0; at < selected.size(); ++at)
    if (selected[at].needed() > extents[at])
      failIndex(interpreter, "The index " + std::to_string(selected[at].needed()) +
                                 " is beyond the end, which is " + std::to_string(extents[at]));
}

Size linearSize(const Value& value, const Subscript& subscript, std::size_t count) {
  if (subscript.every) return {count, 1};
  // The result has the shape of the index, but where both are vectors that of what is indexed.
  const bool indexIsVector = subscript.size.size() == 2 && (subscript.size[0] == 1 || subscript.size[1] == 1);
  const bool isVector = value.size().size() == 2 && (value.rows() == 1) != (value.columns() == 1);
  if (!indexIsVector || !isVector) return subscript.size.empty() ? Size{1, count} : subscript.size;
  return value.rows() == 1 ? Size{1, count} : Size{count, 1};
}

/// The size that holds those positions too.
Size grown(Interpreter& interpreter, const Size& size, const std::vector<Along>& selected) {
  Size result = size;
  if (selected.size() == 1) {
    const std::size_t count = Value::elementsOf(size);
    const std::size_t needed = selected.front().needed();
    // A column grows downwards, a row or a single element to the right; a matrix has no such direction.
    if (needed <= count) return size;
    if (size.size() > 2 || (size[0] > 1 && size[1] != 1 && count > 0))
      failIndex(interpreter, "One index makes no room in a matrix");
    if (size[1] == 1 && size[0] > 1) return {needed, 1};
    return {1, needed};
  }
  result.resize(std::max(size.size(), selected.size()), 1);
  for (std::size_t at = 0; at < selected.size(); ++at) {
    const std::size_t needed = selected[at].needed();
    if (needed <= result[at]) continue;
    if (at + 1 == selected.size() && selected.size() < size.size())
      failIndex(interpreter, "An index that runs over several dimensions makes no room");
    result[at] = needed;
  }
  return result;
}

/// Where each element of a bigger array comes from in the smaller one.
Positions originsOf(Interpreter& interpreter, const Size& bigger, const Size& smaller) {
  const std::size_t count = Value::elementsOf(bigger);
  Positions origins(count, noElement);
  if (bigger == smaller) {
    std::iota(origins.begin(), origins.end(), std::size_t{0});
    return origins;
  }
  Size at(bigger.size(), 0);
  for (std::size_t index = 0; index < count; ++index) {
    interpreter.pollAt(index);
    std::size_t origin = 0;
    std::size_t stride = 1;
    bool inside = true;
    for (std::size_t dimension = 0; dimension < bigger.size(); ++dimension) {
      const std::size_t extent = dimension < smaller.size() ? smaller[dimension] : 1;
      inside = inside && at[dimension] < extent;
      origin += at[dimension] * stride;
      stride *= extent;
    }
    if (inside) origins[index] = origin;
    // Counts up, the first dimension fastest, as elements are stored.
    for (std::size_t dimension = 0; dimension < bigger.size() && ++at[dimension] == bigger[dimension];
         ++dimension)
      at[dimension] = 0;
  }
  return origins;
}

/// Replaces elements where nothing grows and no kind changes: the usual case, without a look at every element.
struct Replacer {
  const Positions& targets;
  Value::Content& all;

  template <class Elements>
  bool replaced(Elements& elements, const Elements& by) const {
    for (std::size_t at = 0; at < targets.size(); ++at) elements[targets[at]] = by[by.size() == 1 ? 0 : at];
    return true;
  }
  bool operator()(const std::vector<double>& by) const {
    return replaced(std::get<std::vector<double>>(all), by);
  }
  bool operator()(const std::vector<bool>& by) const {
    return replaced(std::get<std::vector<bool>>(all), by);
  }
  bool operator()(const std::u16string& by) const { return replaced(std::get<std::u16string>(all), by); }
  bool operator()(const Cells& by) const { return replaced(std::get<Cells>(all).elements, by.elements); }
  // What must be the same of both, as fields are, is looked at where elements are joined.
  bool operator()(const Strings&) const { return false; }
  bool operator()(const Structures&) const { return false; }
  bool operator()(const Objects&) const { return false; }
  bool operator()(const ScalarKind auto&) const { return false; }
};

/// Null when the elements do not fit in like that.
ValuePtr withReplaced(const Value& value, const Positions& targets, const Value& elements) {
  if (value.content().index() != elements.content().index()) return nullptr;
  // A copy: the value may be shared.
  Value::Content content = value.content();
  if (!std::visit(Replacer{targets, content}, elements.content())) return nullptr;
  return newValue(value.size(), std::move(content));
}

Subscript fromLogicals(const std::vector<bool>& logicals, const Size& size) {
  Subscript result{.size = size};
  for (std::size_t at = 0; at < logicals.size(); ++at)
    if (logicals[at]) result.positions.push_back(at);
  // As many as are true, in the direction of the logicals.
  result.size = size[0] == 1 ? Size{1, result.positions.size()} : Size{result.positions.size(), 1};
  return result;
}

}  // namespace

Subscript subscriptOf(Interpreter& interpreter, const Value& index) {
  if (const auto* logicals = index.as<std::vector<bool>>()) {
    interpreter.step(logicals->size());
    return fromLogicals(*logicals, index.size());
  }
  Subscript result{.size = index.size()};
  result.positions.reserve(index.elementCount());
  for (const double number : numbersOf(interpreter, index)) {
    // Written so that NaN is refused. From 2^53 on not every whole number is a double.
    if (!(number >= 1) || number != std::floor(number) || number > 1e15)
      failIndex(interpreter, "An index is a whole number from 1 on, not " + shownNumber(number));
    result.positions.push_back(static_cast<std::size_t>(number) - 1);
  }
  return result;
}

ValuePtr indexed(Interpreter& interpreter, const Value& value, std::span<const Subscript> subscripts) {
  const Size extents = folded(value.size(), subscripts.size());
  const std::vector<Along> selected = selectedBy(subscripts, extents);
  checkRange(interpreter, selected, extents);
  const Positions elements = combinations(interpreter, selected, extents);
  Size size =
      subscripts.size() == 1 ? linearSize(value, subscripts.front(), elements.size()) : countsOf(selected);
  return elementsAt(interpreter, value, elements, std::move(size));
}

ValuePtr withElements(Interpreter& interpreter, const ValuePtr& value, std::span<const Subscript> subscripts,
                      const ValuePtr& elements) {
  const std::size_t count = elements->elementCount();
  Size extents = folded(value->size(), subscripts.size());
  if (value->elementCount() == 0)  // x(:, 1) = column makes the rows
    for (std::size_t at = 0; at < subscripts.size(); ++at)
      if (subscripts[at].every && extents[at] == 0)
        extents[at] = subscripts.size() == 1 ? count : folded(elements->size(), subscripts.size())[at];
  const std::vector<Along> selected = selectedBy(subscripts, extents);
  const Size size = grown(interpreter, value->size(), selected);
  interpreter.checkSize(size);
  const Positions targets = combinations(interpreter, selected, folded(size, subscripts.size()));
  if (count != 1 && count != targets.size())
    interpreter.fail("KORVAL:code:SizeMismatch", std::to_string(count) + " elements do not go into " +
                                                     std::to_string(targets.size()) + " places");
  if (size == value->size())
    if (ValuePtr result = withReplaced(*value, targets, *elements)) return result;
  // An empty array has no kind to keep, but an empty structure array has fields, and a cell remains one.
  const bool isNew = value->elementCount() == 0 && !value->as<Structures>() && !value->as<Cells>();
  const Values both = isNew ? unified(interpreter, {elements}) : unified(interpreter, {value, elements});
  const ValuePtr all = isNew ? both.front() : joined(interpreter, both);
  // Old and new elements stand one after the other in `all`, and each place says which one it gets.
  Positions origins = originsOf(interpreter, size, isNew ? Size{0, 0} : value->size());
  const std::size_t offset = isNew ? 0 : value->elementCount();
  for (std::size_t at = 0; at < targets.size(); ++at) origins[targets[at]] = offset + (count == 1 ? 0 : at);
  return elementsAt(interpreter, *all, origins, size);
}

std::size_t lastIndex(const Value& value, std::size_t place, std::size_t count) {
  return folded(value.size(), count)[place];
}

ValuePtr transposed(Interpreter& interpreter, const Value& value) {
  if (value.size().size() > 2)
    interpreter.fail("KORVAL:code:SizeMismatch", "Only a matrix can be transposed");
  const std::size_t count = value.elementCount();
  interpreter.checkSize(value.size());
  Positions elements;
  elements.reserve(count);
  // By elements, not by rows and columns: an empty matrix may have as many of these as it likes.
  for (std::size_t at = 0; at < count; ++at)
    elements.push_back(at / value.columns() + at % value.columns() * value.rows());
  return elementsAt(interpreter, value, elements, {value.columns(), value.rows()});
}

}  // namespace embedded
