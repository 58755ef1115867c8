#include <contextdata/PKXContextData.h>
#include <contextdata/Workspace/Evaluation.h>
#include <contextdata/Workspace/SearchPath.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>

#include "tests/support/Growth.h"
#include "tests/support/TempFolder.h"
#include "tests/workspace/Workspace.h"

namespace {

using workspace::Names;
namespace files = std::filesystem;

/// Two folders of one name on the path; the second one's folder is the current one.
class Folders : public testing::Test {
 protected:
  Folders() {
    for (const char* name : {"first/@p", "second/@p", "second/@q"}) {
      files::create_directories(root_ / name);
      description_.path.push_back({embedded::PathItemDescription::Package, (root_ / name).string()});
    }
    root_.write("first/@p/first.k", "");
    description_.currentFolder = (root_ / "second").string();
    host_ = std::make_unique<embedded::Host>(description_);
    active_.emplace(*host_);
  }
  static Names listed(const std::u16string& folder) {
    Names names;
    getWhatList(folder, names, ".k");
    return names;
  }

  static std::string namesIn(const std::vector<embedded::KnownName>& known) {
    std::string all;
    for (const embedded::KnownName& name : known) all += name.name + " ";
    return all;
  }

  const TempFolder root_;
  embedded::Description description_;
  std::unique_ptr<embedded::Host> host_;
  std::optional<embedded::Activation> active_;
};

TEST_F(Folders, OfTwentyThousandEntriesAreListedInLinearTime) {
  for (int count = 0; count < 20000; ++count) {
    const std::string file = "/f" + std::to_string(100000 + count) + ".k";
    root_.write("second/@p" + file, "");
    if (count % 8 == 0) root_.write("second/@q" + file, "");
  }
  EXPECT_TRUE(isLinear([] { listed(u"@q"); }, [] { listed(u"@p"); }));
  EXPECT_EQ(listed(u"@q").size(), 2500U);
  const Names names = listed(u"@p");
  ASSERT_EQ(names.size(), 20001U);
  EXPECT_EQ(names[0], u"first.k");
  EXPECT_TRUE(std::is_sorted(names.begin() + 1, names.end()));
}

// Folders in folders of the path, one of them by the name of a link, and one that is an item of the path too.
TEST_F(Folders, OfClassesInFoldersOfThePathCountForEveryone) {
  root_.write("path/@lab/tune.k", "");
  root_.write("path/@lab/@Pump/start.k", "");
  root_.write("implementation/go.k", "");
  files::create_directory_symlink(root_ / "implementation", root_ / "path/@linked");
  root_.write("path/@file", "");
  description_.path = {{.folder = root_ / "path"},
                       {embedded::PathItemDescription::Package, root_ / "path/@lab/"},
                       {embedded::PathItemDescription::Class, root_ / "path/@linked"}};
  embedded::Host host(description_);
  const embedded::Activation active(host);
  Names names;
  EXPECT_TRUE(PKXContextData::getPackageStrings(u"lab", names));
  EXPECT_EQ(names, (Names{u"tune.k", u"Pump"})) << "once, although the path has it twice";
  EXPECT_EQ(listed(u"@linked"), Names{u"go.k"});
  EXPECT_EQ(listed(u"@file"), Names{});
  EXPECT_EQ(namesIn(host.classNames()), "linked lab ");
}

TEST_F(Folders, HoldNoCodeFilesThatArePipes) {
  root_.write("path/f.k", "1");
  ASSERT_EQ(mkfifo((root_ / "path/pipe.k").c_str(), S_IRUSR | S_IWUSR), 0);
  files::create_directory(root_ / "path/folder.k");
  description_.path = {{.folder = root_ / "path"}};
  embedded::Host host(description_);
  const embedded::Activation active(host);
  EXPECT_EQ(namesIn(host.functionNames()), "f ");
  for (const char16_t* code : {u"pipe;", u"folder;"}) {
    EXPECT_FALSE(EvalcExpSuccessful(code, 0, nullptr, true));
    ASSERT_TRUE(host.codeFailure());
    EXPECT_EQ(host.codeFailure()->id, "KORVAL:code:UnreadableFile");
  }
}

TEST_F(Folders, AreAskedForByTheirPathAndAStarAlsoAtTheRoot) {
  const std::pair<std::string, std::string> rows[] = {{root_ / "second", root_ / "second/*"}, {"/", "//*"}};
  for (const auto& [folder, pattern] : rows) {
    description_.currentFolder = folder;
    embedded::Host host(description_);
    const embedded::Activation active(host);
    host.startLog();
    listed(u"");
    std::string asked;
    for (const embedded::Call& call : host.takeLog())
      if (call.operation == "ioGetDirList") asked += call.arguments;
    EXPECT_EQ(asked, "\"" + pattern + "\", 1");
  }
}

TEST_F(Folders, ThatVanishHoldNothing) {
  host_->setFault({"ioGetDirList", 1, false, [&] { files::remove_all(root_ / "first"); }});
  root_.write("second/@p/left.k", "");
  EXPECT_EQ(listed(u"@p"), Names{u"left.k"});
  files::remove_all(root_ / "second");
  EXPECT_EQ(listed(u""), Names{});
}

TEST_F(Folders, ThatCannotBeReadCostTheWholeVisit) {
  // All but the second folder can be read by everybody: the first one is visited before.
  for (const files::path& folder : {root_.path(), root_ / "second"})
    files::permissions(folder, files::perms::all);
  files::permissions(root_ / "second/@p", files::perms::none);
  // Permissions are nothing to the superuser, who becomes somebody else for as long as the query takes.
  const uid_t user = ::geteuid();
  ASSERT_TRUE(user != 0 || ::seteuid(65534) == 0) << "whoever may read everything cannot see this";
  EXPECT_EQ(listed(u"@p"), Names{});
  ASSERT_EQ(::seteuid(user), 0);
  files::permissions(root_ / "second/@p", files::perms::all);
  EXPECT_EQ(listed(u"@p"), Names{u"first.k"});
}

}  // namespace
