// What is around values and classes: streams, frames, folders, functions' arguments, precedence.

#include <boost/smart_ptr/make_shared.hpp>
#include <cmath>

#include "host/Arrays.h"
#include "host/Dispatcher.h"
#include "host/Frames.h"
#include "host/FunctionMetadata.h"
#include "host/Interpreter.h"
#include "host/Streams.h"
#include "host/Text.h"
#include "tests/host/Rows.h"
#include "tests/support/Table.h"
#include "tests/support/TempFolder.h"

namespace {

using services::io::KLStream;
using services::io::KLStringSink;
using world::Capability;
using world::InLab;
using world::runs;

int evaluate(const std::u16string& text) {
  return inEvalExp(text, 0, nullptr, true, Tamsix::orvo::EvalSource::Query);
}

TEST_F(InLab, TheTopSinkGetsTheText) {
  ASSERT_TRUE(runs());
  KLStream &out = KLStream::KLOut(), &error = KLStream::KLErr();
  const auto lower = boost::make_shared<KLStringSink>(), upper = boost::make_shared<KLStringSink>();
  const auto errors = boost::make_shared<KLStringSink>();
  out.push(lower);
  error.push(errors);
  EXPECT_EQ(0, evaluate(u"disp('below')"));
  out.push(upper);
  EXPECT_EQ(0, evaluate(u"disp('above')"));
  out.flush();
  out.pop();
  EXPECT_EQ(0, evaluate(u"disp('below again')"));
  matrix::setErrorMode(matrix::ErrorMode::Silent);
  EXPECT_EQ(matrix::ErrorMode::Silent, matrix::getErrorMode());
  EXPECT_NE(0, evaluate(u"nothing.of.that.name"));
  error.flush();
  EXPECT_EQ(u"", errors->text());
  matrix::setErrorMode(matrix::ErrorMode{});
  EXPECT_NE(0, evaluate(u"nothing.of.that.name"));
  error.flush();
  EXPECT_NE(u"", errors->text());
  error.pop();
  out.flush();
  out.pop();
  EXPECT_EQ(u"below\nbelow again\n", lower->text());
  EXPECT_EQ(u"above\n", upper->text());
}

TEST_F(InLab, FramesAreKeptAndNeverCalled) {
  ASSERT_TRUE(runs());
  const char frames[2] = {};  // nothing that could be called
  const auto push = [](const char& frame) {
    return Tamsix::orvo::pushFrame(reinterpret_cast<const IExecutionFrame*>(&frame));
  };
  auto outer = push(frames[0]), inner = push(frames[1]);
  EXPECT_TRUE(outer && inner);
  outer.reset();
  EXPECT_TRUE(push(frames[0]));
}

TEST_F(InLab, FoldersListTheirEntries) {
  ASSERT_TRUE(runs());
  namespace files = std::filesystem;
  std::optional<TempFolder> folder(std::in_place);
  files::create_directories(*folder / "@Class");
  folder->write("code.k", "");
  const std::u16string path = folder->path().u16string();
  std::vector<FileNameWithStat> entries{{u"kept", fl::filesystem::file_status()}};
  ioGetDirList(path + u"/*", entries, 1);
  folder.reset();
  using Type = fl::filesystem::file_type;
  std::set<std::pair<std::u16string, Type>> found;
  for (const FileNameWithStat& entry : entries) found.emplace(entry.name, entry.status.type());
  EXPECT_EQ((std::set<std::pair<std::u16string, Type>>{
                {u"kept", Type::not_found}, {u"@Class", Type::directory}, {u"code.k", Type::regular}}),
            found);
  EXPECT_EQ(u"kept", entries.front().name);
  EXPECT_EQ(Type::not_found, fl::filesystem::status(path).type());
}

TEST_F(InLab, TheCurrentFolderHasAnAbsoluteName) {
  ASSERT_TRUE(runs());
  using foundation::storage::vfs::CanonicalAbsoluteIRI;
  CanonicalAbsoluteIRI name = Kdispatcher::getDispatcher()->GetCurrentWorkingFolder()->get().getLocation();
  EXPECT_EQ(fl::filesystem::file_type::directory,
            fl::filesystem::status(Tamsix::PathManagement::GetStringFromIRI(name)).type());
  for (int steps = 0; name != name.getParent(); name = name.getParent()) {
    ASSERT_LT(++steps, 1000);
    EXPECT_TRUE(name.text().ends_with(name.getName()));
  }
  EXPECT_EQ(u"", name.getName());
  EXPECT_TRUE(Kdispatcher::getDispatcher()->GetCurrentPath());
}

/// Each argument in one line: name kind class size validators values.
std::string about(const boost::intrusive_ptr<kxArray_tag>& arguments) {
  if (!arguments) return "none";
  std::string all;
  const auto text = [](const kxArray_tag* value) {
    return fl::i18n::to_string(Tamsix::String::getScalarText(value));
  };
  for (std::size_t at = 0; at < kxGetNumberOfElements(arguments.get()); ++at) {
    const auto field = [&](const char* name) { return kxGetField(arguments.get(), at, name); };
    for (const char* name : {"name", "kind", "class"}) all += text(field(name)) + " ";
    for (std::size_t extent = 0; extent < kxGetNumberOfElements(field("size")); ++extent)
      all += std::isnan(kxGetDoubles(field("size"))[extent]) ? ":" : "3";
    for (const char* name : {"validators", "values"})
      for (std::size_t element = 0; element < kxGetNumberOfElements(field(name)); ++element)
        all += " " + text(kxGetCell(field(name), element));
    all += "; ";
  }
  return all;
}

TEST_F(InLab, FunctionsTellTheirArguments) {
  EXPECT_EQ(0U, omGetFunctionMetadata("", nullptr).flags);
  EXPECT_EQ("none", about(omGetFunctionMetadata("no such function", nullptr).inputArguments));
  if (!runs(Capability::ArgumentDeclarations)) return;
  const Kfh_KORVAL_fn* declared = Kdispatcher::getDispatcher()->findFunction(u"lab.declared");
  for (const auto& [name, function] :
       {std::pair("lab.declared", (const Kfh_KORVAL_fn*)nullptr), std::pair("", declared)}) {
    const FunctionMetadata metadata = omGetFunctionMetadata(name, function);
    EXPECT_EQ("x positional double :3 f g; mode name-value   on off; ", about(metadata.inputArguments));
    EXPECT_EQ("none", about(metadata.outputArguments));
    EXPECT_EQ(5U, metadata.flags);
  }
  // The scope says what the name means, and answers for no other function.
  const Kfh_KORVAL_fn* scope = Kdispatcher::getDispatcher()->findFunction(u"lab.run");
  EXPECT_EQ(5U, omGetFunctionMetadata("lab.declared", scope).flags);
  EXPECT_EQ(5U, omGetFunctionMetadata("declared", scope).flags);
  EXPECT_EQ(0U, omGetFunctionMetadata("lab.run", declared).flags);
  EXPECT_EQ(0U, omGetFunctionMetadata("no such function", declared).flags);
}

TEST_F(InLab, PrecedenceIsThatOfTheDeclaration) {
  if (!runs(Capability::Precedence)) return;
  const KobjectSystem& objects = *kdGetObjectSystem();
  const auto precedes = [&](const char* first, const char* second) {
    return objects.precedes(objects.getClassIdentifier(first), objects.getClassIdentifier(second));
  };
  EXPECT_TRUE(precedes("lab.Pump", "double"));
  EXPECT_TRUE(precedes("lab.Pump", "lab.Color"));
  EXPECT_FALSE(precedes("lab.Color", "lab.Pump") || precedes("double", "lab.Pump"));
  EXPECT_FALSE(precedes("no such class", "lab.Pump") || precedes("lab.Pump", "no such class"));
  EXPECT_EQ(nullptr, objects.getClassIdentifier("no such class"));
}

TEST_F(InLab, ClassNumbersFollowDerivation) {
  const KclassRegistry& registry = *Kdispatcher::getDispatcher()->getClassRegistry();
  for (const auto& [first, second, isA] : tableOf<3>(R"(
    lab.Pump | Base | true; Base | lab.Pump | false; Base | Base | true; unknown | unknown | false
    unknown | Base | false; double | double | true; double | char | false; double | Base | false)")) {
    ASSERT_TRUE(runs());
    EXPECT_EQ(isA == "true", registry.isA(registry.getClassNumber(first), registry.getClassNumber(second)))
        << first << " " << second;
  }
}

}  // namespace
