#include <functional>
#include <thread>

#include "host/Arrays.h"
#include "host/Components.h"
#include "host/Dispatcher.h"
#include "host/Files.h"
#include "host/Frames.h"
#include "host/FunctionMetadata.h"
#include "host/Interpreter.h"
#include "host/Text.h"
#include "tests/host/Rows.h"

namespace {

using foundation::core::except::IException;
using world::Capability;
using world::InLab;
using world::runs;
using Value = boost::intrusive_ptr<kxArray_tag>;

Value variable(const std::string& name) { return {inGetValueFromCurrentWorkspace(name), false}; }

TEST_F(InLab, ValuesKnowTheirClass) {
  ASSERT_TRUE(runs());
  const Value pump = variable("pump"), number = variable("number");
  EXPECT_EQ(world::classNamed("lab.Pump").getID(), omGetCOSClassID(pump.get()));
  EXPECT_EQ("lab.Pump", kxGetClassName(pump.get()));
  EXPECT_GE(kxGetClassID(pump.get()), 19);
  EXPECT_EQ(6, kxGetClassID(number.get()));
  EXPECT_EQ(3U, kxGetNumberOfElements(number.get()));
  EXPECT_TRUE(kxIsScalar(pump.get()) && !kxIsScalar(number.get()));
  EXPECT_TRUE(omIsKCOS(pump.get()) && !omIsKCOS(number.get()) && !omIsKCOS(nullptr));
  EXPECT_TRUE(omGetCOSClassID(number.get()).isNull() && omGetCOSClassID(nullptr).isNull());
  for (const char* name : {"", "Pump", "nothing"}) EXPECT_FALSE(variable(name));
}

TEST_F(InLab, ReferencesBalanceAndNeedNoActiveHost) {
  const std::int64_t before = world::testedHost().liveValues();
  Value pump = variable("pump");
  kxAddReference(pump.get());
  EXPECT_FALSE(kxDropReference(pump.get()));
  lab->deactivate();
  lab.reset();
  const std::int64_t withPumpAlone = world::testedHost().liveValues();
  pump.reset();
  if (runs(Capability::CountsValues)) {
    EXPECT_EQ(before - 1, withPumpAlone) << "a value survives its host";
    EXPECT_EQ(before - 2, world::testedHost().liveValues());
  }
  lab = world::testedHost().build({});
  lab->activate();
}

/// What no host answers without being active.
const std::function<void()> questions[] = {
    [] { kcos::COSClass::getClass({}); },
    [] { kcos::COSNamespace::getNamespaceInterface({}); },
    [] { kcos::nameresolution::omResolveAnyClass("lab.Pump", nullptr); },
    [] { kcos::nameresolution::getUserVisibleClassName("lab.Pump"); },
    [] { kcos::nameresolution::isPackageQualifiedName(""); },
    [] { kcos::cosiToProp(nullptr); },
    [] { omGetCOSClassID(nullptr); },
    [] { omIsKCOS(nullptr); },
    [] { kcos::COSTypeRepository::getConversion({}, {}); },
    [] { kcos::COSValidationType::get({}); },
    [] { inGetValueFromCurrentWorkspace(""); },
    [] { IInterpreter::GetInterpreterBridge(); },
    [] { Kdispatcher::getDispatcher(); },
    [] { kdGetObjectSystem(); },
    [] { omGetFunctionMetadata("", nullptr); },
    [] { Tamsix::orvo::pushFrame(nullptr); },
    [] { fl::filesystem::status(u""); },
    [] { boost::intrusive_ptr<kxArray_tag>(kxCreateString(""), false); },
    [] { kxCreateClassArray(""); },
    [] { Tamsix::KorvalComponents::ComponentFeature::IsOn(); },
};

TEST_F(InLab, OnlyTheThreadOfAnActiveHostMayAsk) {
  const auto everyQuestionFails = [] {
    for (const auto& question : questions) {
      ASSERT_TRUE(runs());
      EXPECT_THROW(question(), foundation::core::except::Exception);
    }
    EXPECT_NO_THROW(kcos::internal::makeInterned(fl::i18n::to_string(fl::i18n::trim(u" a", u" "))));
    EXPECT_TRUE(fl::i18n::is_ascii_letter(u'a') && !fl::i18n::is_ascii_digit(u'a'));
  };
  for (const auto& question : questions) EXPECT_NO_THROW(question());
  std::thread(everyQuestionFails).join();
  lab->deactivate();
  everyQuestionFails();
  lab->activate();
  for (const auto& question : questions) EXPECT_NO_THROW(question());
}

/// A client's own type, which the host has never seen.
class OwnInterrupt : public Tamsix::System::InterruptException {
 public:
  std::unique_ptr<IException> clone() const override { return std::make_unique<OwnInterrupt>(*this); }
  [[noreturn]] void rethrow() const override { throw OwnInterrupt(*this); }
};

template <class Type>
void keepsItsType(const Type& exception) {
  ASSERT_TRUE(runs());
  const std::unique_ptr<IException> copy = exception.clone();
  EXPECT_NE(nullptr, dynamic_cast<const Type*>(copy.get()));
  EXPECT_NE(&exception, copy.get());
  EXPECT_THROW(copy->rethrow(), Type);
  try {
    copy->rethrow();
  } catch (const IException& caught) {
    EXPECT_EQ(typeid(Type), typeid(caught));
    EXPECT_NE(copy.get(), &caught) << "a copy is thrown";
  }
}

TEST(Exceptions, CopiesAndRethrownOnesKeepTheirType) {
  keepsItsType(foundation::core::except::Exception("KORVAL:test:id", "text"));
  keepsItsType(Tamsix::System::InterruptException());
  keepsItsType(OwnInterrupt());
  keepsItsType(kcos::ENoElements());
  keepsItsType(KORVAL::string::MissingNotSupported());
  keepsItsType(KORVAL::string::MustBeStringScalarOrCharacterVector());
  EXPECT_EQ("KORVAL:string:MissingNotSupported", KORVAL::string::MissingNotSupported().messageId());
  EXPECT_EQ("KORVAL:string:MustBeStringScalarOrCharacterVector",
            KORVAL::string::MustBeStringScalarOrCharacterVector().messageId());
  const auto copy = foundation::core::except::Exception("KORVAL:test:id", "text").clone();
  EXPECT_EQ("text", dynamic_cast<const foundation::core::except::Exception&>(*copy).message());
}

}  // namespace
