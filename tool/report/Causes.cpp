#include "report/Causes.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>

#include "file/DocumentFormat.h"
#include "report/JsonOutput.h"

namespace tool {
namespace {

namespace format = standalone::format;
using standalone::ChangedPart;
using standalone::ChangeNote;
using standalone::Feature;
using standalone::UpgradeWork;

struct FieldPart {
  std::string_view field;
  ChangedPart part;
};
constexpr FieldPart kParts[] = {
    {format::kType, ChangedPart::kType},
    {format::kAlias, ChangedPart::kAlias},
    {format::kFather, ChangedPart::kFather},
    {format::kContainer, ChangedPart::kContainer},
    {format::kUpToDate, ChangedPart::kUpToDate},
    {format::kPhysicalType, ChangedPart::kPhysicalType},
    {format::kAttributes, ChangedPart::kAttribute},
    {format::kModes, ChangedPart::kAttribute},
};

void Append(fmt::memory_buffer& out, const UpgradeWork& work) {
  JsonObject object(out);
  object.Text("upgrade", work.upgrade->identifier);
  if (work.feature != nullptr) {
    standalone::AppendJsonInteger(object.Key("feature"), work.feature->id);
    object.Text("type", work.type->Name());
  }
  if (work.kind == UpgradeWork::Kind::kPropagation) object.Flag("propagation", true);
  if (work.kind == UpgradeWork::Kind::kDeadLinks) object.Flag("linkRemoved", true);
  object.Close();
}

}  // namespace

Causes::Causes(const standalone::Document& document, const standalone::UpgradeRun& run)
    : run_(run), notes_(document.Changes().Notes()), byFeature_(notes_.size()) {
  std::iota(byFeature_.begin(), byFeature_.end(), 0U);
  std::ranges::sort(byFeature_, std::less<>(),
                    [this](std::uint32_t place) { return std::pair(notes_[place].feature, place); });
  last_ = byFeature_.begin();
}

Causes::Places::const_iterator Causes::FirstOf(const Feature& feature) const {
  const auto isBefore = [&](std::uint32_t place) { return std::less<>()(notes_[place].feature, &feature); };
  const bool isAfterLast = last_ != byFeature_.end() && isBefore(*last_);
  Places::const_iterator from = isAfterLast ? last_ : byFeature_.begin();
  Places::const_iterator to = isAfterLast ? byFeature_.end() : last_;
  for (std::ptrdiff_t step = 1; isAfterLast && to - from > step; step *= 2) {
    if (!isBefore(from[step])) {
      to = from + step;
      break;
    }
    from += step;
  }
  last_ = std::partition_point(from, to, isBefore);
  return last_;
}

template <class Predicate>
std::vector<const UpgradeWork*> Causes::Behind(const Feature& feature, const Predicate& counts) const {
  std::vector<const UpgradeWork*> works;
  for (auto place = FirstOf(feature); place != byFeature_.end(); ++place) {
    const ChangeNote& note = notes_[*place];
    if (note.feature != &feature) break;
    const UpgradeWork* const work = counts(note) ? &run_.works[note.work] : nullptr;
    if (work != nullptr && (works.empty() || works.back() != work)) works.push_back(work);
  }
  return works;
}

template <class Predicate>
std::string Causes::TextOf(const Feature& feature, const Predicate& counts) const {
  fmt::memory_buffer out;
  JsonList list(out);
  for (const UpgradeWork* const work : Behind(feature, counts)) Append(list.Entry(), *work);
  list.Close();
  return fmt::to_string(out);
}

std::string Causes::OfCreation(const Feature& feature) const {
  return TextOf(feature, [](const ChangeNote& note) { return note.part == ChangedPart::kCreated; });
}

std::string Causes::OfRemoval(const Feature& feature) const {
  return TextOf(feature, [](const ChangeNote& note) { return note.part == ChangedPart::kRemoved; });
}

std::string Causes::Of(const Feature& feature, const standalone::FieldDifference& difference) const {
  const auto known = std::ranges::find(kParts, difference.field, &FieldPart::field);
  if (known == std::end(kParts)) return "[]";
  const standalone::NameId key = standalone::NameTable::Find(difference.key);
  return TextOf(feature, [&](const ChangeNote& note) { return note.part == known->part && note.key == key; });
}

std::vector<std::string_view> Causes::IdentifiersBehind(const Feature& feature,
                                                        standalone::NameId key) const {
  std::vector<std::string_view> identifiers;
  const auto counts = [key](const ChangeNote& note) {
    return note.part == ChangedPart::kRemoved || (note.part == ChangedPart::kAttribute && note.key == key);
  };
  for (const UpgradeWork* const work : Behind(feature, counts)) {
    if (identifiers.empty() || identifiers.back() != work->upgrade->identifier)
      identifiers.push_back(work->upgrade->identifier);
  }
  return identifiers;
}

}  // namespace tool
