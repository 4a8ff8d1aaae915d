#include "check/SonsLists.h"

#include <fmt/format.h>

#include "adapters/Attributes.h"
#include "analysis/Components.h"
#include "model/OpenList.h"

namespace standalone::check {
namespace {

constexpr std::size_t kSonsOfCurrentModel = 2;

constexpr DamageKind kTooFew{"\"SonsList\" holds fewer than two sons",
                             "Enter the condition's connector and \"AxisSystemType\" in \"SonsList\""};
constexpr DamageKind kStray{"\"SonsList\" holds others than old releases created, such as {}",
                            "Remove {} from \"SonsList\"", "SonsList"};
constexpr DamageKind kEndless{
    "its upgrade would never end, since {} is in \"SonsList\" where it expects a redundant force",
    "Remove {} from \"SonsList\"", "SonsList"};

// The list while it is trimmed. Positions count from 0 here.
class Sons {
 public:
  explicit Sons(Feature& feature) : feature_(feature), entries_(EntriesOf(feature)) {}

  [[nodiscard]] std::size_t Size() const { return entries_.Size(); }
  [[nodiscard]] const Feature* At(std::size_t position) {
    const Value* const entry = entries_.At(position + 1);
    return entry != nullptr && entry->Kind() == ValueKind::kLink ? entry->Target() : nullptr;
  }
  [[nodiscard]] bool IsComponentCalled(std::size_t position, std::string_view name) {
    const Feature* const son = At(position);
    return son != nullptr && son->name == name && IsComponent(*son);
  }
  // A son goes with all that stands beneath it. One of another father stays.
  void Remove(std::size_t position) {
    const Feature& son = *At(position);
    if (son.father != &feature_) return;
    for (const Feature* each = &son; each != nullptr; each = NextBeneath(son, *each))
      static_cast<void>(entries_.TakeOut(*each));
  }

 private:
  static std::span<const Value> EntriesOf(Feature& feature) {
    static const Key sonsList("SonsList");
    const Attribute* const list = feature.document->FindAttribute(feature, sonsList.Id());
    if (list == nullptr || list->value.Kind() != ValueKind::kList) return {};
    return list->value.Entries();
  }

  const Feature& feature_;
  OpenList entries_;
};

std::string LabelOf(const Feature* son) {
  return son == nullptr ? std::string("null") : fmt::format("{} (feature {})", son->name, son->id);
}

Trim Outcome(Sons& sons, std::size_t sizeBefore, std::string_view redundant) {
  Trim trim;
  trim.removesSome = sons.Size() < sizeBefore;
  if (sons.Size() < kSonsOfCurrentModel) trim.damage = &kTooFew;
  if (sons.Size() > kSonsOfCurrentModel) {
    trim.damage = &kStray;
    // The connector and the system of axes are the two that belong there.
    std::size_t stray = 0;
    const auto belongs = [&](std::size_t position) {
      const Feature* const son = sons.At(position);
      return son != nullptr && (!IsComponent(*son) || son->name == "AxisSystemType") &&
             son->name != redundant;
    };
    while (stray + 1 < sons.Size() && belongs(stray)) ++stray;
    trim.key = LabelOf(sons.At(stray));
  }
  return trim;
}

}  // namespace

Trim TrimDisplacement(Feature& feature) {
  constexpr std::string_view kRedundant = "DisplBCTrans";
  Sons sons(feature);
  const std::size_t sizeBefore = sons.Size();
  for (std::size_t position = sons.Size(); position-- > 1;) {
    if (sons.IsComponentCalled(position, kRedundant)) sons.Remove(position);
  }
  return Outcome(sons, sizeBefore, kRedundant);
}

// Two passes: from the end down to the fifth son, and then one redundant force after the other from the
// second place. The second pass waits for one there as long as the list was too long when it began.
Trim TrimConcentratedForce(Feature& feature) {
  constexpr std::string_view kForce = "ConcForce";
  constexpr std::string_view kMoment = "ConcForceMoment";
  Sons sons(feature);
  const std::size_t sizeBefore = sons.Size();
  for (std::size_t position = sons.Size(); position-- > 4;) {
    if (sons.IsComponentCalled(position, kForce) || sons.IsComponentCalled(position, kMoment))
      sons.Remove(position);
  }
  const std::size_t size = sons.Size();
  for (std::size_t removed = kSonsOfCurrentModel; removed < size; ++removed) {
    if (!sons.IsComponentCalled(1, kForce)) {
      return {false, true, &kEndless, LabelOf(sons.At(1))};
    }
    sons.Remove(1);
  }
  return Outcome(sons, sizeBefore, kForce);
}

}  // namespace standalone::check
