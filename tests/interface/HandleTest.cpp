// Handles on features, and what may be done with them while the document changes under them.

#include <cmath>
#include <limits>

#include "interface/InterfaceTest.h"

namespace {

using namespace hvxupgrade;
using namespace testing_support;
using testing::ElementsAre;

constexpr std::string_view kFamily =
    R"({"id":1,"type":"Folder","alias":"top"}
{"id":2,"type":"Part","father":{"ref":1},"attributes":{"Mate":{"ref":3},"Mates":[{"ref":3},{"ref":4},[{"ref":3},1]]},"modes":{"Mate":7}}
{"id":3,"type":"Part","father":{"ref":1}}
{"id":4,"type":"Part","father":{"ref":3},"upToDate":false,"physicalType":"Steel"}
)";

class HandleTest : public InterfaceTest {
 protected:
  static std::vector<FeatureId> IdsOf(const Document& document) {
    std::vector<FeatureId> ids;
    for (const Feature each : document.All()) ids.push_back(each.Id());
    return ids;
  }
};

TEST_F(HandleTest, AFeatureTellsWhatItsLineHolds) {
  const Document document = Given(kFamily);
  EXPECT_EQ(document.DisplayName(), "given.hvxdoc");
  EXPECT_EQ(document.FeatureCount(), 4U);
  const Feature top = *document.Find(1);
  EXPECT_EQ(top.Alias(), "top");
  EXPECT_FALSE(top.Father());
  EXPECT_THAT(top.Sons(), ElementsAre(*document.Find(2), *document.Find(3)));
  const Feature deep = *document.Find(4);
  EXPECT_EQ(deep.LateType(), "Part");
  EXPECT_EQ(deep.PhysicalType(), "Steel");
  EXPECT_FALSE(deep.IsUpToDate());
  EXPECT_EQ(deep.Father(), document.Find(3));
  const Feature part = *document.Find(2);
  EXPECT_THAT(part.Keys(), ElementsAre("Mate", "Mates"));
  EXPECT_EQ(part.Get("Mate"), Link{3});
  EXPECT_EQ(part.Mode("Mate"), 7);
  EXPECT_EQ(part.Get("Mates")->Json(), R"([{"ref":3},{"ref":4},[{"ref":3},1]])");
  EXPECT_FALSE(part.Get("Nothing"));
  EXPECT_FALSE(document.Find(5));
}

TEST_F(HandleTest, ARemovedFeatureIsGoneWithAllBeneathItAndEveryLinkToIt) {
  Document document = Given(kFamily);
  const Feature part = *document.Find(2);
  Feature removed = *document.Find(3);
  Feature beneath = *document.Find(4);
  document.Remove(removed);
  EXPECT_TRUE(removed.IsRemoved());
  EXPECT_TRUE(beneath.IsRemoved());
  EXPECT_EQ(removed.Id(), 3);
  EXPECT_FALSE(document.Find(4));
  EXPECT_FALSE(part.Has("Mate"));
  EXPECT_EQ(part.Get("Mates")->Json(), "[[1]]");
  EXPECT_EQ(document.FeatureCount(), 2U);

  const auto isRefused = [&](const auto& use) { ExpectError(Kind::kUsage, "was removed", use); };
  isRefused([&] { static_cast<void>(removed.LateType()); });
  isRefused([&] { static_cast<void>(removed.Father()); });
  isRefused([&] { static_cast<void>(removed.Sons()); });
  isRefused([&] { static_cast<void>(removed.Get("x")); });
  isRefused([&] { removed.Set("x", 1); });
  isRefused([&] { beneath.Remove("x"); });
  isRefused([&] { beneath.SetAlias("x"); });
  isRefused([&] { document.Remove(removed); });
  isRefused([&] { static_cast<void>(document.Create("Part", "", removed)); });
  EXPECT_EQ(TextOf(document), WithHeader(R"({"id":1,"type":"Folder","alias":"top"}
{"id":2,"type":"Part","father":{"ref":1},"attributes":{"Mates":[[1]]}}
)"));
}

TEST_F(HandleTest, WhatNoDocumentCanHoldIsRefusedAndChangesNothing) {
  Document document = Given(kFamily);
  const std::string before = TextOf(document);
  Feature part = *document.Find(2);
  Document other = Given(kFamily);
  const Value deepest = [] {
    Value value = 1;
    for (int depth = 0; depth < 8; ++depth) value = List{value};
    return value;
  }();
  const auto isRefused = [&](const char* problem, const auto& use) {
    ExpectError(Kind::kUsage, problem, use);
  };
  isRefused("key of an attribute is empty", [&] { part.Set("", 1); });
  isRefused("not UTF-8", [&] { part.Set("\xff", 1); });
  isRefused("not UTF-8", [&] { part.Set("x", "\xc3"); });
  isRefused("not UTF-8", [&] { part.SetAlias("\xc3("); });
  isRefused("not finite", [&] { part.Set("x", std::numeric_limits<double>::infinity()); });
  isRefused("not finite", [&] { part.Set("x", List{1, std::nan("")}); });
  isRefused("more than 8 deep", [&] { part.Set("x", List{deepest}); });
  isRefused("no feature 99", [&] { part.Set("x", List{Link{1}, Link{99}}); });
  isRefused("late type of a feature is empty", [&] { static_cast<void>(document.Create("")); });
  isRefused("not UTF-8", [&] { static_cast<void>(document.Create("\xff")); });
  isRefused("another document", [&] { static_cast<void>(document.Create("Part", "", other.Find(1))); });
  isRefused("another document", [&] { document.Remove(*other.Find(1)); });
  EXPECT_EQ(TextOf(document), before);
  part.Set("x", deepest);
  EXPECT_EQ(Read(folder_ / "text.hvxdoc").FeatureCount(), 4U);
  static_cast<void>(TextOf(document));
  EXPECT_EQ(Read(folder_ / "text.hvxdoc").Find(2)->Get("x"), deepest);
}

TEST_F(HandleTest, ValuesOfEveryKindComeBackAsTheyWereSet) {
  Document document;
  Feature made = document.Create("Part", "first");
  const Value values[] = {"text ä\n",
                          "",
                          std::numeric_limits<std::int64_t>::min(),
                          std::int64_t{9007199254740993},
                          0.1,
                          -0.0,
                          1e300,
                          3.0,
                          true,
                          Link{made.Id()},
                          Link{},
                          List{},
                          List{1, 1.0, "1", List{Link{made.Id()}, Value()}}};
  for (const Value& value : values) {
    made.Set("x", value);
    EXPECT_EQ(made.Get("x"), value) << value.Json();
    EXPECT_EQ(made.Get("x")->GetKind(), value.GetKind());
    static_cast<void>(TextOf(document));
    EXPECT_EQ(Read(folder_ / "text.hvxdoc").Find(made.Id())->Get("x")->Json(), value.Json());
  }
  EXPECT_TRUE(made.Remove("x"));
  EXPECT_FALSE(made.Remove("x"));
  EXPECT_EQ(Value(3).AsNumber(), 3.0);
  EXPECT_EQ(Value(2.5).AsNumber(), 2.5);
  EXPECT_THROW(static_cast<void>(Value("3").AsNumber()), std::bad_variant_access);
  try {
    static_cast<void>(Value(3).AsString());
    ADD_FAILURE() << "an integer is no text";
  } catch (const WrongKind& wrong) {
    EXPECT_STREQ(wrong.what(), "the value is an integer, not a text");
  }
}

// A letter would be kept as its number, and the size of a container might not fit.
static_assert(std::is_constructible_v<Value, int> && std::is_constructible_v<Value, std::int8_t> &&
              std::is_constructible_v<Value, unsigned> && std::is_constructible_v<Value, bool>);
static_assert(std::is_constructible_v<Value, float> && !std::is_constructible_v<Value, long double>);
static_assert(!std::is_constructible_v<Value, char> && !std::is_constructible_v<Value, wchar_t> &&
              !std::is_constructible_v<Value, std::size_t> &&
              !std::is_constructible_v<Value, std::nullptr_t> && !std::is_constructible_v<Value, int*>);

__extension__ using Wide = __int128;
__extension__ using UnsignedWide = unsigned __int128;
static_assert(!std::is_constructible_v<Value, Wide> && !std::is_constructible_v<Value, UnsignedWide>);

TEST_F(HandleTest, AValueMayBecomeAnEntryOfItsOwnList) {
  const Value entries[] = {42, std::string(100, 'x'), List{1, List{"deep"}}};
  for (const Value& entry : entries) {
    Value copied(List{entry, 7});
    copied = copied.AsList().front();
    EXPECT_EQ(copied, entry);
    Value moved(List{entry, 7});
    moved = std::move(const_cast<Value&>(moved.AsList().front()));  // as a program may that made the list
    EXPECT_EQ(moved, entry);
    Value& itself = moved;
    moved = itself;
    EXPECT_EQ(moved, entry);
  }
  static_assert(std::is_nothrow_move_assignable_v<Value>);
}

TEST_F(HandleTest, JsonIsGivenOfWhatADocumentCanHold) {
  Value deep = 1;
  for (int depth = 0; depth < 9; ++depth) deep = List{deep};
  const Value values[] = {std::nan(""), "\xff", List{"\xc3("}, deep};
  for (const Value& value : values) {
    const auto error = ErrorOf([&] { static_cast<void>(value.Json()); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->GetKind(), Kind::kUsage);
  }
  EXPECT_EQ(deep.AsList().front().Json(), "[[[[[[[[1]]]]]]]]");
}

TEST_F(HandleTest, AWalkMeetsWhatIsCreatedAndNotWhatIsRemoved) {
  for (const bool removesAtHand : {false, true}) {
    Document document = Given(kFamily);
    int left = 3;
    std::vector<FeatureId> met;
    for (Feature each : document.All()) {
      met.push_back(each.Id());
      if (each.Id() == 2) document.Remove(*document.Find(3));  // and 4: all that follows
      if (left-- > 0) static_cast<void>(document.Create("New"));
      if (removesAtHand) document.Remove(each);
    }
    // Without its father, nothing of the family is left to be met.
    EXPECT_EQ(met,
              removesAtHand ? (std::vector<FeatureId>{1, 5, 6, 7}) : (std::vector<FeatureId>{1, 2, 5, 6, 7}));
    EXPECT_EQ(IdsOf(document).empty(), removesAtHand);
  }
  EXPECT_TRUE(IdsOf(Document()).empty());
}

TEST_F(HandleTest, AWalkGoesOnWhenWhatStoodBeforeIsRemovedToo) {
  std::string lines;
  for (int id = 1; id <= 6; ++id) lines += R"({"id":)" + std::to_string(id) + R"(,"type":"Part"})" + "\n";
  Document document = Given(lines);
  std::vector<FeatureId> met;
  for (Feature each : document.All()) {
    met.push_back(each.Id());
    if (each.Id() != 3) continue;
    document.Remove(each);
    for (const FeatureId id : {1, 4, 2}) document.Remove(*document.Find(id));
  }
  EXPECT_THAT(met, ElementsAre(1, 2, 3, 5, 6));
  EXPECT_THAT(IdsOf(document), ElementsAre(5, 6));
}

TEST_F(HandleTest, HandlesOutliveAMoveOfTheDocument) {
  Document document = Given(kFamily);
  Feature part = *document.Find(2);
  Document moved = std::move(document);
  part.Set("x", 1);
  EXPECT_EQ(moved.Find(2)->Get("x"), 1);
}

}  // namespace
