#include "tools/query/Rendering.h"

namespace tools::query {

namespace {

template <class Texts>
Json listOf(const Texts& texts) {
  Json list = Json::array();
  for (const auto& text : texts) list.push_back(jsonOf(text));
  return list;
}

}  // namespace

Json render(bool answer) { return answer; }

Json render(const std::u16string& text) { return jsonOf(text); }

Json render(const std::vector<std::u16string>& texts) { return listOf(texts); }

Json render(const std::vector<std::string>& texts) { return listOf(texts); }

Json render(const std::set<std::u16string>& texts) { return listOf(texts); }

Json render(const KCOSContextData::ResolvedClassID& id) {
  const kcos::COSInternedName& name = id;
  return jsonOf(name.text());
}

Json render(const KCOSContextData::ResolvedClassID::DebuggerFocus& focus) {
  return {{"name", jsonOf(focus.name)}, {"first", focus.first}, {"second", focus.second}};
}

Json render(kcos::COSClass* found) { return found == nullptr ? Json() : jsonOf(found->getID().text()); }

Json render(kcos::COSInterface* found) {
  const kcos::COSNamespace* space = kcos::cosiToNamespace(found);
  return space == nullptr ? Json() : jsonOf(std::string(space->getDottedName()));
}

}  // namespace tools::query
