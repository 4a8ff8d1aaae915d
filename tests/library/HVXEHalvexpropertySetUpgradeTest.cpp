#include <fmt/format.h>

#include "support/GermanMessages.h"
#include "support/UpgradeFixture.h"

namespace {

using testing_support::Recording;
using testing_support::Withholding;

class HVXEHalvexpropertySetUpgradeTest : public testing_support::UpgradeTest {
 protected:
  std::string Renamed(std::string_view name) {
    Given(fmt::format(R"({{"id":1,"type":"HVXHalvexPropertySetLT","alias":"{}"}})", name));
    EXPECT_EQ(UpgradeUnder(Recording(), 1, {"UpgradeFeaturesExternalName"}), S_OK);
    return std::string(At(1).externalName);
  }
};

TEST_F(HVXEHalvexpropertySetUpgradeTest, EveryOccurrenceOfTheOldNameIsReplaced) {
  EXPECT_EQ(Renamed("Halvex Properties"), "Nonlinear and Thermal Properties");
  EXPECT_EQ(Renamed("Halvex Properties.12"), "Nonlinear and Thermal Properties.12");
  EXPECT_EQ(Renamed("Halvex Properties, Halvex Properties"),
            "Nonlinear and Thermal Properties, Nonlinear and Thermal Properties");
  EXPECT_EQ(Renamed("HALVEX Properties"), "HALVEX Properties");
}

TEST_F(HVXEHalvexpropertySetUpgradeTest, ANameWithoutItIsWrittenBackUnchanged) {
  EXPECT_EQ(Renamed("Steel"), "Steel");
  EXPECT_EQ(Calls("VLMIAlias::Set"), CallList{"VLMIAlias::SetExternalName #1 Steel"});
}

TEST_F(HVXEHalvexpropertySetUpgradeTest, NamesAreThoseOfTheSessionsLanguageOnly) {
  const testing_support::GermanMessages german;
  EXPECT_EQ(Renamed("Halvex Eigenschaften.1"), "Nichtlineare und thermische Eigenschaften.1");
  EXPECT_EQ(Renamed("Halvex Properties"), "Halvex Properties");
}

TEST_F(HVXEHalvexpropertySetUpgradeTest, AMissingAliasIsNotReported) {
  Given(R"({"id":1,"type":"HVXHalvexPropertySetLT","alias":"Halvex Properties"})");
  EXPECT_EQ(UpgradeUnder(Withholding("VLMIAlias", 1), 1, {"UpgradeFeaturesExternalName"}), S_OK);
  EXPECT_EQ(At(1).externalName, "Halvex Properties");
}

}  // namespace
