#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "tests/snapshot/Saved.h"

namespace {

namespace fs = std::filesystem;

class SavedFiles : public testing::Test {
 protected:
  SavedFiles() {
    fs::create_directory(folder_ / "inner");
    description_.path = {{.folder = (folder_ / "code").string()}};
    description_.currentFolder = (folder_ / "inner").string();
  }

  std::string codeOf(const fs::path& file) const {
    const Fault fault = faultOf([&] { embedded::writeSnapshot(description_, file); });
    EXPECT_EQ(fault.file, fault.shown.empty() ? "" : file.string());
    return fault.shown;
  }
  std::size_t filesLeft() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.path()), {}));
  }

  /// From now on no file may grow beyond a few bytes.
  static void limitFiles() {
    const rlimit limit{20, 20};
    setrlimit(RLIMIT_FSIZE, &limit);
  }

  const TempFolder folder_;
  embedded::Description description_;
};

TEST_F(SavedFiles, AreReadAgainFromWhereverTheyStand) {
  for (const fs::path& file : {folder_ / "a.json", folder_ / "inner/b.json", folder_ / "inner/../c.json"}) {
    embedded::writeSnapshot(description_, file);
    const auto read = embedded::readSnapshot(file);
    EXPECT_EQ(read.path.at(0).folder, description_.path[0].folder);
    EXPECT_TRUE(fs::equivalent(read.currentFolder, description_.currentFolder));
    EXPECT_EQ(contentsOf(file).find(folder_.path().string()), std::string::npos) << "folders are relative";
    const std::string before = contentsOf(file);
    embedded::writeSnapshot(embedded::Host::load(file)->describe(), file);
    EXPECT_EQ(contentsOf(file), before);
  }
}

TEST_F(SavedFiles, NameTheFolderOfTheProcess) {
  const auto before = fs::current_path();
  fs::current_path(folder_ / "inner");
  embedded::Description plain;
  plain.path = {{.folder = "beside"}};
  const embedded::Host host(plain);
  fs::current_path(before);
  embedded::writeSnapshot(host.describe(), folder_ / "a.json");
  const auto read = embedded::readSnapshot(folder_ / "a.json");
  EXPECT_TRUE(fs::equivalent(read.currentFolder, folder_ / "inner"));
  EXPECT_EQ(read.path.at(0).folder, (folder_ / "inner/beside").string());
}

TEST_F(SavedFiles, ReplaceWhatIsThere) {
  const fs::path file = folder_ / "a.json", link = folder_ / "link.json";
  folder_.write("a.json", "old");
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("a.json", link);
  embedded::writeSnapshot(description_, link);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_NO_THROW(embedded::readSnapshot(file));
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(filesLeft(), 3U);
}

// A save that fails after it has made the new file, because nothing may be written, leaves it to be looked at.
TEST_F(SavedFiles, AreAtNoTimeReadableByMoreThanTheOldOne) {
  const fs::path file = folder_.write("a.json", "old");
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  const std::string end = inChild([&] {
    umask(0);
    limitFiles();  // the first byte too many ends the process
    return codeOf(file);
  });
  EXPECT_EQ(end, "ended by a signal");
  ASSERT_EQ(filesLeft(), 3U);
  for (const auto& left : fs::directory_iterator(folder_.path()))
    EXPECT_TRUE(left.is_directory() || left.status().permissions() == fs::status(file).permissions()) << left;
  EXPECT_EQ(contentsOf(file), "old");
  embedded::writeSnapshot(description_, file);
  EXPECT_EQ(filesLeft(), 2U) << "the next save cleans up";
}

TEST_F(SavedFiles, LeaveWhatIsNotLeftFromASave) {
  for (const char* name : {"a.json.77.new", "a.json.78.new", "a.json.x7.new", "a.json..new", "b.json.77.new"})
    folder_.write(name, "");
  const int other = open((folder_ / "a.json.77.new").c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_EQ(flock(other, LOCK_EX), 0) << "another save, which runs";
  embedded::writeSnapshot(description_, folder_ / "a.json");
  EXPECT_FALSE(fs::exists(folder_ / "a.json.78.new"));
  EXPECT_TRUE(fs::exists(folder_ / "a.json.77.new"));
  EXPECT_EQ(filesLeft(), 6U);
  close(other);
}

TEST_F(SavedFiles, ThatAreReadOnlyStay) {
  const fs::path file = folder_.write("a.json", "old");
  fs::permissions(file, fs::perms::owner_read | fs::perms::group_read);
  EXPECT_EQ(codeOf(file), "snapshot.unwritable");
  EXPECT_EQ(contentsOf(file), "old");
}

TEST_F(SavedFiles, ThatCannotBeWritten) {
  folder_.write("file", "x");
  fs::create_symlink("nowhere/at/all", folder_ / "dangling");
  for (const fs::path& file :
       {folder_ / "missing/deeper/a.json", folder_ / "file/a.json", folder_ / "dangling",
        fs::path("/proc/a.json"), fs::path(), fs::path("/dev/null")})
    EXPECT_EQ(codeOf(file), "snapshot.unwritable") << file;
  for (const fs::path& file : {folder_ / "", folder_.path()})
    EXPECT_EQ(codeOf(file), "snapshot.directory") << file;
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_EQ(filesLeft(), 3U);
}

TEST_F(SavedFiles, LeaveTheOldOneWhenTheDiskIsFull) {
  const fs::path file = folder_.write("a.json", "old");
  const std::string code = inChild([&] {
    signal(SIGXFSZ, SIG_IGN);
    limitFiles();
    return codeOf(file).substr(9);  // as much as a file may still hold
  });
  EXPECT_EQ(code, "unwritable");
  EXPECT_EQ(contentsOf(file), "old");
  EXPECT_EQ(filesLeft(), 2U);
}

TEST_F(SavedFiles, LeaveTheOldOneWhenTheDescriptionIsBad) {
  const fs::path file = folder_.write("a.json", "old");
  description_.builtins = {"\xC3("};
  EXPECT_EQ(codeOf(file), "snapshot.not-utf8 /builtins/0");
  EXPECT_EQ(contentsOf(file), "old");
  EXPECT_EQ(filesLeft(), 2U);
}

}  // namespace
