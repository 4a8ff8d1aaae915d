#pragma once

#include <fmt/format.h>
#include <simdjson.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "model/Feature.h"

/// \file
/// What the reader of documents takes a line apart with: for the reader's sources only.

namespace standalone {

namespace ondemand = simdjson::ondemand;

/// Something in a line that is sound JSON but not a sound document. The reader adds the file and the line.
struct Unsound {
  std::string problem;
  std::string advice;
};

inline constexpr std::string_view kSeeFormat = "Correct the line as docs/document-format.md describes";

/// Throws `Unsound`.
[[noreturn]] void Refuse(std::string problem, std::string_view advice = kSeeFormat);

/// The keys that an object may have, each once. They mostly come in the order of the list, so the search goes
/// on where the last one was found.
template <std::size_t N>
class Keys {
 public:
  explicit Keys(const std::string_view (&keys)[N]) : keys_(keys) {}

  std::size_t Meet(std::string_view key) {
    const auto index = static_cast<std::size_t>(Find(key) - keys_);
    if (index == N) Refuse(fmt::format("unknown key \"{}\"", key));
    if ((met_ >> index & 1U) != 0) Refuse(fmt::format("key \"{}\" stands twice", key));
    met_ |= 1U << index;
    next_ = index + 1;
    return index;
  }
  [[nodiscard]] bool HasMetAll() const { return met_ == (1U << N) - 1; }
  [[nodiscard]] bool HasMetNone() const { return met_ == 0; }

 private:
  const std::string_view* Find(std::string_view key) const {
    const auto* const found = std::find(keys_ + next_, keys_ + N, key);
    return found != keys_ + N ? found : std::find(keys_, keys_ + N, key);
  }

  const std::string_view (&keys_)[N];
  std::uint32_t met_ = 0;
  std::size_t next_ = 0;
};

/// Refuses the value of `key` when it is of another type than `wanted`.
void Expect(ondemand::value value, ondemand::json_type wanted, std::string_view key);

// Each takes the value of `key`, and refuses one of another type or out of range. A text is valid until the
// parser goes on to another block.
std::int64_t TakeInteger(ondemand::value value, std::string_view key);
std::string_view TakeText(ondemand::value value, std::string_view key);
/// The id in a link.
FeatureId TakeRef(ondemand::value value, std::string_view key);

/// Most keys are among a few; a look into this is cheaper than one into the table of all names.
class NameCache {
 public:
  NameId Intern(std::string_view name) {
    if (name.empty()) return kNoName;
    const auto byte = [&name](std::size_t at) -> std::size_t { return static_cast<unsigned char>(name[at]); };
    Entry& entry =
        entries_[(name.size() * 37 + byte(0) * 5 + byte(name.size() / 2) * 3 + byte(name.size() - 1)) %
                 entries_.size()];
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
  std::array<Entry, 512> entries_;
};

}  // namespace standalone
