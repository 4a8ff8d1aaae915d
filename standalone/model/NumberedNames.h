#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace standalone {

/// Which numbers are taken among names of the form "<prefix>N", for the prefixes that are watched. Knows a
/// name only once it was noted.
class NumberedNames {
 public:
  /// Watches the prefix from now on; false when it is watched already.
  bool Watch(std::string_view prefix);

  // A name that a feature bears, or bears no longer.
  void Note(std::string_view name) { Count(name, 1); }
  void Forget(std::string_view name) { Count(name, -1); }
  /// Takes note of a name for one prefix only.
  void NoteAfter(std::string_view prefix, std::string_view name);

  /// The highest number after the prefix, which is watched; 0 when none is taken.
  [[nodiscard]] std::int64_t HighestAfter(std::string_view prefix) const;

 private:
  using Numbers = std::map<std::int64_t, std::int64_t>;  // how many names bear the number

  void Count(std::string_view name, int change);

  std::map<std::string, Numbers, std::less<>> byPrefix_;
};

}  // namespace standalone
