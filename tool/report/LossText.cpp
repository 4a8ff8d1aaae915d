#include "report/LossText.h"

#include <algorithm>
#include <unordered_map>

#include "file/FeatureText.h"
#include "terminal/Terminal.h"

namespace tool {
namespace {

using standalone::Document;
using standalone::DroppedValues;
using standalone::FeatureState;

constexpr std::size_t kMostTold = 20;

// Of one key, in all features.
struct DroppedKey {
  const DroppedValues* first;
  std::size_t features = 0;
};

std::vector<DroppedKey> ByKey(const std::vector<DroppedValues>& dropped) {
  std::vector<DroppedKey> keys;
  std::unordered_map<standalone::NameId, std::size_t> places;
  for (const DroppedValues& each : dropped) {
    const auto [place, isNew] = places.try_emplace(each.key, keys.size());
    if (isNew) keys.push_back({.first = &each});
    ++keys[place->second].features;
  }
  return keys;
}

std::string FirstValue(const DroppedValues& dropped) {
  constexpr std::size_t kLongest = 40;
  fmt::memory_buffer json;
  standalone::AppendValue(json, dropped.values.front());
  std::string text = Printable({json.data(), json.size()});
  if (text.size() > kLongest) {
    std::size_t end = kLongest;
    while ((static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    text = text.substr(0, end) + " ...";
  }
  return dropped.values.size() == 1 ? text : fmt::format("{} and {} more", text, dropped.values.size() - 1);
}

std::string LabelOf(const FeatureState& feature) {
  const std::string_view name = feature.externalName.empty() ? feature.name : feature.externalName;
  return fmt::format("{} {} (id {})", Word(feature.TypeName()), Quoted(name), feature.id);
}

}  // namespace

void AppendDropped(fmt::memory_buffer& out, const Document& document,
                   const std::vector<DroppedValues>& dropped, bool hasReport, bool all) {
  if (dropped.empty()) return;
  auto to = std::back_inserter(out);
  fmt::format_to(to, "  Dropped: {} of the old document had values that are nowhere in the result{}\n",
                 Count(dropped.size(), "attribute"), hasReport ? "" : "; --report lists them");
  const std::vector<DroppedKey> keys = ByKey(dropped);
  const std::size_t shown = all ? keys.size() : std::min(keys.size(), kMostTold);
  for (std::size_t i = 0; i < shown; ++i) {
    const DroppedValues& first = *keys[i].first;
    fmt::format_to(to, "    {} of {}: {}", Word(standalone::NameTable::Text(first.key)),
                   LabelOf(*document.Before(*first.feature)), FirstValue(first));
    if (keys[i].features > 1) fmt::format_to(to, ", and of {} more", keys[i].features - 1);
    out.push_back('\n');
  }
  if (shown < keys.size())
    fmt::format_to(to, "    and {}; --verbose lists them\n", Count(keys.size() - shown, "more key"));
}

void AppendAnalysis(fmt::memory_buffer& out, const SignOff& signOff, bool all) {
  const standalone::sheet::SheetTotals& totals = signOff.Totals();
  auto to = std::back_inserter(out);
  fmt::format_to(to, "  Analysis: {} equal, {} expressed differently", Count(totals.equal, "value"),
                 totals.same);
  if (totals.unaccounted != 0)
    fmt::format_to(to, ", {}",
                   Paint(stdout, Colour::kYellow, fmt::format("{} UNACCOUNTED FOR", totals.unaccounted)));
  fmt::format_to(to, ", {} changed on purpose ('hvxupgrade sheet OLD NEW' lists them)\n", totals.onPurpose);
  std::vector<SignOff::Purpose> purposes = signOff.Purposes();
  std::ranges::stable_sort(purposes, std::greater<>(), &SignOff::Purpose::differences);
  const std::size_t shown = all ? purposes.size() : std::min(purposes.size(), kMostTold);
  std::size_t left = totals.onPurpose;
  for (std::size_t i = 0; i < shown; ++i) {
    const SignOff::Purpose& purpose = purposes[i];
    fmt::format_to(to, "    {:>4}  {}: {}\n", purpose.differences, purpose.identifier, purpose.sentence);
    left -= purpose.differences;
  }
  if (shown < purposes.size()) {
    fmt::format_to(to, "    {:>4}  for {}; --verbose lists them\n", left,
                   Count(purposes.size() - shown, "more reason"));
  }
}

}  // namespace tool
