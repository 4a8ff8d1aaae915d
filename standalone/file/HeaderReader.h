#pragma once

#include <cstdint>

#include "file/LineValues.h"
#include "model/Document.h"

namespace standalone {

/// Reads the first line of a document: for its reader only.
class HeaderReader {
 public:
  /// What the line says of upgrades goes into `document`, which must outlive it.
  explicit HeaderReader(Document& document) : document_(document) {}

  /// Gives how many features the line announces. Throws `Unsound`, and the parser's errors.
  std::int64_t Read(ondemand::object object);

 private:
  void ReadUpgrades(ondemand::value value);
  void ReadSources(ondemand::value value);
  void ReadSource(ondemand::object object);
  void AddSources();

  Document& document_;
  std::int64_t version_ = 0;
  bool hasSources_ = false;
  std::vector<UpgradeSource> sources_;
};

}  // namespace standalone
