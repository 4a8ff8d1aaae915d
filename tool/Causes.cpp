#include "Causes.h"

#include <algorithm>

#include "Failures.h"
#include "JsonOutput.h"

namespace tool {
namespace {

using standalone::DocumentOutcome;
using standalone::FeatureOutcome;
using standalone::LateType;

// The last of the outcomes, which stand in the order of their work, that had begun by then; null for none.
template <class Outcome>
const Outcome* LastBegun(const std::vector<Outcome>& outcomes, std::size_t place) {
  const auto after = std::ranges::upper_bound(outcomes, place, {}, &Outcome::touchedBefore);
  return after == outcomes.begin() ? nullptr : &*std::prev(after);
}

template <class Append>
std::string ObjectText(const Append& append) {
  fmt::memory_buffer out;
  JsonObject object(out);
  append(object);
  object.Close();
  return fmt::to_string(out);
}

void AppendVisited(JsonObject& object, const FeatureOutcome& visit) {
  standalone::AppendJsonInteger(object.Key("feature"), visit.feature->id);
  object.Text("type", visit.type->Name());
}

}  // namespace

std::string_view Causes::Of(std::size_t place) {
  if (place >= run_.touched) {
    // When all had run, links to what was removed were taken out.
    text_ = ObjectText([](JsonObject& object) { object.Flag("linkRemoved", true); });
    latest_ = nullptr;
  } else if (const FeatureOutcome* const propagated = LastBegun(run_.propagations, place)) {
    if (latest_ != propagated) {
      text_ = ObjectText([&](JsonObject& object) {
        AppendVisited(object, *propagated);
        object.Flag("propagation", true);
      });
    }
    latest_ = propagated;
  } else if (const DocumentOutcome* const whole = LastBegun(run_.documentUpgrades, place)) {
    if (latest_ != whole) {
      text_ = ObjectText(
          [&](JsonObject& object) { object.Texts("identifiers", std::span(&whole->identifier, 1)); });
    }
    latest_ = whole;
  } else if (const FeatureOutcome* const visit = LastBegun(run_.features, place)) {
    if (latest_ != visit) text_ = TextOfVisit(*visit);
    latest_ = visit;
  }
  return text_;
}

std::string Causes::TextOfVisit(const FeatureOutcome& visit) {
  std::vector<std::string> identifiers = IdentifiersFor(*visit.type);
  // A feature of another late type than before was visited again as what it had become.
  if (visit.feature->type != visit.type) {
    const std::vector<std::string>& more = IdentifiersFor(*visit.feature->type);
    identifiers.insert(identifiers.end(), more.begin(), more.end());
  }
  return ObjectText([&](JsonObject& object) {
    AppendVisited(object, visit);
    object.Texts("identifiers", identifiers);
  });
}

const std::vector<std::string>& Causes::IdentifiersFor(const LateType& type) {
  const auto [entry, added] = identifiers_.try_emplace(&type);
  if (added) entry->second = Concerning(manager_, run_.identifiers, type.Name());
  return entry->second;
}

}  // namespace tool
