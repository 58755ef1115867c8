#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "tests/support/Table.h"
#include "tools/lsp/Documents.h"
#include "tools/lsp/Inbox.h"
#include "tools/lsp/Message.h"

using tools::lsp::Event;
using tools::lsp::Inbox;
using tools::lsp::Json;
using tools::lsp::Message;
using tools::lsp::readMessage;
using tools::lsp::Rejection;

namespace {

/// The text that a message carries.
std::string carried(const std::string& text) {
  const auto message = readMessage(R"({"jsonrpc": "2.0", "method": "m", "params": [")" + text + "\"]}");
  return tools::lsp::textAt(*message->params, "/0");
}

TEST(Messages, HalvesOfSurrogatePairsAreReplaced) {
  for (const auto& [text, expected] :
       rowsOf<2>("tests/lsp/tables.rows", "Messages.HalvesOfSurrogatePairsAreReplaced"))
    EXPECT_EQ(carried(text), expected) << text;
  EXPECT_THROW(readMessage(R"({"jsonrpc": "2.0", "method": "\ud83"})"), Rejection);
  EXPECT_THROW(readMessage("\"\\"), Rejection);
  EXPECT_THROW(readMessage("\"\\u"), Rejection);
}

TEST(Messages, ManyKeysAndDeepNestingAreRead) {
  std::string many = R"({"jsonrpc": "2.0", "method": "m", "params": {)";
  for (int key = 0; key < 200000; ++key) many += "\"" + std::to_string(key) + "\": 0, ";
  EXPECT_EQ(readMessage(many + "\"x\": 0}}")->params->size(), 200001U);
  const std::string deep(100000, '[');
  EXPECT_THROW(readMessage(deep), Rejection);
  EXPECT_THROW(readMessage(deep + std::string(100000, ']')), Rejection);
}

TEST(Uris, NameFiles) {
  for (const auto& [uri, path] : rowsOf<2>("tests/lsp/tables.rows", "Uris.NameFiles"))
    EXPECT_EQ(tools::lsp::pathOf(uri), path) << uri;
  for (const std::string path : {"/a/b.k", "/a b/\u00e4%/+p/@C/x.k", "/"})
    EXPECT_EQ(tools::lsp::pathOf(tools::lsp::uriOf(path)), path);
  EXPECT_EQ(tools::lsp::uriOf("/a b/\u00e4.k"), "file:///a%20b/%C3%A4.k");
}

Event request(int id) { return Message{std::make_shared<Json>(id), "m", {}}; }

/// A host of nothing, and an inbox that interrupts it.
struct Interruption {
  Interruption() { inbox.attach(&host); }
  embedded::Host host{embedded::Description{}};
  Inbox inbox;
};

TEST(Inboxes, AnInterruptReachesItsRequestOnly) {
  Interruption world;
  for (int id = 1; id <= 4; ++id) world.inbox.put(request(id));
  world.inbox.cancel(3);
  world.inbox.cancel(99);
  for (int id = 1; id <= 4; ++id) {
    EXPECT_EQ(*std::get<Message>(world.inbox.take()).id, Json(id));
    EXPECT_EQ(world.inbox.isCancelled(), id == 3);
    EXPECT_FALSE(world.host.interruptRequested());
    if (id == 2) {
      world.inbox.cancel(1);
      EXPECT_FALSE(world.host.interruptRequested());
      world.inbox.cancel(2);
      EXPECT_TRUE(world.host.interruptRequested() && world.inbox.isCancelled());
    }
    world.host.clearInterrupt();
    world.inbox.renewInterrupt();
    EXPECT_EQ(world.host.interruptRequested(), id == 2 || id == 3);
    world.inbox.finish();
    EXPECT_FALSE(world.host.interruptRequested() || world.inbox.isCancelled());
  }
  EXPECT_TRUE(world.inbox.isEmpty());
}

/// One thread takes requests, another cancels every second one at any moment, often too late or too early.
TEST(Inboxes, CancelAtAnyMoment) {
  Interruption world;
  constexpr int count = 2000;
  std::thread canceller([&] {
    for (int id = 1; id <= count; ++id) {
      world.inbox.put(request(id));
      if (id % 2 == 0) world.inbox.cancel(id);
    }
  });
  for (int id = 1; id <= count; ++id) {
    world.inbox.take();
    for (int look = 0; look < 50; ++look) EXPECT_FALSE(id % 2 != 0 && world.host.interruptRequested()) << id;
    world.inbox.finish();
    EXPECT_FALSE(world.host.interruptRequested()) << id;
  }
  canceller.join();
}

}  // namespace
