#include "model/OpenList.h"

#include <algorithm>

namespace standalone {
namespace {

// Fewer than these are never worth packing for.
constexpr std::size_t kFewGone = 64;

}  // namespace

OpenList::OpenList(std::span<const Value> entries) {
  entries_.reserve(entries.size() + entries.size() / 2);
  places_.reserve(entries.size());
  for (const Value& entry : entries) Append(entry);
}

bool OpenList::TakeOut(const Feature& target) {
  const auto [begin, end] = places_.equal_range(&target);
  if (begin == end) return false;
  for (auto place = begin; place != end; ++place) {
    entries_[place->second].isGone = true;
    --size_;
  }
  places_.erase(begin, end);
  while (first_ < entries_.size() && entries_[first_].isGone) ++first_;
  if (entries_.size() - first_ > 2 * size_ + kFewGone) Pack();
  return true;
}

void OpenList::Append(const Value& entry) {
  if (entry.Kind() == ValueKind::kLink && entry.Target() != nullptr)
    places_.emplace(entry.Target(), entries_.size());
  entries_.push_back({entry});
  ++size_;
}

std::vector<Value> OpenList::Entries() const {
  std::vector<Value> alive;
  alive.reserve(size_);
  for (const Entry& entry : entries_) {
    if (!entry.isGone) alive.push_back(entry.value);
  }
  return alive;
}

// What is gone costs whoever looks through the list.
void OpenList::Pack() {
  *this = OpenList(Entries());
}

}  // namespace standalone
