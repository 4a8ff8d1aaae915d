#pragma once

#include <cmath>
#include <limits>
#include <span>
#include <string_view>

#include "sheet/Sheet.h"

/// \file
/// What the tables of the readers are made of; for the sources of the sheet only.

namespace standalone::sheet {

class Reader;

/// Where a value is kept.
struct Source {
  enum class How : std::uint8_t {
    kNowhere,
    kAttribute,  ///< An attribute of the feature.
    kParameter,  ///< The value of the parameter that an attribute links to.
    kComponent,  ///< The value of a basic component; "Holder/Name" for one within another.
  };

  How how = How::kNowhere;
  std::string_view key = {};
  /// The attribute that links to the feature which holds it; empty for the feature itself.
  std::string_view behind = {};
};

constexpr Source Attribute(std::string_view key) {
  return {Source::How::kAttribute, key};
}
constexpr Source Parameter(std::string_view key) {
  return {Source::How::kParameter, key};
}
constexpr Source Component(std::string_view name) {
  return {Source::How::kComponent, name};
}
constexpr Source Behind(std::string_view link, Source source) {
  source.behind = link;
  return source;
}

/// Which of two places counts, where both hold a value.
enum class Choice : std::uint8_t {
  kOldWhileThere,      ///< The old one, which the upgrade takes away.
  kOldTillRegistered,  ///< The old one, which stays, until the feature stands in "FeatList".
};

/// What kind of value is read.
enum class As : std::uint8_t { kReal, kInteger, kFlag, kText, kLink, kList };

/// What holds where a document says nothing.
struct Fallback {
  enum class Form : std::uint8_t { kNone, kNumber, kText };

  Form form = Form::kNone;
  double number = 0;
  std::string_view text = {};
};

inline constexpr Fallback kNoFallback;
constexpr Fallback Number(double number) {
  return {Fallback::Form::kNumber, number};
}
constexpr Fallback Text(std::string_view text) {
  return {Fallback::Form::kText, 0, text};
}

/// Words for codes, the first for code `first`. An empty one stands for nothing.
struct Codes {
  std::span<const std::string_view> words = {};
  int first = 0;
};

/// One row of a kind's description: a quantity, and where releases keep it.
struct Item {
  Quantity quantity;
  As as = As::kReal;
  Dimension dimension = Dimension::kNone;  ///< Where the document names no magnitude.
  Source current = {};
  Source old = {};
  Choice choice = Choice::kOldWhileThere;
  Fallback fallback = {};
  Codes codes = {};
  Codes oldCodes = {};  ///< Where the old storage has codes of its own.
  /// Reads what takes more than a place to look at, instead of all this.
  void (*read)(Reader& reader, Feature& feature, const Item& item) = nullptr;

  /// Whether every subject has one fact of it.
  [[nodiscard]] constexpr bool IsSingle() const { return quantity.each.empty() && !quantity.isList; }
};

/// What a feature says that holds nothing of the item: the default, or that it is not set. Stays where it is.
[[nodiscard]] const Fact& ImpliedBy(const Item& item);

/// How features of some late types are described.
struct Description {
  std::string_view lateTypes;  ///< Separated by blanks.
  Kind kind;
  std::span<const Item> items;
};

/// All tables.
[[nodiscard]] std::span<const std::span<const Description>> Descriptions();

// The tables, by subject.
std::span<const Description> FrameDescriptions();
std::span<const Description> ConditionDescriptions();
std::span<const Description> InteractionDescriptions();
std::span<const Description> ConstraintDescriptions();
std::span<const Description> PropertyDescriptions();
std::span<const Description> OutputDescriptions();
std::span<const Description> ElementDescriptions();
std::span<const Description> MeshDescriptions();

constexpr Item Real(std::string_view name, Dimension dimension, Source current, Source old = {},
                    Fallback fallback = {}, Choice choice = Choice::kOldWhileThere) {
  return {.quantity = {name},
          .as = As::kReal,
          .dimension = dimension,
          .current = current,
          .old = old,
          .choice = choice,
          .fallback = fallback};
}
constexpr Item Integer(std::string_view name, Source current, Fallback fallback = {}, Codes codes = {}) {
  return {.quantity = {name}, .as = As::kInteger, .current = current, .fallback = fallback, .codes = codes};
}
constexpr Item Flag(std::string_view name, Source current, Fallback fallback = Number(0)) {
  return {.quantity = {name}, .as = As::kFlag, .current = current, .fallback = fallback};
}
constexpr Item Words(std::string_view name, Source current, Fallback fallback = {}) {
  return {.quantity = {name}, .as = As::kText, .current = current, .fallback = fallback};
}
constexpr Item Link(std::string_view name, Source current) {
  return {.quantity = {name}, .as = As::kLink, .current = current};
}
constexpr Item Custom(Quantity quantity, void (*read)(Reader& reader, Feature& feature, const Item& item),
                      Dimension dimension = Dimension::kNone) {
  return {.quantity = quantity, .dimension = dimension, .read = read};
}

// Readers that several tables use.
/// The supports: what each connects, in the order of the list.
void ReadSupports(Reader& reader, Feature& feature, const Item& item);
/// What the attribute of the item's current source lists: links, or connectors, of which what they connect.
void ReadLinks(Reader& reader, Feature& feature, const Item& item);

/// The steps in which it acts besides the one that it stands in.
void ReadPropagation(Reader& reader, Feature& feature, const Item& item);

inline constexpr Item kSupportItem = Custom({"support", {}, true}, ReadSupports);

}  // namespace standalone::sheet
