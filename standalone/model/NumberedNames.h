#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>

namespace standalone {

/// Counts names of the form prefix, then a number ("Contact Pair-12"), for one prefix.
class NumberedNames {
 public:
  explicit NumberedNames(std::string_view prefix) : prefix_(prefix) {}

  /// Names of another form are not counted.
  void Add(std::string_view name);
  /// Takes a name out again that was added.
  void Remove(std::string_view name);
  /// The highest number that a counted name bears; 0 without one.
  [[nodiscard]] std::int64_t Highest() const { return counts_.empty() ? 0 : counts_.rbegin()->first; }

 private:
  /// The number of the name; below 0 for one of another form, or whose number no other could follow.
  [[nodiscard]] std::int64_t NumberIn(std::string_view name) const;

  std::string_view prefix_;
  std::map<std::int64_t, std::size_t> counts_;
};

}  // namespace standalone
