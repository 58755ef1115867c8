#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "tests/support/Growth.h"
#include "tests/support/Table.h"
#include "tools/lsp/Documents.h"
#include "tools/lsp/Inbox.h"
#include "tools/lsp/Message.h"
#include "tools/query/Protocol.h"

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

std::string emptyObjects(std::size_t count) {
  std::string text = "[0";
  for (; count > 0; --count) text += ",{}";
  return text + "]";
}

/// Frames of the server, and lines of `query`.
TEST(Messages, AreReadInLinearTime) {
  const auto frame = [](std::size_t count) {
    readMessage(R"({"jsonrpc": "2.0", "method": "m", "params": )" + emptyObjects(count) + "}");
  };
  EXPECT_TRUE(isLinear([&] { frame(2000); }, [&] { frame(16000); }));
  embedded::Host host{embedded::Description{}};
  const embedded::Activation active(host);
  tools::query::Protocol protocol(host, false, std::chrono::milliseconds(0));
  const auto line = [&](std::size_t count) {
    const std::string answer =
        protocol.answer(R"({"op": "isOperatorOverload", "name": )" + emptyObjects(count) + "}");
    EXPECT_NE(answer.find("query.wrong-type"), std::string::npos) << answer;
  };
  EXPECT_TRUE(isLinear([&] { line(2000); }, [&] { line(16000); }));
  std::string keys = R"({"op": "x", "names": {)";
  for (int key = 0; key < 101; ++key) keys += "\"" + std::to_string(key) + "\": 0, ";
  EXPECT_NE(protocol.answer(keys + "\"last\": 0}}").find("query.too-many-keys"), std::string::npos);
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

Event about(int id, const char* method, const char* uri) {
  const Json params = {{"textDocument", {{"uri", uri}}}};
  return Message{id == 0 ? nullptr : std::make_shared<Json>(id), method, std::make_shared<Json>(params)};
}

/// What is cancelled or outdated keeps its turn, and nothing of what it asked.
TEST(Inboxes, DropWhatNobodyNeeds) {
  Inbox inbox;
  inbox.put(about(1, "textDocument/completion", "a"));
  inbox.put(about(2, "textDocument/hover", "b"));
  inbox.put(about(3, "textDocument/documentSymbol", "a"));
  inbox.put(about(4, "textDocument/hover", "a"));
  inbox.cancel(4);
  inbox.put(about(0, "textDocument/didChange", "a"));
  inbox.put(about(5, "textDocument/completion", "a"));
  using tools::lsp::Dropped;
  const std::pair<int, Dropped> expected[] = {{1, Dropped::Outdated},  {2, Dropped::No}, {3, Dropped::No},
                                              {4, Dropped::Cancelled}, {0, Dropped::No}, {5, Dropped::No}};
  for (const auto& [id, dropped] : expected) {
    const auto message = std::get<Message>(inbox.take());
    EXPECT_EQ(inbox.dropped(), dropped) << id;
    EXPECT_EQ(message.params->is_null(), dropped != Dropped::No) << id;
    inbox.finish();
  }
}

/// Whoever puts waits for room; what is taken, or dropped, makes room.
TEST(Inboxes, HaveALimit) {
  Inbox inbox;
  constexpr std::size_t large = std::size_t{40} << 20;
  inbox.put(about(1, "m", "a"), large);
  std::atomic<int> count = 0;
  std::thread writer([&] {
    inbox.put(about(2, "m", "a"), large);
    count = 1;
    for (int id = 3; id < 2000; ++id) inbox.put(about(id, "m", "a"));
    count = 2;
  });
  // It has to be interrupted at each of both limits.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(count, 0);
  inbox.cancel(1);
  while (count == 0) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(count, 1);
  for (int id = 1; id < 2000; ++id) EXPECT_EQ(*std::get<Message>(inbox.take()).id, Json(id));
  writer.join();
  // Closed, it lets everybody go.
  inbox.put(about(1, "m", "a"), large);
  std::thread late([&] { inbox.put(about(2, "m", "a"), large); });
  inbox.close();
  late.join();
}

}  // namespace
