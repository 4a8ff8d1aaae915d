#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "hvxupgrade/Document.h"

namespace hvxupgrade {

/// One row per feature of a document, in document order, in columns: for tables and arrays.
struct HVXUPGRADE_API Columns {
  /// An attribute of all features.
  struct Column {
    std::string key;
    /// What the feature has: no attribute of that name, a number, or something else.
    enum class Cell : std::uint8_t { kNone, kReal, kInteger, kBoolean, kString, kLink, kList };
    std::vector<Cell> cells;
    /// Numbers as reals (integers beyond 2^53 are rounded), booleans as 0 and 1, links as ids and 0 where
    /// they hold nothing; not a number (NaN) for all others.
    std::vector<double> numbers;
  };

  std::vector<FeatureId> ids;
  std::vector<FeatureId> fathers;          ///< 0 for a root.
  std::vector<std::string> lateTypeNames;  ///< Each late type that occurs, once, in the order of first use.
  std::vector<std::uint32_t> lateTypes;    ///< The feature's, as a position in `lateTypeNames`, from 0.
  std::vector<Column> attributes;          ///< One for each key that was asked for.

  /// With a column for each of `keys`, in their order; costs a small part of reading the document.
  [[nodiscard]] static Columns Of(const Document& document, std::span<const std::string> keys = {});
};

}  // namespace hvxupgrade
