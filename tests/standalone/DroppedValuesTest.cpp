#include <fmt/format.h>
#include <gmock/gmock.h>

#include "compare/DroppedValues.h"
#include "support/UpgradeFixture.h"

namespace {

using namespace standalone;
using testing::ElementsAre;

class DroppedValuesTest : public testing_support::UpgradeTest {
 protected:
  // Takes the list and a text away, writes 12 to the same feature and the text to another one, and gives the
  // values that stand nowhere now.
  std::vector<std::int64_t> DroppedOf(const std::string& list) {
    Given(fmt::format(R"({{"id":1,"type":"X","attributes":{{"List":{},"Material":"Steel"}}}}
                         {{"id":2,"type":"Y","attributes":{{"Kept":11}}}})",
                      list));
    Doc().RemoveAttribute(At(1), NameTable::Intern("List"));
    Doc().RemoveAttribute(At(1), NameTable::Intern("Material"));
    Doc().SetAttribute(At(1), NameTable::Intern("New"), Value::Integer(12));
    Doc().SetAttribute(At(2), NameTable::Intern("New"), Value::String("Steel"));
    std::vector<std::int64_t> values;
    for (const DroppedValues& dropped : FindDroppedValues(Doc())) {
      EXPECT_EQ(NameTable::Text(dropped.key), "List");
      EXPECT_EQ(dropped.feature, &At(1));
      for (const Value& value : dropped.values) values.push_back(value.AsInteger());
    }
    return values;
  }
};

// What is looked for first depends on how much is gone; what is found must not.
TEST_F(DroppedValuesTest, FewAndManyValuesThatAreGoneAreFound) {
  EXPECT_THAT(DroppedOf("[11]"), ElementsAre(11));
  EXPECT_THAT(DroppedOf("[12]"), ElementsAre());
  EXPECT_THAT(DroppedOf("[11,12,13,14,15,0]"), ElementsAre(11, 13, 14, 15));
}

}  // namespace
