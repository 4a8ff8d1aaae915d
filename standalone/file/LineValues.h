#pragma once

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "file/DocumentFormat.h"
#include "model/Feature.h"

/// \file
/// What the reader of documents takes a line apart with: for the reader's sources only.

namespace standalone {

namespace ondemand = simdjson::ondemand;
using Field = simdjson::simdjson_result<ondemand::field>;

/// Something in a line that is sound JSON but not a sound document. The reader adds the file and the line.
struct Unsound {
  std::string problem;
  std::string advice;
};

inline constexpr std::string_view kSeeFormat = "Correct the line as docs/document-format.md describes";

/// Throws `Unsound`.
[[noreturn]] void Refuse(std::string problem, std::string_view advice = kSeeFormat);

/// Refuses the value of `key` when it is of another type than `wanted`.
void Expect(ondemand::value value, ondemand::json_type wanted, std::string_view key);

/// The key of a field, which can be taken once. Most hold nothing to unescape, and finding their end costs
/// less than unescaping them.
inline std::string_view TakeKey(Field& field) {
  const char* const text = ondemand::raw_json_string(field.key()).raw();
  const char* end = text;
  while (*end != '"' && *end != '\\') ++end;
  return *end == '"' ? std::string_view(text, end) : std::string_view(field.unescaped_key());
}

/// The keys that an object may have, each once. They mostly come in the order of the list, so the search goes
/// on where the last one was found.
template <std::size_t N>
class Keys {
 public:
  explicit Keys(const std::string_view (&keys)[N]) : keys_(keys) {}

  /// The place of the key in the list. Refuses one that is not in it, or was met before.
  std::size_t Meet(std::string_view key) {
    const auto index = static_cast<std::size_t>(std::find(keys_, keys_ + N, key) - keys_);
    if (index == N) Refuse(fmt::format("unknown key \"{}\"", key));
    return Take(index);
  }
  /// The same for the key of a field, which must not have been taken yet.
  std::size_t Meet(Field& field) {
    const char* const text = ondemand::raw_json_string(field.key()).raw();
    for (std::size_t index = next_; index < N; ++index) {
      if (BeginsWith(text, keys_[index])) return Take(index);
    }
    return Meet(TakeKey(field));
  }
  [[nodiscard]] bool HasMetAll() const { return met_ == (1U << N) - 1; }
  [[nodiscard]] bool HasMetNone() const { return met_ == 0; }

 private:
  std::size_t Take(std::size_t index) {
    if ((met_ >> index & 1U) != 0) Refuse(fmt::format("key \"{}\" stands twice", keys_[index]));
    met_ |= 1U << index;
    next_ = index + 1;
    return index;
  }
  // Whether the key whose text begins there is `key`: what stands behind a text in the parser's memory may be
  // read.
  static bool BeginsWith(const char* text, std::string_view key) {
    return *text == key.front() && std::string_view(text, key.size()) == key && text[key.size()] == '"';
  }

  const std::string_view (&keys_)[N];
  std::uint32_t met_ = 0;
  std::size_t next_ = 0;
};

// Throw `Unsound`: for a value that is no whole number within 64 bits, an object that is no link, and a link
// that holds no id.
[[noreturn]] void RefuseInteger(ondemand::value value, std::string_view key);
[[noreturn]] void RefuseLink(std::string_view key);
[[noreturn]] void RefuseLinkTo(FeatureId id, std::string_view key);

// Each takes the value of `key`, and refuses one of another type or out of range. A text is valid until the
// parser goes on to another block. They stand here because every value of a document passes them.
inline std::int64_t TakeInteger(ondemand::value value, std::string_view key) {
  std::int64_t number = 0;
  if (value.get_int64().get(number) != simdjson::SUCCESS) RefuseInteger(value, key);
  return number;
}

inline std::string_view TakeText(ondemand::value value, std::string_view key) {
  std::string_view text;
  if (value.get_string().get(text) == simdjson::SUCCESS) return text;
  Expect(value, ondemand::json_type::string, key);
  return value.get_string();  // a text that is broken: throws the parser's error
}

inline ondemand::object TakeObject(ondemand::value value, std::string_view key) {
  ondemand::object object;
  if (value.get_object().get(object) == simdjson::SUCCESS) return object;
  Expect(value, ondemand::json_type::object, key);
  return value.get_object();  // an object that is broken: throws the parser's error
}

/// The id in a link.
inline FeatureId TakeRef(ondemand::value value, std::string_view key) {
  FeatureId id = 0;  // no link holds this
  for (auto field : TakeObject(value, key)) {
    if (id != 0 || TakeKey(field) != format::kRef) RefuseLink(key);
    id = TakeInteger(field.value(), format::kRef);
    if (id < 1) RefuseLinkTo(id, key);
  }
  if (id == 0) RefuseLink(key);
  return id;
}

/// Most keys are among a few; a look into this is cheaper than one into the table of all names.
class NameCache {
 public:
  NameId Intern(std::string_view name) {
    if (name.empty()) return kNoName;
    Entry& entry = entries_[PlaceOf(name)];
    if (entry.text != name) {
      entry.id = NameTable::Intern(name);
      entry.text = NameTable::Text(entry.id);
    }
    return entry.id;
  }

 private:
  struct Entry {
    std::string_view text;
    NameId id = kNoName;
  };
  static constexpr int kPlaceBits = 11;

  // Names begin and end alike, so that their middle tells them apart.
  static std::size_t PlaceOf(std::string_view name) {
    std::uint64_t middle = 0;
    const std::size_t size = std::min(name.size(), sizeof(middle));
    std::memcpy(&middle, name.data() + (name.size() - size) / 2, size);
    return (middle + name.size()) * 0x9e3779b97f4a7c15U >> (64 - kPlaceBits);
  }

  std::array<Entry, std::size_t{1} << kPlaceBits> entries_;
};

}  // namespace standalone
