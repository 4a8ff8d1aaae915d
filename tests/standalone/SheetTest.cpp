// What a sheet says of old and of current storage.

#include "sheet/Sheet.h"
#include "support/UpgradeFixture.h"

namespace {

using namespace standalone;
using sheet::Dimension;
using sheet::Fact;
using sheet::Sheet;
using sheet::Standing;
using sheet::Subject;

class SheetTest : public testing_support::UpgradeTest {
 protected:
  // The facts of the feature that are of the quantity.
  std::vector<Fact> FactsOf(FeatureId id, std::string_view quantity) {
    sheet_ = sheet::ReadSheet(Doc());
    const Subject* const subject = sheet_.Find(id);
    if (subject == nullptr) throw std::logic_error("the feature is no subject");
    std::vector<Fact> facts = Sheet::FactsOf(*subject);
    std::erase_if(facts, [&](const Fact& fact) { return fact.quantity->name != quantity; });
    return facts;
  }
  Fact The(FeatureId id, std::string_view quantity) {
    const std::vector<Fact> facts = FactsOf(id, quantity);
    EXPECT_EQ(facts.size(), 1U) << quantity;
    return facts.empty() ? Fact() : facts.front();
  }
  double Number(FeatureId id, std::string_view quantity) {
    const Fact fact = The(id, quantity);
    EXPECT_EQ(fact.standing, Standing::kSet) << quantity;
    return fact.value.AsReal();
  }

 private:
  Sheet sheet_;
};

constexpr std::string_view kPressures = R"(
{"id":1,"type":"AnalysisModel","attributes":{"FeatList":[{"ref":20}]}}
{"id":10,"type":"HVXPressure","alias":"Old","attributes":{"pressure_param":{"ref":11}}}
{"id":11,"type":"Parameter","father":{"ref":10},"attributes":{"Magnitude":"PRESSURE","Value":3000000.0}}
{"id":12,"type":"SAMBasicComponent","name":"Pressure","father":{"ref":10},"attributes":{"Type":"SAMDouble","Values":0.0,"Magnitude":"PRESSURE"}}
{"id":20,"type":"HVXPressure","alias":"Current"}
{"id":21,"type":"SAMBasicComponent","name":"Pressure","father":{"ref":20},"attributes":{"Type":"SAMDouble","Values":3000000.0,"Magnitude":"PRESSURE"}}
{"id":30,"type":"HVXPressure","alias":"Without"}
{"id":40,"type":"HVXPressure","alias":"Damaged","attributes":{"pressure_param":{"ref":41}}}
{"id":41,"type":"Parameter","father":{"ref":40},"attributes":{"Magnitude":"FORCE","Value":"much"}}
)";

TEST_F(SheetTest, OldAndCurrentStorageSayTheSame) {
  Given(kPressures);
  const Fact old = The(10, "pressure");
  EXPECT_EQ(old.standing, Standing::kSet);
  EXPECT_EQ(old.dimension, Dimension::kPressure);
  EXPECT_EQ(old.value.AsReal(), 3e6);
  EXPECT_TRUE(SayTheSame(old, The(20, "pressure")));
}

TEST_F(SheetTest, NotSetDefaultAndUnreadableAreToldApart) {
  Given(kPressures);
  EXPECT_EQ(The(30, "pressure").standing, Standing::kNotSet);
  EXPECT_EQ(The(30, "amplitude").standing, Standing::kNotSet);
  const Fact damaged = The(40, "pressure");
  EXPECT_EQ(damaged.standing, Standing::kUnreadable);
  EXPECT_EQ(damaged.value.AsString(), "much");
  Given(R"({"id":1,"type":"HVXJobLT"})");
  const Fact frequency = The(1, "restart frequency");
  EXPECT_EQ(frequency.standing, Standing::kDefault);
  EXPECT_EQ(frequency.value.AsInteger(), 0);
}

TEST_F(SheetTest, AnotherUnitSaysSomethingElse) {
  Given(kPressures);
  const Fact before = The(20, "pressure");
  Doc().SetAttribute(At(21), NameTable::Intern("Magnitude"), Value::String(Doc().Keep("FORCE")));
  EXPECT_EQ(The(20, "pressure").dimension, Dimension::kForce);
  EXPECT_FALSE(SayTheSame(before, The(20, "pressure")));
  Doc().SetAttribute(At(21), NameTable::Intern("Magnitude"), Value::String(Doc().Keep("WEIGHT")));
  EXPECT_EQ(The(20, "pressure").dimension, Dimension::kUnknown);
}

// The parameters of these stay where they are when the value has moved.
TEST_F(SheetTest, RegistrationTellsWhichOfTwoValuesCounts) {
  Given(R"(
{"id":1,"type":"AnalysisModel","attributes":{"FeatList":[{"ref":10}]}}
{"id":10,"type":"HVXConcHeatFlux","attributes":{"magnitude_param":{"ref":11}}}
{"id":11,"type":"Parameter","father":{"ref":10},"attributes":{"Magnitude":"HEAT_FLOW","Value":1.0}}
{"id":12,"type":"SAMBasicComponent","name":"HeatFlux","father":{"ref":10},"attributes":{"Type":"SAMDouble","Values":2.0,"Magnitude":"HEAT_FLOW"}}
{"id":20,"type":"HVXConcHeatFlux","attributes":{"magnitude_param":{"ref":21}}}
{"id":21,"type":"Parameter","father":{"ref":20},"attributes":{"Magnitude":"HEAT_FLOW","Value":1.0}}
{"id":22,"type":"SAMBasicComponent","name":"HeatFlux","father":{"ref":20},"attributes":{"Type":"SAMDouble","Values":2.0,"Magnitude":"HEAT_FLOW"}}
)");
  EXPECT_EQ(Number(10, "heat flow"), 2.0);
  EXPECT_EQ(Number(20, "heat flow"), 1.0);
}

TEST_F(SheetTest, AMotionIsReadByDegreeOfFreedomUnderEitherName) {
  Given(R"(
{"id":10,"type":"HVXAccelerationBCLT"}
{"id":11,"type":"SAMBasicComponent","name":"HVXRotationalVelocity_1","father":{"ref":10},"attributes":{"Type":"SAMDouble","Values":4.5,"IsActive":1}}
{"id":12,"type":"SAMBasicComponent","name":"HVXAcceleration_4","father":{"ref":10},"attributes":{"Type":"SAMDouble","Values":0.0,"IsActive":0}}
{"id":20,"type":"HVXAccelerationBCLT"}
{"id":21,"type":"SAMBasicComponent","name":"HVXAcceleration_4","father":{"ref":20},"attributes":{"Type":"SAMDouble","Values":4.5,"IsActive":1}}
)");
  for (const std::string_view quantity : {"acceleration", "prescribed"}) {
    const std::vector<Fact> old = FactsOf(10, quantity);
    const std::vector<Fact> current = FactsOf(20, quantity);
    ASSERT_EQ(old.size(), 6U);
    EXPECT_TRUE(std::ranges::equal(old, current, sheet::SayTheSame)) << quantity;
  }
  const Fact fourth = FactsOf(10, "acceleration")[3];
  EXPECT_EQ(fourth.index, 4U);
  EXPECT_EQ(fourth.dimension, Dimension::kAngularAcceleration);
  EXPECT_EQ(fourth.value.AsReal(), 4.5);
  EXPECT_TRUE(FactsOf(10, "prescribed")[3].value.AsBoolean());
}

TEST_F(SheetTest, TheParameterOfAStepIsFoundInOldAndInCurrentSteps) {
  Given(R"(
{"id":10,"type":"HVXGeneralStaticStepLT","attributes":{"StepTimePeriod_param":{"ref":11}}}
{"id":11,"type":"Parameter","father":{"ref":10},"attributes":{"Magnitude":"Time","Value":2.5}}
{"id":20,"type":"HVXGeneralStaticStepLT","attributes":{"StepTimePeriod_param":{"ref":21}}}
{"id":21,"type":"Parameter","father":{"ref":20},"attributes":{"Magnitude":"Time","Value":9.0}}
{"id":22,"type":"SAMBasicComponent","name":"StepTime","father":{"ref":20},"attributes":{"Type":"SAMDouble","Values":1.0,"Magnitude":"Time","Parameter":{"ref":23}}}
{"id":23,"type":"Parameter","father":{"ref":20},"attributes":{"Magnitude":"Time","Value":2.5}}
{"id":30,"type":"HVXGeneralStaticStepLT"}
{"id":31,"type":"SAMBasicComponent","name":"StepTime","father":{"ref":30},"attributes":{"Type":"SAMDouble","Values":2.5,"Magnitude":"Time"}}
)");
  for (const FeatureId step : {10, 20, 30}) EXPECT_EQ(Number(step, "time period"), 2.5) << step;
  Doc().RemoveAttribute(At(23), NameTable::Intern("Value"));
  EXPECT_EQ(The(20, "time period").standing, Standing::kNotSet);  // the old one no longer counts
}

constexpr std::string_view kContacts = R"(
{"id":1,"type":"Product","name":"Assembly"}
{"id":2,"type":"Surface","name":"Foot"}
{"id":5,"type":"SAMGenericConnDesign","name":"Foot to plate"}
{"id":6,"type":"SAMFaceFaceContact","attributes":{"ClearanceFlag":true,"Clearance":0.5,"Supports":[{"ref":7}]}}
{"id":7,"type":"GeometrySmartConnector","father":{"ref":6},"attributes":{"FirstObject":{"ref":5},"SecondObject":{"ref":1}}}
{"id":10,"type":"HVXSurfaceToSurfaceContactLT","attributes":{"connectionProperty":{"ref":6},"slidingFormulation":1,"constraintEnforcement":0,"thicknessOption":true}}
{"id":20,"type":"HVXContactConnectionEnhancementStdLT","attributes":{"connectionProperty":{"ref":6},"slidingFormulation":0,"SlidingFormulation":1,"InterferenceFit":{"ref":25},"Supports":[{"ref":21}]}}
{"id":21,"type":"GeometrySmartConnector","father":{"ref":20},"attributes":{"FirstObject":{"ref":5},"SecondObject":{"ref":1}}}
{"id":22,"type":"SAMBasicComponent","name":"ContactSettings","father":{"ref":20},"attributes":{"Type":"SAMComposite"}}
{"id":23,"type":"SAMBasicComponent","name":"CnstEnfMethod","father":{"ref":22},"attributes":{"Type":"SAMInteger","Values":1}}
{"id":24,"type":"SAMBasicComponent","name":"ThicknessOptioin","father":{"ref":22},"attributes":{"Type":"SAMBoolean","Values":true}}
{"id":25,"type":"HVXInterferenceFitLT","father":{"ref":20},"attributes":{"FitType":1,"Definition":1,"Value":0.5}}
)";

// The releases number the enforcement the other way round, and the pair's old keys stay beside the new.
TEST_F(SheetTest, AnOldContactSaysWhatThePairSaysThatItBecame) {
  Given(kContacts);
  for (const std::string_view quantity :
       {"between", "sliding", "constraint enforcement", "thickness considered", "fit type", "fit definition",
        "fit value", "adjustment", "interaction property"}) {
    EXPECT_TRUE(SayTheSame(The(10, quantity), The(20, quantity))) << quantity;
  }
  EXPECT_EQ(The(10, "constraint enforcement").value.AsString(), "surface to surface");
  EXPECT_EQ(The(10, "sliding").value.AsString(), "small");
  EXPECT_EQ(The(10, "between").value.Target(), &At(5));
  EXPECT_EQ(Number(10, "fit value"), 0.5);
}

TEST_F(SheetTest, ASupportOnGeometryIsMeantInAProduct) {
  Given(R"(
{"id":1,"type":"Product","name":"Left"}
{"id":2,"type":"Surface","name":"Foot"}
{"id":3,"type":"SAMGroup","name":"Faces"}
{"id":10,"type":"HVXClamp","attributes":{"Supports":[{"ref":11},{"ref":12},{"ref":13},17]}}
{"id":11,"type":"GeometrySmartConnector","father":{"ref":10},"attributes":{"FirstObject":{"ref":2},"SecondObject":{"ref":1}}}
{"id":12,"type":"GeometrySmartConnector","father":{"ref":10},"attributes":{"FirstObject":{"ref":3},"SecondObject":{"ref":1}}}
{"id":13,"type":"GeometrySmartConnector","father":{"ref":10},"attributes":{"SecondObject":{"ref":1}}}
)");
  const std::vector<Fact> supports = FactsOf(10, "support");
  ASSERT_EQ(supports.size(), 4U);
  EXPECT_EQ(supports[0].value.Target(), &At(2));
  EXPECT_EQ(supports[0].context, &At(1));
  EXPECT_EQ(supports[1].context, nullptr);
  EXPECT_EQ(supports[2].standing, Standing::kNotSet);
  EXPECT_EQ(supports[3].standing, Standing::kUnreadable);
}

// Nothing in the feature tells degrees from radians.
TEST_F(SheetTest, TheUnitOfAnOrientationAngleFollowsFromTheUpgrades) {
  Given(R"(
{"id":10,"type":"HVXShellSectionEnhLT","attributes":{"MaterialOrientation":{"ref":11}}}
{"id":11,"type":"HVXMatOrientationLT","father":{"ref":10},"attributes":{"Angle":90.0}}
)");
  EXPECT_EQ(The(10, "orientation angle").dimension, Dimension::kDegrees);
  Doc().RecordUpgrade("UpgradeMatOrientAngleToRadians");
  EXPECT_EQ(The(10, "orientation angle").dimension, Dimension::kAngle);
}

TEST_F(SheetTest, SubjectsKnowTheirCaseAndStep) {
  Given(R"(
{"id":1,"type":"AnalysisCase","alias":"Static"}
{"id":2,"type":"HVXSimulationHistoryLT","father":{"ref":1}}
{"id":3,"type":"HVXInitialStepLT","father":{"ref":2}}
{"id":4,"type":"HVXRiksStepLT","father":{"ref":2}}
{"id":5,"type":"HVXLoadContainerLT","father":{"ref":4}}
{"id":6,"type":"HVXClamp","father":{"ref":5}}
{"id":7,"type":"HVXJobLT","father":{"ref":1}}
{"id":8,"type":"SAMGroup"}
{"id":9,"type":"AnalysisCase","alias":"Astray","father":{"ref":4}}
{"id":10,"type":"HVXJobLT","father":{"ref":9}}
)");
  const Sheet all = sheet::ReadSheet(Doc());
  EXPECT_EQ(all.Find(6)->step, &At(4));
  EXPECT_EQ(all.Find(6)->analysisCase, &At(1));
  EXPECT_EQ(all.Find(7)->step, nullptr);
  EXPECT_EQ(all.Find(7)->analysisCase, &At(1));
  EXPECT_EQ(all.Find(8)->analysisCase, nullptr);
  EXPECT_EQ(all.Find(10)->analysisCase, &At(9));
  EXPECT_EQ(all.Find(10)->step, nullptr);
  EXPECT_EQ(The(4, "position in the history").value.AsInteger(), 2);
  EXPECT_EQ(all.Find(5), nullptr);
}

// A sheet made like another one shares what is the same, and only that.
TEST_F(SheetTest, ASecondSheetTellsWhatChangedSinceTheFirst) {
  Given(kPressures);
  const Sheet before = sheet::ReadSheet(Doc());
  Doc().SetAttribute(At(11), NameTable::Intern("Value"), Value::Real(1.0));
  const Sheet after = sheet::ReadSheet(Doc(), &before);
  EXPECT_EQ(Sheet::Find(*before.Find(10), "pressure")->value.AsReal(), 3e6);
  EXPECT_EQ(Sheet::Find(*after.Find(10), "pressure")->value.AsReal(), 1.0);
  EXPECT_EQ(before.Find(20)->kept, after.Find(20)->kept);
  EXPECT_EQ(before.FactCount(), after.FactCount());
}

TEST(SheetUnitTest, NumbersAreShownInTheUnitsOfASystem) {
  using enum sheet::UnitSystem;
  EXPECT_EQ(InUnit(3e6, Dimension::kPressure, kMmT), 3.0);
  EXPECT_EQ(SymbolOf(Dimension::kPressure, kMmT), "MPa");
  EXPECT_EQ(InUnit(9.81, Dimension::kAcceleration, kMmT), 9810.0);
  EXPECT_EQ(InUnit(2.0, Dimension::kMoment, kMmT), 2000.0);
  EXPECT_EQ(InUnit(5e5, Dimension::kStiffness, kMmT), 500.0);
  EXPECT_EQ(InUnit(3e6, Dimension::kPressure, kSi), 3e6);
  EXPECT_EQ(sheet::DimensionOf("TEMPRTRE"), Dimension::kTemperature);
  EXPECT_EQ(sheet::DimensionOf(""), Dimension::kUnknown);
}

}  // namespace
