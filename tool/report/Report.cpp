#include "report/Report.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "file/DocumentError.h"
#include "file/FeatureText.h"
#include "file/TemporaryName.h"
#include "report/Attention.h"
#include "report/Causes.h"
#include "report/FeatureOutput.h"
#include "report/JsonOutput.h"
#include "terminal/Interruption.h"
#include "terminal/VisibleText.h"

namespace tool {
namespace {

using standalone::AppendRaw;
using standalone::FeatureState;

constexpr std::size_t kFlushBytes = std::size_t{1} << 20;

void AppendTotals(JsonObject& object, const Totals& totals) {
  object.Number("concerned", totals.concerned);
  object.Number("changed", totals.changed);
  object.Number("created", totals.created);
  object.Number("removed", totals.removed);
  object.Number("failed", totals.failed);
}

void AppendHead(JsonObject& entry, const std::string& input, const DocumentResult& result,
                const Destination& destination, bool dryRun) {
  entry.Text("file", input);
  entry.Text("verdict", NameOf(result.verdict));
  if (!result.problem.empty()) entry.Text("problem", result.problem);
  if (!result.kept.empty()) entry.Text("kept", result.kept);
  const bool leftAlone =
      result.verdict == Verdict::kHeldBack || (destination.inPlace && result.verdict != Verdict::kUpgraded);
  if (result.Succeeded() && destination.file && !dryRun && !leftAlone) {
    entry.Text("result", destination.file->string());
    if (!destination.backupSuffix.empty()) entry.Text("backup", destination.Backup().string());
  }
}

// The feature as in a document, and what made or removed it.
void AppendFeatureWith(fmt::memory_buffer& out, const FeatureState& feature, std::string_view cause) {
  fmt::memory_buffer line;
  standalone::AppendFeature(line, feature);
  AppendVisibleJson(out, {line.data(), line.size() - 1});  // the object goes on
  AppendRaw(out, ",\"by\":");
  AppendRaw(out, cause);
  out.push_back('}');
}

std::string JsonOf(const standalone::Value& value) {
  fmt::memory_buffer out;
  standalone::AppendValue(out, value);
  return fmt::to_string(out);
}

// Which values of the old document stand nowhere in the result, and who took them away.
void AppendDropped(JsonObject& entry, const ReportedRun& reported, const Causes& causes) {
  JsonList list(entry.Key("droppedValues"));
  for (const standalone::DroppedValues& dropped : reported.dropped) {
    JsonObject object(list.Entry());
    AppendIdentity(object, *reported.document.Before(*dropped.feature));
    if (const std::string owners = OwnersOf(*reported.document.Before(*dropped.feature)); !owners.empty())
      object.Text("owner", owners);
    object.Text("key", standalone::NameTable::Text(dropped.key));
    JsonList values(object.Key("values"));
    for (const standalone::Value& value : dropped.values) values.Value(JsonOf(value));
    values.Close();
    if (dropped.instead != nullptr) object.Value("instead", JsonOf(*dropped.instead));
    JsonList by(object.Key("by"));
    for (const std::string_view identifier : causes.IdentifiersBehind(*dropped.feature, dropped.key))
      by.Text(identifier);
    by.Close();
    object.Close();
  }
  list.Close();
}

void AppendNotes(JsonObject& entry, const ReportedRun& reported) {
  JsonList along(entry.Key("broughtAlong"));
  for (const standalone::VersionManager::Needed& needed : reported.broughtAlong) {
    JsonObject object(along.Entry());
    object.Text("identifier", needed.identifier);
    object.Text("by", needed.by);
    object.Text("reason", needed.reason);
    object.Close();
  }
  along.Close();
  JsonList harmless(entry.Key("harmlessFailures"));
  for (const auto& [row, count] : reported.run.harmless) {
    JsonObject object(harmless.Entry());
    object.Text("identifier", row->identifier.View());
    object.Text("reason", row->harmless);
    object.Number("features", count);
    object.Close();
  }
  harmless.Close();
}

}  // namespace

std::string AttentionOf(const std::string& input, const DocumentResult& result) {
  fmt::memory_buffer out;
  JsonObject object(out);
  object.Text("document", input);
  object.Text("problem", NameOf(result.verdict));
  object.Text("message", result.problem);
  object.Close();
  return fmt::to_string(out);
}

Report::Report(const std::filesystem::path& file, bool overwrite)
    : file_(file),
      output_(file, {.overwrite = overwrite,
                     .backupSuffix = {},
                     .replaces = {},
                     .keepResult = false,
                     .onProgress = {}}) {
  std::string name;
  parts_ = standalone::MakeTemporary(file, name);
  if (parts_ < 0) Fail();
  unlink(name.c_str());
}

Report::~Report() {
  if (parts_ >= 0) close(parts_);
}

void Report::Discard() {
  if (ftruncate(parts_, kept_) != 0 || lseek(parts_, kept_, SEEK_SET) < 0) Fail();
}

void Report::Keep() {
  kept_ = lseek(parts_, 0, SEEK_END);
  if (kept_ < 0) Fail();
}

void Report::AddRun(const ReportedRun& reported) {
  fmt::memory_buffer text;
  if (kept_ != 0) text.push_back(',');
  JsonObject entry(text);
  AppendHead(entry, reported.input, reported.result, reported.destination, reported.dryRun);
  entry.Texts("identifiers", reported.run.identifiers);

  JsonObject totals(entry.Key("totals"));
  totals.Number("features", reported.result.features);
  AppendTotals(totals, reported.comparison.all);
  JsonObject byType(totals.Key("byType"));
  for (const auto& [type, ofType] : reported.comparison.byType) {
    JsonObject one(byType.Key(type));
    AppendTotals(one, ofType);
    one.Close();
  }
  byType.Close();
  totals.Close();

  AppendNotes(entry, reported);
  const Causes causes(reported.document, reported.run);
  AppendDropped(entry, reported, causes);
  JsonList changed(entry.Key("changed"));
  for (const standalone::Feature* const feature : reported.comparison.changed) {
    AppendChange(
        changed.Entry(), reported.document.Before(*feature), feature,
        [&](const standalone::FieldDifference& difference) { return causes.Of(*feature, difference); });
    FlushIfLarge(text);
  }
  changed.Close();
  JsonList created(entry.Key("created"));
  for (const standalone::Feature* const feature : reported.comparison.created) {
    AppendFeatureWith(created.Entry(), *feature, causes.OfCreation(*feature));
    FlushIfLarge(text);
  }
  created.Close();
  JsonList removed(entry.Key("removed"));
  for (const standalone::Feature* const feature : reported.comparison.removed) {
    AppendFeatureWith(removed.Entry(), *reported.document.Before(*feature), causes.OfRemoval(*feature));
    FlushIfLarge(text);
  }
  removed.Close();
  entry.Close();
  Flush(text);
}

void Report::AddWithoutRun(const std::string& input, const DocumentResult& result,
                           const Destination& destination, bool dryRun) {
  fmt::memory_buffer text;
  if (kept_ != 0) text.push_back(',');
  JsonObject entry(text);
  AppendHead(entry, input, result, destination, dryRun);
  entry.Close();
  Flush(text);
}

void Report::Finish(const std::vector<DocumentResult>& results, const std::string& verdict, ExitCode code,
                    bool dryRun) {
  fmt::memory_buffer text;
  JsonObject top(text);
  top.Text("report", "hvxupgrade");
  top.Number("version", kJsonVersion);
  top.Text("tool", HVXUPGRADE_VERSION);
  top.Text("verdict", verdict);
  top.Number("exitCode", static_cast<std::size_t>(code));
  top.Flag("dryRun", dryRun);
  JsonList attention(top.Key("needsPerson"));
  Totals all;
  std::size_t features = 0;
  for (const DocumentResult& result : results) {
    if (!result.attention.empty()) AppendRaw(attention.Entry(), result.attention);
    all += result.totals;
    features += result.features;
  }
  attention.Close();
  JsonObject totals(top.Key("totals"));
  totals.Number("documents", results.size());
  totals.Number("features", features);
  AppendTotals(totals, all);
  totals.Close();
  top.Key("documents").push_back('[');
  output_.Write({text.data(), text.size()});

  std::array<char, std::size_t{1} << 16> block{};
  if (lseek(parts_, 0, SEEK_SET) < 0) Fail();
  for (;;) {
    const ssize_t got = read(parts_, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) Fail();
    if (got == 0) break;
    output_.Write({block.data(), static_cast<std::size_t>(got)});
  }
  output_.Write("]}\n");
  output_.Commit();
}

void Report::Flush(fmt::memory_buffer& text) {
  std::string_view bytes(text.data(), text.size());
  while (!bytes.empty()) {
    const ssize_t written = write(parts_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  text.clear();
}

void Report::FlushIfLarge(fmt::memory_buffer& text) {
  if (text.size() < kFlushBytes) return;
  Interruption::StopIfRequested();
  Flush(text);
}

void Report::Fail() const {
  throw standalone::DocumentError(standalone::DocumentError::Kind::kUnwritable, file_.string(), 0,
                                  fmt::format("the report cannot be written ({})", std::strerror(errno)),
                                  "Check the folder, its permissions and the room on its disk");
}

}  // namespace tool
