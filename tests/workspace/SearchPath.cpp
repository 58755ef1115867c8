#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/PKXContextData.h>
#include <contextdata/Workspace/SearchPath.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "host/Exceptions.h"
#include "tests/workspace/Workspace.h"

namespace {

using namespace workspace;
namespace files = std::filesystem;

class SearchPath : public Workspace {};

std::string listed(const std::u16string& folder, const std::string& kind) {
  Names names{u"kept"};
  getWhatList(folder, names, kind);
  return shownList(names);
}

TEST_F(SearchPath, ListsFoldersByKind) {
  struct Row {
    const char16_t* folder;
    const char* kind;
    const char* names;
  };
  const Row rows[] = {
      // An entry that is the suffix alone counts, one that is shorter than it does not.
      {u"", ".k", "kept .k a.k"}, {u"", "classes", "kept bare here old p"},
      {u"", ".kex", "kept .kexa64 b.kexa64"}, {u"", "", "kept .kexa64 b.kexa64"}, {u"", "Classes", "kept .kexa64 b.kexa64"},
      {u"", ".kexa64", "kept .kexa64 b.kexa64"},
      {u"path", ".k", "kept .k a.k"}, {u"@p", ".k", "kept m.k m.k"}, {u"@p", ".kex", "kept n.kexa64"},
      {u"@p", "classes", "kept Inner"}, {u"@P", ".k", "kept"}, {u"p", ".k", "kept"}, {u"nowhere", ".k", "kept"},
      // Files and folders that are gone hold nothing.
      {u"file", ".k", "kept"}, {u"gone", ".k", "kept"},
      // Items of the current folder count only in it.
      {u"@here", ".k", "kept here.k"}};
  for (const Row& row : rows) EXPECT_EQ(listed(row.folder, row.kind), row.names) << shown(row.folder) << " " << row.kind;
}

TEST_F(SearchPath, IsAskedForEachFolderByItsPathAndAStar) {
  host_->startLog();
  listed(u"@p", ".k");
  const std::vector<std::string> patterns = callsOf("ioGetDirList");
  ASSERT_EQ(patterns.size(), 2U);
  EXPECT_NE(patterns[0].find("path/@p/*\", 1"), std::string::npos);
  host_->startLog();
  listed(u"file", ".k");
  EXPECT_TRUE(callsOf("ioGetDirList").empty());
}

/// A folder of its own on disk, whose item on the path is the second of that name.
class Folders : public testing::Test {
 protected:
  Folders() {
    files::create_directories(root_ / "first/@p");
    files::create_directories(root_ / "second/@p");
    write(root_ / "first/@p/first.k");
    embedded::Description description;
    for (const char* name : {"first/@p", "second/@p"})
      description.path.push_back({embedded::PathItemDescription::Package, (root_ / name).string()});
    description.currentFolder = (root_ / "second").string();
    host_ = std::make_unique<embedded::Host>(description);
    active_.emplace(*host_);
  }
  ~Folders() override {
    active_.reset();
    files::remove_all(root_);
  }

  static void write(const files::path& file) { std::ofstream(file).flush(); }

  files::path root_ = files::temp_directory_path() / ("folders-" + std::to_string(::getpid()));
  std::unique_ptr<embedded::Host> host_;
  std::optional<embedded::Activation> active_;
};

TEST_F(Folders, OfTwentyThousandEntriesAreListedQuickly) {
  for (int count = 0; count < 20000; ++count) write(root_ / "second/@p" / ("f" + std::to_string(100000 + count) + ".k"));
  Names names;
  const auto before = std::chrono::steady_clock::now();
  getWhatList(u"@p", names, ".k");
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(2));
  ASSERT_EQ(names.size(), 20001U);
  EXPECT_EQ(names[0], u"first.k");
  EXPECT_TRUE(std::is_sorted(names.begin() + 1, names.end()));
}

TEST_F(Folders, ThatVanishHoldNothing) {
  host_->setFault({"ioGetDirList", 1, false, [&] { files::remove_all(root_ / "first"); }});
  Names names;
  write(root_ / "second/@p/left.k");
  getWhatList(u"@p", names, ".k");
  EXPECT_EQ(shownList(names), "left.k");
  files::remove_all(root_ / "second");
  getWhatList(u"", names, ".k");
  EXPECT_EQ(shownList(names), "left.k");
}

TEST_F(Folders, ThatCannotBeReadCostTheWholeVisit) {
  files::permissions(root_ / "second", files::perms::all);
  files::permissions(root_ / "second/@p", files::perms::none);
  const uid_t user = ::geteuid();
  ASSERT_TRUE(user != 0 || ::seteuid(65534) == 0) << "whoever may read everything cannot see this";
  EXPECT_EQ(listed(u"@p", ".k"), "kept");
  files::permissions(root_ / "second/@p", files::perms::all, std::error_code() = {});
  EXPECT_EQ(::seteuid(user), 0);
  files::permissions(root_ / "second/@p", files::perms::all);
  EXPECT_EQ(listed(u"@p", ".k"), "kept first.k");
}

TEST_F(SearchPath, HasDocumentedBuiltinsOnce) {
  EXPECT_EQ(getBuiltinFunctionNames(), (std::unordered_set<std::u16string>{u"sin", u"cos"}));
}

TEST_F(SearchPath, PackagesAreTheirObjectAndTheirFolders) {
  const std::tuple<const char16_t*, bool, const char*> rows[] = {
      {u"old", true, "kept A f g f.k z.kexa64 Cls"}, {u"bare", true, "kept only.k"}, {u"p", true, "kept m.k m.k n.kexa64 Inner"},
      {u"nobody", false, "kept"},                    {u"", false, "kept"},           {u"o'ld", false, "kept"}};
  for (const auto& [package, expected, list] : rows) {
    Names names{u"kept"};
    EXPECT_EQ(PKXContextData::getPackageStrings(package, names), expected) << shown(package);
    EXPECT_EQ(shownList(names), list) << shown(package);
  }
}

TEST_F(SearchPath, PackagesAreKnownByAnEvaluation) {
  const std::pair<const char16_t*, bool> rows[] = {{u"old", true}, {u"bare", true}, {u"p", false}, {u"", false},
                                                   {u"o'ld", false}, {u"x'), 'opaque'); disp('ran", false},
                                                   // What a quote lets in is evaluated.
                                                   {u"x'), 'opaque'); isa(findpackage('old", true}};
  for (const auto& [name, expected] : rows) {
    host_->startLog();
    EXPECT_EQ(IsPKXPackage(name), expected) << shown(name);
    EXPECT_EQ(callsOf("inEvalExp"),
              std::vector<std::string>{"\"isa(findpackage('" + shown(name) + "'), 'opaque');\", 1, true, 3"});
  }
  EXPECT_EQ(host_->takeOutput(), u"");
}

TEST_F(SearchPath, NamespacesListWhatTheyShow) {
  using namespace KCOSContextData;
  const auto listing = [](auto list, const char16_t* ns) {
    Names names{u"kept"};
    const bool answer = list(ns, names);
    return shown(answer) + " " + shownList(names);
  };
  const std::tuple<const char16_t*, const char*, const char*, const char*> rows[] = {
      {u"ns", "true kept f", "true kept Shown", "true kept one two"},
      {u"kept", "false kept", "false kept", "false kept"},
      {u"hollow", "false kept", "false kept", "false kept"},
      {u"ns.one", "false kept", "true kept Deep", "false kept"},
      {u"nobody", "false kept", "false kept", "false kept"},
      {u"NS", "false kept", "false kept", "false kept"},
      {u"", "false kept", "false kept", "false kept"},
      {u"ns.", "false kept", "false kept", "false kept"},
      {u"n\u00e9", "false kept", "false kept", "false kept"}};
  for (const auto& [ns, functions, classes, namespaces] : rows) {
    EXPECT_EQ(listing(getNamespaceFunctionNames, ns), functions) << shown(ns);
    EXPECT_EQ(listing(getNamespaceClassNames, ns), classes) << shown(ns);
    EXPECT_EQ(listing(getNamespaceNamespaceNames, ns), namespaces) << shown(ns);
  }
}

TEST_F(SearchPath, AllNamespacesStandInACellOfTheirShape) {
  const Value all = KCOSContextData::getKCOSAllNamespaces();
  const std::string names = shownValue(all);
  EXPECT_EQ(names, "{'hollow' 'kept' 'korval' 'korval.mixin' 'korval.mixin.internal' 'ns' 'ns.one' 'ns.two' 'ws'}");
  EXPECT_EQ(kxGetDimensions(all.get())[0], kxGetNumberOfElements(all.get()));
  embedded::Host none((embedded::Description()));
  const embedded::Activation active(none);
  const Value nothing = KCOSContextData::getKCOSAllNamespaces();
  EXPECT_EQ(shownValue(nothing), "{}");
  EXPECT_EQ(kxGetDimensions(nothing.get())[0], 0U);
  EXPECT_EQ(kxGetDimensions(nothing.get())[1], 1U);
}

}  // namespace
