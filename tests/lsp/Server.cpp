// What the server answers when events come in an order that no client can bring about for certain.

#include "tools/lsp/Server.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tests/support/TempFolder.h"
#include "tools/lsp/Inbox.h"

namespace {

using namespace tools::lsp;

/// A server on a snapshot with one variable, and everything that it has written.
class Servers : public testing::Test {
 protected:
  Servers() { writeSnapshot("one"); }

  void writeSnapshot(const std::string& variable) const {
    folder_.write("world.json",
                  R"({"format": 1, "workspace": [{"name": ")" + variable + R"(", "value": 1}]})");
  }
  void put(const std::string& method, const std::string& params, int id = 0) {
    Message message{{}, method, std::make_shared<Json>(Json::parse(params))};
    if (id != 0) message.id = std::make_shared<Json>(id);
    inbox_.put(message);
  }

  const TempFolder folder_;
  Inbox inbox_;
  std::string written_;
};

TEST_F(Servers, LoadASnapshotThatHasChangedBeforeTheClientIsReady) {
  SessionFile session(folder_ / "world.json", inbox_);
  Client client([&](const std::string& bytes) {
    written_ += bytes;
    return true;
  });
  ClientProcess process;
  writeSnapshot("other");
  put("initialize", R"({"capabilities": {}, "initializationOptions": {"timeout": 0}})", 1);
  inbox_.put(SnapshotChanged{});
  put("initialized", "{}");
  put("textDocument/didOpen",
      R"({"textDocument": {"uri": "untitled:a", "languageId": "korval", "version": 1, "text": "o"}})");
  put("textDocument/completion",
      R"({"textDocument": {"uri": "untitled:a"}, "position": {"line": 0, "character": 1}})", 2);
  put("exit", "{}");
  EXPECT_EQ(Server(inbox_, client, session, process).run(), 1) << "nobody has asked for a shutdown";
  const std::size_t cleared = written_.find(R"("diagnostics":[])");
  EXPECT_LT(written_.find(R"("id":1)"), cleared) << written_;
  EXPECT_LT(cleared, written_.find(R"("label":"other")")) << written_;
  EXPECT_NE(written_.find(R"("label":"other")"), std::string::npos) << written_;
  EXPECT_EQ(written_.find(R"("label":"one")"), std::string::npos) << written_;
}

}  // namespace
