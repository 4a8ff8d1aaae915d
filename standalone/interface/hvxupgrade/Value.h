#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
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

/// Whether `Number` is an integer that a document keeps as one: it fits into 64 bits with a sign, and is
/// neither a flag nor a letter.
template <class Number>
concept KeptInteger =
    std::integral<Number> && !std::same_as<Number, bool> && !std::same_as<Number, char> &&
    !std::same_as<Number, wchar_t> && !std::same_as<Number, char8_t> && !std::same_as<Number, char16_t> &&
    !std::same_as<Number, char32_t> && requires(Number number) {
  std::int64_t{number};
};

/// Whether `Number` is a real that a document keeps exactly: a `double` holds it.
template <class Number>
concept KeptReal = std::floating_point<Number> && requires(Number number) {
  double{number};
};

/// What a value throws that is asked for another kind than its own; `what()` tells both.
class HVXUPGRADE_API WrongKind : public std::bad_variant_access {
 public:
  explicit WrongKind(const std::string& text) : text_(text) {}  // NOLINT(bugprone-throw-keyword-missing)
  ~WrongKind() override;
  WrongKind(const WrongKind&) = default;
  WrongKind& operator=(const WrongKind&) = default;

  [[nodiscard]] const char* what() const noexcept override { return text_.what(); }

 private:
  std::runtime_error text_;  // whose copies cannot fail
};

class Value;
using List = std::vector<Value>;

/// What an attribute holds: a value of its own, independent of the document. Integers and reals are different
/// kinds, and a document keeps both exactly: write 1.0 where a real belongs. Texts are UTF-8; what no
/// document could hold is refused when it is set (`Feature::Set`).
class HVXUPGRADE_API Value {
 public:
  enum class Kind { kString, kInteger, kReal, kBoolean, kLink, kList };

  Value() = default;  ///< A link that holds nothing.
  ~Value() = default;
  Value(const Value&) = default;
  Value(Value&&) noexcept = default;
  /// Takes a value of its own, since what is assigned may be an entry of the list that goes.
  Value& operator=(Value other) noexcept {
    held_ = std::move(other.held_);
    return *this;
  }
  // A value stands wherever one is wanted, so the conversions are implicit.
  // NOLINTBEGIN(google-explicit-constructor)
  Value(std::string text) : held_(std::move(text)) {}
  Value(std::string_view text) : held_(std::string(text)) {}
  Value(const char* text) : held_(std::string(text)) {}
  Value(std::nullptr_t) = delete;  ///< `Value()` is the link that holds nothing.
  /// Not for numbers that may not fit, such as unsigned ones of 64 bits: cast them to `std::int64_t`.
  Value(KeptInteger auto number) : held_(std::int64_t{number}) {}
  /// Not for a `long double`, which may not fit: cast it to `double`.
  Value(KeptReal auto number) : held_(double{number}) {}
  Value(std::same_as<bool> auto flag) : held_(flag) {}
  Value(Link link) : held_(link) {}
  Value(List entries) : held_(std::move(entries)) {}
  // NOLINTEND(google-explicit-constructor)

  [[nodiscard]] Kind GetKind() const;
  // Each of these is for a value of its own kind; else throws `WrongKind`.
  [[nodiscard]] const std::string& AsString() const { return As<std::string>("a text"); }
  [[nodiscard]] std::int64_t AsInteger() const { return As<std::int64_t>("an integer"); }
  [[nodiscard]] double AsReal() const { return As<double>("a real"); }
  [[nodiscard]] bool AsBoolean() const { return As<bool>("a boolean"); }
  [[nodiscard]] Link AsLink() const { return As<Link>("a link"); }
  [[nodiscard]] const List& AsList() const { return As<List>("a list"); }
  /// An integer or a real, as a real; integers beyond 2^53 are rounded. Throws `WrongKind` for all others.
  [[nodiscard]] double AsNumber() const;

  /// The JSON text of the value, as the document file has it. Throws `Error` (`kUsage`) for what no document
  /// could hold: a real that is not finite, text that is not UTF-8, lists more than 8 deep.
  [[nodiscard]] std::string Json() const;

  friend bool operator==(const Value&, const Value&) = default;

 private:
  template <class Held>
  [[nodiscard]] const Held& As(const char* wanted) const {
    if (const Held* const held = std::get_if<Held>(&held_)) return *held;
    Refuse(wanted);
  }
  [[noreturn]] void Refuse(const char* wanted) const;

  std::variant<Link, std::string, std::int64_t, double, bool, List> held_;
};

}  // namespace hvxupgrade
