#include <gtest/gtest.h>

#include "compare/FeatureDifference.h"
#include "model/Document.h"

namespace standalone {
namespace {

class FeatureDifferenceTest : public testing::Test {
 protected:
  FeatureDifferenceTest() {
    feature_->name = "Gap";
    const Attribute attributes[] = {{kGap, 0, Value::Real(0.5)}, {kPair, 1, Value::Link(other_)}};
    document_->SetAttributesRead(*feature_, attributes);
  }

  // "field key: before -> after", a line each.
  std::string Told() {
    std::string told;
    const Feature* const after = feature_->removed ? nullptr : feature_;
    for (const FieldDifference& each : Differences(document_->Before(*feature_), after)) {
      told += std::string(each.field) + ' ' + std::string(each.key) + ": " + each.before + " -> " +
              each.after + '\n';
    }
    return told;
  }

  const NameId kGap = NameTable::Intern("Gap");
  const NameId kPair = NameTable::Intern("Pair");
  DocumentPtr document_ = Document::Create("test");
  Feature* other_ = &document_->AppendRead(1, LateType::Of("A"));
  Feature* feature_ = &document_->AppendRead(2, LateType::Of("B"));
};

TEST_F(FeatureDifferenceTest, TellsEveryFieldThatDiffers) {
  document_->SetType(*feature_, LateType::Of("C"));
  document_->SetUpToDate(*feature_, false);
  ASSERT_TRUE(document_->PlaceBeneath(*feature_, *other_));
  document_->SetAttributeMode(*feature_, kPair, 3);
  document_->RemoveAttribute(*feature_, kGap);
  document_->SetAttribute(*feature_, NameTable::Intern("Table"), Value::List({}));
  EXPECT_EQ(Told(),
            "type : \"B\" -> \"C\"\n"
            "father :  -> {\"ref\":1}\n"
            "upToDate : true -> false\n"
            "attributes Gap: 0.5 -> \n"
            "modes Pair: 1 -> 3\n"
            "attributes Table:  -> []\n");
}

TEST_F(FeatureDifferenceTest, ChangedBackIsUnchanged) {
  document_->SetExternalName(*feature_, "New");
  EXPECT_TRUE(Differ(*document_->Before(*feature_), *feature_));
  document_->SetExternalName(*feature_, "");
  EXPECT_FALSE(Differ(*document_->Before(*feature_), *feature_));
  EXPECT_EQ(Told(), "");
}

// An attribute that moved to another place is the same one.
TEST_F(FeatureDifferenceTest, ValuesCountNotPlaces) {
  document_->RemoveAttribute(*feature_, kGap);
  document_->SetAttribute(*feature_, kGap, Value::Real(0.5));
  EXPECT_FALSE(Differ(*document_->Before(*feature_), *feature_));
  document_->SetAttribute(*feature_, kGap, Value::Real(-0.5));
  EXPECT_TRUE(Differ(*document_->Before(*feature_), *feature_));
}

TEST_F(FeatureDifferenceTest, ARemovedFeatureLosesAllThatItHeld) {
  document_->Remove(*feature_);
  EXPECT_EQ(Told(),
            "type : \"B\" -> \n"
            "name : \"Gap\" -> \n"
            "upToDate : true -> \n"
            "attributes Gap: 0.5 -> \n"
            "attributes Pair: {\"ref\":1} -> \n"
            "modes Pair: 1 -> \n");
}

}  // namespace
}  // namespace standalone
