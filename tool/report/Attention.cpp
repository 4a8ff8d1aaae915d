#include "report/Attention.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "report/FeatureOutput.h"
#include "report/JsonOutput.h"
#include "report/ResultCodes.h"
#include "terminal/Terminal.h"
#include "upgrade/BuiltInLibrary.h"
#include "upgrade/UpgradePlace.h"

namespace tool {
namespace {

using standalone::Feature;
using standalone::FeatureState;
using standalone::Finding;
using standalone::FindingKind;
using standalone::UpgradeFailure;
using standalone::UpgradeWork;

constexpr std::size_t kMostTold = 20;

// Failures by the feature that they are of, and which of them findings explain.
class FailureIndex {
 public:
  explicit FailureIndex(const std::vector<UpgradeFailure>& failures) {
    for (const UpgradeFailure& failure : failures) byFeature_.emplace(failure.work.feature, &failure);
  }

  // The failure that left the finding behind; null without one.
  const UpgradeFailure* Behind(const Finding& finding) {
    const UpgradeFailure* found = nullptr;
    for (const Feature* const feature :
         {static_cast<const Feature*>(finding.visited), static_cast<const Feature*>(finding.feature)}) {
      const auto [begin, end] = byFeature_.equal_range(feature);
      for (auto each = begin; each != end; ++each) {
        // What a damaged value stands in the way of is told with the value.
        const bool isCause = finding.identifier.empty() && !finding.damage.empty();
        if (!isCause && finding.identifier != each->second->work.upgrade->identifier) continue;
        explained_.insert(each->second);
        if (found == nullptr) found = each->second;
      }
    }
    return found;
  }

  [[nodiscard]] bool IsExplained(const UpgradeFailure& failure) const {
    return explained_.contains(&failure);
  }

 private:
  std::unordered_multimap<const Feature*, const UpgradeFailure*> byFeature_;
  std::unordered_set<const UpgradeFailure*> explained_;
};

AttentionItem ItemOf(const Finding& finding, const UpgradeFailure* failure, bool isFoundByCheck) {
  return {NameOf(finding.kind),
          WordsFor(finding.kind),
          finding.feature,
          finding.feature->TypeName(),
          finding.identifier,
          finding.key,
          finding.Explanation(),
          finding.NextStep(),
          failure == nullptr ? S_OK : failure->code,
          failure == nullptr ? standalone::Answerable() : failure->answerable,
          isFoundByCheck};
}

bool IsOfOthers(const standalone::Answerable& answerable) {
  return answerable.library != nullptr && !standalone::IsBuiltIn(answerable.library->name);
}

// Of a failure that no rule explains.
std::string NextStepAfter(const UpgradeFailure& failure) {
  const bool isOfDocument = failure.work.feature == nullptr;
  if (!IsOfOthers(failure.answerable))
    return fmt::format(
        "The rules find nothing old there: compare {} with the old document, by the commands diff and show; "
        "--trace shows the host call that failed",
        isOfDocument ? "the result" : "the feature");
  return fmt::format(
      "Correct {} and upgrade that again, or correct {} and upgrade that with --retry --only {}. If it is "
      "sound, ask those who make {}; --trace shows the host call that failed",
      isOfDocument ? "the old document" : "the feature in the old document",
      isOfDocument ? "the result" : "it in the result", failure.work.upgrade->identifier,
      WordsOf(standalone::Answerable{nullptr, failure.answerable.library}));
}

AttentionItem ItemOf(const UpgradeFailure& failure) {
  const UpgradeWork& work = failure.work;
  std::string reason =
      failure.row == nullptr ? "the upgrade failed" : fmt::format("this failed: {}", failure.row->purpose);
  while (reason.ends_with('.')) reason.pop_back();
  if (work.kind == UpgradeWork::Kind::kConversion) reason = "the conversion of the whole document failed";
  if (work.kind == UpgradeWork::Kind::kPropagation) reason = "it could not be propagated to later steps";
  return {"failed",
          "failed",
          work.feature,
          work.type == nullptr ? std::string_view() : work.type->Name(),
          work.upgrade->identifier,
          "",
          std::move(reason),
          NextStepAfter(failure),
          failure.code,
          failure.answerable};
}

void AppendItem(fmt::memory_buffer& out, const AttentionItem& item) {
  auto to = std::back_inserter(out);
  fmt::format_to(to, "    ");
  if (item.feature == nullptr) {
    fmt::format_to(to, "the whole document");
  } else {
    const std::string_view name =
        item.feature->externalName.empty() ? item.feature->name : item.feature->externalName;
    fmt::format_to(to, "{} {} (id {})", Word(item.type), Quoted(name), item.feature->id);
    if (const std::string owners = OwnersOf(*item.feature); !owners.empty())
      fmt::format_to(to, " in {}", Quoted(owners));
  }
  fmt::format_to(to, ", {}: {}", item.words, Printable(item.reason));
  std::string marks;
  if (item.reason.find(item.identifier) == std::string::npos) marks = item.identifier;
  if (item.code != S_OK) marks += (marks.empty() ? "" : ": ") + CodeWithName(item.code);
  if (IsOfOthers(item.answerable)) marks += (marks.empty() ? "" : "; ") + Printable(WordsOf(item.answerable));
  if (!marks.empty()) fmt::format_to(to, " ({})", marks);
  fmt::format_to(to, "\n");
  if (!item.nextStep.empty()) fmt::format_to(to, "      {}.\n", Printable(item.nextStep));
}

}  // namespace

std::vector<AttentionItem> AttentionTo(const std::vector<Finding>& findings,
                                       const std::vector<Finding>& losses,
                                       const std::vector<UpgradeFailure>& failures) {
  FailureIndex index(failures);
  std::vector<AttentionItem> items;
  std::vector<AttentionItem> others;
  const auto add = [&](const Finding& finding, bool isFoundByCheck) {
    const UpgradeFailure* const failure = index.Behind(finding);
    if (!finding.NeedsPerson()) return;
    (finding.kind == FindingKind::kLeftBehind ? items : others)
        .push_back(ItemOf(finding, failure, isFoundByCheck));
  };
  for (const Finding& finding : findings) add(finding, true);
  for (const Finding& loss : losses) add(loss, false);
  for (const UpgradeFailure& failure : failures) {
    const Feature* const feature = failure.work.feature;
    const bool isGone = feature != nullptr && feature->removed;
    if (!isGone && !index.IsExplained(failure)) items.push_back(ItemOf(failure));
  }
  std::ranges::move(others, std::back_inserter(items));
  return items;
}

std::string OwnersOf(const FeatureState& feature) {
  // A case, a step, a set, and what stands between. Nothing bounds how deep features stand beneath each
  // other.
  constexpr std::size_t kMostLevels = 64;
  constexpr std::size_t kMostNames = 12;
  std::vector<std::string_view> names;
  const Feature* above = feature.father;
  for (std::size_t level = 0; above != nullptr && !above->type->IsAnalysisModel(); above = above->father) {
    if (++level > kMostLevels || names.size() == kMostNames) {
      names.emplace_back("...");
      break;
    }
    if (!above->externalName.empty()) names.push_back(above->externalName);
  }
  std::ranges::reverse(names);
  return fmt::format("{}", fmt::join(names, " / "));
}

std::string JsonOf(const std::string& document, const std::vector<AttentionItem>& items) {
  fmt::memory_buffer out;
  for (const AttentionItem& item : items) {
    if (out.size() != 0) out.push_back(',');
    JsonObject object(out);
    object.Name("file", document);
    object.Text("kind", item.kind);
    if (item.feature != nullptr) {
      AppendIdentity(object, *item.feature);
      if (const std::string owners = OwnersOf(*item.feature); !owners.empty()) object.Text("owner", owners);
    }
    if (!item.identifier.empty()) object.Text("upgrade", item.identifier);
    if (!item.key.empty()) object.Text("key", item.key);
    object.Text("reason", item.reason);
    if (item.code != S_OK) {
      object.Text("code", CodeText(item.code));
      if (!CodeName(item.code).empty()) object.Text("codeName", CodeName(item.code));
    }
    if (item.answerable.upgradeClass != nullptr) object.Text("class", item.answerable.upgradeClass->name);
    if (item.answerable.library != nullptr) {
      object.Text("library", item.answerable.library->name);
      if (const std::string_view version = standalone::VersionOf(*item.answerable.library); !version.empty())
        object.Text("libraryVersion", version);
    }
    if (!item.nextStep.empty()) object.Text("nextStep", item.nextStep);
    object.Close();
  }
  return fmt::to_string(out);
}

std::string TextOf(const std::vector<AttentionItem>& items, bool all) {
  fmt::memory_buffer out;
  const std::size_t told = all ? items.size() : std::min(items.size(), kMostTold);
  for (std::size_t i = 0; i < told; ++i) AppendItem(out, items[i]);
  if (told < items.size()) {
    fmt::format_to(std::back_inserter(out), "    and {} more; --verbose and --report list all\n",
                   items.size() - told);
  }
  return fmt::to_string(out);
}

std::string AttentionOf(const std::string& document, const DocumentResult& result) {
  fmt::memory_buffer out;
  JsonObject object(out);
  object.Name("file", document);
  object.Text("kind", NameOf(result.verdict));
  object.Text("problem", result.problem);
  object.Close();
  return fmt::to_string(out);
}

}  // namespace tool
