#include "page/UpgradeIndex.h"

#include <fmt/ranges.h>

#include <algorithm>

#include "report/FailurePolicies.h"
#include "report/JsonOutput.h"
#include "terminal/Terminal.h"

namespace tool::page {
namespace {

using standalone::KnownUpgrade;

void Show(JsonObject& object, std::string_view key, std::string_view text) {
  object.Text(key, Printable(text));
}

void AppendDoes(JsonObject& object, const KnownUpgrade* known) {
  JsonList list(object.Key("does"));
  if (known != nullptr && known->documentUpgrade != nullptr) {
    JsonObject whole(list.Entry());
    Show(whole, "types", "the whole document");
    Show(whole, "purpose", known->documentUpgrade->purpose);
    Show(whole, "failure", "");
    whole.Close();
  }
  if (known != nullptr) {
    for (const KnownUpgrade::Binding& bound : known->bindings) {
      JsonObject one(list.Entry());
      Show(one, "types", fmt::format("{}", fmt::join(bound.upgradeClass->lateTypes, ", ")));
      Show(one, "purpose", bound.binding->purpose);
      Show(one, "failure", PolicyOf(bound.binding->onFailure).meaning);
      one.Close();
    }
  }
  list.Close();
}

// Of several examples the first that shows a change.
const Explanation::Example* ExampleOf(const Explanation& explanation) {
  const auto found = std::ranges::find_if(
      explanation.examples, [](const Explanation::Example& each) { return !each.rows.empty(); });
  return found == explanation.examples.end() ? nullptr : &*found;
}

void AppendLeaves(fmt::memory_buffer& out, const Explanation& explanation) {
  JsonList leaves(out);
  for (const Explanation::Left& left : explanation.leaves) {
    JsonObject one(leaves.Entry());
    Show(one, "types",
         left.lateTypes.empty() ? "any feature" : fmt::format("{}", fmt::join(left.lateTypes, ", ")));
    Show(one, "what", left.what);
    one.Close();
  }
  leaves.Close();
}

void AppendExample(fmt::memory_buffer& out, const Explanation& explanation) {
  const Explanation::Example* const example = ExampleOf(explanation);
  JsonObject object(out);
  Show(object, "of", example == nullptr ? "" : example->of);
  JsonList rows(object.Key("rows"));
  if (example != nullptr) {
    for (const Explanation::Row& row : example->rows) {
      JsonList cells(rows.Entry());
      for (const std::string* const cell : {&row.what, &row.before, &row.after})
        cells.Text(cell->empty() ? "-" : Printable(*cell));
      cells.Close();
    }
  }
  rows.Close();
  Show(object, "none", example == nullptr ? explanation.none : "");
  object.Close();
}

void AppendExplanation(JsonObject& object, const Explanation& explanation) {
  Show(object, "about", explanation.about);
  AppendLeaves(object.Key("leaves"), explanation);
  AppendExample(object.Key("example"), explanation);
}

}  // namespace

UpgradeIndex::UpgradeIndex(const standalone::VersionManager& manager, const Explanations& explanations)
    : manager_(manager), explanations_(explanations) {
  for (const KnownUpgrade& known : manager.Known()) static_cast<void>(PlaceOf(known.identifier));
}

int UpgradeIndex::PlaceOf(std::string_view upgrade) {
  const auto [place, isNew] = places_.try_emplace(std::string(upgrade), static_cast<int>(did_.size()));
  if (isNew) did_.push_back({.name = std::string(upgrade)});
  return place->second;
}

void UpgradeIndex::Count(int place, std::size_t features) {
  Did& did = did_.at(static_cast<std::size_t>(place));
  ++did.documents;
  did.features += features;
}

void UpgradeIndex::AppendTo(fmt::memory_buffer& out) const {
  JsonList list(out);
  const std::size_t known = manager_.Known().size();
  for (std::size_t i = 0; i < did_.size(); ++i) {
    const Did& did = did_[i];
    JsonObject object(list.Entry());
    Show(object, "name", did.name);
    object.Number("number", i < known ? i + 1 : 0);
    object.Number("of", known);
    AppendDoes(object, manager_.Find(did.name));
    const Explanation* const explanation = explanations_.Of(did.name);
    AppendExplanation(object, explanation == nullptr ? Explanation() : *explanation);
    object.Number("documents", did.documents);
    object.Number("features", did.features);
    object.Close();
  }
  list.Close();
}

}  // namespace tool::page
