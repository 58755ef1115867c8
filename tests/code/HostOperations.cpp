#include <gtest/gtest.h>

#include <boost/smart_ptr/make_shared.hpp>

#include "host/Arrays.h"
#include "host/Exceptions.h"
#include "host/Streams.h"
#include "tests/code/CodeWorld.h"
#include "tests/support/Allocations.h"
#include "tests/support/Table.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Trap.h"

namespace {

using embedded::CodePolicy;
using Tamsix::orvo::EvalSource;
using ValuePtr = boost::intrusive_ptr<kxArray_tag>;
using services::io::KLStream;

ValuePtr evaluated(const std::string& text, bool valueOfStatement, int& status) {
  kxArray_tag* result = nullptr;
  status = inEvalExp(wide(text), 1, &result, valueOfStatement, EvalSource::Query);
  return {result, false};
}

std::string classOf(const ValuePtr& value) { return value ? kxGetClassName(value.get()) : "null"; }

TEST(KorvalCode, PrintsWhatTheCasesSay) {
  const auto rows = rowsOf<2>("tests/code/language.cases");
  for (const auto& [text, printed] : rows) EXPECT_EQ(code::World().value(text), printed) << text;
  EXPECT_GT(rows.size(), 200U);
}

TEST(HostOperations, EvaluationAnswersAValueOrAStatus) {
  code::World world;
  const auto references = [] {
    return embedded::Host::references().added - embedded::Host::references().dropped;
  };
  for (const auto& [text, asked, answer, outcome] : rowsOf<4>("tests/code/texts.rows", "evaluations")) {
    const bool succeeds = outcome == "succeeds";
    const auto before = references();
    int status = -1;
    ValuePtr value = evaluated(text, asked == "of the statement", status);
    EXPECT_EQ(classOf(value), answer) << text;
    EXPECT_EQ(status == 0, succeeds) << text;
    EXPECT_EQ(world.host.codeFailure().has_value(), !succeeds) << text;
    value.reset();
    const bool leavesX = text == "x = 1; x" && succeeds;
    EXPECT_EQ(references(), before + (leavesX ? 1 : 0)) << text;
  }
  EXPECT_FALSE(world.host.variable("y"));
}

TEST(HostOperations, CallsPassErrorsOrTrapThem) {
  code::World world;
  ValuePtr pump = world.host.variable("pump");
  kxArray_tag* arguments[] = {pump.get()};
  kxArray_tag* result = nullptr;
  const auto call = [&](const std::string& name) { inCallFcn(1, &result, 1, arguments, name.c_str()); };
  for (const auto& [name, className] : rowsOf<2>("tests/code/texts.rows", "calls")) {
    call(name);
    EXPECT_EQ(classOf(ValuePtr(result, false)), className) << name;
    ValuePtr same(inCallMethodSingleInputSingleOutput(pump.get(), name.c_str(), 1), false);
    EXPECT_EQ(classOf(same), className) << name;
  }
  EXPECT_EQ(thrownBy([&] { call("nix"); }), "KORVAL:code:UndefinedName");
  EXPECT_EQ(thrownBy([&] { call("Failing"); }), "KORVAL:code:UndefinedName");
  EXPECT_EQ(thrownBy([&] { inCallFcnWithTrap(1, &result, 1, arguments, "declared", false); }),
            "KORVAL:code:NoCode");
  EXPECT_NE(inCallFcnWithTrap(1, &result, 1, arguments, "declared", true), 0);
  EXPECT_EQ(world.host.codeFailure()->id, "KORVAL:code:NoCode");
  EXPECT_EQ(shown(world.host.takeOutput()), "") << "an error that is a status is not printed as well";
  const ValuePtr package(matrix::create(u"old"), false);
  const ValuePtr function(matrix::create(u"korval.metadata.Namespace.getAllNamespaces"), false);
  kxArray_tag *name[] = {package.get()}, *named[] = {function.get()};
  ASSERT_EQ(inCallFcnWithTrap(1, &result, 1, name, "findpackage", true), 0);
  const ValuePtr found(result, false);
  const ValuePtr classes(kxGetPropertyShared(found.get(), 0, "Classes"), false);
  inFullFevalFcn(1, &result, 1, named);
  const ValuePtr namespaces(result, false);
  EXPECT_EQ(kxGetNumberOfElements(classes.get()), 2U);
  EXPECT_EQ(kxGetNumberOfElements(namespaces.get()), 1U);
  EXPECT_EQ(matrix::get_ustring(ValuePtr(kxGetPropertyShared(classes.get(), 1, "Name"), false).get()), u"B");
  EXPECT_EQ(matrix::get_ustring(ValuePtr(kxGetTypeProperty(namespaces.get(), 0, "Name"), false).get()),
            u"lab");
  EXPECT_EQ(thrownBy([&] { kxGetPropertyShared(classes.get(), 2, "Name"); }), "KORVAL:code:Index");
  EXPECT_EQ(thrownBy([&] { inFullFevalFcn(1, &result, 1, arguments); }), "KORVAL:host:NoFunctionName");
}

TEST(HostOperations, PropertiesAreReadAsThePublicClient) {
  code::World world;
  const ValuePtr pump = world.host.variable("pump");
  const ValuePtr pumps = world.host.variable("pumps");
  const auto read = [](const ValuePtr& object, std::size_t index, const char* name) {
    return *kxGetDoubles(ValuePtr(kxGetPropertyShared(object.get(), index, name), false).get());
  };
  EXPECT_EQ(read(pump, 0, "Flow"), 3);
  EXPECT_EQ(read(pump, 0, "Double"), 6);
  EXPECT_EQ(read(pumps, 0, "Double"), 2);
  EXPECT_EQ(read(pumps, 1, "Flow"), 3);
  EXPECT_EQ(*kxGetDoubles(ValuePtr(kxGetTypeProperty(pump.get(), 0, "Secret"), false).get()), 1);
  for (const auto& [name, error] : rowsOf<2>("tests/code/texts.rows", "properties"))
    EXPECT_EQ(thrownBy([&, &property = name] { kxGetPropertyShared(pump.get(), 0, property.c_str()); }),
              error)
        << name;
  world.host.setCodeLimits({.steps = 10});
  for (int time = 0; time < 20; ++time)
    EXPECT_EQ(read(pumps, 0, "Flow"), 1) << "no code runs, and none is limited";
}

TEST(HostOperations, OneGuardStandsBeforeAllCode) {
  code::World world;
  const ValuePtr pump = world.host.variable("pump");
  kxArray_tag* arguments[] = {pump.get()};
  kxArray_tag* result = nullptr;
  int status = 0;
  const std::vector<std::pair<std::function<void()>, bool>> rows{
      {[&] { evaluated("1", true, status); }, true},
      {[&] { inCallFcn(1, &result, 1, arguments, "size"), ValuePtr(result, false); }, true},
      {[&] { inCallFcnWithTrap(1, &result, 1, arguments, "size", true), ValuePtr(result, false); }, true},
      {[&] { ValuePtr(inCallMethodSingleInputSingleOutput(pump.get(), "size", 1), false); }, true},
      {[&] { ValuePtr(kxGetPropertyShared(pump.get(), 0, "Double"), false); }, true},
      {[&] { ValuePtr(kxGetPropertyShared(pump.get(), 0, "Flow"), false); }, false},
      {[&] { ValuePtr(kxGetTypeProperty(pump.get(), 0, "Flow"), false); }, false},
      {[&] { inValidInterpreterAvailable(); }, false}};
  for (const auto& [ask, runsCode] : rows) {
    SCOPED_TRACE(&ask - &rows[0].first);
    const std::size_t count = runsCode ? 1 : 0;
    const auto& record = [&]() -> const auto& { return world.host.codeRecord(); };
    world.host.clearCodeRecord();
    world.host.startLog();
    ask();
    EXPECT_EQ(embedded::Host::ranKorvalCode(world.host.takeLog()), runsCode);
    world.host.setCodePolicy(CodePolicy::Refused);
    EXPECT_EQ(thrownBy(ask), runsCode ? "KORVAL:host:CodeRefused" : "");
    EXPECT_EQ((std::vector{record().runs, record().refusals, record().refused.size()}),
              std::vector(3, count));
    trapCode(world.host);
    if (runsCode)
      EXPECT_DEATH(ask(), "Korval code was about to run");
    else
      ask();
    world.host.setRefusalObserver({});
    world.host.setCodePolicy(CodePolicy::Allowed);
  }
}

TEST(HostOperations, TextGoesToTheTopSink) {
  code::World world;
  std::vector<std::string> printed;
  world.host.setOutput([&](embedded::OutputKind kind, std::u16string_view text) {
    printed.push_back((kind == embedded::OutputKind::Output ? "out:" : "err:") + shown(std::u16string(text)));
  });
  const auto lower = boost::make_shared<services::io::KLStringSink>();
  const auto upper = boost::make_shared<services::io::KLStringSink>();
  world.run("disp('a')");
  KLStream::KLOut().push(lower);
  world.run("disp('b')");
  KLStream::KLOut().push(upper);
  EXPECT_EQ(lower->text(), u"b\n") << "pushing delivers what was held back";
  world.run("disp('c')");
  EXPECT_EQ(upper->text(), u"") << "held back";
  KLStream::KLOut().flush();
  EXPECT_EQ(upper->text(), u"c\n");
  KLStream::KLOut().pop();
  KLStream::KLOut().pop();
  EXPECT_EQ(thrownBy([] { KLStream::KLOut().pop(); }), "KORVAL:host:NoSink");
  matrix::setErrorMode(matrix::ErrorMode{});
  inEvalExp(u"x = 1\nnix", 0, nullptr, true, EvalSource::Query);
  matrix::setErrorMode(matrix::ErrorMode::Silent);
  inEvalExp(u"nix", 0, nullptr, true, EvalSource::Query);
  EXPECT_EQ(matrix::getErrorMode(), matrix::ErrorMode::Silent);
  const std::vector<std::string> expected{"out:a\n", "out:x = 1\n",
                                          "err:expression:2:1: \"nix\" is no variable, function, class or "
                                          "namespace [KORVAL:code:UndefinedName]\n"};
  EXPECT_EQ(printed, expected);
}

TEST(HostOperations, TheHostHasTextWhileTheCodeRuns) {
  code::World world;
  std::u16string printed;
  world.host.setOutput([&](embedded::OutputKind, std::u16string_view text) {
    if (printed.empty()) world.host.requestInterrupt();
    printed += text;
  });
  EXPECT_THROW(world.run("disp('a'), while true, end"), Tamsix::System::InterruptException);
  EXPECT_EQ(printed, u"a\n");
  world.host.clearInterrupt();
  KLStream::KLOut().push(boost::make_shared<services::io::KLStringSink>());
  world.run("disp('b')");
  KLStream::KLOut().pop();
  world.run("disp('c')");
  EXPECT_EQ(printed, u"a\nc\n") << "what a sink was not given is lost with it";
}

TEST(CodeFiles, AreFunctionsScriptsAndMethods) {
  const TempFolder folder;
  std::filesystem::copy(sourceFile("tests/code/files"), folder.path(),
                        std::filesystem::copy_options::recursive);
  code::World world(embedded::readSnapshot(folder / "world.json"));
  for (const auto& [text, printed, file] : rowsOf<3>("tests/code/texts.rows", "code files")) {
    EXPECT_EQ(world.value(text), printed);
    const auto failure = world.host.codeFailure();
    EXPECT_EQ(failure ? std::filesystem::path(failure->source).filename() : "", file) << text;
  }
  folder.write("twice.k", "function r = twice(x) r = 'changed'; end");
  std::filesystem::last_write_time(folder / "twice.k",
                                   std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_EQ(world.value("twice(4)"), "'changed'");
}

/// Whatever is inside, and whatever is wanted of the gate.
TEST(Release, AllocatesNothing) {
  code::World world;
  const std::vector<std::string> texts{
      "v = {}; for k = 1:2000, v = {v}; end", "v = cell(1, 1000); v(:) = {1}; v = [v v]",
      "v = struct('a', {{{1}, {pump, 'text'}}})", "v = {pumps, far, old, @lab.tune, ref, words, grid, big}",
      "v = {lab.Pump(3), lab.Mode.Idle, findpackage('old')}"};
  for (const bool isInterrupted : {false, true}) {
    for (const std::string& text : texts) {
      world.run(text + ";");
      auto value = world.host.variable("v");
      ASSERT_TRUE(value) << text;
      world.run("v = 0;");
      const auto before = embedded::Host::references().values;
      if (isInterrupted) world.host.requestInterrupt();
      {
        const allocations::Failing failing;
        value.reset();
      }
      EXPECT_LT(embedded::Host::references().values, before) << text;
      world.host.clearInterrupt();
    }
  }
}

}  // namespace
