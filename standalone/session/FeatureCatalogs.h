#pragma once

#include <filesystem>
#include <string_view>

#include "base/VLMResult.h"
#include "model/Document.h"

namespace standalone {

/// The feature catalogs: files of the data folder that say which late types can be created and what a new
/// feature of each holds. A document can create what the catalogs hold that were loaded into it, as long as
/// it is open. Any thread may use them at any time.
class FeatureCatalogs {
 public:
  FeatureCatalogs() = delete;

  /// Reads all catalogs of `folder`, whose late types documents can be given from now on. All at once, so
  /// that a catalog which cannot be had is known before any document is touched. Throws `std::runtime_error`,
  /// which names the file and the remedy, when one that upgrades need is missing, or one is broken; the
  /// catalogs from before are then still in use.
  static void Use(const std::filesystem::path& folder);

  /// Makes the late types of catalog `name` (its file's name) available in the document. E_FAIL when there is
  /// no such catalog. Loading one twice changes nothing.
  static HRESULT Load(std::string_view name, Document& document);

  /// Makes a feature of a late type that a catalog loaded into the document offers, with the attributes that
  /// the catalog tells, as the last son of `father`. Null when no loaded catalog offers the late type.
  static Feature* Create(std::string_view lateType, std::string_view externalName, Feature& father);
};

}  // namespace standalone
