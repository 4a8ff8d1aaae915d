#pragma once

#include <string>

#include "upgrade/UpgradeRun.h"

namespace tool {

/// Where a worker is with its document: a note in memory that it shares with its parent, which can so tell
/// where a worker was that was killed. Texts are cut off after some hundred bytes.
class PlaceNote {
 public:
  /// Without memory to share, nothing is noted.
  PlaceNote();
  ~PlaceNote();
  PlaceNote(const PlaceNote&) = delete;
  PlaceNote& operator=(const PlaceNote&) = delete;

  /// Null: nowhere.
  void Set(const standalone::UpgradePlace* place);

  /// For people, where the worker is, such as: in AcmeBoltLT "Bolt" (id 2), AcmeBolt (AcmeUpgrades 3.1).
  /// Begins with a blank; empty while it is nowhere.
  [[nodiscard]] std::string Where() const;
  /// What to do when it came to an end there, as a sentence without its full stop; empty while it is nowhere.
  [[nodiscard]] std::string Advice() const;

 private:
  struct Shared;
  /// Refers to the note; nowhere it has no upgrade.
  [[nodiscard]] standalone::UpgradePlace Get() const;

  Shared* shared_;
};

}  // namespace tool
