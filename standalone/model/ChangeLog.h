#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/NameTable.h"

namespace standalone {

class Feature;

/// Which part of a feature was changed.
enum class ChangedPart : std::uint8_t {
  kCreated,  ///< The feature was made; what is changed of it later is not noted.
  kRemoved,
  kType,
  kAlias,
  kFather,
  kContainer,
  kUpToDate,
  kPhysicalType,
  kAttribute,  ///< The attribute of the note's key, or its mode.
};

struct ChangeNote {
  const Feature* feature;
  std::uint32_t work;  ///< The piece of work that changed it, as it was numbered by whoever did it.
  NameId key;          ///< Of the attribute; `kNoName` for other parts.
  ChangedPart part;
};

/// Who changed what, change by change. The journal tells how a feature was before; this tells which pieces of
/// work made it what it is.
class ChangeLog {
 public:
  /// Nothing is noted until this is called: a note costs memory for each change.
  void Start() { isOn_ = true; }
  [[nodiscard]] bool IsOn() const { return isOn_; }

  /// Numbers the work that changes from now on are noted for.
  void SetWork(std::size_t work) { work_ = static_cast<std::uint32_t>(work); }

  void Note(const Feature& feature, ChangedPart part, NameId key = kNoName) {
    if (isOn_) Add({&feature, work_, key, part});
  }

  /// In the order of the changes; repetitions of one work right behind each other are noted once.
  [[nodiscard]] const std::vector<ChangeNote>& Notes() const { return notes_; }

 private:
  void Add(const ChangeNote& note) {
    if (!notes_.empty()) {
      const ChangeNote& last = notes_.back();
      if (last.feature == note.feature && last.work == note.work && last.key == note.key &&
          last.part == note.part) {
        return;
      }
    }
    notes_.push_back(note);
  }

  bool isOn_ = false;
  std::uint32_t work_ = 0;
  std::vector<ChangeNote> notes_;
};

}  // namespace standalone
