#include <contextdata/PKXContextData.h>

#include "tests/faults/FaultLoop.h"
#include "tests/faults/FaultWorld.h"
#include "tests/support/Text.h"

namespace faults {

namespace {

constexpr const char* readProperty = "kxGetPropertyShared";

std::string packageStrings() {
  std::vector<std::u16string> names;
  const bool any = PKXContextData::getPackageStrings(u"old", names);
  return shownList(names) + " " + shown(any);
}

/// The folder is listed three times; whatever fails in a visit of the search path costs the names of that listing.
struct Listing {
  const char* hostOperation;
  std::size_t callsOfEach;
  std::size_t callsBefore = 0;
};

std::vector<Rule> ofListings() {
  const std::string left[] = {"A B f x.kexa64 Cls true", "A B f f.k Cls true", "A B f f.k x.kexa64 true"};
  std::vector<Rule> rules;
  for (const Listing& listing :
       {Listing{"KsearchPath::visitItems", 1}, Listing{"KpathItem::getService", 2},
        Listing{"KpathItem::getLocation", 2}, Listing{"KnameComparer::equal", 2},
        Listing{"foundation::storage::vfs::AbsoluteIRI::getName", 2}, Listing{"KpathItem::getKind", 1},
        Listing{"foundation::storage::vfs::CanonicalAbsoluteIRI::getParent", 1},
        Listing{"Kdispatcher::GetCurrentWorkingFolder", 1}, Listing{"KcurrentWorkingFolder::get", 1},
        Listing{"foundation::storage::vfs::Folder::getLocation", 1},
        Listing{"Tamsix::PathManagement::GetStringFromIRI", 1}, Listing{"fl::filesystem::status", 1},
        Listing{"ioGetDirList", 1}}) {
    for (std::size_t call = 0; call < 3 * listing.callsOfEach; ++call)
      rules.push_back(
          {listing.hostOperation, swallowedButInterrupt(left[call / listing.callsOfEach]), call + 1});
  }
  // The first dispatcher of a listing is asked for the path, the second, in the visit, for the current folder.
  for (std::size_t at = 0; at < 3; ++at)
    rules.push_back({"Kdispatcher::getDispatcher", swallowedButInterrupt(left[at]), 2 * at + 2});
  return rules;
}

}  // namespace

std::vector<Question> packageQuestions() {
  std::vector<Rule> ofStrings = ofListings();
  const std::string folders = "f.k x.kexa64 Cls true";
  // In the order of the reads: the classes, their names, the functions, their names.
  for (const char* left : {"f ", "B f ", "A f ", "A B ", "A B "})
    ofStrings.push_back({readProperty, swallowed(left + folders), 1});
  for (std::size_t at = ofStrings.size() - 5, call = 1; at < ofStrings.size(); ++at)
    ofStrings[at].call = call++;
  ofStrings.push_back({"*", passes});
  return {
      {"IsPKXPackage",
       "",
       [](Answer& a) { a.result = shown(IsPKXPackage(u"old")); },
       {{"matrix::getErrorMode", ignored, 2},
        {"matrix::setErrorMode", ignored, 2},
        {"services::io::KLStream::flush", open},
        {"services::io::KLStream::pop", open},
        {"*", passes}}},
      {"PKXContextData::getPackageStrings", "", [](Answer& a) { a.result = packageStrings(); }, ofStrings}};
}

}  // namespace faults
