#include <algorithm>

#include "page/Detail.h"
#include "report/JsonOutput.h"
#include "terminal/Terminal.h"

namespace tool::page {
namespace {

using standalone::AppendJsonInteger;

// What a reader would not see, or what would change how other text is shown, stands there as an escape.
void Show(JsonObject& object, std::string_view key, std::string_view text) {
  object.Text(key, Printable(text));
}

void Show(JsonList& list, std::string_view text) {
  list.Text(Printable(text));
}

void AppendNumber(fmt::memory_buffer& out, std::size_t number) {
  AppendJsonInteger(out, static_cast<std::int64_t>(number));
}

template <class Entries, class Append>
void AppendList(fmt::memory_buffer& out, const Entries& entries, const Append& append) {
  JsonList list(out);
  for (const auto& entry : entries) append(list.Entry(), entry);
  list.Close();
}

template <class Entry, class Append>
void AppendCut(fmt::memory_buffer& out, const Cut<Entry>& cut, const Append& append) {
  JsonObject object(out);
  object.Number("count", cut.count);
  AppendList(object.Key("first"), cut.first, append);
  object.Close();
}

template <class Integers>
void AppendIntegers(fmt::memory_buffer& out, const Integers& integers) {
  AppendList(out, integers, [](fmt::memory_buffer& to, auto number) { AppendJsonInteger(to, number); });
}

void AppendAttention(fmt::memory_buffer& out, const Attention& attention) {
  JsonObject object(out);
  Show(object, "kind", attention.kind);
  Show(object, "reason", attention.reason);
  Show(object, "next", attention.next);
  Show(object, "key", attention.key);
  Show(object, "type", attention.type);
  Show(object, "others", attention.others);
  AppendJsonInteger(object.Key("upgrade"), attention.upgrade);
  AppendCut(object.Key("features"), attention.features,
            [](fmt::memory_buffer& to, const Attention::One& one) {
              JsonObject feature(to);
              AppendJsonInteger(feature.Key("id"), one.id);
              Show(feature, "name", one.name);
              Show(feature, "owner", one.owner);
              Show(feature, "code", one.code);
              feature.Close();
            });
  object.Close();
}

void AppendDropped(fmt::memory_buffer& out, const Dropped& dropped) {
  JsonObject object(out);
  AppendJsonInteger(object.Key("id"), dropped.id);
  Show(object, "type", dropped.type);
  Show(object, "name", dropped.name);
  Show(object, "owner", dropped.owner);
  Show(object, "key", dropped.key);
  Show(object, "values", dropped.values);
  Show(object, "instead", dropped.instead);
  AppendIntegers(object.Key("upgrades"), dropped.upgrades);
  object.Close();
}

void AppendPair(fmt::memory_buffer& out, const Labelled& pair) {
  JsonList list(out);
  Show(list, pair.first);
  Show(list, pair.second);
  list.Close();
}

void AppendChange(fmt::memory_buffer& out, const Change& change) {
  JsonObject object(out);
  Show(object, "type", change.type);
  Show(object, "key", change.key);
  Show(object, "before", change.before);
  Show(object, "after", change.after);
  object.Number("count", change.count);
  AppendIntegers(object.Key("ids"), change.ids);
  AppendList(object.Key("own"), change.own, AppendPair);
  object.Close();
}

void AppendGathered(fmt::memory_buffer& out, const Gathered& gathered) {
  JsonObject object(out);
  Show(object, "type", gathered.type);
  object.Number("count", gathered.count);
  AppendIntegers(object.Key("ids"), gathered.ids);
  object.Close();
}

void AppendStep(fmt::memory_buffer& out, const Step& step) {
  JsonObject object(out);
  AppendJsonInteger(object.Key("upgrade"), step.upgrade);
  object.Number("changed", step.changed);
  object.Number("made", step.made);
  object.Number("removed", step.removed);
  AppendCut(object.Key("changes"), step.changes, AppendChange);
  AppendList(object.Key("makes"), step.makes, AppendGathered);
  AppendList(object.Key("removes"), step.removes, AppendGathered);
  object.Close();
}

// In columns, which take less room.
void AppendTree(fmt::memory_buffer& out, const Tree& tree) {
  JsonObject object(out);
  object.Number("count", tree.count);
  std::string marks;
  for (const Tree::Node& node : tree.nodes) marks += node.mark;
  AppendList(object.Key("id"), tree.nodes,
             [](fmt::memory_buffer& to, const Tree::Node& node) { AppendJsonInteger(to, node.id); });
  AppendList(object.Key("depth"), tree.nodes,
             [](fmt::memory_buffer& to, const Tree::Node& node) { AppendNumber(to, node.depth); });
  object.Text("marks", marks);
  JsonList types(object.Key("type"));
  for (const Tree::Node& node : tree.nodes) Show(types, node.type);
  types.Close();
  JsonList names(object.Key("name"));
  for (const Tree::Node& node : tree.nodes) Show(names, node.name);
  names.Close();
  object.Close();
}

void AppendRow(fmt::memory_buffer& out, const SheetRow& row) {
  JsonList list(out);
  for (const std::string* const text : {&row.quantity, &row.before, &row.after}) Show(list, *text);
  AppendJsonInteger(list.Entry(), row.meaning);
  AppendJsonInteger(list.Entry(), row.upgrade);
  Show(list, row.reason);
  list.Close();
}

void AppendSubject(fmt::memory_buffer& out, const Subject& subject) {
  JsonObject object(out);
  AppendJsonInteger(object.Key("id"), subject.id);
  Show(object, "chapter", subject.chapter);
  Show(object, "kind", subject.kind);
  Show(object, "name", subject.name);
  Show(object, "inCase", subject.inCase);
  Show(object, "step", subject.step);
  Show(object, "state", subject.state);
  AppendList(object.Key("rows"), subject.rows, AppendRow);
  object.Close();
}

void AppendSheet(fmt::memory_buffer& out, const Sheet& sheet) {
  JsonObject object(out);
  Show(object, "words", sheet.words);
  object.Text("tone", NameOf(sheet.tone));
  JsonList counts(object.Key("counts"));
  for (const std::size_t count : {sheet.equal, sheet.same, sheet.onPurpose, sheet.unaccounted})
    AppendNumber(counts.Entry(), count);
  counts.Close();
  AppendCut(object.Key("subjects"), sheet.subjects, AppendSubject);
  object.Close();
}

}  // namespace

bool IsCut(const Detail& detail) {
  const auto isCut = [](const auto& cut) { return cut.first.size() < cut.count; };
  const auto hasMore = [](const Gathered& gathered) { return gathered.ids.size() < gathered.count; };
  const auto showsFewer = [](const Change& change) {
    return change.ids.size() < change.count || (!change.own.empty() && change.own.size() < change.count);
  };
  // Groups of findings hold several each.
  std::size_t findings = 0;
  for (const Attention& each : detail.attention.first) findings += each.features.first.size();
  return findings < detail.attention.count || isCut(detail.dropped) || isCut(detail.sheet.subjects) ||
         detail.tree.nodes.size() < detail.tree.count ||
         std::ranges::any_of(detail.steps, [&](const Step& step) {
           return isCut(step.changes) || std::ranges::any_of(step.changes.first, showsFewer) ||
                  std::ranges::any_of(step.makes, hasMore) || std::ranges::any_of(step.removes, hasMore);
         });
}

std::string_view NameOf(Tone tone) {
  switch (tone) {
    case Tone::kGood:
      return "good";
    case Tone::kAttention:
      return "attention";
    case Tone::kBad:
      return "bad";
    case Tone::kQuiet:
      break;
  }
  return "quiet";
}

void AppendJson(fmt::memory_buffer& out, const Verdict& verdict) {
  JsonObject object(out);
  object.Text("tone", NameOf(verdict.tone));
  Show(object, "words", verdict.words);
  Show(object, "next", verdict.next);
  object.Close();
}

void AppendJson(fmt::memory_buffer& out, const std::vector<TypeTotals>& types) {
  AppendList(out, types, [](fmt::memory_buffer& to, const TypeTotals& totals) {
    JsonList entry(to);
    Show(entry, totals.type);
    for (const std::size_t count : {totals.changed, totals.made, totals.removed, totals.failed})
      AppendNumber(entry.Entry(), count);
    entry.Close();
  });
}

void AppendJson(fmt::memory_buffer& out, const std::vector<Labelled>& facts) {
  AppendList(out, facts, AppendPair);
}

void AppendJson(fmt::memory_buffer& out, const Detail& detail) {
  JsonObject object(out);
  AppendJson(object.Key("verdict"), detail.verdict);
  Show(object, "problem", detail.problem);
  AppendJson(object.Key("facts"), detail.facts);
  AppendCut(object.Key("attention"), detail.attention, AppendAttention);
  AppendCut(object.Key("dropped"), detail.dropped, AppendDropped);
  AppendList(object.Key("steps"), detail.steps, AppendStep);
  AppendIntegers(object.Key("idle"), detail.idle);
  JsonList notes(object.Key("notes"));
  for (const std::string& note : detail.notes) Show(notes, note);
  notes.Close();
  AppendJson(object.Key("types"), detail.types);
  AppendTree(object.Key("tree"), detail.tree);
  if (detail.sheet.isThere) {
    AppendSheet(object.Key("sheet"), detail.sheet);
  } else {
    object.Value("sheet", "null");
  }
  Show(object, "cut", IsCut(detail) ? detail.cut : "");
  object.Close();
}

}  // namespace tool::page
