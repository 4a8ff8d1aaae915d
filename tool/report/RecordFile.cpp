#include "report/RecordFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "file/DocumentError.h"
#include "file/FeatureText.h"
#include "file/TemporaryName.h"
#include "report/Attention.h"
#include "report/Causes.h"
#include "report/FeatureOutput.h"
#include "report/JsonOutput.h"
#include "report/MentionedFeatures.h"
#include "report/SheetJson.h"
#include "terminal/Interruption.h"
#include "terminal/VisibleText.h"

namespace tool {
namespace {

using standalone::AppendRaw;
using standalone::FeatureState;

constexpr std::size_t kFlushBytes = std::size_t{1} << 20;

// The feature as in a document, and what made or removed it.
void AppendFeatureWith(fmt::memory_buffer& out, standalone::FeatureTexts& texts, const FeatureState& feature,
                       std::string_view cause, ReportDetail detail) {
  if (detail != ReportDetail::kFull) {
    JsonObject object(out);
    AppendIdentity(object, feature);
    AppendFather(object, feature);
    object.Value("by", cause);
    object.Close();
    return;
  }
  fmt::memory_buffer line;
  texts.Append(line, feature);
  AppendVisibleJson(out, {line.data(), line.size() - 1});  // the object goes on
  AppendRaw(out, ",\"by\":");
  AppendRaw(out, cause);
  out.push_back('}');
}

void AppendUpgrade(fmt::memory_buffer& out, std::string_view identifier) {
  JsonObject object(out);
  object.Text("upgrade", identifier);
  object.Close();
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
      AppendUpgrade(by.Entry(), identifier);
    by.Close();
    object.Close();
  }
  list.Close();
}

void AppendNotes(JsonObject& entry, const ReportedRun& reported) {
  JsonList along(entry.Key("broughtAlong"));
  for (const standalone::VersionManager::Needed& needed : reported.broughtAlong) {
    JsonObject object(along.Entry());
    object.Text("upgrade", needed.identifier);
    JsonList by(object.Key("by"));
    AppendUpgrade(by.Entry(), needed.by);
    by.Close();
    object.Text("reason", needed.reason);
    object.Close();
  }
  along.Close();
  JsonList harmless(entry.Key("harmlessFailures"));
  for (const auto& [row, count] : reported.run.harmless) {
    JsonObject object(harmless.Entry());
    object.Text("upgrade", row->identifier.View());
    object.Text("reason", row->harmless);
    object.Number("features", count);
    object.Close();
  }
  harmless.Close();
}

}  // namespace

RecordFile::RecordFile(std::filesystem::path report, ReportDetail detail)
    : report_(std::move(report)), detail_(detail) {
  std::string name;
  descriptor_ = standalone::MakeTemporary(report_, name);
  if (descriptor_ < 0) Fail();
  unlink(name.c_str());
}

RecordFile::~RecordFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

void RecordFile::Begin() {
  if (ftruncate(descriptor_, 0) != 0 || lseek(descriptor_, 0, SEEK_SET) < 0) Fail();
}

void RecordFile::AddRun(const ReportedRun& reported) {
  fmt::memory_buffer text;
  JsonObject entry(text, JsonObject::GoOn());
  entry.Texts("upgrades", reported.run.identifiers);
  JsonObject byType(entry.Key("byType"));
  for (const auto& [type, ofType] : reported.comparison.byType) {
    JsonObject one(byType.Key(type));
    AppendTotals(one, ofType);
    one.Close();
  }
  byType.Close();
  AppendNotes(entry, reported);
  const Causes causes(reported.document, reported.run);
  AppendDropped(entry, reported, causes);
  if (reported.signOff != nullptr) AppendSheet(entry, text, *reported.signOff);
  if (detail_ != ReportDetail::kSummary) AppendChanges(entry, text, reported, causes);
  Flush(text);
}

void RecordFile::AppendSheet(JsonObject& entry, fmt::memory_buffer& text, const SignOff& signOff) {
  const standalone::sheet::SheetTotals& totals = signOff.Totals();
  JsonObject sheet(entry.Key("sheet"));
  JsonObject counts(sheet.Key("counts"));
  counts.Number("equal", totals.equal);
  counts.Number("same", totals.same);
  counts.Number("onPurpose", totals.onPurpose);
  counts.Number("unaccounted", totals.unaccounted);
  counts.Close();
  if (detail_ != ReportDetail::kSummary) {
    std::vector<const standalone::sheet::Subject*> lost;
    JsonList differences(sheet.Key("differences"));
    signOff.Tell([&](const standalone::sheet::Difference& difference) {
      AppendDifference(differences.Entry(), difference);
      const bool isLost = difference.after == nullptr;
      if (isLost && (lost.empty() || lost.back() != difference.before)) lost.push_back(difference.before);
      FlushIfLarge(text);
    });
    differences.Close();
    if (detail_ == ReportDetail::kFull) AppendSubjects(sheet, text, signOff.After(), lost);
  }
  sheet.Close();
}

// What differs is told already; this is the rest, and where it belongs.
void RecordFile::AppendSubjects(JsonObject& sheet, fmt::memory_buffer& text,
                                const standalone::sheet::Sheet& after,
                                const std::vector<const standalone::sheet::Subject*>& lost) {
  JsonList subjects(sheet.Key("subjects"));
  for (const standalone::sheet::Subject& subject : after.Subjects()) {
    AppendSubject(subjects.Entry(), subject);
    FlushIfLarge(text);
  }
  subjects.Close();
  JsonList gone(sheet.Key("lost"));
  for (const standalone::sheet::Subject* const subject : lost) {
    AppendSubject(gone.Entry(), *subject);
    FlushIfLarge(text);
  }
  gone.Close();
}

void RecordFile::AppendChanges(JsonObject& entry, fmt::memory_buffer& text, const ReportedRun& reported,
                               const Causes& causes) {
  MentionedFeatures mentioned;
  JsonList changed(entry.Key("changed"));
  for (const standalone::Feature* const feature : reported.comparison.changed) {
    mentioned.Tell(*feature);
    AppendChange(
        changed.Entry(), reported.document.Before(*feature), feature,
        [&](const standalone::FieldDifference& difference) { return causes.Of(*feature, difference); },
        &mentioned);
    FlushIfLarge(text);
  }
  changed.Close();
  standalone::FeatureTexts texts;
  JsonList created(entry.Key("created"));
  for (const standalone::Feature* const feature : reported.comparison.created) {
    mentioned.Tell(*feature);
    AppendFeatureWith(created.Entry(), texts, *feature, causes.OfCreation(*feature), detail_);
    FlushIfLarge(text);
  }
  created.Close();
  JsonList removed(entry.Key("removed"));
  for (const standalone::Feature* const feature : reported.comparison.removed) {
    mentioned.Tell(*reported.document.Before(*feature));
    AppendFeatureWith(removed.Entry(), texts, *reported.document.Before(*feature), causes.OfRemoval(*feature),
                      detail_);
    FlushIfLarge(text);
  }
  removed.Close();
  JsonList others(entry.Key("mentioned"));
  mentioned.AppendTo(others, reported.document, [&] { FlushIfLarge(text); });
  others.Close();
}

void RecordFile::Flush(fmt::memory_buffer& text) {
  std::string_view bytes(text.data(), text.size());
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  text.clear();
}

void RecordFile::FlushIfLarge(fmt::memory_buffer& text) {
  if (text.size() < kFlushBytes) return;
  Interruption::StopIfRequested();
  Flush(text);
}

void RecordFile::Fail() const {
  throw standalone::DocumentError(standalone::DocumentError::Kind::kUnwritable, report_.string(), 0,
                                  fmt::format("the report cannot be written ({})", std::strerror(errno)),
                                  "Check the folder, its permissions and the room on its disk");
}

}  // namespace tool
