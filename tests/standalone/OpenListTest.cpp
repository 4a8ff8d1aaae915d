// Long lists that are changed entry by entry, against a plain list that is changed in the same way.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "adapters/Attributes.h"
#include "model/Document.h"

namespace standalone {
namespace {

const Key kList("Supports");
const Key kOther("Others");

class OpenListTest : public testing::Test {
 protected:
  OpenListTest() {
    owner_ = document_->Create(LateType::Of("HVXRigidBodyConstraintLT"), "Body", nullptr, nullptr);
    other_ = document_->Create(LateType::Of("HVXRigidBodyConstraintLT"), "Other", nullptr, nullptr);
    for (Feature* const feature : {owner_, other_}) {
      std::vector<Feature*> targets;
      for (int i = 0; i < 150; ++i) targets.push_back(NewTarget());
      WriteLinks(*feature, kList, targets);
    }
    plain_ = LinkEntries(*owner_, kList);
  }

  Feature* NewTarget() {
    targets_.push_back(
        document_->Create(LateType::Of("GeometrySmartConnector"), "Connector", nullptr, nullptr));
    return targets_.back();
  }
  // Mostly one that stands in the list.
  Feature* AnyTarget() {
    return plain_.empty() || Number(4) == 0 ? targets_[Number(targets_.size())]
                                            : plain_[Number(plain_.size())];
  }
  std::size_t Number(std::size_t below) { return random_() % below; }

  void ChangeSomehow() {
    Feature* const target = AnyTarget();
    // Long most of the time, and short now and then.
    switch (plain_.size() < 100 && Number(50) != 0 ? 4 : Number(9)) {
      case 0:
        document_->Remove(*target);
        std::erase(plain_, target);
        return;
      case 1:
        if (target->removed) return;
        InsertLink(*owner_, kList, *target, 1 + static_cast<int>(Number(plain_.size() + 1)));
        plain_ = LinkEntries(*owner_, kList);
        return;
      case 2:
        if (HoldsLink(*other_, kList, *target)) DropLink(*other_, kList, *target);
        InsertLink(*other_, kList, *NewTarget());
        return;
      case 3:
        InsertLink(*owner_, kOther, *owner_);
        return;
      case 4:
      case 5: {
        Feature* const added = Number(3) == 0 && !target->removed ? target : NewTarget();
        InsertLink(*owner_, kList, *added);
        plain_.push_back(added);
        return;
      }
      default:
        DropLink(*owner_, kList, *target);
        std::erase(plain_, target);
    }
  }

  void Compare() {
    ASSERT_EQ(CountEntries(*owner_, kList), plain_.size());
    Feature* const target = AnyTarget();
    ASSERT_EQ(HoldsLink(*owner_, kList, *target), std::ranges::find(plain_, target) != plain_.end());
    ASSERT_EQ(FindLinked(*owner_, kList, [](const Feature&) { return true; }),
              plain_.empty() ? nullptr : plain_.front());
    const std::size_t position = Number(plain_.size() + 2);
    const Value* const entry = EntryAt(*owner_, kList, position);
    ASSERT_EQ(entry != nullptr, position >= 1 && position <= plain_.size());
    ASSERT_EQ(entry == nullptr ? nullptr : entry->Target(),
              entry == nullptr ? nullptr : plain_[position - 1]);
    if (Number(8) != 0) return;
    ASSERT_EQ(LinkEntries(*owner_, kList), plain_);
    switch (Number(3)) {
      case 0:
        document_->DropAllDeadLinks();
        break;
      case 1:
        static_cast<void>(document_->AttributesOf(*owner_));
        break;
      default:
        static_cast<void>(document_->FindAttribute(*owner_, kList.Id()));
    }
    ASSERT_TRUE(IsStored(plain_));
  }
  [[nodiscard]] bool IsStored(const std::vector<Feature*>& targets) const {
    const auto list = std::ranges::find(owner_->Attributes(), kList.Id(), &Attribute::key);
    return std::ranges::equal(list->value.Entries(), targets, {}, &Value::Target);
  }

  DocumentPtr document_ = Document::Create("lists");
  Feature* owner_ = nullptr;
  Feature* other_ = nullptr;
  std::vector<Feature*> targets_;
  std::vector<Feature*> plain_;
  std::minstd_rand random_{11};
};

TEST_F(OpenListTest, HoldsWhatAPlainListWould) {
  for (int i = 0; i < 20'000 && !HasFatalFailure(); ++i) {
    ChangeSomehow();
    Compare();
  }
}

TEST_F(OpenListTest, TheStateBeforeTheChangesStays) {
  // As a document that was read has it.
  owner_->created = false;
  const std::vector<Feature*> before = plain_;
  for (int i = 0; i < 100; ++i) DropLink(*owner_, kList, *before[static_cast<std::size_t>(i)]);
  InsertLink(*owner_, kList, *NewTarget());
  document_->DropAllDeadLinks();
  const FeatureState& state = *document_->Before(*owner_);
  EXPECT_TRUE(std::ranges::equal(state.Attributes().front().value.Entries(), before, {}, &Value::Target));
  EXPECT_EQ(CountEntries(*owner_, kList), 51U);
}

TEST_F(OpenListTest, IsOpenedWhenTargetsGoOneByOne) {
  for (int i = 0; i < 3; ++i) {
    document_->Remove(*plain_[static_cast<std::size_t>(i)]);
    EXPECT_EQ(EntryAt(*owner_, kList, 1)->Target(), plain_[static_cast<std::size_t>(i) + 1]);
  }
  // What stands in the attribute was not made anew for each.
  ASSERT_NE(document_->OpenListOf(*owner_, kList.Id()), nullptr);
  EXPECT_FALSE(IsStored({plain_.begin() + 3, plain_.end()}));
  document_->DropAllDeadLinks();
  EXPECT_TRUE(IsStored({plain_.begin() + 3, plain_.end()}));
}

TEST_F(OpenListTest, ALinkInAnOpenListIsALinkFromElsewhere) {
  DropLink(*owner_, kList, *plain_[1]);
  InsertLink(*owner_, kList, *LinkEntries(*other_, kList).front());
  ASSERT_NE(document_->OpenListOf(*owner_, kList.Id()), nullptr);
  EXPECT_TRUE(document_->IsLinkedFromElsewhere(*LinkEntries(*other_, kList).front(), *other_));
  EXPECT_FALSE(document_->IsLinkedFromElsewhere(*plain_[1], *other_));

  DropLink(*owner_, kList, *plain_[2]);
  Feature& added = *NewTarget();
  InsertLink(*owner_, kList, added);
  EXPECT_TRUE(document_->IsLinkedFromElsewhere(added, *other_));
}

TEST_F(OpenListTest, ARemovedFeatureHasItsListAsItWasLast) {
  DropLink(*owner_, kList, *plain_.front());
  document_->Remove(*owner_);
  plain_.erase(plain_.begin());
  EXPECT_TRUE(IsStored(plain_));
  DropLink(*other_, kList, *LinkEntries(*other_, kList).front());
  EXPECT_EQ(CountEntries(*other_, kList), 149U);
}

// Removing all of them, one after the other, made the whole list anew each time.
TEST_F(OpenListTest, AHundredThousandLinksAreTakenOutInOnePass) {
  std::vector<Feature*> targets;
  for (int i = 0; i < 100'000; ++i) targets.push_back(NewTarget());
  WriteLinks(*owner_, kList, targets);
  for (Feature* const target : targets) {
    DropLink(*owner_, kList, *target);
    document_->Remove(*target);
    InsertLink(*owner_, kList, *owner_);
    ASSERT_FALSE(HasValue(*owner_, kOther));
  }
  EXPECT_EQ(CountEntries(*owner_, kList), targets.size());
}

}  // namespace
}  // namespace standalone
