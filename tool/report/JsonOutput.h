#pragma once

#include <fmt/format.h>

#include <span>
#include <string>
#include <string_view>

#include "file/JsonText.h"
#include "record/Comparison.h"
#include "settings/Installation.h"
#include "upgrade/UnknownUpgrades.h"

namespace tool {

/// What every JSON output of this program begins with: which output it is, and the version of its layout.
inline constexpr int kJsonVersion = 3;

/// Appends one JSON object, or the fields of one, to a buffer; commas take care of themselves.
class JsonObject {
 public:
  explicit JsonObject(fmt::memory_buffer& out) : out_(out) { out_.push_back('{'); }
  /// Goes on with an object of which fields were written elsewhere.
  struct GoOn {};
  JsonObject(fmt::memory_buffer& out, GoOn /*tag*/) : out_(out), first_(false) {}
  void Close() { out_.push_back('}'); }

  /// Begins a field whose value the caller appends.
  fmt::memory_buffer& Key(std::string_view key);
  /// `json`: a value as a document holds it.
  void Value(std::string_view key, std::string_view json);
  /// Texts may hold any bytes; what is not UTF-8 is replaced, and what is not seen is escaped.
  void Text(std::string_view key, std::string_view text);
  /// Names of files and arguments, so that they can be told apart and found again (`NameAsUtf8`).
  void Name(std::string_view key, std::string_view name);
  void Number(std::string_view key, std::size_t number);
  void Flag(std::string_view key, bool flag) { standalone::AppendRaw(Key(key), flag ? "true" : "false"); }
  void Texts(std::string_view key, std::span<const std::string> texts);
  void Names(std::string_view key, std::span<const std::string> names);

 private:
  fmt::memory_buffer& out_;
  bool first_ = true;
};

/// Appends the entries of a JSON list, separated by commas.
class JsonList {
 public:
  explicit JsonList(fmt::memory_buffer& out) : out_(out) { out_.push_back('['); }
  /// Begins an entry, which the caller appends.
  fmt::memory_buffer& Entry();
  /// An entry as a document holds it, or a feature's line.
  void Value(std::string_view json);
  void Text(std::string_view text);
  void Close() { out_.push_back(']'); }

 private:
  fmt::memory_buffer& out_;
  bool first_ = true;
};

/// The upgrade libraries as a field.
void AppendLibraries(JsonObject& object, const std::vector<LibraryFile>& libraries);
/// Objects, separated by commas: the libraries whose upgrades a document has been through and nobody here
/// knows.
[[nodiscard]] std::string JsonOf(const standalone::UnknownUpgrades& unknown);
/// The same as two fields, the identifiers of a later release by themselves.
void AppendUnknown(JsonObject& object, const standalone::UnknownUpgrades& unknown);
/// The totals as fields.
void AppendTotals(JsonObject& object, const Totals& totals);

}  // namespace tool
