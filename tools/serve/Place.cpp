#include <algorithm>
#include <boost/locale/encoding_utf.hpp>
#include <set>

#include "tools/serve/Spot.h"
#include "tools/serve/Uri.h"

namespace tools::serve {

namespace {

using frontend::LocalName;
using frontend::Place;

std::u16string wide(const std::string& text) { return boost::locale::conv::utf_to_utf<char16_t>(text); }

/// Names of classes as code of a namespace writes them.
class ClassNames {
 public:
  ClassNames(frontend::Session& session, std::u16string inNamespace) : inNamespace_(std::move(inNamespace)) {
    for (frontend::SessionName& known : session.classNames()) names_.insert(std::move(known.name));
  }

  /// The class as users name it; empty when there is none.
  std::u16string find(const std::string& name) const {
    const std::u16string plain = wide(name);
    const std::u16string inside = inNamespace_ + plain;
    if (names_.contains(inside)) return inside;
    return names_.contains(plain) ? plain : std::u16string();
  }

 private:
  const std::u16string inNamespace_;
  std::set<std::u16string> names_;
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

const embedded::CodeFunction* functionAt(const OpenDocument& document, const embedded::CodeOutline& outline,
                                         std::size_t offset) {
  const auto offsetOf = [&](embedded::CodePlace place) {
    return document.content.offsetInCode(place.line, place.column);
  };
  for (const embedded::CodeFunction& function : outline.functions) {
    if (offset >= offsetOf(function.begin) && offset <= offsetOf(function.end)) return &function;
  }
  return nullptr;
}

std::vector<LocalName> namesOf(const std::vector<embedded::CodeVariable>& variables,
                               const ClassNames& classes) {
  std::vector<LocalName> names;
  for (const embedded::CodeVariable& variable : variables) {
    names.push_back(
        {wide(variable.name), variable.maker.empty() ? std::u16string() : classes.find(variable.maker)});
  }
  return names;
}

/// Arguments, results and variables. A method is given its object first, a constructor makes it.
std::vector<LocalName> namesIn(const embedded::CodeFunction& function, const FileName& file,
                               const ClassNames& classes) {
  std::vector<LocalName> names;
  const std::u16string simpleName = file.className.substr(file.className.rfind(u'.') + 1);
  const bool isConstructor = file.stem == simpleName;
  for (const std::string& input : function.inputs) {
    names.push_back({wide(input), names.empty() && !isConstructor ? file.className : std::u16string()});
  }
  for (const std::string& output : function.outputs) {
    names.push_back({wide(output), isConstructor && output == function.outputs.front() ? file.className
                                                                                       : std::u16string()});
  }
  const auto variables = namesOf(function.variables, classes);
  names.insert(names.end(), variables.begin(), variables.end());
  return names;
}

/// One entry a name: the first one that tells the class, or the first one.
std::vector<LocalName> onceEach(const std::vector<LocalName>& names) {
  std::vector<LocalName> once;
  for (const LocalName& name : names) {
    const auto same = [&](const LocalName& known) { return known.name == name.name; };
    const auto known = std::find_if(once.begin(), once.end(), same);
    if (known == once.end()) {
      once.push_back(name);
    } else if (known->className.empty()) {
      known->className = name.className;
    }
  }
  return once;
}

/// A script works on the variables that are there: they are known better than what the script says of them.
std::vector<LocalName> newNames(frontend::Session& session, std::vector<LocalName> names) {
  const std::vector<std::u16string> known = session.variableNames();
  std::erase_if(names, [&](const LocalName& name) {
    return name.className.empty() && std::find(known.begin(), known.end(), name.name) != known.end();
  });
  return names;
}

}  // namespace

Place placeIn(frontend::Session& session, const std::string& uri, OpenDocument& document,
              std::size_t offset) {
  const FileName file(pathOf(uri));
  const ClassNames classes(session, file.inNamespace);
  const embedded::CodeOutline& outline = document.outline();
  Place place;
  place.className = file.className;
  if (!file.stem.empty() && file.className.empty()) place.function = file.inNamespace + file.stem;
  place.workspace = outline.functions.empty();
  if (const auto* function = functionAt(document, outline, offset)) {
    place.locals = onceEach(namesIn(*function, file, classes));
  } else {
    place.locals = newNames(session, onceEach(namesOf(outline.variables, classes)));
  }
  return place;
}

}  // namespace tools::serve
