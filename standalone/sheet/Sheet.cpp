#include "sheet/Sheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>

#include "check/PerLateType.h"
#include "model/LargePages.h"
#include "sheet/Listed.h"
#include "sheet/Reader.h"

namespace standalone::sheet {
namespace {

// Which of the descriptions is a late type's; null for none.
const Description* DescriptionOf(std::string_view lateType) {
  for (const std::span<const Description> table : Descriptions()) {
    for (const Description& description : table) {
      if (Lists(description.lateTypes, " ", lateType)) return &description;
    }
  }
  return nullptr;
}

// Where features stand, for a walk in which most have the same father as the one before.
class Places {
 public:
  void Place(Subject& subject) {
    if (subject.father != father_ || father_ == nullptr) {
      father_ = subject.father;
      analysisCase_ = nullptr;
      step_ = nullptr;
      for (const Feature* above = father_; above != nullptr; above = above->father) {
        if (step_ == nullptr && IsStep(*above)) step_ = above;
        if (analysisCase_ == nullptr && IsCase(*above)) analysisCase_ = above;
      }
    }
    subject.analysisCase = IsCase(*subject.feature) ? subject.feature : analysisCase_;
    subject.step = IsStep(*subject.feature) ? subject.feature : step_;
  }

 private:
  static bool IsCase(const Feature& feature) { return feature.TypeName() == "AnalysisCase"; }
  static bool IsStep(const Feature& feature) { return feature.type->MetaClass().IsAKindOf(kind::kStep); }

  const Feature* father_ = nullptr;
  const Feature* analysisCase_ = nullptr;
  const Feature* step_ = nullptr;
};

bool IsSameFeature(const Feature* left, const Feature* right) {
  if (left == nullptr || right == nullptr) return left == right;
  return left->id == right->id;
}

// Links of two documents are compared by id; whole numbers and reals by what they are worth.
bool AreEqual(const Value& left, const Value& right) {
  if (left.Kind() != right.Kind()) return false;
  switch (left.Kind()) {
    case ValueKind::kLink:
      return IsSameFeature(left.Target(), right.Target());
    case ValueKind::kReal:
      return left.AsReal() == right.AsReal() || left == right;
    case ValueKind::kList:
      return std::ranges::equal(left.Entries(), right.Entries(), AreEqual);
    default:
      return left == right;
  }
}

// Of one document: the same in every respect.
bool AreIdentical(const Fact& left, const Fact& right) {
  return left.quantity == right.quantity && left.index == right.index && left.standing == right.standing &&
         left.dimension == right.dimension && left.value == right.value && left.context == right.context;
}

}  // namespace

std::span<const std::span<const Description>> Descriptions() {
  static const std::array tables{FrameDescriptions(),      ConditionDescriptions(), InteractionDescriptions(),
                                 ConstraintDescriptions(), PropertyDescriptions(),  OutputDescriptions(),
                                 ElementDescriptions(),    MeshDescriptions()};
  return tables;
}

std::string_view NameOf(Standing standing) {
  switch (standing) {
    case Standing::kSet:
      return "set";
    case Standing::kDefault:
      return "default";
    case Standing::kNotSet:
      return "notSet";
    case Standing::kUnreadable:
      return "unreadable";
  }
  return {};
}

bool SayTheSame(const Fact& left, const Fact& right) {
  const auto asOne = [](Standing standing) {
    return standing == Standing::kDefault ? Standing::kSet : standing;
  };
  if (asOne(left.standing) != asOne(right.standing)) return false;
  if (left.standing == Standing::kNotSet) return true;
  if (!AreEqual(left.value, right.value)) return false;
  return left.standing == Standing::kUnreadable ||
         (left.dimension == right.dimension && IsSameFeature(left.context, right.context));
}

const Subject* Sheet::Find(FeatureId id) const {
  const auto found = std::ranges::lower_bound(byId_, id, {}, &std::pair<FeatureId, std::uint32_t>::first);
  return found == byId_.end() || found->first != id ? nullptr : &subjects_[found->second];
}

std::vector<Fact> Sheet::FactsOf(const Subject& subject) {
  std::vector<Fact> facts;
  facts.reserve(subject.saidCount);
  std::span<const Fact> kept(subject.kept, subject.keptCount);
  for (const Item& item : subject.description->items) {
    const std::size_t first = facts.size();
    for (; !kept.empty() && kept.front().quantity == &item.quantity; kept = kept.subspan(1))
      facts.push_back(kept.front());
    if (facts.size() == first && item.IsSingle()) facts.push_back(ImpliedBy(item));
  }
  return facts;
}

const Fact* Sheet::Find(const Subject& subject, std::string_view quantity) {
  const auto& items = subject.description->items;
  const auto item =
      std::ranges::find_if(items, [&](const Item& each) { return each.quantity.name == quantity; });
  if (item == items.end()) return nullptr;
  const std::span<const Fact> kept(subject.kept, subject.keptCount);
  const auto found = std::ranges::find(kept, &item->quantity, &Fact::quantity);
  if (found != kept.end()) return &*found;
  return item->IsSingle() ? &ImpliedBy(*item) : nullptr;
}

Sheet::Sheet() : arena_(std::make_unique<std::pmr::monotonic_buffer_resource>(&LargePages::Instance())) {}

void Sheet::End(const Sheet* like) {
  Subject& subject = subjects_.back();
  subject.keptCount = static_cast<std::uint32_t>(facts_.size());
  factCount_ += subject.saidCount;
  const Subject* const model = like == nullptr ? nullptr : like->Find(subject.id);
  if (model != nullptr &&
      std::ranges::equal(std::span(model->kept, model->keptCount), facts_, AreIdentical)) {
    subject.kept = model->kept;
  } else {
    auto* const room = static_cast<Fact*>(arena_->allocate(facts_.size() * sizeof(Fact), alignof(Fact)));
    std::ranges::uninitialized_copy(facts_, std::span(room, facts_.size()));
    subject.kept = room;
  }
  facts_.clear();
}

void Sheet::Finish(std::vector<std::string> upgrades) {
  upgrades_ = std::move(upgrades);
  facts_.shrink_to_fit();
  byId_.reserve(subjects_.size());
  for (std::uint32_t i = 0; i < subjects_.size(); ++i) byId_.emplace_back(subjects_[i].id, i);
  if (!std::ranges::is_sorted(byId_)) std::ranges::sort(byId_);
}

Sheet ReadSheet(Document& document, const Sheet* like) {
  Sheet sheet;
  Reader reader(document, sheet);
  PerLateType<const Description*> descriptions;
  const auto describe = [&descriptions](const Feature& feature) {
    return descriptions.Of(*feature.type, [](const LateType& type) { return DescriptionOf(type.Name()); });
  };
  constexpr std::size_t kUsualShare = 3;  // one of so many features is a subject
  sheet.Expect(document.FeatureCount() / kUsualShare);
  Places places;
  for (Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    const Description* const description = describe(*feature);
    if (description == nullptr) continue;
    Subject subject{.kind = &description->kind,
                    .feature = feature,
                    .id = feature->id,
                    .lateType = feature->TypeName(),
                    .name = feature->externalName.empty() ? feature->name : feature->externalName,
                    .father = feature->father,
                    .description = description};
    places.Place(subject);
    sheet.Begin(subject);
    for (const Item& item : description->items) reader.Read(*feature, item);
    sheet.End(like);
  }
  sheet.Finish(document.Upgrades());
  return sheet;
}

std::string NameFor(const Feature& feature) {
  if (!feature.externalName.empty()) return std::string(feature.externalName);
  if (!feature.name.empty()) return std::string(feature.name);
  return fmt::format("{} {}", feature.TypeName(), feature.id);
}

}  // namespace standalone::sheet
