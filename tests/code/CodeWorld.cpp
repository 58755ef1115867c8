#include "tests/code/CodeWorld.h"

namespace code {

namespace {

constexpr const char* lab = R"json({
  "format": 1,
  "classes": [
    {"name": "lab.Device",
     "properties": [{"name": "Serial", "value": 7}, {"name": "Secret", "access": "private", "value": 1},
                    {"name": "Inner", "access": "protected", "value": 2}],
     "methods": [{"name": "describe", "code": "function t = describe(obj) t = ['S' num2str(obj.Serial)]; end"},
                 {"name": "secret", "code": "obj.Secret + obj.Inner"}]},
    {"name": "lab.Pump", "superclasses": ["lab.Device"],
     "properties": [{"name": "Flow", "value": 3}, {"name": "Double", "dependent": true, "getter": "obj.Flow * 2"},
                    {"name": "Limit", "constant": true, "value": 10}, {"name": "Fixed", "set": "immutable"},
                    {"name": "Failing", "getter": "error('lab:broken', 'no %s', 'flow')"},
                    {"name": "Endless", "getter": "while true, end"}, {"name": "Silent", "getter": "x = 1;"}],
     "methods": [
       {"name": "Pump", "code": "function obj = Pump(flow)\n obj.Flow = flow;\n obj.Fixed = 5;\nend"},
       {"name": "plus", "code": "function r = plus(a, b)\n r = a.Flow + b;\nend"},
       {"name": "inner", "code": "obj.Inner"}, {"name": "theirs", "code": "obj.Secret"},
       {"name": "set", "code": "function obj = set(obj, flow) obj.Flow = flow; end"},
       {"name": "two", "code": "function [a, b] = two(obj) a = 1; b = helper(obj); end\nfunction r = helper(o) r = o.Flow; end"},
       {"name": "make", "static": true, "code": "lab.Pump(42)"}, {"name": "declared"},
       {"name": "hidden", "access": "private", "code": "1"},
       {"name": "properties", "code": "{'Own'; \"names\"}"}]},
    {"name": "lab.Mode", "enumeration": true, "members": ["Idle", "Running"]}
  ],
  "functions": [
    {"name": "lab.tune", "code": "function [a, b] = tune(x)\n a = x + 1;\n b = 'b';\nend"},
    {"name": "uses", "imports": ["lab.Pump", "lab.tune"], "code": "tune(Pump(4).Flow)"},
    {"name": "wild", "code": "import lab.*\nMode.Running"},
    {"name": "recurse", "code": "function r = recurse(n) r = recurse(n + 1); end"},
    {"name": "nothing", "code": "function nothing() disp('ran') end"},
    {"name": "early", "code": "function r = early(n)\n r = 1;\n if n > 0\n  return\n end\n r = 2;\nend"},
    {"name": "known"}
  ],
  "packages": [{"name": "old", "classes": ["A", "B"], "functions": ["f"]}],
  "foreignClasses": [{"name": "net.Socket", "members": ["open"]}],
  "workspace": [
    {"name": "pump", "value": {"object": "lab.Pump", "properties": {"Flow": 3}}},
    {"name": "pumps", "value": {"objects": [{"object": "lab.Pump", "properties": {"Flow": 1}}, {"object": "lab.Pump"}],
                                "class": "lab.Pump"}},
    {"name": "far", "value": {"opaque": "net.Thing", "fields": {"host": "h"}, "methods": {"ping": 5, "fail": null},
                              "java": true, "dimensions": "lazy"}},
    {"name": "old", "value": {"struct": {"a": 1}, "class": "Older"}},
    {"name": "big", "value": {"tall": [1, 2, 3]}}, {"name": "ref", "value": {"class": "lab.Pump"}},
    {"name": "grid", "value": {"char": "abcd", "size": [2, 2]}},
    {"name": "words", "value": {"strings": ["a", null], "size": [1, 2]}},
    {"name": "call", "value": {"handle": "lab.tune"}},
    {"name": "s", "value": {"struct": {"a": {"struct": {"b": 5}}, "t": "text"}}},
    {"name": "arr", "value": {"structs": [{"f": 1}, {"f": 2}, {"f": 3}]}}
  ]
})json";

}  // namespace

std::u16string wide(const std::string& text) { return {text.begin(), text.end()}; }

World::World() : World(lab) {}

World::World(const std::string& json)
    : host_(std::make_unique<embedded::Host>(embedded::readSnapshotText(json, "world"))), active_(*host_) {}

std::string World::failure() {
  const auto failed = host_->codeFailure();
  return failed ? "!" + failed->id + " " + std::to_string(failed->line) + ":" + std::to_string(failed->column)
                : "";
}

std::string World::run(const std::u16string& text) {
  matrix::setErrorMode(matrix::ErrorMode::Silent);
  inEvalExp(text, 0, nullptr, true, Tamsix::orvo::EvalSource::Query);
  return shown(host_->takeOutput()) + failure();
}

std::string World::run(const std::string& text) { return run(wide(text)); }

std::string World::value(const std::string& expression) {
  const std::string printed = run(expression);
  return printed.ends_with("\n") ? printed.substr(0, printed.size() - 1) : printed;
}

}  // namespace code
