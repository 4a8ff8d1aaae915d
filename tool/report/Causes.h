#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "compare/FeatureDifference.h"
#include "model/ChangeLog.h"
#include "upgrade/UpgradeRun.h"

namespace tool {

/// Which pieces of a run made which changes, in the report's words. The document's change log must have been
/// on during the run.
class Causes {
 public:
  /// Both must outlive it.
  Causes(const standalone::Document& document, const standalone::UpgradeRun& run);
  Causes(const Causes&) = delete;
  Causes& operator=(const Causes&) = delete;

  /// A JSON list: what made (removed) the feature, or made the change, in the order of the work. Mostly one
  /// piece.
  [[nodiscard]] std::string OfCreation(const standalone::Feature& feature) const;
  [[nodiscard]] std::string OfRemoval(const standalone::Feature& feature) const;
  [[nodiscard]] std::string Of(const standalone::Feature& feature,
                               const standalone::FieldDifference& difference) const;
  /// The same for an attribute, as the identifiers' names.
  [[nodiscard]] std::vector<std::string_view> IdentifiersBehind(const standalone::Feature& feature,
                                                                standalone::NameId key) const;

 private:
  template <class Predicate>
  [[nodiscard]] std::vector<const standalone::UpgradeWork*> Behind(const standalone::Feature& feature,
                                                                   const Predicate& counts) const;
  template <class Predicate>
  [[nodiscard]] std::string TextOf(const standalone::Feature& feature, const Predicate& counts) const;

  using Places = std::vector<std::uint32_t>;
  [[nodiscard]] Places::const_iterator FirstOf(const standalone::Feature& feature) const;

  const standalone::UpgradeRun& run_;
  const std::vector<standalone::ChangeNote>& notes_;
  Places byFeature_;  // of notes; each feature's in the order of the changes
  // Where the feature's notes begin that was asked for last: mostly the next one's are near.
  mutable Places::const_iterator last_;
};

}  // namespace tool
