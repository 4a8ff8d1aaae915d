#include "report/SheetComparisonText.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "terminal/Table.h"

namespace tool {
namespace {

using namespace standalone::sheet;

constexpr std::size_t kIndent = 2;

struct Sides {
  std::string was;
  std::string is;
};

std::string WordsOf(const std::vector<Fact>& facts, const Quantity& quantity, const Style& style) {
  if (facts.empty()) return quantity.isList ? "nothing" : "none";
  return WordsFor(facts, style);
}

// With as many digits as it takes to see the difference.
Sides SidesOf(const Difference& difference, Style style) {
  constexpr int kMostDigits = 17;  // which tell any two numbers apart
  if (difference.quantity == nullptr)
    return difference.before == nullptr ? Sides{"none", "new"} : Sides{"there", "gone"};
  Sides sides;
  for (; style.digits <= kMostDigits && sides.was == sides.is; ++style.digits) {
    sides = {WordsOf(difference.lost, *difference.quantity, style),
             WordsOf(difference.gained, *difference.quantity, style)};
  }
  // Such as long lists, of which only the beginning is told.
  if (sides.was == sides.is) sides.is += " (others)";
  return sides;
}

// Differences in one quantity that read the same, or were joined: then the sides are those of the first, and
// others are told by dots.
struct Alike {
  std::string quantity;
  Sides sides;
  std::vector<const Difference*> members = {};
};

// What one upgrade, or none, is there to do, as one sentence tells it.
struct Purpose {
  std::string_view identifier;
  std::string_view sentence;
  std::vector<Alike> rows = {};
  std::size_t count = 0;
};

// With the upgrade that was to see to it, where one left it out.
std::string QuantityOf(const Difference& difference) {
  if (difference.quantity == nullptr) return {};
  const bool isLeftOut = difference.meaning == Meaning::kUnaccounted && !difference.identifier.empty();
  return isLeftOut ? fmt::format("{} ({})", difference.quantity->name, difference.identifier)
                   : std::string(difference.quantity->name);
}

class Purposes {
 public:
  Purposes(const SheetComparison& comparison, const SheetPart& part, Meaning meaning, const Style& style)
      : style_(style) {
    for (const Difference& difference : comparison.differences) {
      if (difference.meaning == meaning && part.Holds(difference)) Enter(difference);
    }
  }

  [[nodiscard]] std::vector<Purpose>& All() { return purposes_; }

 private:
  void Enter(const Difference& difference) {
    // Of what is unaccounted for, an upgrade that left it out is told with the quantity.
    const std::string_view identifier =
        difference.meaning == Meaning::kUnaccounted ? std::string_view() : difference.identifier;
    const auto [place, isNew] = places_.try_emplace({identifier, difference.sentence}, purposes_.size());
    if (isNew) purposes_.push_back({identifier, difference.sentence});
    Purpose& purpose = purposes_[place->second];
    ++purpose.count;
    const std::string quantity = QuantityOf(difference);
    Sides sides = SidesOf(difference, style_);
    const auto [row, isNewRow] =
        rows_.try_emplace({place->second, quantity, sides.was, sides.is}, purpose.rows.size());
    if (isNewRow || style_.all) {
      purpose.rows.push_back({quantity, std::move(sides), {&difference}});
    } else {
      purpose.rows[row->second].members.push_back(&difference);
    }
  }

  Style style_;
  std::vector<Purpose> purposes_;
  std::map<std::pair<std::string_view, std::string_view>, std::size_t> places_;
  std::map<std::tuple<std::size_t, std::string, std::string, std::string>, std::size_t> rows_;
};

std::string Joined(const std::string& first, const std::string& other) {
  constexpr std::string_view kOthers = ", ...";
  return first == other || first.ends_with(kOthers) ? first : first + std::string(kOthers);
}

// Joins the rows of each quantity where there are more than a reader looks at.
void JoinQuantities(std::vector<Alike>& rows) {
  constexpr std::size_t kMost = 2;
  if (rows.size() <= kMost) return;
  std::vector<Alike> joined;
  for (Alike& row : rows) {
    const auto found = std::ranges::find(joined, row.quantity, &Alike::quantity);
    if (found == joined.end()) {
      joined.push_back(std::move(row));
    } else {
      found->sides.was = Joined(found->sides.was, row.sides.was);
      found->sides.is = Joined(found->sides.is, row.sides.is);
      std::ranges::move(row.members, std::back_inserter(found->members));
    }
  }
  rows = std::move(joined);
}

// "contact pair Contact Pair-1", or of several "contact pair (9)".
Cell WhoOf(const Alike& alike) {
  if (alike.members.size() == 1) return {LabelOf(alike.members.front()->About())};
  std::set<std::string_view> kinds;
  for (const Difference* const each : alike.members) kinds.insert(each->About().kind->name);
  Cell who;
  for (const std::string_view kind : kinds) {
    if (!who.empty()) who.back() += ',';
    who.emplace_back(kind);
  }
  who.back() += fmt::format(" ({})", alike.members.size());
  return who;
}

TableRow RowOf(const Alike& alike, bool standsForOthers) {
  Cell what = WhoOf(alike);
  if (!alike.quantity.empty()) {
    what.back() += ':';
    what.push_back(alike.quantity + (standsForOthers ? ", ..." : ""));
  }
  return {what, {alike.sides.was}, {alike.sides.is}};
}

std::string PlaceOf(const Subject& subject) {
  std::string place;
  if (subject.step != nullptr && subject.step != subject.feature)
    place += fmt::format(", step {}", Shown(NameFor(*subject.step)));
  if (subject.analysisCase != nullptr && subject.analysisCase != subject.feature)
    place += fmt::format(", case {}", Shown(NameFor(*subject.analysisCase)));
  return place;
}

Cell PiecesOf(const Alike& alike, const Subject& subject, std::size_t others) {
  Cell pieces{LabelOf(subject) + PlaceOf(subject)};
  if (others != 0) pieces.push_back(fmt::format("and {} more", others));
  pieces.back() += ':';
  if (alike.quantity.empty()) {
    pieces.push_back(fmt::format("is {}", alike.sides.is));
  } else {
    pieces.push_back(fmt::format("{} was {},", alike.quantity, alike.sides.was));
    pieces.push_back(fmt::format("is {}", alike.sides.is));
  }
  return pieces;
}

class ComparisonPrinter {
 public:
  ComparisonPrinter(Output& output, const SheetComparison& comparison, const SheetPart& part,
                    const Style& style)
      : output_(output), out_(output.Buffer()), comparison_(comparison), part_(part), style_(style) {}

  void PrintTitle(const ComparedFiles& files) {
    const std::size_t unaccounted = CountOf(comparison_, part_, Meaning::kUnaccounted);
    const std::size_t onPurpose = CountOf(comparison_, part_, Meaning::kOnPurpose);
    const std::size_t same = CountOf(comparison_, part_, Meaning::kSame);
    std::string verdict = Paint(stdout, Colour::kGreen, "no difference");
    if (unaccounted != 0) {
      verdict =
          Paint(stdout, Colour::kRed, fmt::format("{} unaccounted for", Count(unaccounted, "difference")));
    } else if (onPurpose + same != 0) {
      verdict = Paint(stdout, Colour::kGreen, "every difference is accounted for");
    }
    Print("{} -> {}: {}\n", Printable(files.before), Printable(files.after), verdict);
    Print("{}{} on purpose, {} expressed differently{}; units: {}\n",
          part_.IsAll() ? fmt::format("{} equal, ", Count(comparison_.equal, "value")) : std::string(),
          onPurpose, same, style_.all || onPurpose + same == 0 ? "" : " (--all lists each)",
          NameOf(style_.units));
  }

  void PrintUnaccounted() {
    constexpr std::size_t kMostRows = 20;
    constexpr std::size_t kMostSubjects = 3;
    std::vector<Purpose> purposes =
        Begin(Meaning::kUnaccounted, "Unaccounted for: no upgrade is there to do this");
    if (purposes.empty()) return;
    const std::vector<Alike>& rows = purposes.front().rows;
    const std::size_t shown = style_.all ? rows.size() : std::min(rows.size(), kMostRows);
    std::size_t left = purposes.front().count;
    for (std::size_t i = 0; i < shown; ++i) {
      const std::vector<const Difference*>& members = rows[i].members;
      const std::size_t named = members.size() <= kMostSubjects ? members.size() : 1;
      for (std::size_t j = 0; j < named; ++j)
        AppendParagraph(out_, PiecesOf(rows[i], members[j]->About(), members.size() - named), kIndent);
      left -= members.size();
    }
    if (left != 0) Print("  and {} more (--all lists them)\n", left);
  }

  void PrintOnPurpose() {
    const std::vector<std::size_t> kColumns{50, 21, 21};
    constexpr std::size_t kMostRows = 1;
    std::vector<Purpose> purposes =
        Begin(Meaning::kOnPurpose, "On purpose: an upgrade is there to change the analysis");
    if (purposes.empty()) return;
    AppendRow(out_, {{}, {"was"}, {"is"}}, kColumns, 2 * kIndent);
    for (Purpose& purpose : purposes) {
      if (!style_.all) JoinQuantities(purpose.rows);
      const std::size_t count = purpose.rows.size();
      const std::size_t shown = style_.all || count <= kMostRows ? count : 1;
      PrintSentence(purpose);
      for (std::size_t i = 0; i < shown; ++i)
        AppendRow(out_, RowOf(purpose.rows[i], shown < count), kColumns, 2 * kIndent);
      output_.FlushIfLarge();
    }
  }

  void PrintSame() {
    for (const Purpose& purpose : Begin(Meaning::kSame, "The same analysis, expressed differently")) {
      PrintSentence(purpose, fmt::format("({})", purpose.count));
      for (const Alike& alike : style_.all ? purpose.rows : std::vector<Alike>()) {
        for (const Difference* const each : alike.members)
          AppendParagraph(out_, PiecesOf(alike, each->About(), 0), 2 * kIndent);
      }
      output_.FlushIfLarge();
    }
  }

 private:
  template <class... Parts>
  void Print(fmt::format_string<Parts...> format, Parts&&... parts) {
    fmt::format_to(std::back_inserter(out_), format, std::forward<Parts>(parts)...);
  }

  std::vector<Purpose> Begin(Meaning meaning, std::string_view title) {
    std::vector<Purpose> purposes = std::move(Purposes(comparison_, part_, meaning, style_).All());
    if (!purposes.empty()) Print("\n{} ({})\n", title, CountOf(comparison_, part_, meaning));
    return purposes;
  }

  void PrintSentence(const Purpose& purpose, const std::string& count = {}) {
    Cell pieces{fmt::format("{}: {}", purpose.identifier, purpose.sentence)};
    if (!count.empty()) pieces.push_back(count);
    AppendParagraph(out_, pieces, kIndent);
  }

  Output& output_;
  fmt::memory_buffer& out_;
  const SheetComparison& comparison_;
  const SheetPart& part_;
  Style style_;
};

}  // namespace

std::string SentenceOf(const Difference& difference, const Style& style) {
  const Sides sides = SidesOf(difference, style);
  if (difference.quantity == nullptr) return fmt::format("is {}", sides.is);
  return fmt::format("{} was {}, is {}", QuantityOf(difference), sides.was, sides.is);
}

void PrintComparison(Output& output, const ComparedFiles& files, const SheetComparison& comparison,
                     const SheetPart& part, const Style& style) {
  ComparisonPrinter printer(output, comparison, part, style);
  printer.PrintTitle(files);
  printer.PrintUnaccounted();
  printer.PrintOnPurpose();
  printer.PrintSame();
}

}  // namespace tool
