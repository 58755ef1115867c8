#include "tools/lsp/StatementAtCursor.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "syntax/Characters.h"
#include "tools/render/Text.h"

namespace tools::lsp {

namespace {

using embedded::CodeFunction;
using frontend::LocalName;
using frontend::Scope;

/// Names of classes as code of a namespace writes them; asked for when the first one is needed.
class ClassNames {
 public:
  ClassNames(frontend::Session& session, std::u16string inNamespace, const std::vector<std::string>& imports)
      : session_(session), inNamespace_(std::move(inNamespace)), imports_(imports) {}

  /// The class as users name it; empty when there is none.
  std::u16string find(const std::string& name) {
    if (name.empty()) return {};
    if (known_.empty()) {
      known_ = session_.classNames();
      names_.reserve(known_.size());
      for (const frontend::SessionName& known : known_) names_.insert(known.name);
    }
    for (const std::string& import : imports_) {
      const std::size_t dot = import.rfind('.') + 1;
      const bool isMeant = import.ends_with(".*") || import.substr(dot) == name;
      if (const auto whole = wide(import.substr(0, dot) + name); isMeant && names_.contains(whole))
        return whole;
    }
    const std::u16string plain = wide(name);
    const std::u16string inside = inNamespace_ + plain;
    if (names_.contains(inside)) return inside;
    return names_.contains(plain) ? plain : std::u16string();
  }

 private:
  frontend::Session& session_;
  const std::u16string inNamespace_;
  const std::vector<std::string>& imports_;
  std::vector<frontend::SessionName> known_;
  /// Views of them: there may be many, and copies would take longer than all else that a key needs.
  std::unordered_set<std::u16string_view> names_;
};

/// What folders say: ".../+lab/@Pump/start.k" is code of the class lab.Pump, ".../+lab/tune.k" the function lab.tune.
struct FileName {
  explicit FileName(const std::filesystem::path& file) : stem(wide(file.stem().string())) {
    auto folder = file.parent_path();
    const std::string last = folder.filename().string();
    if (last.starts_with('@')) {
      className = wide(last.substr(1));
      folder = folder.parent_path();
    }
    for (std::string name = folder.filename().string(); name.starts_with('+');
         folder = folder.parent_path(), name = folder.filename().string()) {
      inNamespace.insert(0, wide(name.substr(1)) + u".");
    }
    if (!className.empty()) className.insert(0, inNamespace);
  }

  std::u16string stem;
  std::u16string className;
  /// With its dot, or empty.
  std::u16string inNamespace;
};

/// An open document, from its beginning to a position.
struct Beginning {
  syntax::Position end;

  bool has(const syntax::Position& position) const {
    return std::tie(position.line, position.column) < std::tie(end.line, end.column);
  }
};

/// The function that a statement at the end belongs to.
const CodeFunction* functionAt(const Beginning& beginning, const std::vector<CodeFunction>& functions) {
  const CodeFunction* found = nullptr;
  for (const CodeFunction& function : functions) {
    if (beginning.has(function.begin) && !beginning.has(function.end)) found = &function;
  }
  return found;
}

std::vector<LocalName> namesOf(const std::vector<embedded::CodeVariable>& variables,
                               const Beginning& beginning, ClassNames& classes) {
  std::vector<LocalName> names;
  for (const embedded::CodeVariable& variable : variables) {
    if (!beginning.has(variable.at)) continue;
    names.push_back({wide(variable.name), classes.find(variable.maker)});
  }
  return names;
}

/// Arguments, results and variables. A method is given its object first, a constructor makes it.
std::vector<LocalName> namesIn(const CodeFunction& function, const std::vector<LocalName>& variables,
                               const FileName& file) {
  std::vector<LocalName> names;
  const std::u16string simpleName = file.className.substr(file.className.rfind(u'.') + 1);
  // Of the class "@Pump" it is "Pump.k".
  const bool isConstructor = file.stem == simpleName;
  for (const std::string& input : function.inputs) {
    names.push_back({wide(input), names.empty() && !isConstructor ? file.className : std::u16string()});
  }
  for (const std::string& output : function.outputs) {
    names.push_back({wide(output), isConstructor && output == function.outputs.front() ? file.className
                                                                                       : std::u16string()});
  }
  names.insert(names.end(), variables.begin(), variables.end());
  return names;
}

/// One entry a name: where it stands first, with the first class that is told.
std::vector<LocalName> onceEach(const std::vector<LocalName>& names) {
  std::vector<LocalName> once;
  std::map<std::u16string, std::size_t> places;
  for (const LocalName& name : names) {
    const auto [place, isNew] = places.insert({name.name, once.size()});
    if (isNew) {
      once.push_back(name);
    } else if (once[place->second].className.empty()) {
      once[place->second].className = name.className;
    }
  }
  return once;
}

/// A script works on the variables that are there: they are known better than what the script says of them.
std::vector<LocalName> newNames(frontend::Session& session, std::vector<LocalName> names) {
  const std::vector<std::u16string> list = session.variableNames();
  const std::set<std::u16string> known(list.begin(), list.end());
  std::erase_if(names,
                [&](const LocalName& name) { return name.className.empty() && known.contains(name.name); });
  return names;
}

/// Lines before a statement that are looked at when nobody has read the whole document since it was changed.
constexpr std::size_t nearLines = 200;

/// What the lines before a statement give values to.
std::vector<LocalName> namesNear(const Document& content, std::size_t statement, ClassNames& classes) {
  const std::size_t line = content.lineNumberAt(statement);
  const std::size_t begin = content.lineStart(line > nearLines ? line - nearLines : 0);
  const embedded::CodeOutline outline = embedded::outlineOf(content.slice(begin, statement));
  std::vector<LocalName> names;
  for (const embedded::CodeVariable& variable :
       outline.functions.empty() ? outline.variables : outline.functions.back().variables)
    names.push_back({wide(variable.name), classes.find(variable.maker)});
  return names;
}

/// What the front end is going to look for among the names of the code.
struct Wanted {
  /// Names in the statement, and another one that is asked about.
  std::vector<std::string> words;
  /// What stands before the cursor of the beginning of a name.
  std::string typed;
  /// How many candidates there can be.
  std::size_t limit = 0;
};

/// Whose code a document is, as far as its name and its text tell. Variables count that have been given a value before
/// the statement, which begins at the offset.
Scope scopeOf(frontend::Session& session, const std::string& uri, OpenDocument& document,
              std::size_t statement, const Wanted& wanted) {
  const FileName file(pathOf(uri));
  const embedded::CodeOutline& outline = document.outlineAtHand();
  ClassNames classes(session, file.inNamespace, outline.imports);
  const Beginning beginning{document.content.positionInCode(statement)};
  Scope scope;
  scope.className = file.className;
  const std::u16string outer = file.className.empty() ? file.inNamespace : file.className + u".";
  if (!file.stem.empty()) scope.function = outer + file.stem;
  // A document without a file can import, too, and is then a scope under its own name.
  if (file.stem.empty() && !outline.imports.empty()) scope.function = wide(uri);
  // Only a script sees variables of the workspace.
  scope.workspace = outline.functions.empty();
  // One more than is shown tells that there are more; those that are in the workspace, too, are left out below.
  const std::size_t most = wanted.limit + 1 + (scope.workspace ? session.variableNames().size() : 0);
  const CodeFunction* const function = functionAt(beginning, outline.functions);
  const auto variables = document.variablesFor(function != nullptr ? function->variables : outline.variables,
                                               wanted.words, wanted.typed, most);
  scope.locals = namesOf(variables, beginning, classes);
  if (function != nullptr) scope.locals = namesIn(*function, scope.locals, file);
  if (document.isOutlineOld) {
    const auto near = namesNear(document.content, statement, classes);
    scope.locals.insert(scope.locals.end(), near.begin(), near.end());
  }
  scope.locals = onceEach(scope.locals);
  if (scope.workspace) scope.locals = newNames(session, std::move(scope.locals));
  return scope;
}

/// The names in a text.
std::vector<std::string> wordsOf(const std::u16string& text) {
  std::vector<std::string> words;
  for (auto at = text.begin(); at != text.end();) {
    const auto begin = std::find_if(at, text.end(), syntax::isNamePart);
    at = std::find_if_not(begin, text.end(), syntax::isNamePart);
    if (begin != at) words.push_back(narrow(std::u16string(begin, at)));
  }
  return words;
}

/// Statements of more lines are taken for broken ones.
constexpr std::size_t mostLines = 100;

/// The first line of the statement that a line belongs to: those before it end with "...".
std::size_t firstLineOf(const Document& content, std::size_t line) {
  std::size_t first = line;
  while (first > 0 && line - first < mostLines &&
         content.line(first - 1).find(u"...") != std::u16string_view::npos) {
    --first;
  }
  return first;
}

}  // namespace

std::optional<StatementAtCursor> statementAtCursor(Context& context, const Json& params) {
  const std::string uri = textAt(params, "/textDocument/uri");
  const ProtocolPosition position = positionAt(params, "/position");
  OpenDocument* document = context.documents.find(uri);
  if (document == nullptr) return {};
  const Document& content = document->content;
  const std::size_t offset = content.offsetOf(position);
  const std::size_t line = content.lineNumberAt(offset);
  StatementAtCursor statement;
  statement.document = document;
  statement.start = content.lineStart(firstLineOf(content, line));
  statement.text = content.slice(statement.start, content.lineEnd(line));
  statement.cursor = offset - statement.start;
  const auto typed = std::u16string_view(statement.text).substr(0, statement.cursor);
  const auto last = std::find_if_not(typed.rbegin(), typed.rend(), syntax::isNamePart);
  // Only an explanation is about a name that need not stand there.
  const std::u16string asked = hasAt(params, "/name") ? wideTextAt(params, "/name") : std::u16string();
  const Wanted wanted{wordsOf(statement.text + u' ' + asked),
                      narrow(std::u16string(last.base(), typed.end())), context.abilities.limit};
  statement.scope = scopeOf(context.session.session(), uri, *document, statement.start, wanted);
  statement.imports = document->outlineAtHand().imports;
  openScope(context, statement.scope, statement.imports);
  return statement;
}

void openScope(Context& context, const Scope& scope, const std::vector<std::string>& imports) {
  context.session.host().openCode(narrow(scope.function), imports);
}

}  // namespace tools::lsp
