// The support that tests of upgrades are written with: what it must not let pass.

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include <algorithm>

#include "support/UpgradeFixture.h"
#include "workbench/HVXIUpgrade.h"

namespace {

using testing_support::Failing;
using testing_support::Library;
using testing_support::Withholding;

const HVXUpgradeClass& ClassNamed(std::string_view name) {
  return **std::ranges::find(Library().classes, name, &HVXUpgradeClass::name);
}

class TestSupportTest : public testing_support::UpgradeTest {};

TEST_F(TestSupportTest, FaultsOfALibraryAreTold) {
  const HVXUpgradeClass& clamp = ClassNamed("HVXEClampUpgrade");
  HVXUpgradeBinding row = clamp.bindings.front();
  row.purpose = "No sentence";
  row.harmless = "Nothing to do";
  const HVXUpgradeBinding rows[] = {row, clamp.bindings.front()};
  constexpr const char* kTypes[] = {"HVXClamp", "HVXClamp", "NeverHeardOfLT"};
  HVXUpgradeClass unsoundClass = clamp;
  unsoundClass.lateTypes = kTypes;
  unsoundClass.bindings = rows;
  HVXUpgradeClass greedy = ClassNamed("HVXEARSUpgrade");  // answers what its table does not tell
  greedy.bindings = {};
  HVXUpgradeClass ofNothing = clamp;
  ofNothing.name = "OfNothing";
  ofNothing.lateTypes = {};
  ofNothing.bindings = {};
  const HVXUpgradeClass* const classes[] = {&unsoundClass, &greedy, &ofNothing};
  const VLMUnicodeString identifiers[] = {"OfNobody", "MakeOutOfdateARS", "OfNobody"};
  const HVXUpgradeOrder orders[] = {{"OfNobody", "MakeOutOfdateARS", "No sentence"},
                                    {"OfNobody", "OfAcme", "It is told."},
                                    {"OfNobody", "OfAcne", "It is not."},
                                    {"MakeOutOfdateARS", "OfNobody", "It is a circle."},
                                    {"MakeOutOfdateARS", "OfNobody", "It is a circle."},
                                    // of the built-in library
                                    {"OfNobody", "UpgradeJobMemoryUnit", "It is known."}};
  HVXUpgradeLibrary unsound = Library();
  unsound.name = "";
  unsound.version = nullptr;
  unsound.identifiers = identifiers;
  unsound.classes = classes;
  unsound.documentUpgrades = {};
  unsound.orders = orders;
  EXPECT_THAT(testing_support::FaultsOf(unsound, {"OfAcme"}),
              testing::ElementsAre(
                  "the library has no name", "the library has no version",
                  "OfNobody stands twice among the identifiers",
                  "HVXEClampUpgrade: ReExplicitateFeature is not among the identifiers, so that it has no "
                  "place in the order",
                  "HVXEClampUpgrade: ReExplicitateFeature does not tell its purpose as a sentence",
                  "HVXEClampUpgrade: ReExplicitateFeature is not among the identifiers, so that it has no "
                  "place in the order",
                  "HVXEClampUpgrade: ReExplicitateFeature does not tell as a sentence why a failure is "
                  "harmless",
                  "HVXEClampUpgrade: ReExplicitateFeature has a second row, which is never reached "
                  "(HVXMatching::kFirstMatch)",
                  "MakeOutOfdateARS is among the identifiers, but nothing answers it",
                  "OfNobody is among the identifiers, but nothing answers it",
                  "HVXEClampUpgrade and HVXEClampUpgrade both extend HVXClamp with HVXIUpgrade",
                  "HVXEClampUpgrade: features of NeverHeardOfLT do not get HVXIUpgrade",
                  "HVXEARSUpgrade acts on features of HVXARSurfLT without an identifier of its own",
                  "OfNothing extends no late type",
                  "the order of OfNobody before MakeOutOfdateARS does not tell its reason as a sentence",
                  "the order of OfNobody before OfAcne names OfAcne, which no library has",
                  "the order of MakeOutOfdateARS before OfNobody stands twice",
                  "the orders contradict each other: MakeOutOfdateARS before OfNobody before "
                  "MakeOutOfdateARS"));
}

// Each of these would pass for the wrong reason.
TEST_F(TestSupportTest, ATestThatMissesWhatItIsAboutFails) {
  constexpr const char* kUnit = "UpgradeJobMemoryUnit";
  Given(R"({"id":1,"type":"HVXJobLT","name":"Job"})");
  EXPECT_NONFATAL_FAILURE(Upgrade(1, {"UpgradeJobMemoryUnits"}),
                          "no upgrade \"UpgradeJobMemoryUnits\". Did you mean UpgradeJobMemoryUnit?");
  EXPECT_NONFATAL_FAILURE(UpgradeUnder(Failing("HVXIJob::SetMemoryUnits"), 1, {kUnit}),
                          "HVXIJob::SetMemoryUnits was to fail and was never called. Did you mean HVXIJob::");
  EXPECT_NONFATAL_FAILURE(
      UpgradeUnder(Withholding("HVXIJobs"), 1, {kUnit}),
      "HVXIJobs was to be withheld, and no feature was asked for it. Did you mean HVXIJob?");
  EXPECT_NONFATAL_FAILURE(UpgradeUnder(Withholding("HVXIJob", 7), 1, {kUnit}),
                          "by feature #7, and only these were asked for it: #1");
  EXPECT_NONFATAL_FAILURE(Failing(""), "names no call that is to fail");
  EXPECT_NONFATAL_FAILURE(Failing("HVXIJob::SetMemoryUnit", "", S_OK),
                          "HVXIJob::SetMemoryUnit is to fail with 0, which is a code of success");
  EXPECT_NONFATAL_FAILURE(Withholding(""), "names no interface");
}

TEST_F(TestSupportTest, WhatNoTestCouldMeanIsTold) {
  const auto told = [](const auto& call) -> std::string {
    try {
      call();
    } catch (const std::logic_error& error) {
      return error.what();
    }
    return "nothing";
  };
  const auto upgrade = [this](const char* identifier) { static_cast<void>(Upgrade(1, {identifier})); };
  EXPECT_EQ(told([&] { upgrade("UpgradeJobMemoryUnit"); }),
            "the test has no document: hand its lines to Given first");
  EXPECT_EQ(told([&] { static_cast<void>(Lines()); }),
            "the test has no document: hand its lines to Given first");
  // Of a file and a header that the author never wrote nothing is said.
  EXPECT_THAT(told([&] { Given("{\"id\":1,\"type\":\"HVXJobLT\"}\n\n  {\"id\":oops}\n"); }),
              testing::StartsWith("line 3 of what was given: "));
  Given(R"({"id":1,"type":"HVXJobLT","name":"Job"})");
  EXPECT_EQ(told([&] { upgrade(nullptr); }), "an identifier that is handed over is null");
}

}  // namespace
