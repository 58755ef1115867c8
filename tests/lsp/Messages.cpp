#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <variant>

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
  for (const char* broken : {R"({"jsonrpc": "2.0", "method": "\ud83"})", "\"\\", "\"\\u"})
    EXPECT_THROW(readMessage(broken), Rejection) << broken;
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

/// One about a document; without an identifier it is a notification.
Event about(int id, const char* method = "m", const char* uri = "a") {
  const Json params = {{"textDocument", {{"uri", uri}}}};
  return Message{id == 0 ? nullptr : std::make_shared<Json>(id), method, std::make_shared<Json>(params)};
}

/// A host of nothing, and an inbox that interrupts it.
struct Interruption {
  Interruption() { inbox.attach(&host); }
  embedded::Host host{embedded::Description{}};
  Inbox inbox;
};

/// "c": the current request is cancelled; "i": the host is interrupted.
TEST(Inboxes, AnInterruptReachesItsRequestOnly) {
  Interruption world;
  for (int id = 1; id <= 4; ++id) world.inbox.put(about(id));
  world.inbox.cancel(3);
  world.inbox.cancel(99);
  std::string seen;
  const auto look = [&] {
    seen += world.inbox.isCancelled() ? " c" : " -";
    seen += world.host.interruptRequested() ? 'i' : '-';
  };
  for (int id = 1; id <= 4; ++id) {
    seen += "; " + std::get<Message>(world.inbox.take()).id->dump();
    look();
    for (const int cancelled : {1, 2}) {
      if (id == 2) world.inbox.cancel(cancelled), look();
    }
    world.host.clearInterrupt();
    world.inbox.renewInterrupt();
    look();
    world.inbox.finish();
    look();
  }
  EXPECT_EQ(seen, "; 1 -- -- --; 2 -- -- ci ci --; 3 c- ci --; 4 -- -- --");
  EXPECT_TRUE(world.inbox.isEmpty());
}

/// One thread takes requests, another cancels every second one at any moment, often too late or too early.
TEST(Inboxes, CancelAtAnyMoment) {
  Interruption world;
  constexpr int count = 2000;
  std::thread canceller([&] {
    for (int id = 1; id <= count; ++id) {
      world.inbox.put(about(id));
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
  std::string taken;
  for (; !inbox.isEmpty(); inbox.finish()) {
    const auto message = std::get<Message>(inbox.take());
    taken += (message.id ? message.id->dump() : "change") + (message.params->is_null() ? " nothing" : "");
    taken += " " + std::to_string(static_cast<int>(inbox.dropped())) + "; ";
  }
  EXPECT_EQ(taken, "1 nothing 2; 2 0; 3 0; 4 nothing 1; change 0; 5 0; ");
}

/// Until the thread sleeps, or the count is no longer that; the count then.
int countWhenAsleep(const std::atomic<pid_t>& thread, const std::atomic<int>& count, int awaited) {
  for (char state = 0; state != 'S' || count < awaited; std::this_thread::yield()) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread.load()) + "/stat");
    std::string line;
    std::getline(file, line);
    state = line.empty() ? '\0' : line.at(line.rfind(')') + 2);
    if (count > awaited) break;
  }
  return count;
}

/// Whoever puts waits for room; what is taken, or dropped, makes room.
TEST(Inboxes, HaveALimit) {
  Inbox inbox;
  constexpr std::size_t large = std::size_t{40} << 20;
  inbox.put(about(1), large);
  std::atomic<pid_t> thread = 0;
  std::atomic<int> count = 1;
  std::thread writer([&] {
    thread = gettid();
    inbox.put(about(2), large);
    for (count = 2; count < 2000; ++count) inbox.put(about(count + 1));
  });
  EXPECT_EQ(countWhenAsleep(thread, count, 1), 1) << "there is room for one that is so large";
  inbox.cancel(1);
  EXPECT_EQ(countWhenAsleep(thread, count, 1000), 1000) << "there is room for so many";
  for (int id = 1; id <= 2000; ++id) EXPECT_EQ(*std::get<Message>(inbox.take()).id, Json(id));
  writer.join();
  // Closed, it lets everybody go.
  inbox.put(about(1), large);
  std::thread late([&] { inbox.put(about(2), large); });
  inbox.close();
  late.join();
}

}  // namespace
