#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/snapshot/Faults.h"
#include "tests/support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using Steps = std::vector<std::pair<std::uintmax_t, std::uintmax_t>>;

class SnapshotFiles : public testing::Test {
 protected:
  static std::string codeOf(const fs::path& file) {
    const Fault fault = faultOf([&] { embedded::readSnapshot(file); });
    EXPECT_EQ(fault.file, fault.shown.empty() ? "" : file.string());
    return fault.shown;
  }

  const TempFolder folder_;
};

TEST_F(SnapshotFiles, ThatAreNone) {
  EXPECT_EQ(codeOf(folder_ / "nothing.json"), "snapshot.missing-file");
  EXPECT_EQ(codeOf(folder_.write("file", "{}") / "below"), "snapshot.missing-file");
  EXPECT_EQ(codeOf(folder_.path()), "snapshot.directory");
  EXPECT_EQ(codeOf(""), "snapshot.missing-file");
  EXPECT_EQ(codeOf(folder_.write("empty.json", "")), "snapshot.empty");
  EXPECT_EQ(codeOf(folder_.write("good.json", R"({"format": 1})")), "");
}

TEST_F(SnapshotFiles, ThatCannotBeRead) {
  EXPECT_EQ(codeOf("/proc/self/mem"), "snapshot.unreadable");  // opens, and fails at the first read

  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  const std::string path = (folder_ / "socket").string();
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(codeOf(path), "snapshot.unreadable");
  close(descriptor);
}

// Nobody writes to the pipe: whoever opened it would wait for ever.
TEST_F(SnapshotFiles, ThatArePipesOrDevices) {
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), S_IRUSR | S_IWUSR), 0);
  EXPECT_EQ(codeOf(folder_ / "pipe"), "snapshot.unreadable");
  fs::create_symlink("pipe", folder_ / "link");
  EXPECT_EQ(codeOf(folder_ / "link"), "snapshot.unreadable");
  EXPECT_EQ(codeOf("/dev/zero"), "snapshot.unreadable");
}

// A file that executes may come and go: it is looked for when a host is made, and not when the snapshot is read.
TEST_F(SnapshotFiles, ScopesMayBeCodeFiles) {
  const auto file = folder_.write(
      "files.json",
      R"({"format": 1, "currentFolder": ".", "scopes": {"executing": "helper", "active": [{"function": "helper"}]}})");
  folder_.write("helper.k", "import lab.Pump");
  EXPECT_NO_THROW(embedded::Host::load(file));
  fs::remove(folder_ / "helper.k");
  EXPECT_NO_THROW(embedded::readSnapshot(file));
  const Fault fault = faultOf([&] { embedded::Host::load(file); });
  EXPECT_EQ(fault.shown, "snapshot.unknown-function /scopes/executing");
  EXPECT_EQ(fault.file, file);
}

TEST_F(SnapshotFiles, FoldersAreRelativeToTheFile) {
  const auto file = folder_.write("world.json", R"({"format": 1, "currentFolder": "..", "path": [
      {"folder": "code/./x"}, {"folder": "/absolute"}]})");
  const auto before = fs::current_path();
  for (const auto& [from, name] :
       {std::pair(before, file), std::pair(folder_.path(), fs::path("world.json"))}) {
    fs::current_path(from);
    const auto world = embedded::readSnapshot(name);
    fs::current_path(before);
    EXPECT_EQ(world.path.at(0).folder, (folder_ / "code/x").string());
    EXPECT_EQ(world.path.at(1).folder, "/absolute");
    EXPECT_TRUE(fs::equivalent(world.currentFolder, folder_.path().parent_path()));
  }
}

TEST_F(SnapshotFiles, ProgressIsToldEachMegabyteAndAtTheEnd) {
  const std::string text = R"({"format": 1})" + std::string(3500000, ' ');
  const auto file = folder_.write("big.json", text);
  Steps steps;
  embedded::readSnapshot(file,
                         [&](std::uintmax_t read, std::uintmax_t total) { steps.emplace_back(read, total); });
  ASSERT_EQ(steps.size(), 4U);
  for (std::size_t index = 0; index < 3; ++index) {
    EXPECT_NEAR(static_cast<double>(steps[index].first), 1048576.0 * static_cast<double>(index + 1), 200000);
    EXPECT_EQ(steps[index].second, text.size());
  }
  EXPECT_EQ(steps[3], Steps::value_type(text.size(), text.size()));
}

TEST_F(SnapshotFiles, WhatProgressThrowsPasses) {
  const auto file = folder_.write("big.json", R"({"format": 1})" + std::string(3000000, ' '));
  EXPECT_THROW(embedded::readSnapshot(file, [](std::uintmax_t, std::uintmax_t) { throw 7; }), int);
}

// Characters of several bytes stand across every boundary at which the file is read in pieces.
TEST_F(SnapshotFiles, CharactersAcrossPieces) {
  for (std::size_t shift = 0; shift < 5; ++shift) {
    std::string name(shift, 'x');
    while (name.size() < 200000) name += "😀ä€";
    const auto world =
        embedded::readSnapshot(folder_.write("long.json", R"({"format": 1, "builtins": [")" + name + "\"]}"));
    EXPECT_EQ(world.builtins.at(0), name);
    const auto broken =
        folder_.write("broken.json", R"({"format": 1, "namespaces": [")" + name + "\xF0\x9F\"]}");
    EXPECT_EQ(codeOf(broken), "snapshot.not-utf8");
  }
}

}  // namespace
