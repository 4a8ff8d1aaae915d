#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "model/Value.h"

namespace standalone {

/// A list while it is changed entry by entry: finding a link, taking it out and adding one at the end cost
/// the same whatever the list's length, and finding an entry by its position nearly so. (A list that is a
/// value can only be made anew.)
class OpenList {
 public:
  explicit OpenList(std::span<const Value> entries);

  [[nodiscard]] std::size_t Size() const { return size_; }
  [[nodiscard]] bool Holds(const Feature& target) const { return places_.contains(&target); }
  /// Takes out every link to `target`. False when there is none.
  bool TakeOut(const Feature& target);
  void Append(const Value& entry);
  /// The entry at `position`, from 1; null beyond the end.
  [[nodiscard]] const Value* At(std::size_t position);
  [[nodiscard]] std::vector<Value> Entries() const;
  /// The first entry, in order, for which `isWanted` holds; null without one. It must not change the list.
  template <class Predicate>
  [[nodiscard]] const Value* FindFirst(const Predicate& isWanted) const {
    for (std::size_t i = first_; i < entries_.size(); ++i) {
      if (!entries_[i].isGone && isWanted(entries_[i].value)) return &entries_[i].value;
    }
    return nullptr;
  }

 private:
  struct Entry {
    Value value;
    bool isGone = false;
  };

  void Pack();
  void CountAll();

  std::vector<Entry> entries_;
  std::size_t first_ = 0;  // all before it are gone
  std::size_t size_ = 0;   // those that are not
  std::unordered_multimap<const Feature*, std::size_t> places_;
  // Element i counts what is there among the entries up to the ith, as far back as the lowest bit of i tells
  // (a Fenwick tree). Empty until somebody asks for a position.
  std::vector<std::uint32_t> counts_;
};

}  // namespace standalone
