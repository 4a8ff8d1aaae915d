#pragma once

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "file/DocumentError.h"
#include "file/DocumentFormat.h"
#include "model/Document.h"

/// \file
/// What the reader of documents takes a line apart with: for the reader's sources only.

namespace standalone {

namespace ondemand = simdjson::ondemand;
using Field = simdjson::simdjson_result<ondemand::field>;

/// Something in a line that is sound JSON but not a sound document. The reader adds the file and the line.
struct Unsound {
  std::string problem;
  std::string advice;
  DocumentError::Kind kind = DocumentError::Kind::kInvalid;
};

inline constexpr std::string_view kSeeFormat =
    "Correct the line; the manual page hvxdoc(5) describes the format";

/// What may stand around a line.
inline constexpr std::string_view kBlanks = " \t\r\n";

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

/// A key that an object may have. Its first and its last bytes, with the quote that ends it, stand ready as
/// numbers: keys are compared for every field of a document.
class KnownKey {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor)
  consteval KnownKey(std::string_view text) : text_(text) {
    if (text.size() > kMostBytes) throw std::length_error("the key has a middle that nobody compares");
    Bytes head{};
    Bytes mask{};
    for (std::size_t i = 0; i < kBytes && i <= text.size(); ++i) {
      head[i] = ByteOf(text, i);
      mask[i] = static_cast<char>(0xff);
    }
    head_ = std::bit_cast<std::uint64_t>(head);
    mask_ = std::bit_cast<std::uint64_t>(mask);
    if (text.size() < kBytes) return;
    Bytes tail{};
    for (std::size_t i = 0; i < kBytes; ++i) tail[i] = ByteOf(text, TailOf(text) + i);
    tail_ = std::bit_cast<std::uint64_t>(tail);
  }

  [[nodiscard]] constexpr std::string_view Text() const { return text_; }
  /// Whether this is the key whose text begins there. What stands behind a text in the parser's memory may be
  /// read.
  [[nodiscard]] bool Begins(const char* text) const {
    if ((WordAt(text) & mask_) != head_) return false;
    return text_.size() < kBytes || WordAt(text + TailOf(text_)) == tail_;
  }

 private:
  static constexpr std::size_t kBytes = sizeof(std::uint64_t);
  static constexpr std::size_t kMostBytes = 2 * kBytes - 1;  // so that the two overlap, or meet
  using Bytes = std::array<char, kBytes>;

  static constexpr char ByteOf(std::string_view text, std::size_t index) {
    return index < text.size() ? text[index] : '"';
  }
  static constexpr std::size_t TailOf(std::string_view text) { return text.size() + 1 - kBytes; }
  static std::uint64_t WordAt(const char* text) {
    std::uint64_t word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
  }

  std::string_view text_;
  std::uint64_t head_ = 0;
  std::uint64_t mask_ = 0;  // fewer bytes than a number holds, for a short key
  std::uint64_t tail_ = 0;
};

/// The keys that an object may have, each once. They mostly come in the order of the list, so the search goes
/// on where the last one was found.
template <std::size_t N>
class Keys {
 public:
  explicit Keys(const KnownKey (&keys)[N]) : keys_(keys) {}

  /// The place of the key in the list. Refuses one that is not in it, or was met before.
  std::size_t Meet(std::string_view key) {
    const auto index = static_cast<std::size_t>(std::ranges::find(keys_, key, &KnownKey::Text) - keys_);
    if (index == N) Refuse(fmt::format("unknown key \"{}\"", key));
    return Take(index);
  }
  /// The same for the key of a field, which must not have been taken yet.
  std::size_t Meet(Field& field) {
    const char* const text = ondemand::raw_json_string(field.key()).raw();
    for (std::size_t index = next_; index < N; ++index) {
      if (keys_[index].Begins(text)) return Take(index);
    }
    return Meet(TakeKey(field));
  }
  [[nodiscard]] bool HasMetAll() const { return met_ == (1U << N) - 1; }
  [[nodiscard]] bool HasMetNone() const { return met_ == 0; }

 private:
  std::size_t Take(std::size_t index) {
    if ((met_ >> index & 1U) != 0) Refuse(fmt::format("key \"{}\" occurs twice", keys_[index].Text()));
    met_ |= 1U << index;
    next_ = index + 1;
    return index;
  }

  const KnownKey (&keys_)[N];
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
  // Most texts hold nothing to unescape and are taken where they stand, which costs less than the parser's
  // copy. The parser passes over what nobody takes from it, and would take what a colon follows for a key.
  std::string_view text = value.raw_json_token();
  const char* const behind = text.data() + text.size();
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"' && *behind != ':' &&
      text.find('\\') == std::string_view::npos) {
    return text.substr(1, text.size() - 2);
  }
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

/// The id in a link that begins there, when the link is written as this program writes it; else 0.
inline FeatureId PlainRef(const char* text) {
  constexpr std::string_view kBegin = R"({"ref":)";
  constexpr std::ptrdiff_t kMostDigits = 16;
  if (std::memcmp(text, kBegin.data(), kBegin.size()) != 0) return 0;
  const char* const digits = text + kBegin.size();
  const char* end = digits;
  FeatureId id = 0;
  while (*end >= '0' && *end <= '9' && end - digits < kMostDigits) id = id * 10 + (*end++ - '0');
  return *digits != '0' && *end == '}' ? id : 0;
}

/// The id in a link.
inline FeatureId TakeRef(ondemand::value value, std::string_view key) {
  // Links are the most frequent values by far.
  FeatureId id = PlainRef(value.raw_json_token().data());
  if (id != 0) return id;
  for (auto field : TakeObject(value, key)) {
    if (id != 0 || TakeKey(field) != format::kRef) RefuseLink(key);
    id = TakeInteger(field.value(), format::kRef);
    if (id < 1) RefuseLinkTo(id, key);
  }
  if (id == 0) RefuseLink(key);
  return id;
}

/// Which names were met in the object being read. Forgetting them all costs nothing.
class NameMarks {
 public:
  void Clear() {
    if (++round_ != 0) return;
    rounds_.clear();  // the rounds begin anew
    round_ = 1;
  }
  /// False when the name was met before.
  bool Set(NameId name) {
    if (name >= rounds_.size()) rounds_.resize(name + std::size_t{1});
    return std::exchange(rounds_[name], round_) != round_;
  }

 private:
  std::vector<std::uint32_t> rounds_;  // by name, the round in which it was met last
  std::uint32_t round_ = 0;
};

/// Most keys are among a few; a look into this is cheaper than one into the table of all names.
class NameCache {
 public:
  /// The names are held by `document`, always the same.
  NameId Find(std::string_view name, Document& document) {
    if (name.empty()) return kNoName;
    Entry& entry = entries_[PlaceOf(name)];
    if (entry.text != name) {
      entry.id = document.NameFor(name);
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
