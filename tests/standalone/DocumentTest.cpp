#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <set>

#include "base/VLMLibrary.h"
#include "file/FeatureText.h"
#include "model/Document.h"
#include "support/UpgradeFixture.h"
#include "workbench/HVXISurfaceToSurfaceContactFact.h"

namespace {

using namespace standalone;
using testing::ElementsAre;

const NameId kA = NameTable::Intern("A");

class DocumentTest : public testing_support::UpgradeTest {
 protected:
  std::vector<FeatureId> Order() {
    std::vector<FeatureId> ids;
    for (const Feature* feature = Doc().First(); feature != nullptr; feature = feature->next)
      ids.push_back(feature->id);
    return ids;
  }
  std::vector<FeatureId> Sons(FeatureId father) {
    std::vector<FeatureId> ids;
    for (const Feature* son = At(father).firstSon; son != nullptr; son = son->nextSibling)
      ids.push_back(son->id);
    return ids;
  }
  std::vector<FeatureId> Touched() {
    std::vector<FeatureId> ids;
    for (const Feature* feature : Doc().Touched()) ids.push_back(feature->id);
    return ids;
  }
};

TEST_F(DocumentTest, TheStateBeforeTheFirstChangeIsKept) {
  Given(R"({"id":1,"type":"X","alias":"old","attributes":{"A":[1,2,3],"B":"b"},"modes":{"B":4}}
           {"id":2,"type":"X"})");
  const std::string before = Line(1);
  Feature& feature = At(1);
  EXPECT_EQ(Doc().Before(feature), &feature);

  Doc().SetExternalName(feature, "old");
  Doc().SetUpToDate(feature, true);
  Doc().SetAttribute(feature, NameTable::Intern("B"), Value::String("b"));
  Doc().SetAttributeMode(feature, NameTable::Intern("B"), 4);
  Doc().RemoveAttribute(feature, NameTable::Intern("NoSuch"));
  EXPECT_THAT(Touched(), ElementsAre());  // the old state again is no change

  for (int i = 4; i < 12; ++i) Doc().AppendToList(feature, kA, Value::Integer(i));
  Doc().SetAttributeMode(feature, NameTable::Intern("B"), 5);
  Doc().RemoveAttribute(feature, NameTable::Intern("B"));
  Doc().SetExternalName(feature, "new");
  Doc().SetType(feature, LateType::Of("Y"));
  Doc().SetPhysicalType(feature, "P");
  Feature& made = *Doc().Create(LateType::Of("Z"), "made", &feature, nullptr);
  EXPECT_EQ(
      Line(1),
      R"({"id":1,"type":"Y","alias":"new","physicalType":"P","attributes":{"A":[1,2,3,4,5,6,7,8,9,10,11]}})");
  EXPECT_EQ(LineOf(*Doc().Before(feature)), before);
  EXPECT_EQ(Doc().Before(made), nullptr);
  EXPECT_THAT(Touched(), ElementsAre(1, 3));
  Doc().Remove(At(2));
  EXPECT_THAT(Touched(), ElementsAre(1, 3, 2));
}

TEST_F(DocumentTest, TextsKeptOnceAreNotMixedUp) {
  Given(R"({"id":1,"type":"X"})");
  std::vector<std::string> texts;
  for (int i = 0; i < 5000; ++i) {
    texts.push_back(std::to_string(i));
    texts.push_back(fmt::format("the same front {:04} and the same back", i));
  }
  std::vector<std::string_view> kept;
  for (int time = 0; time < 2; ++time) {
    for (const std::string& text : texts) kept.push_back(Doc().Keep(std::string_view(text)));
  }
  for (std::size_t i = 0; i < kept.size(); ++i) EXPECT_EQ(kept[i], texts[i % texts.size()]);
  EXPECT_EQ(Doc().Keep("twice").data(), Doc().Keep(std::string("twice")).data());
}

TEST_F(DocumentTest, AttributesGrowAndKeepTheirOrder) {
  Given(R"({"id":1,"type":"X"})");
  std::string expected;
  for (int i = 0; i < 40; ++i) {
    Doc().SetAttribute(At(1), NameTable::Intern(fmt::format("K{}", i)), Value::Integer(i));
    expected += fmt::format(R"({}"K{}":{})", i == 0 ? "" : ",", i, i);
  }
  EXPECT_EQ(Line(1), fmt::format(R"({{"id":1,"type":"X","attributes":{{{}}}}})", expected));
}

// Many attributes are found in another way than few.
TEST_F(DocumentTest, ManyAttributesAreFoundAsFewAre) {
  Given(R"({"id":1,"type":"X"}
           {"id":2,"type":"X"})");
  Feature& feature = At(1);
  constexpr int kMany = 300;
  const auto key = [](int i) { return NameTable::Intern(std::to_string(i)); };
  for (int i = 0; i < kMany; ++i) {
    EXPECT_EQ(Doc().FindAttribute(feature, key(i)), nullptr);
    Doc().SetAttribute(feature, key(i), i == 70 ? Value::Link(&At(2)) : Value::Integer(i));
  }
  Doc().RemoveAttribute(feature, key(60));
  Doc().Remove(At(2));
  Doc().SetAttribute(feature, key(80), Value::Integer(-1));
  for (int i = 0; i < kMany; ++i) {
    const Attribute* const found = Doc().FindAttribute(feature, key(i));
    EXPECT_EQ(found == nullptr, i == 60 || i == 70) << i;
    if (found == nullptr) continue;
    EXPECT_EQ(found->value, Value::Integer(i == 80 ? -1 : i)) << i;
  }
}

TEST_F(DocumentTest, AFeatureIsRemovedOnce) {
  Given(R"({"id":1,"type":"X"}
           {"id":2,"type":"X","father":{"ref":1}}
           {"id":3,"type":"X"})");
  for (const FeatureId id : {2, 1, 2, 1}) Doc().Remove(At(id));
  EXPECT_EQ(Doc().FeatureCount(), 1U);
  EXPECT_THAT(Order(), ElementsAre(3));
}

TEST_F(DocumentTest, WhatIsNoListGivesWayToOne) {
  Given(R"({"id":1,"type":"X","attributes":{"A":"text","B":true}})");
  for (const char* const key : {"A", "B"}) {
    for (int i = 0; i < 2; ++i) Doc().AppendToList(At(1), NameTable::Intern(key), Value::Integer(i));
  }
  EXPECT_EQ(Line(1), R"({"id":1,"type":"X","attributes":{"A":[0,1],"B":[0,1]}})");
}

TEST_F(DocumentTest, ARemovedFeatureGoesWithItsSubtreeAndEveryLinkToIt) {
  Given(
      R"({"id":1,"type":"X","attributes":{"Single":{"ref":3},"List":[{"ref":2},{"ref":6},{"ref":3},null],"Keep":1}}
           {"id":2,"type":"X"}
           {"id":3,"type":"X","father":{"ref":2},"attributes":{"Up":{"ref":1}}}
           {"id":4,"type":"X","attributes":{"Nested":[[{"ref":3},7],[{"ref":3}],[[{"ref":6}]]]}}
           {"id":5,"type":"X","container":{"ref":3}}
           {"id":6,"type":"X"})");
  Doc().Remove(At(2));
  EXPECT_THAT(Order(), ElementsAre(1, 4, 5, 6));
  EXPECT_EQ(Lines(), R"({"id":1,"type":"X","attributes":{"List":[{"ref":6},null],"Keep":1}}
{"id":4,"type":"X","attributes":{"Nested":[[7],[],[[{"ref":6}]]]}}
{"id":5,"type":"X"}
{"id":6,"type":"X"}
)");
  EXPECT_NE(LineOf(*Doc().Before(At(4))).find(R"([{"ref":3},7])"), std::string::npos);
  EXPECT_EQ(Doc().Find(3), &At(3));
  EXPECT_TRUE(At(3).removed);
  EXPECT_EQ(Doc().NextId(), 7);
}

// Who links to a feature is told apart by none, one and several, and several are indexed by the first
// removal.
TEST_F(DocumentTest, LinksMadeBeforeAndAfterTheIndexAreDropped) {
  Given(R"({"id":1,"type":"X","attributes":{"A":{"ref":5}}}
           {"id":2,"type":"X","attributes":{"A":[{"ref":5},{"ref":6}]}}
           {"id":3,"type":"X","attributes":{"A":{"ref":6}}}
           {"id":4,"type":"X"}
           {"id":5,"type":"X"}
           {"id":6,"type":"X"}
           {"id":7,"type":"X"})");
  Doc().Remove(At(5));
  EXPECT_EQ(Line(1), R"({"id":1,"type":"X"})");
  EXPECT_EQ(Line(2), R"({"id":2,"type":"X","attributes":{"A":[{"ref":6}]}})");
  Doc().SetAttribute(At(4), kA, Value::Link(&At(6)));
  Doc().SetAttribute(At(1), kA, Value::Link(&At(7)));  // one, then several after the index
  Doc().AppendToList(At(2), kA, Value::Link(&At(7)));
  Doc().Remove(At(6));
  Doc().Remove(At(7));
  EXPECT_EQ(Lines(),
            R"({"id":1,"type":"X"}
{"id":2,"type":"X","attributes":{"A":[]}}
{"id":3,"type":"X"}
{"id":4,"type":"X"}
)");
}

TEST_F(DocumentTest, NothingComesToStandInWhatWasRemovedOrLinksToIt) {
  Given(R"({"id":1,"type":"SAMContainer"}
           {"id":2,"type":"HVXInteractionContainerLT"}
           {"id":3,"type":"X","container":{"ref":1},"attributes":{"A":[],"B":7}}
           {"id":4,"type":"AnalysisCase"})");
  Doc().Remove(At(1));
  Doc().Remove(At(2));
  EXPECT_EQ(At(3).Container(), nullptr);
  EXPECT_EQ(Doc().Create(LateType::Of("X"), "", &At(2), nullptr), nullptr);
  EXPECT_FALSE(Doc().PlaceBeneath(At(3), At(2)));
  EXPECT_FALSE(Doc().PlaceBeneath(At(2), At(3)));
  ASSERT_NE(Doc().Create(LateType::Of("X"), "", &At(3), &At(1)), nullptr);
  Doc().AppendToList(At(3), kA, Value::Link(&At(2)));
  Doc().AppendToList(At(3), kA, Value::Link(&At(4)));
  Doc().SetAttribute(At(3), NameTable::Intern("B"), Value::Link(&At(1)));
  EXPECT_EQ(Line(3), R"({"id":3,"type":"X","attributes":{"A":[{"ref":4}]}})");

  HVXISurfaceToSurfaceContactFact_var factory;
  ASSERT_EQ(VLMInstantiateComponent("HVXSurfaceToSurfaceContactFact", factory), S_OK);
  VLMISpecObject_var pair;
  EXPECT_EQ(factory->CreateContactPair(As<VLMISamAnalysisSet>(2), As<VLMBaseUnknown>(4), pair), E_FAIL);
  EXPECT_EQ(Lines(), R"({"id":3,"type":"X","attributes":{"A":[{"ref":4}]}}
{"id":4,"type":"AnalysisCase"}
{"id":5,"type":"X","father":{"ref":3}}
)");
}

TEST_F(DocumentTest, PlacingMovesAmongSonsAndInTheDocumentAlike) {
  Given(R"({"id":1,"type":"X"}
           {"id":2,"type":"X","father":{"ref":1}}
           {"id":3,"type":"X","father":{"ref":1}}
           {"id":4,"type":"X","father":{"ref":1}}
           {"id":5,"type":"X"}
           {"id":6,"type":"X","father":{"ref":5}})");
  Doc().PlaceBeside(At(3), At(2), /*after=*/true);
  Doc().PlaceBeside(At(3), At(4), /*after=*/false);
  Doc().PlaceBeside(At(3), At(3), /*after=*/true);
  EXPECT_THAT(Touched(), ElementsAre());  // each stood there already
  Doc().PlaceBeside(At(4), At(2), /*after=*/false);
  EXPECT_THAT(Sons(1), ElementsAre(4, 2, 3));
  EXPECT_THAT(Order(), ElementsAre(1, 4, 2, 3, 5, 6));
  Doc().PlaceBeside(At(4), At(3), /*after=*/true);
  EXPECT_THAT(Sons(1), ElementsAre(2, 3, 4));

  EXPECT_TRUE(Doc().PlaceBeneath(At(2), At(5)));
  EXPECT_THAT(Sons(1), ElementsAre(3, 4));
  EXPECT_THAT(Sons(5), ElementsAre(6, 2));
  EXPECT_THAT(Order(), ElementsAre(1, 3, 4, 5, 6, 2));
  EXPECT_TRUE(Doc().PlaceBeneath(At(5), At(4)));  // a root with all beneath it
  EXPECT_FALSE(Doc().PlaceBeneath(At(4), At(2)));
  EXPECT_FALSE(Doc().PlaceBeneath(At(4), At(4)));
  EXPECT_EQ(Document::CountBeneath(At(1)), 5U);
}

TEST_F(DocumentTest, IdsMayBeDenseAscendingOrScattered) {
  for (const auto& ids : {std::vector{1, 2, 3}, {2, 5, 9}, {7, 3, 5}, {1, 2, 9}, {1, 3, 2}}) {
    std::string lines;
    for (const int id : ids) lines += fmt::format("{{\"id\":{},\"type\":\"X\"}}\n", id);
    Given(lines);
    for (FeatureId id = -1; id < 12; ++id) {
      const Feature* const found = Doc().Find(id);
      ASSERT_EQ(found != nullptr, std::ranges::find(ids, id) != ids.end()) << lines << id;
      EXPECT_TRUE(found == nullptr || found->id == id);
    }
    const FeatureId next = *std::ranges::max_element(ids) + 1;
    EXPECT_EQ(Doc().Create(LateType::Of("X"), "", nullptr, nullptr)->id, next);
    EXPECT_EQ(Doc().Find(next)->id, next);
  }
}

// The same operations on a document and on the plainest model that could be right.
class PlainModel {
 public:
  struct Entry {
    enum { kInteger, kLink, kList } kind = kInteger;
    FeatureId number = 0;
    std::vector<Entry> entries;
  };
  struct Node {
    FeatureId father = 0;
    FeatureId container = 0;
    std::string type = "X";
    std::vector<std::pair<std::string, Entry>> attributes;
  };

  std::map<FeatureId, Node> nodes;
  std::vector<FeatureId> order;

  bool StandsBeneath(FeatureId id, FeatureId above) const {
    while (id != 0 && id != above) id = nodes.at(id).father;
    return id == above;
  }
  void Remove(FeatureId id) {
    std::vector<FeatureId> doomed;
    for (const auto& [each, node] : nodes) {
      if (StandsBeneath(each, id)) doomed.push_back(each);
    }
    for (const FeatureId each : doomed) {
      nodes.erase(each);
      std::erase(order, each);
    }
    for (auto& [each, node] : nodes) {
      if (!nodes.contains(node.container)) node.container = 0;
      std::erase_if(node.attributes, [this](const auto& attribute) { return IsDead(attribute.second); });
      for (auto& [key, entry] : node.attributes) DropDead(entry);
    }
  }
  void MoveBeside(FeatureId id, FeatureId other, bool after) {
    std::erase(order, id);
    order.insert(std::ranges::find(order, other) + (after ? 1 : 0), id);
  }
  void PlaceBeneath(FeatureId id, FeatureId father) {
    FeatureId last = 0;
    for (const FeatureId each : order) {
      if (nodes[each].father == father) last = each;
    }
    nodes[id].father = father;
    if (last != 0 && last != id) MoveBeside(id, last, true);
  }
  Entry* Find(FeatureId id, const std::string& key) {
    for (auto& [name, entry] : nodes[id].attributes) {
      if (name == key) return &entry;
    }
    return nullptr;
  }
  std::vector<FeatureId> OfTypes(const std::set<std::string>& types) const {
    std::vector<FeatureId> found;
    std::ranges::copy_if(order, std::back_inserter(found),
                         [&](FeatureId id) { return types.contains(nodes.at(id).type); });
    return found;
  }
  std::string Lines() const {
    std::string text;
    for (const FeatureId id : order) {
      const Node& node = nodes.at(id);
      text += fmt::format(R"({{"id":{},"type":"{}")", id, node.type);
      if (node.father != 0) text += fmt::format(R"(,"father":{{"ref":{}}})", node.father);
      if (node.container != 0) text += fmt::format(R"(,"container":{{"ref":{}}})", node.container);
      std::string separator = R"(,"attributes":{)";
      for (const auto& [key, entry] : node.attributes) {
        text += fmt::format(R"({}"{}":{})", separator, key, Text(entry));
        separator = ",";
      }
      text += node.attributes.empty() ? "}\n" : "}}\n";
    }
    return text;
  }

 private:
  bool IsDead(const Entry& entry) const {
    return entry.kind == Entry::kLink && !nodes.contains(entry.number);
  }
  void DropDead(Entry& entry) const {
    std::erase_if(entry.entries, [this](const Entry& each) { return IsDead(each); });
    for (Entry& each : entry.entries) DropDead(each);
  }
  static std::string Text(const Entry& entry) {
    if (entry.kind == Entry::kInteger) return std::to_string(entry.number);
    if (entry.kind == Entry::kLink) return fmt::format(R"({{"ref":{}}})", entry.number);
    std::string text;
    for (const Entry& each : entry.entries) text += (text.empty() ? "" : ",") + Text(each);
    return std::string("[").append(text).append("]");
  }
};

class RandomOperations {
 public:
  RandomOperations(Document& document, unsigned seed) : document_(document), random_(seed) {}

  PlainModel model;

  void Step() {
    FeatureId id = Any();
    if (id == 0) {
      model.nodes[id = document_.Create(LateType::Of("X"), "", nullptr, nullptr)->id] = {};
      model.order.push_back(id);
    }
    const std::string key(1, static_cast<char>('A' + Below(4)));
    const NameId name = NameTable::Intern(key);
    Feature& feature = *document_.Find(id);
    switch (Below(10)) {
      case 0: {
        const FeatureId father = Below(3) == 0 ? 0 : id;
        const FeatureId container = Below(3) == 0 ? Any() : 0;
        const std::string type = AnyType();
        const Feature& made =
            *document_.Create(LateType::Of(type), "", document_.Find(father), document_.Find(container));
        model.nodes[made.id] = {father, container, type, {}};
        model.order.push_back(made.id);
        break;
      }
      case 1:
        if (Below(4) != 0) break;  // documents shall grow
        document_.Remove(feature);
        model.Remove(id);
        break;
      case 2: {
        const FeatureId father = Any();
        const bool allowed = !model.StandsBeneath(father, id);
        ASSERT_EQ(document_.PlaceBeneath(feature, *document_.Find(father)), allowed);
        if (allowed) model.PlaceBeneath(id, father);
        break;
      }
      case 3: {
        const FeatureId other = Any();
        if (other == id || model.nodes[id].father == 0 || model.nodes[id].father != model.nodes[other].father)
          break;
        PlaceBeside(feature, *document_.Find(other), Below(2) == 0);
        break;
      }
      case 4:
        document_.RemoveAttribute(feature, name);
        std::erase_if(model.nodes[id].attributes,
                      [&key](const auto& attribute) { return attribute.first == key; });
        break;
      case 5:
        document_.SetType(feature, LateType::Of(model.nodes[id].type = AnyType()));
        break;
      case 6:
      case 7:
        if (PlainModel::Entry* const list = model.Find(id, key);
            list != nullptr && list->kind == list->kList) {
          const PlainModel::Entry entry = AnyEntry(1);
          document_.AppendToList(feature, name, ValueOf(entry));
          list->entries.push_back(entry);
          break;
        }
        [[fallthrough]];
      default: {
        const PlainModel::Entry entry = AnyEntry(0);
        document_.SetAttribute(feature, name, ValueOf(entry));
        PlainModel::Entry* const known = model.Find(id, key);
        (known != nullptr ? *known : model.nodes[id].attributes.emplace_back(key, entry).second) = entry;
      }
    }
  }

  void CheckSets() {
    const auto sets = [this](std::string_view kind) {
      std::vector<FeatureId> ids;
      for (const Feature* const set : document_.AnalysisSets(kind)) ids.push_back(set->id);
      return ids;
    };
    ASSERT_EQ(sets("PropertySet"), model.OfTypes({"PropertySet"}));
    ASSERT_EQ(sets(kind::kAnalysisCase), model.OfTypes({"AnalysisCase"}));
    ASSERT_EQ(sets(kind::kAnalysisSet), model.OfTypes({"AnalysisCase", "PropertySet"}));
    ASSERT_EQ(sets("X"), std::vector<FeatureId>());  // no set
  }

 private:
  // A move to where the feature stands among its brothers already leaves it where it stands in the document.
  void PlaceBeside(Feature& feature, Feature& other, bool after) {
    const bool there = (after ? other.nextSibling : other.previousSibling) == &feature;
    document_.PlaceBeside(feature, other, after);
    if (!there) model.MoveBeside(feature.id, other.id, after);
  }
  std::size_t Below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }
  std::string AnyType() {
    constexpr std::array kTypes{"X", "X", "X", "AnalysisCase", "PropertySet"};
    return kTypes[Below(kTypes.size())];
  }
  FeatureId Any() { return model.order.empty() ? 0 : model.order[Below(model.order.size())]; }
  PlainModel::Entry AnyEntry(int depth) {
    using Entry = PlainModel::Entry;
    const std::size_t choice = Below(depth < 3 ? 4 : 3);
    if (choice == 0) return {Entry::kInteger, static_cast<FeatureId>(Below(9)), {}};
    if (choice < 3) return {Entry::kLink, Any(), {}};
    Entry list{Entry::kList, 0, {}};
    for (std::size_t size = Below(5); size > 0; --size) list.entries.push_back(AnyEntry(depth + 1));
    return list;
  }
  Value ValueOf(const PlainModel::Entry& entry) {
    if (entry.kind == PlainModel::Entry::kInteger) return Value::Integer(entry.number);
    if (entry.kind == PlainModel::Entry::kLink) return Value::Link(document_.Find(entry.number));
    std::vector<Value> entries;
    for (const PlainModel::Entry& each : entry.entries) entries.push_back(ValueOf(each));
    return Value::List(document_.Keep(std::span<const Value>(entries)));
  }

  Document& document_;
  std::mt19937 random_;
};

TEST(DocumentRandomTest, AgreesWithThePlainModelAndKeepsTheStateBefore) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    const DocumentPtr made = Document::Create("random");
    RandomOperations first(*made.Get(), seed);
    for (int step = 0; step < 150; ++step) ASSERT_NO_FATAL_FAILURE(first.Step());
    const std::string lines = testing_support::LinesOf(*made.Get());
    ASSERT_EQ(lines, first.model.Lines());

    // Read, and changed again: ids have gaps now and fathers may come late.
    const DocumentPtr read = testing_support::DocumentOf(lines);
    ASSERT_EQ(testing_support::LinesOf(*read.Get()), lines);
    std::vector<Feature*> original;
    for (Feature* feature = read->First(); feature != nullptr; feature = feature->next)
      original.push_back(feature);
    RandomOperations second(*read.Get(), seed + 1000);
    second.model = first.model;
    for (int step = 0; step < 150; ++step) {
      ASSERT_NO_FATAL_FAILURE(second.Step());
      // Looking at single features drops their dead links early; that must make no difference.
      if (step % 7 == 0 && read->First() != nullptr) static_cast<void>(read->AttributesOf(*read->First()));
      if (step % 5 == 0) {
        ASSERT_NO_FATAL_FAILURE(second.CheckSets());
      }
    }
    ASSERT_EQ(testing_support::LinesOf(*read.Get()), second.model.Lines());
    std::string before;
    for (const Feature* feature : original) before += LineOf(*read->Before(*feature)) + "\n";
    ASSERT_EQ(before, lines);
  }
}

}  // namespace
