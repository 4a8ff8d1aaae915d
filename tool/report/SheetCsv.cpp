#include "report/SheetCsv.h"

#include <algorithm>

#include "file/FeatureText.h"
#include "file/JsonText.h"
#include "report/SheetWords.h"

namespace tool {
namespace {

using standalone::Feature;
using standalone::ValueKind;
using namespace standalone::sheet;

// Appends one row, field by field.
class Row {
 public:
  explicit Row(fmt::memory_buffer& out) : out_(out) {}

  // Empty fields stand for nothing; an empty text is quoted.
  Row& Text(std::string_view text) {
    const std::string seen = Printable(text);
    if (!seen.empty() && seen.find_first_of(",\"") == std::string::npos) return Raw(seen);
    std::string quoted = "\"";
    for (const char c : seen) quoted.append(c == '"' ? 2 : 1, c);
    return Raw(quoted + '"');
  }
  Row& Raw(std::string_view field) {
    if (!isFirst_) out_.push_back(',');
    isFirst_ = false;
    standalone::AppendRaw(out_, field);
    return *this;
  }
  Row& None() { return Raw({}); }
  Row& Name(const Feature* feature) { return feature == nullptr ? None() : Text(NameFor(*feature)); }
  void End() { standalone::AppendRaw(out_, "\r\n"); }

 private:
  fmt::memory_buffer& out_;
  bool isFirst_ = true;
};

// A number as it is, in the shortest form that tells it exactly.
std::string NumberField(double number) {
  return fmt::format("{}", number == 0 ? 0.0 : number);
}

void AppendNumber(Row& row, const Fact& fact, UnitSystem units) {
  const bool isInteger = fact.value.Kind() == ValueKind::kInteger;
  if (isInteger && fact.dimension == Dimension::kNone) {
    row.Raw(std::to_string(fact.value.AsInteger()));
    return;
  }
  const double number = isInteger ? static_cast<double>(fact.value.AsInteger()) : fact.value.AsReal();
  row.Raw(NumberField(InUnit(number, fact.dimension, units)));
}

void AppendLink(Row& row, const Fact& fact) {
  const std::string context = fact.context == nullptr ? "" : fmt::format(" ({})", NameFor(*fact.context));
  fact.value.Target() == nullptr ? row.None() : row.Text(NameFor(*fact.value.Target()) + context);
}

void AppendValue(Row& row, const Fact& fact, UnitSystem units) {
  if (fact.standing == Standing::kNotSet) {
    row.None();
    return;
  }
  const ValueKind kind = fact.standing == Standing::kUnreadable ? ValueKind::kList : fact.value.Kind();
  switch (kind) {
    case ValueKind::kString:
      row.Text(fact.value.AsString());
      break;
    case ValueKind::kInteger:
    case ValueKind::kReal:
      AppendNumber(row, fact, units);
      break;
    case ValueKind::kBoolean:
      row.Raw(fact.value.AsBoolean() ? "true" : "false");
      break;
    case ValueKind::kLink:
      AppendLink(row, fact);
      break;
    case ValueKind::kList: {  // and what cannot be read: as it stands in the document
      fmt::memory_buffer json;
      standalone::AppendValue(json, fact.value);
      row.Text({json.data(), json.size()});
      break;
    }
  }
}

void AppendFact(Row& row, const Fact* fact, UnitSystem units) {
  if (fact == nullptr) {
    row.None().None().None();
    return;
  }
  row.Text(NameOf(fact->standing));
  AppendValue(row, *fact, units);
  const std::string_view symbol = SymbolOf(fact->dimension, units);
  symbol.empty() ? row.None() : row.Text(symbol);
}

void AppendSubject(Row& row, const Subject& subject) {
  row.Name(subject.analysisCase).Name(subject.step).Text(NameOf(subject.kind->chapter));
  row.Text(subject.kind->name).Raw(std::to_string(subject.id));
  subject.name.empty() ? row.None() : row.Text(subject.name);
}

void AppendQuantity(Row& row, const Quantity& quantity, std::uint32_t index) {
  row.Text(quantity.name);
  index == 0 ? row.None() : row.Raw(std::to_string(index));
}

void AppendDifferent(fmt::memory_buffer& out, const Difference& difference, const Fact* was, const Fact* is,
                     UnitSystem units) {
  Row row(out);
  row.Text(NameOf(difference.meaning));
  difference.identifier.empty() ? row.None() : row.Text(difference.identifier);
  row.Text(difference.after == nullptr ? "lost" : difference.before == nullptr ? "new" : "kept");
  AppendSubject(row, difference.About());
  const Fact* const fact = is != nullptr ? is : was;
  if (fact == nullptr || fact->quantity == nullptr) {
    row.None().None();
  } else {
    AppendQuantity(row, *fact->quantity, fact->index);
  }
  AppendFact(row, was, units);
  AppendFact(row, is, units);
  row.End();
}

// Facts of one index stand in one row, entries of lists by themselves.
void AppendDifference(fmt::memory_buffer& out, const Difference& difference, UnitSystem units) {
  std::vector<const Fact*> gained;
  for (const Fact& fact : difference.gained) gained.push_back(&fact);
  const bool isList = difference.quantity != nullptr && difference.quantity->isList;
  for (const Fact& was : difference.lost) {
    const auto is = isList ? gained.end() : std::ranges::find(gained, was.index, &Fact::index);
    AppendDifferent(out, difference, &was, is == gained.end() ? nullptr : *is, units);
    if (is != gained.end()) gained.erase(is);
  }
  for (const Fact* const is : gained) AppendDifferent(out, difference, nullptr, is, units);
  if (difference.lost.empty() && difference.gained.empty())
    AppendDifferent(out, difference, nullptr, nullptr, units);
}

}  // namespace

void PrintCsv(Output& output, const Sheet& sheet, const SheetPart& part, UnitSystem units) {
  fmt::memory_buffer& out = output.Buffer();
  standalone::AppendRaw(out, "case,step,chapter,kind,id,alias,quantity,index,standing,value,unit\r\n");
  for (const Subject& subject : sheet.Subjects()) {
    if (!part.Holds(subject)) continue;
    for (const Fact& fact : sheet.FactsOf(subject)) {
      Row row(out);
      AppendSubject(row, subject);
      AppendQuantity(row, *fact.quantity, fact.index);
      AppendFact(row, &fact, units);
      row.End();
    }
    output.FlushIfLarge();
  }
}

void PrintCsv(Output& output, const SheetComparison& comparison, const SheetPart& part, UnitSystem units) {
  fmt::memory_buffer& out = output.Buffer();
  standalone::AppendRaw(out,
                        "meaning,upgrade,subject,case,step,chapter,kind,id,alias,quantity,index,"
                        "standing before,before,unit before,standing after,after,unit after\r\n");
  for (const Difference& difference : comparison.differences) {
    if (!part.Holds(difference)) continue;
    AppendDifference(out, difference, units);
    output.FlushIfLarge();
  }
}

}  // namespace tool
