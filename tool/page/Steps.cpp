#include "page/Steps.h"

#include <algorithm>

#include "page/ValueText.h"
#include "sheet/Sheet.h"

namespace tool::page {
namespace {

using simdjson::dom::element;

constexpr std::size_t kMostIds = 1000;
constexpr std::size_t kMostOwn = 50;
constexpr std::size_t kMostChanges = 200;
// Beyond this many, what differs in values only is folded too.
constexpr std::size_t kMostDistinct = 4000;
constexpr std::string_view kVarious = "(various)";

// As `TextOf`, but with late types in the place of linked features: what changes alike reads alike.
std::string ShapeOf(element value, const FeatureMap& features) {
  const auto typeOf = [&features](std::int64_t id) {
    const std::string type = features.TypeOf(id);
    return type.empty() ? std::string("a feature") : type;
  };
  simdjson::dom::array list;
  if (value.get(list) != simdjson::SUCCESS) return TextOf(value, typeOf);
  std::map<std::string, std::size_t> types;
  for (const element entry : list) {
    std::int64_t id = 0;
    if (entry["ref"].get(id) != simdjson::SUCCESS) return TextOf(value, typeOf);
    ++types[typeOf(id)];
  }
  std::string text;
  for (const auto& [type, count] : types)
    text += fmt::format("{}{} x {}", text.empty() ? "" : ", ", count, type);
  return text.empty() ? TextOf(value, typeOf) : text;
}

// Of a long list that changed a little: what is new in it, or gone.
Labelled ListDifference(const std::vector<element>& before, const std::vector<element>& after,
                        const LabelOf& label) {
  std::multiset<std::string> gone;
  for (const element entry : before) gone.insert(simdjson::minify(entry));
  std::string news;
  const auto append = [&label](std::string& to, element entry) {
    constexpr std::size_t kMostBytes = 160;
    if (to.size() < kMostBytes) {
      to += fmt::format("{}{}", to.empty() ? "" : ", ", TextOf(entry, label));
    } else if (!to.ends_with(" ...")) {
      to += " ...";
    }
  };
  for (const element entry : after) {
    if (const auto found = gone.find(simdjson::minify(entry)); found != gone.end()) {
      gone.erase(found);
    } else {
      append(news, entry);
    }
  }
  std::string losses;
  for (const element entry : before) {
    const auto found = gone.find(simdjson::minify(entry));
    if (found == gone.end()) continue;
    gone.erase(found);
    append(losses, entry);
  }
  const auto side = [](std::size_t count, const std::string& which) {
    return fmt::format("{} entries{}{}", count, which.empty() ? "" : ", with ", which);
  };
  Labelled sides(side(before.size(), losses), side(after.size(), news));
  if (news.empty() && losses.empty()) sides.second += ", in another order";
  return sides;
}

// " Pa" where the change is of a number that is known to measure something.
std::string UnitOf(std::string_view type, element change) {
  const auto isNumber = [change](const char* key) {
    element value;
    return change[key].get(value) == simdjson::SUCCESS && value.is_double();
  };
  if (!isNumber("before") && !isNumber("after")) return {};
  using namespace standalone::sheet;
  const std::string_view symbol =
      SymbolOf(DimensionOfAttribute(type, TextIn(change, "key")), UnitSystem::kSi);
  return symbol.empty() ? std::string() : fmt::format(" {}", symbol);
}

template <class Text>
std::string Side(element change, const char* key, const Text& text) {
  element value;
  return change[key].get(value) == simdjson::SUCCESS ? text(value) : std::string(kNotThere);
}

std::string KeyOf(element change) {
  const std::string_view key = TextIn(change, "key");
  const std::string_view field = TextIn(change, "field");
  if (key.empty()) return std::string(field);
  return field == "attributes" ? std::string(key) : fmt::format("{} of {}", field, key);
}

}  // namespace

std::set<int> Steps::PlacesIn(element entry) {
  std::set<int> places;
  for (const element by : EntriesIn(entry, "by")) places.insert(upgrades_.PlaceOf(TextIn(by, "upgrade")));
  if (places.empty()) places.insert(-1);
  return places;
}

void Steps::Fold(Work& work, std::int64_t id, const std::string& type, element change) {
  const std::string unit = UnitOf(type, change);
  const auto shape = [&](element value) { return ShapeOf(value, *features_) + unit; };
  const auto text = [&](element value) {
    return TextOf(value, [this](std::int64_t target) { return features_->LabelOf(target); }) + unit;
  };
  std::string key = KeyOf(change);
  if (const std::size_t took = EntriesIn(change, "by").size(); took > 1)
    key += fmt::format(" ({} changes in turn)", took);
  Labelled shapes(Side(change, "before", shape), Side(change, "after", shape));
  std::string place = fmt::format("{}\n{}\n{}\n{}", type, key, shapes.first, shapes.second);
  if (work.changes.size() >= kMostDistinct && !work.changes.contains(place)) {
    shapes = Labelled(kVarious, kVarious);
    place = fmt::format("{}\n{}", type, key);
  }
  Folding& folding = work.changes[place];
  Change& folded = folding.change;
  if (folded.count++ == 0) {
    folded.type = type;
    folded.key = key;
    std::tie(folded.before, folded.after) = shapes;
  }
  if (folded.ids.size() < kMostIds) folded.ids.push_back(id);
  if (folded.own.size() >= kMostOwn) return;
  const std::vector<element> before = EntriesIn(change, "before");
  const std::vector<element> after = EntriesIn(change, "after");
  constexpr std::size_t kLong = 4;
  if (before.size() + after.size() > 2 * kLong) {
    folded.own.push_back(
        ListDifference(before, after, [this](std::int64_t target) { return features_->LabelOf(target); }));
  } else {
    folded.own.emplace_back(Side(change, "before", text), Side(change, "after", text));
  }
  // What both begin with is all that was shown.
  if (Labelled& own = folded.own.back(); own.first == own.second) own.second += " (differs further on)";
  folding.different.insert(folded.own.back());
}

void Steps::AddChanged(element feature) {
  const std::int64_t id = IntegerIn(feature, "id");
  const std::string type(TextIn(feature, "type"));
  for (const element change : EntriesIn(feature, "changes")) {
    for (const int place : PlacesIn(change)) {
      Work& work = works_[place];
      if (std::exchange(work.last, id) != id) ++work.step.changed;
      if (features_ != nullptr) Fold(work, id, type, change);
    }
  }
}

void Steps::Gather(std::map<std::string, Gathered>& into, element feature) {
  const std::string type(TextIn(feature, "type"));
  Gathered& gathered = into[type];
  gathered.type = type;
  if (gathered.count++ < kMostIds) gathered.ids.push_back(IntegerIn(feature, "id"));
}

void Steps::AddMade(element feature) {
  for (const int place : PlacesIn(feature)) {
    ++works_[place].step.made;
    Gather(works_[place].makes, feature);
  }
}

void Steps::AddRemoved(element feature) {
  for (const int place : PlacesIn(feature)) {
    ++works_[place].step.removed;
    Gather(works_[place].removes, feature);
  }
}

std::vector<Step> Steps::Take() {
  std::vector<Step> steps;
  for (auto& [place, work] : works_) {
    Step& step = work.step;
    step.upgrade = place;
    step.changes.count = work.changes.size();
    for (auto& [key, folding] : work.changes) {
      Change& change = folding.change;
      // Where all have the very same values, these are what to show.
      if (folding.different.size() == 1 && change.count == change.own.size())
        std::tie(change.before, change.after) = change.own.front();
      if (folding.different.size() == 1) change.own.clear();
      step.changes.first.push_back(std::move(change));
    }
    std::ranges::sort(step.changes.first, [](const Change& one, const Change& other) {
      return std::tie(other.count, one.type, one.key, one.ids) <
             std::tie(one.count, other.type, other.key, other.ids);
    });
    if (step.changes.first.size() > kMostChanges) step.changes.first.resize(kMostChanges);
    const auto list = [](std::map<std::string, Gathered>& from, std::vector<Gathered>& to) {
      for (auto& [type, gathered] : from) to.push_back(std::move(gathered));
    };
    list(work.makes, step.makes);
    list(work.removes, step.removes);
    if (place >= 0) upgrades_.Count(place, step.changed + step.made + step.removed);
    steps.push_back(std::move(step));
  }
  return steps;
}

}  // namespace tool::page
