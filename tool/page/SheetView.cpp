#include "page/SheetView.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

#include "page/JsonParts.h"
#include "page/Numbers.h"
#include "page/ValueText.h"
#include "report/SheetWords.h"

namespace tool::page {
namespace {

using simdjson::dom::element;

constexpr std::size_t kMostSubjects = 1500;
constexpr std::size_t kMostRows = 400;
constexpr std::size_t kMostDifferent = 20000;

std::string TitleOf(std::string_view chapter) {
  using standalone::sheet::Chapter;
  for (int each = 0; each <= static_cast<int>(Chapter::kConnection); ++each) {
    if (tool::NameOf(static_cast<Chapter>(each)) == chapter)
      return std::string(tool::TitleOf(static_cast<Chapter>(each)));
  }
  return std::string(chapter);
}

std::string AliasIn(element object, const char* key) {
  element link;
  if (object[key].get(link) != simdjson::SUCCESS) return {};
  const std::string_view alias = TextIn(link, "alias");
  return alias.empty() ? fmt::format("#{}", IntegerIn(link, "ref")) : std::string(alias);
}

Subject SubjectOf(element entry) {
  return {.id = IntegerIn(entry, "id"),
          .chapter = TitleOf(TextIn(entry, "chapter")),
          .kind = std::string(TextIn(entry, "kind")),
          .name = std::string(TextIn(entry, "alias")),
          .inCase = AliasIn(entry, "case"),
          .step = AliasIn(entry, "step"),
          .state = {},
          .rows = {}};
}

int MeaningOf(std::string_view word) {
  return word == "same" ? 1 : word == "onPurpose" ? 2 : 3;
}

// What was different, kept as text until the subject comes along.
struct Differences {
  Subject subject;
  struct Row {
    std::string quantity;
    std::string before;  // JSON lists of facts
    std::string after;
    SheetRow row;
  };
  std::vector<Row> rows;
};

class View {
 public:
  View(const JsonParts& parts, UpgradeIndex& upgrades) : upgrades_(upgrades) {
    ForEachEntry(parts["differences"], [this](element entry) { AddOldName(entry); });
    ForEachEntry(parts["differences"], [this](element entry) { AddDifference(entry); });
    ForEachEntry(parts["subjects"], [this](element entry) { AddSubject(entry, ""); });
    ForEachEntry(parts["lost"], [this](element entry) { AddSubject(entry, "lost"); });
    for (auto& [id, differences] : differences_) AddRest(differences);  // of a record without whole sheets
    // What is of one chapter stands together, wherever its features stand in the document.
    std::ranges::stable_sort(subjects_.first, {},
                             [this](const Subject& subject) { return order_.at(subject.chapter); });
  }

  [[nodiscard]] Cut<Subject> Take() { return std::move(subjects_); }

 private:
  [[nodiscard]] FactStyle Before(bool allDigits = false) const {
    return {.allDigits = allDigits, .names = &oldNames_};
  }

  // What links to a feature that was renamed said its old name.
  void AddOldName(element entry) {
    if (TextIn(entry, "quantity") != "name") return;
    for (const element fact : EntriesIn(entry, "before"))
      oldNames_.emplace(IntegerIn(entry, "id"), TextIn(fact, "value"));
  }

  void AddDifference(element entry) {
    // More are not shown in any case.
    if (differences_.size() >= kMostDifferent && !differences_.contains(IntegerIn(entry, "id"))) return;
    const std::string_view state = TextIn(entry, "subject");
    Differences& differences = differences_[IntegerIn(entry, "id")];
    if (differences.rows.empty()) differences.subject = SubjectOf(entry);
    if (state != "kept") differences.subject.state = state;
    Differences::Row row;
    row.quantity = TextIn(entry, "quantity");
    const std::vector<element> before = EntriesIn(entry, "before");
    const std::vector<element> after = EntriesIn(entry, "after");
    for (const element fact : before) row.before += simdjson::minify(fact) + "\n";
    for (const element fact : after) row.after += simdjson::minify(fact) + "\n";
    std::string replaces = AliasIn(entry, "replaces");
    if (!replaces.empty()) replaces = "replaces " + replaces;
    const std::string upgrade(TextIn(entry, "upgrade"));
    row.row = {
        .quantity = row.quantity.empty() ? std::string(state == "lost" ? "is gone" : "is new") : row.quantity,
        .before = row.quantity.empty() ? std::string(kNotThere) : TextOfFacts(before, Before()),
        .after = row.quantity.empty() ? std::string(kNotThere) : TextOfFacts(after),
        .meaning = MeaningOf(TextIn(entry, "meaning")),
        .upgrade = upgrade.empty() ? -1 : upgrades_.PlaceOf(upgrade),
        .reason = std::string(TextIn(entry, "reason"))};
    if (row.quantity.empty() && state != "lost") std::swap(row.row.before, replaces);
    // A difference that rounding hides is one all the same.
    if (!row.quantity.empty() && row.row.before == row.row.after) {
      row.row.before = TextOfFacts(before, Before(true));
      row.row.after = TextOfFacts(after, {.allDigits = true, .names = nullptr});
    }
    if (differences.rows.size() < kMostRows) differences.rows.push_back(std::move(row));
  }

  // Facts of one quantity follow each other.
  void AddSubject(element entry, std::string_view state) {
    const auto found = differences_.find(IntegerIn(entry, "id"));
    if (subjects_.first.size() >= kMostSubjects) {
      if (found != differences_.end()) differences_.erase(found);
      ++subjects_.count;
      return;
    }
    Differences none;
    Differences& differences = found == differences_.end() ? none : found->second;
    Subject subject = SubjectOf(entry);
    subject.state = state.empty() ? differences.subject.state : std::string(state);
    std::vector<element> facts = EntriesIn(entry, "facts");
    for (std::size_t i = 0; i < facts.size();) {
      const std::string_view quantity = TextIn(facts[i], "quantity");
      std::vector<element> ofQuantity;
      for (; i < facts.size() && TextIn(facts[i], "quantity") == quantity; ++i)
        ofQuantity.push_back(facts[i]);
      AddQuantity(subject, std::string(quantity), ofQuantity, differences);
    }
    for (Differences::Row& row : differences.rows) subject.rows.push_back(std::move(row.row));
    if (found != differences_.end()) differences_.erase(found);
    Keep(std::move(subject));
  }

  void AddQuantity(Subject& subject, const std::string& quantity, std::vector<element> facts,
                   Differences& differences) {
    const auto row = std::ranges::find(differences.rows, quantity, &Differences::Row::quantity);
    const std::string all = TextOfFacts(facts);
    if (row == differences.rows.end()) {
      const bool isSaid =
          std::ranges::any_of(facts, [](element fact) { return TextIn(fact, "standing") != "notSet"; });
      if (!isSaid || subject.rows.size() >= kMostRows) return;
      SheetRow equal{.quantity = quantity,
                     .before = TextOfFacts(facts, Before()),
                     .after = all,
                     .meaning = 0,
                     .upgrade = -1,
                     .reason = {}};
      if (subject.state == "new") equal.before = kNotThere;
      if (subject.state == "lost") equal.after = kNotThere;
      // What a new or lost subject says is new or lost with it.
      const auto whole = std::ranges::find(differences.rows, "", &Differences::Row::quantity);
      if (whole != differences.rows.end()) equal.meaning = whole->row.meaning;
      subject.rows.push_back(std::move(equal));
      return;
    }
    // The difference holds only what differs: the rest of the values is the same on both sides.
    const std::vector<element> now = facts;
    std::erase_if(facts, [&](element fact) {
      return row->after.find(simdjson::minify(fact) + "\n") != std::string::npos;
    });
    if (!facts.empty()) {
      row->row.before = Joined(row->before, facts, false);
      row->row.after = all;
      if (row->row.before == all) {
        row->row.before = Joined(row->before, facts, true);
        row->row.after = TextOfFacts(now, {.allDigits = true, .names = nullptr});
      }
    }
    subject.rows.push_back(std::move(row->row));
    differences.rows.erase(row);
  }

  // The facts of the lines, which are of before, and the other ones, which are of after and the same before,
  // by their numbers. In lists of links a thing that others are put before has another number after.
  std::string Joined(const std::string& lines, const std::vector<element>& others, bool allDigits) const {
    std::string list = "[";
    for (std::size_t from = 0; from < lines.size();) {
      const std::size_t end = lines.find('\n', from);
      list += (list.size() > 1 ? "," : "") + lines.substr(from, end - from);
      from = end + 1;
    }
    for (const element each : others)
      list += (list.size() > 1 ? "," : "") + std::string(simdjson::minify(each));
    simdjson::dom::parser parser;
    const simdjson::dom::array parsed = parser.parse(list + "]").get_array().value();
    std::vector<element> facts(parsed.begin(), parsed.end());
    const auto firstOther = facts.end() - static_cast<std::ptrdiff_t>(others.size());
    std::set<std::size_t> taken;
    for (auto fact = facts.begin(); fact != firstOther; ++fact) taken.insert(CountIn(*fact, "index"));
    std::vector<std::pair<std::size_t, element>> numbered;
    const bool areLinks = std::ranges::all_of(
        facts, [](element fact) { return fact["value"]["ref"].error() == simdjson::SUCCESS; });
    std::size_t next = 1;
    for (auto fact = facts.begin(); fact != facts.end(); ++fact) {
      std::size_t index = CountIn(*fact, "index");
      if (areLinks && fact >= firstOther) {
        while (taken.contains(next)) ++next;
        index = next++;
      }
      numbered.emplace_back(index, *fact);
    }
    std::ranges::stable_sort(numbered, {}, [](const auto& each) { return each.first; });
    return TextOfFacts(numbered, Before(allDigits));
  }

  void AddRest(Differences& differences) {
    Subject subject = std::move(differences.subject);
    for (Differences::Row& row : differences.rows) subject.rows.push_back(std::move(row.row));
    Keep(std::move(subject));
  }

  // Subjects in which something differs come before others when there is no room for all.
  void Keep(Subject subject) {
    ++subjects_.count;
    const bool isEqual =
        std::ranges::all_of(subject.rows, [](const SheetRow& row) { return row.meaning == 0; });
    if (subject.rows.empty()) --subjects_.count;
    const std::size_t most = isEqual ? kMostSubjects / 2 : kMostSubjects;
    if (subject.rows.empty() || subjects_.first.size() >= most) return;
    order_.try_emplace(subject.chapter, order_.size());
    subjects_.first.push_back(std::move(subject));
  }

  UpgradeIndex& upgrades_;
  std::map<std::int64_t, Differences> differences_;
  std::unordered_map<std::int64_t, std::string> oldNames_;
  std::map<std::string, std::size_t> order_;
  Cut<Subject> subjects_;
};

}  // namespace

Sheet CountsOfSheet(std::string_view json) {
  if (json.empty()) return {};
  const JsonParts parts(json);
  simdjson::dom::parser parser;
  const element counts = parser.parse(simdjson::padded_string(parts["counts"])).value();
  const auto number = [counts](const char* key) { return CountIn(counts, key); };
  Sheet sheet{.isThere = true,
              .words = {},
              .tone = Tone::kGood,
              .equal = number("equal"),
              .same = number("same"),
              .onPurpose = number("onPurpose"),
              .unaccounted = number("unaccounted"),
              .subjects = {}};
  sheet.words = fmt::format("{} values equal, {} expressed differently, {} changed on purpose",
                            Grouped(sheet.equal), Grouped(sheet.same), Grouped(sheet.onPurpose));
  if (sheet.unaccounted != 0) {
    sheet.tone = Tone::kBad;
    sheet.words += fmt::format(", {} unaccounted for", sheet.unaccounted);
  }
  return sheet;
}

Sheet SheetOf(std::string_view json, UpgradeIndex& upgrades) {
  Sheet sheet = CountsOfSheet(json);
  if (sheet.isThere) sheet.subjects = View(JsonParts(json), upgrades).Take();
  return sheet;
}

}  // namespace tool::page
