#include "report/SheetJson.h"

#include "report/JsonOutput.h"
#include "report/SheetWords.h"
#include "terminal/VisibleText.h"

namespace tool {
namespace {

using standalone::AppendJsonInteger;
using standalone::AppendJsonReal;
using standalone::AppendJsonText;
using standalone::AppendRaw;
using standalone::Feature;
using standalone::Value;
using standalone::ValueKind;
using namespace standalone::sheet;

void AppendLink(fmt::memory_buffer& out, const Feature* target) {
  if (target == nullptr) {
    AppendRaw(out, "null");
    return;
  }
  JsonObject link(out);
  AppendJsonInteger(link.Key("ref"), target->id);
  link.Text("alias", NameFor(*target));
  link.Close();
}

// Lists are as deep as documents may nest them.
void AppendValue(fmt::memory_buffer& out, const Value& value) {
  switch (value.Kind()) {
    case ValueKind::kString: {
      fmt::memory_buffer json;
      AppendJsonText(json, value.AsString());
      AppendVisibleJson(out, {json.data(), json.size()});
      break;
    }
    case ValueKind::kInteger:
      AppendJsonInteger(out, value.AsInteger());
      break;
    case ValueKind::kReal:
      AppendJsonReal(out, value.AsReal());
      break;
    case ValueKind::kBoolean:
      AppendRaw(out, value.AsBoolean() ? "true" : "false");
      break;
    case ValueKind::kLink:
      AppendLink(out, value.Target());
      break;
    case ValueKind::kList: {
      JsonList list(out);
      for (const Value& entry : value.Entries()) AppendValue(list.Entry(), entry);
      list.Close();
      break;
    }
  }
}

void AppendFact(fmt::memory_buffer& out, const Fact& fact) {
  JsonObject object(out);
  object.Text("quantity", fact.quantity->name);
  if (fact.index != 0) object.Number("index", fact.index);
  object.Text("standing", NameOf(fact.standing));
  if (fact.standing != Standing::kNotSet) AppendValue(object.Key("value"), fact.value);
  if (fact.dimension != Dimension::kNone) {
    object.Text("dimension", NameOf(fact.dimension));
    const std::string_view unit = SymbolOf(fact.dimension, UnitSystem::kSi);
    if (!unit.empty()) object.Text("unit", unit);
  }
  if (fact.context != nullptr) AppendLink(object.Key("context"), fact.context);
  object.Close();
}

void AppendFacts(fmt::memory_buffer& out, std::span<const Fact> facts) {
  JsonList list(out);
  for (const Fact& fact : facts) AppendFact(list.Entry(), fact);
  list.Close();
}

void AppendIdentity(JsonObject& object, const Subject& subject) {
  AppendJsonInteger(object.Key("id"), subject.id);
  object.Text("type", subject.lateType);
  object.Text("kind", subject.kind->name);
  object.Text("chapter", NameOf(subject.kind->chapter));
  if (!subject.name.empty()) object.Text("alias", subject.name);
  if (subject.analysisCase != nullptr) AppendLink(object.Key("case"), subject.analysisCase);
  if (subject.step != nullptr) AppendLink(object.Key("step"), subject.step);
}

}  // namespace

void AppendDifference(fmt::memory_buffer& out, const Difference& difference) {
  JsonObject object(out);
  object.Text("meaning", NameOf(difference.meaning));
  if (!difference.identifier.empty()) {
    object.Text("upgrade", difference.identifier);
    if (!difference.sentence.empty()) object.Text("reason", difference.sentence);
  }
  object.Text("subject", difference.after == nullptr    ? "lost"
                         : difference.before == nullptr ? "new"
                                                        : "kept");
  AppendIdentity(object, difference.About());
  const bool isReplaced = difference.before != nullptr && difference.before->id != difference.About().id;
  if (isReplaced) AppendLink(object.Key("replaces"), difference.before->feature);
  if (difference.quantity != nullptr) object.Text("quantity", difference.quantity->name);
  AppendFacts(object.Key("before"), difference.lost);
  AppendFacts(object.Key("after"), difference.gained);
  object.Close();
}

void AppendComparison(fmt::memory_buffer& out, const SheetComparison& comparison, const Sheet& after) {
  JsonObject sheet(out);
  JsonObject counts(sheet.Key("counts"));
  counts.Number("equal", comparison.equal);
  for (const Meaning meaning : {Meaning::kSame, Meaning::kOnPurpose, Meaning::kUnaccounted})
    counts.Number(NameOf(meaning), comparison.Count(meaning));
  counts.Close();
  JsonList differences(sheet.Key("differences"));
  std::vector<const Subject*> lost;
  for (const Difference& difference : comparison.differences) {
    AppendDifference(differences.Entry(), difference);
    const bool isLost = difference.after == nullptr;
    if (isLost && (lost.empty() || lost.back() != difference.before)) lost.push_back(difference.before);
  }
  differences.Close();
  JsonList subjects(sheet.Key("subjects"));
  for (const Subject& subject : after.Subjects()) AppendSubject(subjects.Entry(), subject);
  subjects.Close();
  JsonList gone(sheet.Key("lost"));
  for (const Subject* const subject : lost) AppendSubject(gone.Entry(), *subject);
  gone.Close();
  sheet.Close();
}

void AppendSubject(fmt::memory_buffer& out, const Subject& subject) {
  JsonObject object(out);
  AppendIdentity(object, subject);
  AppendFacts(object.Key("facts"), Sheet::FactsOf(subject));
  object.Close();
}

void PrintJson(Output& output, const std::string& file, const Sheet& sheet, const SheetPart& part) {
  JsonObject top(output.Buffer());
  top.Text("sheet", "hvxupgrade");
  top.Number("version", kJsonVersion);
  top.Flag("comparison", false);
  top.Name("file", file);
  top.Texts("upgrades", sheet.Upgrades());
  JsonList subjects(top.Key("subjects"));
  for (const Subject& subject : sheet.Subjects()) {
    if (!part.Holds(subject)) continue;
    AppendSubject(subjects.Entry(), subject);
    output.FlushIfLarge();
  }
  subjects.Close();
  top.Close();
  output.Buffer().push_back('\n');
}

void PrintJson(Output& output, const ComparedFiles& files, const SheetComparison& comparison,
               const SheetPart& part) {
  JsonObject top(output.Buffer());
  top.Text("sheet", "hvxupgrade");
  top.Number("version", kJsonVersion);
  top.Flag("comparison", true);
  top.Name("before", files.before);
  top.Name("after", files.after);
  JsonObject counts(top.Key("counts"));
  if (part.IsAll()) counts.Number("equal", comparison.equal);
  for (const Meaning meaning : {Meaning::kSame, Meaning::kOnPurpose, Meaning::kUnaccounted})
    counts.Number(NameOf(meaning), CountOf(comparison, part, meaning));
  counts.Close();
  JsonList differences(top.Key("differences"));
  for (const Difference& difference : comparison.differences) {
    if (!part.Holds(difference)) continue;
    AppendDifference(differences.Entry(), difference);
    output.FlushIfLarge();
  }
  differences.Close();
  top.Close();
  output.Buffer().push_back('\n');
}

}  // namespace tool
