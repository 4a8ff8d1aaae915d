#include "report/RunSummary.h"

#include <fmt/ranges.h>

#include "terminal/Terminal.h"

namespace tool {
namespace {

constexpr std::size_t kListed = 20;

std::string LineOf(const std::string& file, const DocumentResult& result) {
  if (!result.Succeeded()) return Printable(result.problem);  // which names the file
  std::vector<std::string> what;
  if (result.needsPerson != 0)
    what.push_back(fmt::format("{} a person", result.needsPerson == 1
                                                  ? "1 thing needs"
                                                  : fmt::format("{} things need", result.needsPerson)));
  if (result.failsOnDrop && result.dropped != 0)
    what.push_back(fmt::format("{} with dropped values", Count(result.dropped, "attribute")));
  return fmt::format("{}: {}", Printable(file), fmt::join(what, ", "));
}

}  // namespace

RunSummary::Group RunSummary::GroupOf(const DocumentResult& result) {
  switch (result.verdict) {
    case tool::Verdict::kUpgraded:
      return result.IsComplete() ? Group::kUpgraded : Group::kUpgradedInNeed;
    case tool::Verdict::kCurrent:
    case tool::Verdict::kNothingChosen:
    case tool::Verdict::kDoneBefore:
      return result.IsComplete() ? Group::kCurrent : Group::kCurrentInNeed;
    case tool::Verdict::kNotLookedInto:
      return Group::kNotLookedInto;
    case tool::Verdict::kHeldBack:
      return Group::kHeldBack;
    case tool::Verdict::kChangedMeanwhile:
      return Group::kChangedMeanwhile;
    case tool::Verdict::kBadInput:
      return Group::kBroken;
    case tool::Verdict::kNewer:
      return Group::kNewer;
    case tool::Verdict::kNotLoaded:
      return Group::kNotLoaded;
    case tool::Verdict::kUnwritable:
      return Group::kUnwritable;
    default:
      return Group::kGivenUp;
  }
}

void RunSummary::Add(const std::string& file, const DocumentResult& result) {
  const Group group = GroupOf(result);
  ++documents_;
  features_ += result.features;
  totals_ += result.totals;
  code_ = MoreSerious(code_, ExitCodeOf(result));
  wrote_ = wrote_ || (result.Succeeded() && !dryRun_);
  ++counts_[static_cast<std::size_t>(group)];
  if (result.IsComplete()) return;
  if (result.Succeeded()) {
    constexpr std::size_t kNamed = 5;
    const bool isDropped = result.failsOnDrop && result.dropped != 0;
    const bool isWritten = result.verdict != tool::Verdict::kHeldBack;
    if (result.foundByCheck < result.needsPerson || isDropped || !isWritten) needsMoreThanCheck_ = true;
    const bool isNew = result.verdict == tool::Verdict::kUpgraded && !dryRun_;
    ++inNeed_;
    if (isNew) ++writtenInNeed_;
    if (firstInNeed_.size() < kNamed) firstInNeed_.push_back({file, isNew});
  }
  std::vector<std::string>& lines = first_[group];
  if (lines.size() < kListed) lines.push_back(LineOf(file, result));
}

bool RunSummary::NeedsPerson() const {
  return first_.contains(Group::kUpgradedInNeed) || first_.contains(Group::kCurrentInNeed) ||
         first_.contains(Group::kHeldBack);
}

std::string RunSummary::Verdict() const {
  const std::string done = dryRun_ ? "would be upgraded" : "upgraded";
  const std::pair<Group, std::string> words[] = {
      {Group::kUpgraded, done},
      {Group::kUpgradedInNeed, done + " but needing a person"},
      {Group::kHeldBack, "not written because a person is needed"},
      {Group::kCurrent, "with nothing to do"},
      {Group::kNotLookedInto, "already current"},
      {Group::kCurrentInNeed, "with nothing to do but needing a person"},
      {Group::kChangedMeanwhile, "changed meanwhile"},
      {Group::kGivenUp, "stopped"},
      {Group::kBroken, "unreadable or broken"},
      {Group::kNewer, "newer or with unknown upgrades"},
      {Group::kNotLoaded, "upgraded by a library that is not loaded"},
      {Group::kUnwritable, "whose result could not be written"},
  };
  std::vector<std::string> parts;
  for (const auto& [group, what] : words) {
    const std::size_t count = counts_[static_cast<std::size_t>(group)];
    if (count != 0) parts.push_back(fmt::format("{} {}", count, what));
  }
  return fmt::format("{}{}{}", Count(documents_, "document"), parts.empty() ? "" : ": ",
                     fmt::join(parts, ", "));
}

std::string RunSummary::ClosingList(const std::string& where) const {
  const std::pair<Group, const char*> titles[] = {
      {Group::kUpgradedInNeed, dryRun_ ? "Would need a person" : "Upgraded, and need a person"},
      {Group::kHeldBack, "Not written, because they need a person"},
      {Group::kCurrentInNeed, "Current, and need a person"},
      {Group::kChangedMeanwhile, "Changed meanwhile"},
      {Group::kGivenUp, "Stopped"},
      {Group::kBroken, "Unreadable or broken"},
      {Group::kNewer, "Newer or with unknown upgrades"},
      {Group::kNotLoaded, "Upgraded by a library that is not loaded"},
      {Group::kUnwritable, "Result could not be written"},
  };
  std::string text;
  for (const auto& [group, title] : titles) {
    const auto found = first_.find(group);
    if (found == first_.end()) continue;
    const std::size_t count = counts_[static_cast<std::size_t>(group)];
    text += fmt::format("{} ({}):\n", title, count);
    for (const std::string& line : found->second) text += fmt::format("  {}\n", line);
    if (count > found->second.size()) {
      text += fmt::format("  and {} more{}\n", count - found->second.size(),
                          where.empty() ? "" : fmt::format(", which {} lists", Printable(where)));
    }
  }
  return text;
}

}  // namespace tool
