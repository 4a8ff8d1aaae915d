#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "hvxupgrade/Export.h"

namespace hvxupgrade {

using FeatureId = std::int64_t;  ///< From 1; unique in its document and never given twice.

/// A link to a feature of the same document; `kNothing` is a link that holds nothing.
struct Link {
  static constexpr FeatureId kNothing = 0;

  FeatureId target = kNothing;

  friend bool operator==(const Link&, const Link&) = default;
};

class Value;
using List = std::vector<Value>;

/// What an attribute holds: a value of its own, independent of the document. Integers and reals are different
/// kinds, and a document keeps both exactly.
class HVXUPGRADE_API Value {
 public:
  enum class Kind { kString, kInteger, kReal, kBoolean, kLink, kList };

  Value() = default;  ///< A link that holds nothing.
  // A value stands wherever one is wanted, so the conversions are implicit.
  // NOLINTBEGIN(google-explicit-constructor)
  Value(std::string text) : held_(std::move(text)) {}
  Value(std::string_view text) : held_(std::string(text)) {}
  Value(const char* text) : held_(std::string(text)) {}
  template <std::integral Number>
  requires(!std::same_as<Number, bool> &&
           (std::signed_integral<Number> || sizeof(Number) < sizeof(std::int64_t))) Value(Number number)
      : held_(std::int64_t{number}) {}
  Value(std::floating_point auto number) : held_(double{number}) {}
  Value(std::same_as<bool> auto flag) : held_(flag) {}
  Value(Link link) : held_(link) {}
  Value(List entries) : held_(std::move(entries)) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] Kind GetKind() const;
  // Each of these is for a value of its own kind; else throws `std::bad_variant_access`.
  [[nodiscard]] const std::string& AsString() const { return std::get<std::string>(held_); }
  [[nodiscard]] std::int64_t AsInteger() const { return std::get<std::int64_t>(held_); }
  [[nodiscard]] double AsReal() const { return std::get<double>(held_); }
  [[nodiscard]] bool AsBoolean() const { return std::get<bool>(held_); }
  [[nodiscard]] Link AsLink() const { return std::get<Link>(held_); }
  [[nodiscard]] const List& AsList() const { return std::get<List>(held_); }
  /// An integer or a real, as a real.
  [[nodiscard]] double AsNumber() const;

  /// The JSON text of the value, as the document file has it. Throws `Error` (`kUsage`) for a real that is
  /// not finite.
  [[nodiscard]] std::string Json() const;

  friend bool operator==(const Value&, const Value&) = default;

 private:
  std::variant<Link, std::string, std::int64_t, double, bool, List> held_;
};

}  // namespace hvxupgrade
