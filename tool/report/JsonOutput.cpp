#include "report/JsonOutput.h"

#include "terminal/VisibleText.h"

namespace tool {
namespace {

void AppendText(fmt::memory_buffer& out, std::string_view text) {
  if (IsPlain(text)) {  // as most are
    standalone::AppendJsonText(out, text);
    return;
  }
  fmt::memory_buffer json;
  standalone::AppendJsonText(json, AsUtf8(text));
  AppendVisibleJson(out, {json.data(), json.size()});
}

}  // namespace

fmt::memory_buffer& JsonObject::Key(std::string_view key) {
  if (!first_) out_.push_back(',');
  first_ = false;
  AppendText(out_, key);
  out_.push_back(':');
  return out_;
}

void JsonObject::Value(std::string_view key, std::string_view json) {
  AppendVisibleJson(Key(key), json);
}

void JsonObject::Text(std::string_view key, std::string_view text) {
  AppendText(Key(key), text);
}

void JsonObject::Name(std::string_view key, std::string_view name) {
  AppendText(Key(key), NameAsUtf8(name));
}

void JsonObject::Number(std::string_view key, std::size_t number) {
  standalone::AppendJsonInteger(Key(key), static_cast<std::int64_t>(number));
}

void JsonObject::Texts(std::string_view key, std::span<const std::string> texts) {
  JsonList list(Key(key));
  for (const std::string& text : texts) list.Text(text);
  list.Close();
}

void JsonObject::Names(std::string_view key, std::span<const std::string> names) {
  JsonList list(Key(key));
  for (const std::string& name : names) list.Text(NameAsUtf8(name));
  list.Close();
}

fmt::memory_buffer& JsonList::Entry() {
  if (!first_) out_.push_back(',');
  first_ = false;
  return out_;
}

void JsonList::Value(std::string_view json) {
  AppendVisibleJson(Entry(), json);
}

void JsonList::Text(std::string_view text) {
  AppendText(Entry(), text);
}

void AppendLibraries(JsonObject& object, const std::vector<LibraryFile>& libraries) {
  JsonList list(object.Key("libraries"));
  for (const LibraryFile& each : libraries) {
    JsonObject library(list.Entry());
    library.Text("name", each.name);
    library.Text("version", each.version);
    library.Name("file", each.file);
    library.Text("sha256", each.sha256);
    if (!each.continues.empty()) library.Texts("continues", each.continues);
    library.Close();
  }
  list.Close();
}

std::string JsonOf(const standalone::UnknownUpgrades& unknown) {
  fmt::memory_buffer text;
  for (const standalone::MissingLibrary& each : unknown.Libraries()) {
    if (text.size() != 0) text.push_back(',');
    JsonObject library(text);
    library.Text("name", each.name);
    if (!each.version.empty()) library.Text("version", each.version);
    library.Flag("loaded", each.isLoaded);
    if (!each.loaded.empty()) library.Text("loadedVersion", each.loaded);
    library.Texts("upgrades", each.upgrades);
    library.Close();
  }
  return fmt::to_string(text);
}

void AppendUnknown(JsonObject& object, const standalone::UnknownUpgrades& unknown) {
  object.Texts("newerUpgrades", unknown.Newer());
  standalone::AppendRaw(object.Key("missingLibraries"), fmt::format("[{}]", JsonOf(unknown)));
}

void AppendTotals(JsonObject& object, const Totals& totals) {
  object.Number("concerned", totals.concerned);
  object.Number("changed", totals.changed);
  object.Number("created", totals.created);
  object.Number("removed", totals.removed);
  object.Number("failed", totals.failed);
}

}  // namespace tool
