#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "Registries.h"
#include "WhatIsThrown.h"

// A built-in type that has left its registry does not come back, so each of these tests runs in a
// child process. The child ends through exit: its static records, the built-in ones among them, are
// destroyed after their names have left.

namespace {

/// Runs a test in a child process, where it may leave the registries as it likes.
template <typename Body>
void inChildProcess(Body body) {
  EXPECT_EXIT(
      {
        body();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}

template <typename Registry>
std::string refusal(const std::string& name) {
  return thrown([&] { Registry::create(name); });
}

template <typename Registry>
std::string refusalOfDefault() {
  return thrown([] { Registry::createDefault(); });
}

template <typename Registry>
std::unique_ptr<typename Registry::Type> registerSample(const std::string& name) {
  return std::make_unique<typename Registry::Type>(name, &makeSample<Registry, 1>);
}

/// Takes every name out of the registry, the built-in ones too.
template <typename Registry>
void emptyRegistry() {
  for (const std::string& name : Registry::Factory::getTypeNames()) registerSample<Registry>(name);
}

template <typename Registry>
class ChangedRegistryDeathTest : public testing::Test {};

using RegistryTypes = testing::Types<Readers, Writers>;
TYPED_TEST_SUITE(ChangedRegistryDeathTest, RegistryTypes);

TYPED_TEST(ChangedRegistryDeathTest, GivesAnApplicationsTypeUnderTheDefaultName) {
  for (const char* spelling : TypeParam::defaultSpellings) {
    inChildProcess([&] {
      const auto mine = registerSample<TypeParam>(spelling);
      EXPECT_EQ(sampleOf<TypeParam>(TypeParam::createDefault()), 1);
      for (const char* name : TypeParam::defaultSpellings) {
        EXPECT_EQ(sampleNamed<TypeParam>(name), 1);
      }
    });
  }
}

TYPED_TEST(ChangedRegistryDeathTest, HasNoDefaultOnceItsReplacementIsGone) {
  inChildProcess([] {
    const std::string name = TypeParam::defaultName;
    registerSample<TypeParam>(name);
    EXPECT_EQ(refusal<TypeParam>(name), TypeParam::unknown(name));
    EXPECT_EQ(refusalOfDefault<TypeParam>(), TypeParam::unknown(name));
    for (const std::string& left : TypeParam::Factory::getTypeNames()) EXPECT_NE(left, name);

    const auto mine = registerSample<TypeParam>(name);
    EXPECT_EQ(sampleOf<TypeParam>(TypeParam::createDefault()), 1);
  });
}

TYPED_TEST(ChangedRegistryDeathTest, KnowsNothingWhenItIsEmpty) {
  inChildProcess([] {
    emptyRegistry<TypeParam>();
    EXPECT_EQ(TypeParam::Factory::getTypeNames(), std::vector<std::string>{});
    for (const char* name : {"", "Expat", "xml", "Static-Sample", "Sample", "NoSuch"}) {
      EXPECT_EQ(refusal<TypeParam>(name), TypeParam::unknown(name));
    }
    EXPECT_EQ(refusalOfDefault<TypeParam>(), TypeParam::unknown(TypeParam::defaultName));
  });
}

TYPED_TEST(ChangedRegistryDeathTest, IsFilledAgainAfterItWasEmpty) {
  inChildProcess([] {
    for (int round = 0; round < 3; ++round) {
      emptyRegistry<TypeParam>();
      const auto b = registerSample<TypeParam>("B");
      EXPECT_EQ(TypeParam::Factory::getTypeNames(), std::vector<std::string>{"B"});
      const auto a = registerSample<TypeParam>("a");
      const auto c = registerSample<TypeParam>("_c");
      EXPECT_EQ(TypeParam::Factory::getTypeNames(), (std::vector<std::string>{"_c", "a", "B"}));
      EXPECT_EQ(sampleNamed<TypeParam>("A"), 1);
      EXPECT_EQ(sampleNamed<TypeParam>("b"), 1);
      EXPECT_EQ(refusal<TypeParam>("c"), TypeParam::unknown("c"));
    }
    EXPECT_EQ(TypeParam::Factory::getTypeNames(), std::vector<std::string>{});
  });
}

TYPED_TEST(ChangedRegistryDeathTest, ToleratesARecordThatOutlivesItsName) {
  inChildProcess([] {
    auto older = registerSample<TypeParam>("Sample");
    auto newer = registerSample<TypeParam>("Sample");
    emptyRegistry<TypeParam>();
    older.reset();
    EXPECT_EQ(TypeParam::Factory::getTypeNames(), std::vector<std::string>{});
    const auto other = registerSample<TypeParam>("Other");
    newer.reset();
    EXPECT_EQ(TypeParam::Factory::getTypeNames(), std::vector<std::string>{"Other"});
  });
}

template <typename Emptied, typename Other>
void expectOtherRegistryUntouched() {
  const std::vector<std::string> before = Other::Factory::getTypeNames();
  emptyRegistry<Emptied>();
  EXPECT_EQ(Other::Factory::getTypeNames(), before);
  EXPECT_NE(Other::createDefault(), nullptr);
}

TEST(EmptyRegistryDeathTest, LeavesTheOtherOneAsItWas) {
  inChildProcess(&expectOtherRegistryUntouched<Readers, Writers>);
  inChildProcess(&expectOtherRegistryUntouched<Writers, Readers>);
}

TEST(ChangedRegistryInTheParentDeathTest, StaysAsItWas) {
  const std::vector<std::string> readers = Readers::Factory::getTypeNames();
  const std::vector<std::string> writers = Writers::Factory::getTypeNames();
  inChildProcess([] {
    emptyRegistry<Readers>();
    emptyRegistry<Writers>();
    EXPECT_EQ(Readers::Factory::getTypeNames(), std::vector<std::string>{});
    EXPECT_EQ(Writers::Factory::getTypeNames(), std::vector<std::string>{});
  });
  EXPECT_EQ(Readers::Factory::getTypeNames(), readers);
  EXPECT_EQ(Writers::Factory::getTypeNames(), writers);
  EXPECT_NE(Readers::createDefault(), nullptr);
  EXPECT_NE(Writers::createDefault(), nullptr);
}

}  // namespace
