#include "page/Page.h"

#include <algorithm>
#include <numeric>

#include "report/JsonOutput.h"
#include "terminal/Terminal.h"

namespace tool::page {
namespace {

std::string_view NameOf(Page::Kind kind) {
  switch (kind) {
    case Page::Kind::kCheck:
      return "check";
    case Page::Kind::kDiff:
      return "diff";
    case Page::Kind::kUpgrade:
      break;
  }
  return "upgrade";
}

bool NeedsPersonBy(Tone tone) {
  return tone == Tone::kAttention || tone == Tone::kBad;
}

template <class Values, class ValueOf>
void AppendColumn(fmt::memory_buffer& out, const Values& values, const ValueOf& valueOf) {
  JsonList list(out);
  for (const auto& value : values) fmt::format_to(std::back_inserter(list.Entry()), "{}", valueOf(value));
  list.Close();
}

}  // namespace

std::size_t Page::Add(const std::string& file, const Verdict& group, const std::vector<double>& values) {
  const auto found =
      std::ranges::find(groups_, group.words, [](const Group& each) { return each.verdict.words; });
  group_.push_back(static_cast<std::size_t>(found - groups_.begin()));
  if (found == groups_.end()) groups_.push_back({.verdict = group});
  ++groups_[group_.back()].count;
  files_.push_back(file);
  block_.push_back(-1);
  for (std::size_t i = 0; i < columns_.size(); ++i) columns_[i].values.push_back(values[i]);
  return files_.size() - 1;
}

void Page::CountTypes(const std::vector<TypeTotals>& types) {
  for (const TypeTotals& each : types) {
    TypeTotals& sum = types_[each.type];
    sum.type = each.type;
    sum.changed += each.changed;
    sum.made += each.made;
    sum.removed += each.removed;
    sum.failed += each.failed;
  }
}

std::size_t Page::NeedPerson() const {
  return std::accumulate(groups_.begin(), groups_.end(), std::size_t{0},
                         [](std::size_t sum, const Group& each) {
                           return sum + (NeedsPersonBy(each.verdict.tone) ? each.count : 0);
                         });
}

std::size_t Page::WithoutDetail() const {
  return static_cast<std::size_t>(std::ranges::count(block_, -1));
}

void Page::AppendDocuments(fmt::memory_buffer& out) const {
  JsonObject object(out);
  JsonList files(object.Key("file"));
  for (const std::string& file : files_) files.Text(Printable(file));
  files.Close();
  AppendColumn(object.Key("group"), group_, [](std::size_t group) { return group; });
  AppendColumn(object.Key("person"), group_,
               [this](std::size_t group) { return NeedsPersonBy(groups_[group].verdict.tone) ? 1 : 0; });
  JsonList columns(object.Key("columns"));
  for (const Column& column : columns_) {
    JsonObject one(columns.Entry());
    one.Text("label", column.label);
    one.Text("help", column.help);
    one.Text("unit", column.unit);
    AppendColumn(one.Key("values"), column.values,
                 [](double value) { return fmt::format("{:.12g}", value); });
    one.Close();
  }
  columns.Close();
  AppendColumn(object.Key("block"), block_, [](int block) { return block; });
  object.Close();
}

// What is bad stands first.
void Page::SortGroups() {
  const auto rank = [](Tone tone) {
    return tone == Tone::kBad ? 0 : tone == Tone::kAttention ? 1 : tone == Tone::kGood ? 2 : 3;
  };
  std::vector<std::size_t> order(groups_.size());
  std::iota(order.begin(), order.end(), 0);
  std::ranges::stable_sort(order, {}, [&](std::size_t group) { return rank(groups_[group].verdict.tone); });
  std::vector<Group> groups;
  std::vector<std::size_t> places(groups_.size());
  for (const std::size_t group : order) {
    places[group] = groups.size();
    groups.push_back(std::move(groups_[group]));
  }
  groups_ = std::move(groups);
  for (std::size_t& group : group_) group = places[group];
}

void Page::Finish(PageFile& file, const UpgradeIndex& upgrades, const Writer& write) {
  SortGroups();
  fmt::memory_buffer out;
  JsonObject object(out);
  object.Text("kind", NameOf(kind_));
  object.Text("title", Printable(title));
  AppendJson(object.Key("verdict"), verdict);
  JsonList numberList(object.Key("numbers"));
  for (const Number& number : numbers) {
    JsonObject one(numberList.Entry());
    one.Text("label", number.label);
    one.Number("value", number.value);
    one.Text("tone", page::NameOf(number.tone));
    one.Close();
  }
  numberList.Close();
  JsonList groups(object.Key("groups"));
  for (const Group& group : groups_) {
    JsonObject one(groups.Entry());
    one.Text("words", Printable(group.verdict.words));
    one.Text("tone", page::NameOf(group.verdict.tone));
    one.Number("count", group.count);
    one.Close();
  }
  groups.Close();
  JsonList runList(object.Key("runs"));
  for (const std::vector<Labelled>& run : runs) AppendJson(runList.Entry(), run);
  runList.Close();
  JsonList noteList(object.Key("notes"));
  for (const std::string& note : notes) noteList.Text(Printable(note));
  noteList.Close();
  std::vector<TypeTotals> types;
  for (const auto& [type, totals] : types_) types.push_back(totals);
  std::ranges::stable_sort(types, std::greater<>(),
                           [](const TypeTotals& each) { return each.changed + each.made + each.removed; });
  AppendJson(object.Key("types"), types);
  AppendDocuments(object.Key("documents"));
  upgrades.AppendTo(object.Key("upgrades"));
  object.Close();
  file.Finish(title, {out.data(), out.size()}, write);
}

}  // namespace tool::page
