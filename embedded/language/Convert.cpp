#include "embedded/language/Convert.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "embedded/model/Unicode.h"

namespace embedded {

namespace {

[[noreturn]] void failKind(Interpreter& interpreter, const std::string& expected, const Value& value) {
  interpreter.fail("KORVAL:code:WrongType",
                   expected + " is needed here, not a value of class \"" + value.className() + "\"");
}

template <class Element>
std::vector<Element> picked(Interpreter& interpreter, const std::vector<Element>& from,
                            const std::vector<std::size_t>& elements) {
  std::vector<Element> result;
  result.reserve(elements.size());
  for (const std::size_t element : elements) {
    interpreter.pollAt(result.size());
    result.push_back(element == noElement ? Element() : static_cast<Element>(from.at(element)));
  }
  return result;
}

struct ElementsAt {
  Interpreter& interpreter;
  const std::vector<std::size_t>& elements;
  const Value& value;

  Value::Content operator()(const std::vector<double>& from) const {
    return picked(interpreter, from, elements);
  }
  Value::Content operator()(const std::vector<bool>& from) const {
    return picked(interpreter, from, elements);
  }
  Value::Content operator()(const std::u16string& from) const {
    std::u16string result;
    result.reserve(elements.size());
    for (const std::size_t element : elements) result += element == noElement ? u'\0' : from.at(element);
    return result;
  }
  Value::Content operator()(const Strings& from) const {
    // Texts are copied, so their lengths count, not only how many they are.
    std::size_t length = 0;
    for (const std::size_t element : elements)
      if (element != noElement && from.elements.at(element)) length += from.elements[element]->size();
    interpreter.checkSize({length});
    interpreter.checkSize({elements.size()}, sizeof(std::optional<std::u16string>));
    return Strings{picked(interpreter, from.elements, elements)};
  }
  Value::Content operator()(const Cells& from) const {
    return Cells{picked(interpreter, from.elements, elements)};
  }
  Value::Content operator()(const Structures& from) const {
    interpreter.checkSize({elements.size(), from.fields.size()});
    Structures result{from.fields, {}, from.className};
    result.values.reserve(elements.size() * from.fields.size());
    for (const std::size_t element : elements)
      for (std::size_t field = 0; field < from.fields.size(); ++field)
        result.values.push_back(element == noElement ? nullptr
                                                     : from.values.at(element * from.fields.size() + field));
    return result;
  }
  Value::Content operator()(const Objects& from) const { return objects(from.elements); }
  Value::Content operator()(const ScalarKind auto& from) const {
    // The count is in the value itself, so a pointer can be made of one that others hold.
    if (value.object() != nullptr || value.opaque() != nullptr) return objects({ValuePtr(&value)});
    if (elements.size() != 1) failKind(interpreter, "A value that can be an array", value);
    return from;
  }

  Objects objects(const std::vector<ValuePtr>& from) const {
    // No object could stand for one that is missing, as 0 or an absent cell does elsewhere.
    if (std::ranges::find(elements, noElement) != elements.end())
      interpreter.fail("KORVAL:code:SizeMismatch",
                       "An array of objects cannot grow by elements that are not given");
    return {picked(interpreter, from, elements), value.className(), value.classId()};
  }
};

/// How strongly a kind claims the kind of the whole; values of one rank and kind stand beside each other.
enum Rank { Logicals, Doubles, Characters, StringArrays, Structs, ObjectArrays, CellArrays, Others };

struct RankOf {
  Rank operator()(const std::vector<bool>&) const { return Logicals; }
  Rank operator()(const std::vector<double>&) const { return Doubles; }
  Rank operator()(const std::u16string&) const { return Characters; }
  Rank operator()(const Strings&) const { return StringArrays; }
  Rank operator()(const Structures&) const { return Structs; }
  Rank operator()(const Object&) const { return ObjectArrays; }
  Rank operator()(const Opaque&) const { return ObjectArrays; }
  Rank operator()(const Objects&) const { return ObjectArrays; }
  Rank operator()(const Cells&) const { return CellArrays; }
  Rank operator()(const ScalarKind auto&) const { return Others; }
};

Rank rankOf(const Value& value) { return std::visit(RankOf(), value.content()); }

ValuePtr asObjects(Interpreter& interpreter, const ValuePtr& value, const std::string& className) {
  if (value->className() != className)
    failKind(interpreter, "An object of class \"" + className + "\"", *value);
  return value->as<Objects>() ? value : newValue({1, 1}, Objects{{value}, className, value->classId()});
}

ValuePtr asRank(Interpreter& interpreter, Rank rank, const ValuePtr& value, const Value& model) {
  // Also for logicals beside numbers: the whole has one kind, and the stronger one wins.
  if (rank == Doubles) return newValue(value->size(), numbersOf(interpreter, *value));
  if (rank == Characters) return asCharacters(interpreter, value);
  if (rank == StringArrays) return asStrings(interpreter, value);
  if (rank == ObjectArrays) return asObjects(interpreter, value, model.className());
  // Whole, not element by element: an array beside a cell is one element of the whole.
  if (rank == CellArrays && !value->as<Cells>()) return newValue({1, 1}, Cells{{value}});
  if (rank == Others || (rank == Structs && !value->as<Structures>()))
    failKind(interpreter, "A value that can stand in an array with its neighbours", *value);
  return value;
}

struct Appender {
  Interpreter& interpreter;
  Value::Content& all;

  template <class Element>
  void operator()(const std::vector<Element>& more) const {
    auto& elements = std::get<std::vector<Element>>(all);
    elements.insert(elements.end(), more.begin(), more.end());
  }
  void operator()(const std::u16string& more) const { std::get<std::u16string>(all) += more; }
  void operator()(const Strings& more) const { append(std::get<Strings>(all).elements, more.elements); }
  void operator()(const Cells& more) const { append(std::get<Cells>(all).elements, more.elements); }
  void operator()(const Objects& more) const { append(std::get<Objects>(all).elements, more.elements); }
  void operator()(const Structures& more) const {
    auto& structures = std::get<Structures>(all);
    if (structures.fields.size() != more.fields.size() || structures.className != more.className) refuse();
    interpreter.step(more.fields.size());
    if (structures.fields == more.fields) return append(structures.values, more.values);
    interpreter.step(more.fields.size() * more.fields.size());
    // The fields may come in another order; that of the first structure stays.
    std::vector<std::size_t> places;
    for (const std::string& field : structures.fields) {
      const auto found = std::ranges::find(more.fields, field);
      if (found == more.fields.end()) refuse();
      places.push_back(static_cast<std::size_t>(found - more.fields.begin()));
    }
    for (std::size_t at = 0; at < more.values.size(); ++at)
      structures.values.push_back(more.values[at - at % places.size() + places[at % places.size()]]);
  }
  void operator()(const ScalarKind auto&) const {
    interpreter.fail("KORVAL:code:WrongType", "Such values cannot stand in an array");
  }

  [[noreturn]] void refuse() const {
    interpreter.fail("KORVAL:code:WrongType", "The structures of one array need the same fields");
  }
  template <class Element>
  static void append(std::vector<Element>& all, const std::vector<Element>& more) {
    all.insert(all.end(), more.begin(), more.end());
  }
};

/// Room for so many elements, lest the list grow to twice of what it needs.
struct Reserver {
  Interpreter& interpreter;
  std::size_t count;

  template <class Element>
  void operator()(std::vector<Element>& elements) const {
    interpreter.requireMemory(count * sizeof(Element));
    elements.reserve(count);
  }
  void operator()(std::vector<bool>& logicals) const { logicals.reserve(count); }
  void operator()(std::u16string& text) const { text.reserve(count); }
  void operator()(Strings& strings) const { (*this)(strings.elements); }
  void operator()(Cells& cells) const { (*this)(cells.elements); }
  void operator()(Objects& objects) const { (*this)(objects.elements); }
  void operator()(Structures& structures) const {
    Reserver{interpreter, count * structures.fields.size()}(structures.values);
  }
  void operator()(ScalarKind auto&) const {}
};

/// A row of the result: its pieces and its extents.
struct Row {
  Values pieces;
  std::size_t height = 0;
  std::size_t width = 0;
};

bool isEmpty(const ValuePtr& value) { return value->elementCount() == 0; }

/// Before anything is copied: few values can be many elements and long texts, for the same one may stand there often.
void checkTogether(Interpreter& interpreter, const Values& pieces) {
  Rank rank = Logicals;
  for (const ValuePtr& piece : pieces) rank = std::max(rank, rankOf(*piece));
  std::size_t count = 0;
  std::size_t length = 0;
  for (const ValuePtr& piece : pieces) {
    const auto* text = piece->as<std::u16string>();
    const auto* strings = piece->as<Strings>();
    // Beside a cell an array is one element, beside strings a text is one.
    const bool isOne =
        (rank == CellArrays && !piece->as<Cells>()) || (rank == StringArrays && text != nullptr);
    count += isOne ? 1 : piece->elementCount();
    if (rank == StringArrays) length += text ? text->size() : strings ? lengthOf(*strings) : 0;
    interpreter.checkCount(std::max(count, length));
  }
  interpreter.checkSize({length});
  interpreter.checkSize({count},
                        rank == StringArrays ? sizeof(std::optional<std::u16string>) : sizeof(double));
}

Values flattened(const std::vector<Values>& rows) {
  Values all;
  for (const Values& row : rows) all.insert(all.end(), row.begin(), row.end());
  return all;
}

Row measured(Interpreter& interpreter, Values pieces) {
  Row row{std::move(pieces)};
  row.height = row.pieces.front()->rows();
  for (const ValuePtr& piece : row.pieces) {
    if (piece->rows() != row.height)
      interpreter.fail("KORVAL:code:SizeMismatch", "Values of " + std::to_string(row.height) + " and " +
                                                       std::to_string(piece->rows()) +
                                                       " rows cannot stand side by side");
    row.width += piece->columns();
  }
  return row;
}

/// The rows that hold something, of pieces of one kind.
std::vector<Row> unifiedRows(Interpreter& interpreter, const std::vector<Values>& rows, Values& pieces) {
  // What is empty says nothing here, not even about the kind.
  std::erase_if(pieces, isEmpty);
  pieces = unified(interpreter, std::move(pieces));
  std::vector<Row> result;
  auto next = pieces.begin();
  for (const Values& row : rows) {
    // The unified pieces are one list, which is cut into rows again.
    const auto end = next + (std::ssize(row) - std::ranges::count_if(row, isEmpty));
    if (next != end) result.push_back(measured(interpreter, Values(next, end)));
    next = end;
  }
  return result;
}

/// Where each element of the result comes from among the elements of all pieces.
std::vector<std::size_t> originsOf(Interpreter& interpreter, const std::vector<Row>& rows, std::size_t height,
                                   std::size_t width) {
  std::vector<std::size_t> origins(height * width);
  std::size_t top = 0;
  std::size_t next = 0;
  for (const Row& row : rows) {
    std::size_t left = 0;
    for (const ValuePtr& piece : row.pieces) {
      for (std::size_t element = 0; element < piece->elementCount(); ++element) {
        // From 1 on: at 0 it would be a step for each piece, however small.
        interpreter.pollAt(element + 1);
        origins[top + element % row.height + (left + element / row.height) * height] = next++;
      }
      left += piece->columns();
    }
    top += row.height;
  }
  return origins;
}

}  // namespace

std::vector<double> numbersOf(Interpreter& interpreter, const Value& value) {
  interpreter.step(value.elementCount());
  if (const auto* numbers = value.as<std::vector<double>>()) return *numbers;
  if (const auto* logicals = value.as<std::vector<bool>>()) return {logicals->begin(), logicals->end()};
  if (const auto* text = value.as<std::u16string>()) return {text->begin(), text->end()};
  failKind(interpreter, "A number", value);
}

double numberOf(Interpreter& interpreter, const Value& value) {
  if (value.elementCount() != 1) failKind(interpreter, "One number", value);
  return numbersOf(interpreter, value).front();
}

bool isText(const Value& value) noexcept {
  if (const auto* text = value.as<std::u16string>()) return text->empty() || value.rows() == 1;
  const auto* strings = value.as<Strings>();
  return strings != nullptr && value.elementCount() == 1 && strings->elements.front();
}

std::size_t lengthOf(const Strings& strings) noexcept {
  std::size_t length = 0;
  for (const auto& text : strings.elements) length += text ? text->size() : 0;
  return length;
}

const std::u16string& textOf(Interpreter& interpreter, const Value& value) {
  if (!isText(value)) failKind(interpreter, "A text", value);
  const auto* row = value.as<std::u16string>();
  const std::u16string& text = row != nullptr ? *row : *value.as<Strings>()->elements.front();
  interpreter.step(text.size());
  return text;
}

std::string narrowTextOf(Interpreter& interpreter, const Value& value) {
  return narrowed(textOf(interpreter, value));
}

bool isTrue(Interpreter& interpreter, const Value& value) {
  const std::vector<double> numbers = numbersOf(interpreter, value);
  // NaN is not zero, and so it is true.
  return !numbers.empty() && std::ranges::find(numbers, 0.0) == numbers.end();
}

char16_t characterOf(double code) noexcept {
  // Written so that NaN is caught: converting it, or a number that is out of range, would be undefined.
  if (!(code > 0)) return 0;
  return static_cast<char16_t>(std::min(code, 65535.0));
}

std::string shownNumber(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number < 0 ? "-Inf" : "Inf";
  char text[64];
  // A negative zero is shown as any other.
  const auto end = std::to_chars(text, text + sizeof text, number == 0 ? 0 : number).ptr;
  return {text, end};
}

Value::Size withoutTrailingOnes(Value::Size size) {
  while (size.size() > 2 && size.back() == 1) size.pop_back();
  return size;
}

ValuePtr asStrings(Interpreter& interpreter, const ValuePtr& value) {
  if (value->as<Strings>()) return value;
  if (value->as<std::u16string>()) return newString(textOf(interpreter, *value));
  interpreter.checkSize(value->size(), sizeof(std::optional<std::u16string>));
  Strings strings;
  strings.elements.reserve(value->elementCount());
  for (const double number : numbersOf(interpreter, *value)) {
    interpreter.pollAt(strings.elements.size());
    strings.elements.emplace_back(widened(shownNumber(number)));
  }
  return newValue(value->size(), std::move(strings));
}

ValuePtr asCharacters(Interpreter& interpreter, const ValuePtr& value) {
  if (value->as<std::u16string>()) return value;
  std::u16string text;
  text.reserve(value->elementCount());
  for (const double number : numbersOf(interpreter, *value)) text += characterOf(number);
  return newValue(value->size(), std::move(text));
}

ValuePtr elementsAt(Interpreter& interpreter, const Value& value, const std::vector<std::size_t>& elements,
                    Value::Size size) {
  Value::Content content = std::visit(ElementsAt{interpreter, elements, value}, value.content());
  // One object is an object, not an array of one.
  if (auto* objects = std::get_if<Objects>(&content); objects != nullptr && elements.size() == 1)
    return objects->elements.front();
  return newValue(withoutTrailingOnes(std::move(size)), std::move(content));
}

Values unified(Interpreter& interpreter, Values values) {
  const Value* model = values.front().get();
  for (const ValuePtr& value : values)
    if (rankOf(*value) > rankOf(*model)) model = value.get();
  const Rank rank = rankOf(*model);
  // Keeps the model, for the element that it comes from may be replaced below.
  const ValuePtr kept(model);
  for (std::size_t at = 0; at < values.size(); ++at) {
    interpreter.pollAt(at);
    // Objects of one rank may still be of different classes, which asRank() refuses.
    if (rankOf(*values[at]) != rank || rank >= ObjectArrays)
      values[at] = asRank(interpreter, rank, values[at], *kept);
  }
  return values;
}

ValuePtr joined(Interpreter& interpreter, const Values& unifiedValues) {
  std::size_t count = 0;
  for (const ValuePtr& value : unifiedValues) count += value->elementCount();
  Value::Content all = unifiedValues.front()->content();
  std::visit(Reserver{interpreter, count}, all);
  for (std::size_t at = 1; at < unifiedValues.size(); ++at) {
    interpreter.pollAt(at);
    std::visit(Appender{interpreter, all}, unifiedValues[at]->content());
  }
  return newValue({1, count}, std::move(all));
}

ValuePtr concatenated(Interpreter& interpreter, const std::vector<Values>& rows) {
  Values pieces = flattened(rows);
  if (pieces.empty()) return newEmpty();
  checkTogether(interpreter, pieces);
  // Nothing but the kind is left of empty values: an empty text among them makes an empty text.
  if (std::ranges::all_of(pieces, isEmpty)) return unified(interpreter, std::move(pieces)).front();
  const std::vector<Row> all = unifiedRows(interpreter, rows, pieces);
  const std::size_t width = all.front().width;
  std::size_t height = 0;
  for (const Row& row : all) {
    if (row.width != width)
      interpreter.fail("KORVAL:code:SizeMismatch", "The rows have " + std::to_string(width) + " and " +
                                                       std::to_string(row.width) + " columns");
    height += row.height;
  }
  // In one row the elements stand in their order already; but one object alone is no array.
  if (height == 1 && width > 1) return joined(interpreter, pieces);
  return elementsAt(interpreter, *joined(interpreter, pieces), originsOf(interpreter, all, height, width),
                    {height, width});
}

}  // namespace embedded
