// documentSymbols, workspaceSymbols: see Requests.h

#include <algorithm>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <nlohmann/json.hpp>
#include <tuple>

#include "frontend/Completion.h"
#include "tools/lsp/Requests.h"
#include "tools/render/Text.h"

namespace tools::lsp {

namespace {

using boost::algorithm::join;
using embedded::CodeFunction;
using embedded::CodeVariable;

enum class SymbolKind { Class = 5, Function = 12, Variable = 13 };

/// "[a, b] = name(x)"
std::string headOf(const CodeFunction& function) {
  const auto& outputs = function.outputs;
  std::string head =
      outputs.size() > 1 ? "[" + join(outputs, ", ") + "] = " : (outputs.empty() ? "" : outputs[0] + " = ");
  return head + function.name + "(" + join(function.inputs, ", ") + ")";
}

/// Makes symbols of a document, as a tree or as a list.
class DocumentSymbols {
 public:
  /// Of a request that is cancelled the rest is left out: nobody reads it.
  DocumentSymbols(OpenDocument& document, const embedded::Host& host)
      : host_(host), content_(document.content), isPlain_(content_.isPlain()), outline_(document.outline()) {}

  Json tree() const {
    Json symbols = treeOf(outline_.variables);
    for (const CodeFunction& function : outline_.functions) {
      if (host_.interruptRequested()) break;
      Json symbol = {
          {"name", labelOf(function)}, {"kind", SymbolKind::Function}, {"detail", headOf(function)}};
      symbol["range"] = jsonOf(rangeOf(function.begin, function.end));
      symbol["selectionRange"] = jsonOf(rangeOf(function.nameAt, function.name.size()));
      symbol["children"] = treeOf(function.variables);
      symbols.push_back(std::move(symbol));
    }
    return symbols;
  }

  Json list(const std::string& uri) const {
    Json symbols = Json::array();
    for (const CodeVariable& variable : outline_.variables) {
      if (host_.interruptRequested()) break;
      symbols.push_back(
          entry(uri, variable.name, SymbolKind::Variable, rangeOf(variable.at, variable.name.size())));
    }
    for (const CodeFunction& function : outline_.functions) {
      if (host_.interruptRequested()) break;
      symbols.push_back(
          entry(uri, labelOf(function), SymbolKind::Function, rangeOf(function.begin, function.end)));
    }
    return symbols;
  }

  static Json entry(const std::string& uri, const std::string& name, SymbolKind kind, const Range& range) {
    return {{"name", name}, {"kind", kind}, {"location", {{"uri", uri}, {"range", jsonOf(range)}}}};
  }

 private:
  /// Of a function that has no name yet; the protocol requires one.
  static std::string labelOf(const CodeFunction& function) {
    return function.name.empty() ? "function" : function.name;
  }

  Json treeOf(const std::vector<CodeVariable>& variables) const {
    Json symbols = Json::array();
    for (const CodeVariable& variable : variables) {
      if (host_.interruptRequested()) break;
      const Json range = jsonOf(rangeOf(variable.at, variable.name.size()));
      symbols.push_back({{"name", variable.name},
                         {"kind", SymbolKind::Variable},
                         {"range", range},
                         {"selectionRange", range}});
    }
    return symbols;
  }

  Range rangeOf(const syntax::Position& begin, const syntax::Position& end) const {
    return {positionOf(begin), positionOf(end)};
  }
  Range rangeOf(const syntax::Position& begin, std::size_t length) const {
    return rangeOf(begin, {begin.line, begin.column + static_cast<int>(length)});
  }
  ProtocolPosition positionOf(const syntax::Position& at) const {
    // Looking for a line takes far longer than all else that a symbol needs.
    if (isPlain_) return {static_cast<std::uint64_t>(at.line) - 1, static_cast<std::uint64_t>(at.column) - 1};
    return content_.positionOf(content_.offsetInCode(at));
  }

  const embedded::Host& host_;
  const Document& content_;
  const bool isPlain_;
  const embedded::CodeOutline& outline_;
};

struct Found {
  frontend::Match match;
  std::u16string name;
  SymbolKind kind;
};

/// The better of how a text fits a whole dotted name and its last part.
frontend::Match matchOf(const std::u16string& typed, const std::u16string& name) {
  return std::min(frontend::matchOf(typed, name),
                  frontend::matchOf(typed, name.substr(name.rfind(u'.') + 1)));
}

/// For people who look for a name, it is enough that it has the text somewhere.
bool fits(const std::u16string& typed, const Found& found) {
  return found.match != frontend::Match::None ||
         boost::algorithm::icontains(narrow(found.name), narrow(typed));
}

}  // namespace

Json documentSymbols(Context& context, const Json& params) {
  const std::string uri = textAt(params, "/textDocument/uri");
  OpenDocument* document = context.documents.find(uri);
  // An editor may ask about a file that it has not opened here.
  if (document == nullptr || !document->isCode) return Json::array();
  const DocumentSymbols symbols(*document, context.session.host());
  return context.abilities.hierarchicalSymbols ? symbols.tree() : symbols.list(uri);
}

Json workspaceSymbols(Context& context, const Json& params) {
  const std::u16string typed = wideTextAt(params, "/query");
  std::vector<Found> found;
  const auto add = [&](const std::vector<frontend::SessionName>& names, SymbolKind kind) {
    for (const frontend::SessionName& known : names) {
      const Found each{matchOf(typed, known.name), known.name, kind};
      if (!known.hidden && fits(typed, each)) found.push_back(each);
    }
  };
  add(context.session.session().classNames(), SymbolKind::Class);
  add(context.session.session().functionNames(), SymbolKind::Function);
  std::sort(found.begin(), found.end(), [](const Found& left, const Found& right) {
    return std::tie(left.match, left.name, left.kind) < std::tie(right.match, right.name, right.kind);
  });
  // After sorting, so that the best ones stay.
  found.resize(std::min(found.size(), context.abilities.limit));
  Json symbols = Json::array();
  for (const Found& each : found) {
    symbols.push_back(
        // Classes have no place of their own but the snapshot.
        DocumentSymbols::entry(uriOf(context.session.file()), narrow(each.name), each.kind, {}));
  }
  return symbols;
}

}  // namespace tools::lsp
