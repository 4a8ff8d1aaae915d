#include "sheet/Sheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>
#include <unordered_map>

#include "check/PerLateType.h"
#include "model/LargePages.h"
#include "sheet/FactOrder.h"
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

// Where features stand, for a walk in which most have the same father as the one before. Nothing bounds how
// deep they stand beneath each other: what stands deep is remembered. A case that stands beneath a step, as
// in damaged documents, is in none: each step is of one case.
class Places {
 public:
  void Place(Subject& subject) {
    if (subject.father != father_ || father_ == nullptr) {
      father_ = subject.father;
      place_ = Above(father_);
    }
    const CaseAndStep place = At(*subject.feature, place_);
    subject.analysisCase = place.analysisCase;
    subject.step = place.step;
  }

 private:
  struct CaseAndStep {
    const Feature* analysisCase = nullptr;
    const Feature* step = nullptr;
  };

  static bool IsCase(const Feature& feature) { return feature.TypeName() == "AnalysisCase"; }
  static bool IsStep(const Feature& feature) { return feature.type->MetaClass().IsAKindOf(kind::kStep); }

  static CaseAndStep At(const Feature& feature, const CaseAndStep& above) {
    if (IsCase(feature)) return {&feature, nullptr};
    return {above.analysisCase, IsStep(feature) ? &feature : above.step};
  }

  // The nearest ones, `feature` included.
  CaseAndStep Above(const Feature* feature) {
    constexpr std::size_t kUsualDepth = 16;
    std::vector<const Feature*> path;
    CaseAndStep place;
    for (; feature != nullptr; feature = feature->father) {
      if (path.size() >= kUsualDepth || !deep_.empty()) {
        const auto known = deep_.find(feature);
        if (known != deep_.end()) {
          place = known->second;
          break;
        }
      }
      path.push_back(feature);
    }
    const bool isDeep = path.size() > kUsualDepth;
    for (; !path.empty(); path.pop_back()) {
      place = At(*path.back(), place);
      if (isDeep) deep_.emplace(path.back(), place);
    }
    return place;
  }

  const Feature* father_ = nullptr;
  CaseAndStep place_;
  std::unordered_map<const Feature*, CaseAndStep> deep_;
};

// Of one document: the same in every respect.
bool AreIdentical(const Fact& left, const Fact& right) {
  return left.quantity == right.quantity && left.index == right.index && left.standing == right.standing &&
         left.dimension == right.dimension && left.value == right.value && left.context == right.context;
}

}  // namespace

Dimension DimensionOfAttribute(std::string_view lateType, std::string_view key) {
  const Description* const description = DescriptionOf(lateType);
  if (description == nullptr) return Dimension::kNone;
  const auto isKept = [key](const Source& source) {
    return source.how == Source::How::kAttribute && source.behind.empty() && source.key == key;
  };
  const auto found = std::ranges::find_if(description->items, [&](const Item& item) {
    return item.as == As::kReal && (isKept(item.current) || isKept(item.old));
  });
  return found == description->items.end() ? Dimension::kNone : found->dimension;
}

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
  return Order(left, right) == 0;
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
