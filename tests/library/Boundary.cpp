#include <contextdata/KCOSContextData.h>
#include <contextdata/KCOSIntrospection.h>
#include <gtest/gtest.h>

#include <boost/exception/errinfo_api_function.hpp>
#include <boost/exception/get_error_info.hpp>
#include <boost/exception/info.hpp>
#include <memory>
#include <type_traits>

#include "host/Exceptions.h"
#include "tests/support/Text.h"
#include "tests/support/World.h"

namespace {

using foundation::core::except::IException;
using foundation::core::except::IInternalException;
using KCOSContextData::ResolvedClassID;
using BadName = ResolvedClassID::BadClassNameException;
using Tamsix::System::InterruptException;

constexpr const char* empty = R"({"format": 1})";

template <class Caught>
bool isCaughtAs() {
  try {
    ResolvedClassID::fromLegacyString("no.Such");
  } catch (const Caught& caught) {
    return typeid(caught) == typeid(BadName) && dynamic_cast<const BadName&>(caught).className == "no.Such";
  }
  return false;
}

TEST(Boundary, BadClassNamesAreCaughtByEveryBase) {
  World world(empty);
  EXPECT_TRUE(isCaughtAs<BadName>() && isCaughtAs<IInternalException>());
  EXPECT_TRUE(isCaughtAs<IException>() && isCaughtAs<boost::exception>());
}

TEST(Boundary, BadClassNamesKeepTypeAndContentWhenCopied) {
  World world(empty);
  try {
    ResolvedClassID::fromLegacyString("no.Such");
    FAIL() << "nothing was thrown";
  } catch (BadName& caught) {
    caught << boost::errinfo_api_function("fromLegacyString");
    const std::unique_ptr<IException> copy = caught.clone();
    EXPECT_NE(copy.get(), &caught);
    const IException& copied = *copy;
    ASSERT_EQ(typeid(copied), typeid(BadName));
    try {
      copy->rethrow();
    } catch (const BadName& again) {
      EXPECT_NE(static_cast<const IException*>(&again), copy.get());
      EXPECT_EQ(again.className, "no.Such");
      EXPECT_NE(boost::get_error_info<boost::errinfo_api_function>(again), nullptr);
    }
  }
}

struct DerivedInterrupt : InterruptException {
  std::unique_ptr<IException> clone() const override { return std::make_unique<DerivedInterrupt>(*this); }
  [[noreturn]] void rethrow() const override { throw DerivedInterrupt(*this); }
};

TEST(Boundary, ExceptionsOfTheHostAreCaughtByType) {
  World world(empty);
  const auto id = ResolvedClassID::fromKnownResolvedClassID("lab.Pump");
  world.host.requestInterrupt();
  EXPECT_THROW(KCOSIntrospection::getCOSClass(id), InterruptException);
  world.host.clearInterrupt();
  EXPECT_EQ(KCOSIntrospection::getCOSClass(id), nullptr);
  world.host.setFault({"kcos::COSClass::getClass", 1, false, [] { DerivedInterrupt().clone()->rethrow(); }});
  EXPECT_THROW(KCOSIntrospection::getCOSClass(id), DerivedInterrupt);
  EXPECT_TRUE(world.host.clearFault());
}

TEST(Boundary, IdentifiersAreOnePointer) {
  static_assert(sizeof(ResolvedClassID) == sizeof(void*) && alignof(ResolvedClassID) == alignof(void*));
  static_assert(std::is_trivially_copyable_v<ResolvedClassID>);
  static_assert(!std::is_default_constructible_v<ResolvedClassID>);
  const auto id = ResolvedClassID::fromKnownResolvedClassID("lab.Pump");
  const kcos::COSInternedName& interned = id;
  EXPECT_EQ(static_cast<const void*>(&interned), static_cast<const void*>(&id));
  EXPECT_EQ(interned, kcos::internal::makeInterned("lab.Pump"));
  const kcos::COSInternedName none = ResolvedClassID::fromKnownResolvedClassID("");
  EXPECT_EQ(&none.text(), &kcos::internal::nullValue);
}

TEST(Boundary, EveryHostAnswersForItself) {
  const auto answer = [] {
    std::vector<std::u16string> names;
    bool flag = false;
    KCOSContextData::getClassPropertyNames(std::u16string(u"lab.Pump"), names, flag);
    return shownList(names) + (flag ? " flag" : "");
  };
  World outer(R"({"format": 1, "classes": [{"name": "lab.Pump", "flag": true, "properties": ["Flow"]}]})");
  EXPECT_EQ(answer(), "Flow flag");
  {
    World inner(R"({"format": 1, "classes": [{"name": "lab.Pump", "properties": ["Speed"]}]})");
    EXPECT_EQ(answer(), "Speed");
    const embedded::Activation again(outer.host);
    EXPECT_EQ(answer(), "Flow flag");
  }
  EXPECT_EQ(answer(), "Flow flag");
}

TEST(Boundary, WithoutAHostQuestionsFailAsTheySay) {
  using namespace KCOSIntrospection;
  using namespace KCOSContextData;
  const auto id = ResolvedClassID::fromKnownResolvedClassID("plant:lab.Pump");
  const std::u16string name = u"lab.Pump";
  const kxArray_tag* value = nullptr;
  const Kfh_KORVAL_fn* scope = nullptr;
  std::vector<std::u16string> names;
  bool flag = false;
  EXPECT_EQ(getKCOSMethodsExcludeSet().size(), 29U);
  EXPECT_EQ(id.getComponentQualifiedName(), u"plant:lab.Pump");
  EXPECT_EQ(textOf(ResolvedClassID(u"tune", name)), "lab.Pump");
  for (const bool answer :
       {isKCOSClass(id), isKCOSClass(name), hasMethod(id, "start", flag), hasMethod(name, "start", flag),
        isKCOSClassDerivedFrom(id, id), isKCOSClassDerivedFrom(name, name),
        getClassPropertyNames(id, names, flag), getClassMethodNames(name, names, flag)})
    EXPECT_FALSE(answer);
  const std::function<void()> refused[] = {[&] { ResolvedClassID(scope, name); },
                                           [&] { ResolvedClassID{value}; },
                                           [&] { ResolvedClassID::fromLegacyString(name); },
                                           [&] { ResolvedClassID::isAlreadyResolved(name); },
                                           [&] { id.getNonComponentQualifiedName(); },
                                           [&] { ResolvedClassID::GetDebuggerFocus(); },
                                           [&] { isKCOSObject(value); },
                                           [&] { isKCOSNamespace(name); },
                                           [&] { getClassName(value); },
                                           [&] { hasMethod(value, "start"); },
                                           [&] { hasProperty(value, "Flow"); }};
  for (const auto& ask : refused) EXPECT_EQ(thrownBy(ask), "KORVAL:host:NotActive") << &ask - refused;
}

}  // namespace
