#pragma once

#include "base/VLMString.h"
#include "base/VLMUnicodeString.h"

/// Localised texts, kept in catalogs of keys.
class VLMMsgCatalog {
 public:
  VLMMsgCatalog() = delete;

  /// The text of `key` in `catalog`, in the session's language, with each "/P1" .. "/P9" replaced by the
  /// parameter of that number. `parameters` holds `parameterCount` strings and may be null when the count is
  /// 0. Gives `defaultText` when the catalog or the key is missing. Never fails.
  static VLMUnicodeString BuildMessage(const VLMString& catalog, const VLMString& key,
                                       const VLMUnicodeString* parameters, int parameterCount,
                                       const VLMUnicodeString& defaultText);
};
