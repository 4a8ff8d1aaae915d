#include "report/SignOff.h"

#include <unordered_map>
#include <unordered_set>

#include "report/SheetComparisonText.h"

namespace tool {
namespace {

using standalone::FeatureId;
using standalone::sheet::Difference;
using standalone::sheet::Meaning;

// By feature, the items that there are.
class ItemIndex {
 public:
  explicit ItemIndex(std::vector<AttentionItem>& items) : items_(items) {
    for (std::size_t i = 0; i < items.size(); ++i) Note(i);
  }

  void Add(const Difference& difference) {
    const std::string words = SentenceOf(difference, Style{});
    for (const auto* const subject : {difference.after, difference.before}) {
      if (subject == nullptr) continue;
      const auto found = byFeature_.find(subject->id);
      if (found == byFeature_.end()) continue;
      std::string& reason = items_[found->second].reason;
      const bool isFirst = told_.insert(found->second).second;
      reason += fmt::format("{}{}", isFirst ? "; unaccounted for: " : ", and ", words);
      return;
    }
    items_.push_back({"unaccounted", "unaccounted for", difference.About().feature,
                      difference.About().lateType, difference.identifier,
                      difference.quantity == nullptr ? "" : std::string(difference.quantity->name), words,
                      "No upgrade accounts for this: compare both documents with 'hvxupgrade sheet OLD "
                      "NEW', and correct the new one"});
    Note(items_.size() - 1);
    told_.insert(items_.size() - 1);
  }

 private:
  void Note(std::size_t item) {
    if (items_[item].feature != nullptr) byFeature_.try_emplace(items_[item].feature->id, item);
  }

  std::vector<AttentionItem>& items_;
  std::unordered_map<FeatureId, std::size_t> byFeature_;
  std::unordered_set<std::size_t> told_;  // of which differences are told
};

}  // namespace

void SignOff::Finish(standalone::Document& document, const std::vector<std::string>& identifiers,
                     std::vector<AttentionItem>& attention) {
  after_ = standalone::sheet::ReadSheet(document, &before_);
  identifiers_ = identifiers;
  ItemIndex index(attention);
  // By the texts' places: they are constants, and there can be as many differences as features.
  std::unordered_map<const char*, std::size_t> purposes;
  totals_ = standalone::sheet::Compare(before_, *after_, identifiers_, [&](const Difference& difference) {
    if (difference.meaning == Meaning::kUnaccounted) index.Add(difference);
    if (difference.meaning != Meaning::kOnPurpose) return;
    const auto [place, isNew] = purposes.try_emplace(difference.sentence.data(), purposes_.size());
    if (isNew) purposes_.push_back({difference.identifier, difference.sentence});
    ++purposes_[place->second].differences;
  });
}

void SignOff::Tell(const std::function<void(Difference&)>& tell) const {
  (void)standalone::sheet::Compare(before_, *after_, identifiers_, tell);
}

}  // namespace tool
