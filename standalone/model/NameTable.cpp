#include "model/NameTable.h"

#include <array>
#include <atomic>
#include <bit>
#include <cstring>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/OfThread.h"
#include "model/KeyedHash.h"
#include "model/RecentTexts.h"

namespace standalone {
namespace {

struct Name {
  std::string text;
  std::uint32_t holders = 0;
  bool isForEver = false;
};

// What a thread was told lately of a text. It keeps the text, since the name's own may go meanwhile.
class RecentName {
 public:
  static constexpr std::uint64_t kForEver = 0;  // no state of the table
  static constexpr std::size_t kMostBytes = 47;

  /// Whether it is about the text, and holds in this state of the table.
  [[nodiscard]] bool Tells(std::string_view text, std::uint64_t state) const {
    return (state_ == state || state_ == kForEver) && std::string_view(text_.data(), size_) == text;
  }
  [[nodiscard]] NameId Id() const { return id_; }
  void Note(std::string_view text, NameId id, std::uint64_t state) {
    if (text.size() > kMostBytes) return;
    state_ = state;
    id_ = id;
    size_ = static_cast<std::uint8_t>(text.size());
    std::memcpy(text_.data(), text.data(), text.size());
  }

 private:
  std::uint64_t state_ = kForEver;
  NameId id_ = kNoName;
  std::uint8_t size_ = 0;  // no name is empty
  std::array<char, kMostBytes> text_{};
};
using RecentNames = RecentTexts<RecentName>;

class Names {
 public:
  // A text is read without the mutex: whoever has a number got it after the name was made, and holds the name
  // meanwhile.
  [[nodiscard]] std::string_view Text(NameId id) const { return At(id).text; }

  [[nodiscard]] NameId Find(std::string_view text) const {
    RecentName* const recent = RecentOf(text);
    // Read before the look-up: what is found in a later state is then looked up again, never the reverse.
    const std::uint64_t state = state_.load(std::memory_order_acquire);
    if (recent != nullptr && recent->Tells(text, state)) return recent->Id();
    const std::shared_lock lock(mutex_);
    const auto found = ids_.find(text);
    const NameId id = found == ids_.end() ? kNoName : found->second;
    const bool isForEver = id != kNoName && At(id).isForEver;
    if (recent != nullptr) recent->Note(text, id, isForEver ? RecentName::kForEver : state);
    return id;
  }

  [[nodiscard]] NameId Intern(std::string_view text) {
    if (const NameId known = FindForEver(text); known != kNoName) return known;
    const std::unique_lock lock(mutex_);
    const NameId id = FindOrMake(text);
    At(id).isForEver = true;
    return id;
  }

  [[nodiscard]] NameTable::Held Hold(std::string_view text) {
    if (const NameId known = FindForEver(text); known != kNoName) return {known, false};
    const std::unique_lock lock(mutex_);
    return Count(FindOrMake(text));
  }
  [[nodiscard]] NameTable::Held Hold(NameId id) {
    const std::unique_lock lock(mutex_);
    return Count(id);
  }

  void Release(NameId id) noexcept {
    const std::unique_lock lock(mutex_);
    Name& name = At(id);
    if (--name.holders != 0 || name.isForEver) return;
    ++state_;
    ids_.erase(name.text);
    name.text = std::string();
    free_.push_back(id);  // for which there is room
  }

  [[nodiscard]] std::size_t Count() const {
    const std::shared_lock lock(mutex_);
    return ids_.size();
  }

 private:
  // Pieces of doubling size, so that no name ever moves.
  static constexpr NameId kFirstPiece = 1024;
  struct Place {
    std::size_t piece;
    std::size_t index;
  };
  static Place PlaceOf(NameId id) {
    const std::uint64_t number = std::uint64_t{id} + kFirstPiece;
    const auto piece = static_cast<std::size_t>(std::bit_width(number / kFirstPiece)) - 1;
    return {piece, static_cast<std::size_t>(number - (std::uint64_t{kFirstPiece} << piece))};
  }
  static constexpr std::size_t kPieces = 23;  // for all numbers that there are

  [[nodiscard]] Name& At(NameId id) const {
    const Place place = PlaceOf(id);
    return pieces_[place.piece][place.index];
  }

  static RecentName* RecentOf(std::string_view text) {
    RecentNames* const recent = OfThread<RecentNames>::Get();
    return recent == nullptr ? nullptr : &recent->PlaceOf(text);
  }

  [[nodiscard]] NameId FindForEver(std::string_view text) const {
    RecentName* const recent = RecentOf(text);
    if (recent != nullptr && recent->Tells(text, RecentName::kForEver)) return recent->Id();
    const std::shared_lock lock(mutex_);
    const auto found = ids_.find(text);
    if (found == ids_.end() || !At(found->second).isForEver) return kNoName;
    if (recent != nullptr) recent->Note(text, found->second, RecentName::kForEver);
    return found->second;
  }

  // Of these, the caller holds the mutex.
  NameId FindOrMake(std::string_view text) {
    if (const auto found = ids_.find(text); found != ids_.end()) return found->second;
    if (free_.empty()) {
      const Place place = PlaceOf(next_);
      if (pieces_[place.piece] == nullptr)
        pieces_[place.piece] = std::make_unique<Name[]>(std::size_t{kFirstPiece} << place.piece);
      // Room for all names, so that giving one back needs no memory.
      if (free_.capacity() < next_) free_.reserve(std::size_t{next_} * 2);
      free_.push_back(next_++);
    }
    const NameId id = free_.back();
    Name& name = At(id);
    name.text = text;
    ids_.emplace(name.text, id);
    ++state_;
    free_.pop_back();
    return id;
  }
  NameTable::Held Count(NameId id) {
    Name& name = At(id);
    if (name.isForEver) return {id, false};
    ++name.holders;
    return {id, true};
  }

  mutable std::shared_mutex mutex_;
  // Changes whenever a look-up may have another outcome than before. Never 0.
  std::atomic<std::uint64_t> state_ = RecentName::kForEver + 1;
  std::array<std::unique_ptr<Name[]>, kPieces> pieces_{std::make_unique<Name[]>(kFirstPiece)};
  std::unordered_map<std::string_view, NameId, KeyedHash> ids_;
  std::vector<NameId> free_;
  NameId next_ = kNoName + 1;
};

Names& All() {
  // Never destroyed: documents may be closed when all statics are gone.
  static auto* const names = new Names;
  return *names;
}

}  // namespace

NameId NameTable::Intern(std::string_view name) {
  return name.empty() ? kNoName : All().Intern(name);
}

NameId NameTable::Find(std::string_view name) {
  return name.empty() ? kNoName : All().Find(name);
}

std::string_view NameTable::Text(NameId id) {
  return All().Text(id);
}

std::size_t NameTable::Count() {
  return All().Count();
}

NameTable::Held NameTable::Hold(std::string_view name) {
  return name.empty() ? Held{kNoName, false} : All().Hold(name);
}

NameTable::Held NameTable::Hold(NameId id) {
  return id == kNoName ? Held{kNoName, false} : All().Hold(id);
}

void NameTable::Release(NameId id) noexcept {
  All().Release(id);
}

}  // namespace standalone
