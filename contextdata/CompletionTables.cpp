#include <contextdata/KCOSContextData/CompletionTables.h>

namespace KCOSContextData {

using NameSet = std::set<std::u16string>;

NameSet getKCOSMethodsExcludeSet() {
  static const NameSet names{u"plus",       u"uplus",     u"minus",     u"uminus",  u"mtimes", u"times",
                             u"mrdivide",   u"rdivide",   u"mldivide",  u"ldivide", u"mpower", u"power",
                             u"ctranspose", u"transpose", u"lt",        u"le",      u"gt",     u"ge",
                             u"eq",         u"ne",        u"and",       u"or",      u"not",    u"colon",
                             u"subsref",    u"subsasgn",  u"subsindex", u"horzcat", u"vertcat"};
  return names;
}

NameSet getVX2KorvalNamespacesExcludeSet() {
  static const NameSet names{u"ui", u"uitools", u"graphics"};
  return names;
}

NameSet getVX2NamespacesExcludeSet() {
  static const NameSet names{u"korval.ui", u"korval.uitools", u"korval.graphics", u"chartMixin",  u"vx2",
                             u"vx2sample", u"vx2utils",       u"internal",        u"specgraphTwo"};
  return names;
}

NameSet getNoDotMethodClassesExcludeSet() {
  static const NameSet names{u"table",
                             u"timetable",
                             u"collection",
                             u"timetableCollection",
                             u"tall",
                             u"korval.mixin.internal.indexing.DisallowCompletionOfDotMethodNames",
                             u"korval.tabular.CustomProperties",
                             u"korval.tabular.TableProperties",
                             u"korval.tabular.TimetableProperties",
                             u"korval.tabular.TallTimetableProperties",
                             u"distributed",
                             u"codistributed",
                             u"groupedData",
                             u"dataset",
                             u"korval.io.KorFile",
                             u"categorical",
                             u"datetime",
                             u"duration",
                             u"calendarDuration"};
  return names;
}

const std::vector<std::string>& getAttributesToTreatAsHavingCustomGetters() {
  static const std::vector<std::string> names{"QRDGetSet"};
  return names;
}

}  // namespace KCOSContextData
