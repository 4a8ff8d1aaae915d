#include "model/OpenList.h"

#include <bit>

namespace standalone {
namespace {

// Fewer than these are never worth packing for.
constexpr std::size_t kFewGone = 64;

std::size_t LowestBit(std::size_t i) {
  return i & (~i + 1);
}

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
    for (std::size_t i = place->second + 1; i < counts_.size(); i += LowestBit(i)) --counts_[i];
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
  if (counts_.empty()) return;
  const std::size_t last = counts_.size();
  std::uint32_t count = 1;
  for (std::size_t i = last - 1; i > last - LowestBit(last); i -= LowestBit(i)) count += counts_[i];
  counts_.push_back(count);
}

const Value* OpenList::At(std::size_t position) {
  if (position < 1 || position > size_) return nullptr;
  if (counts_.empty()) CountAll();
  std::size_t before = 0;  // entries that stand before the one that is looked for
  for (std::size_t step = std::bit_floor(counts_.size() - 1); step > 0; step /= 2) {
    if (before + step >= counts_.size() || counts_[before + step] >= position) continue;
    before += step;
    position -= counts_[before];
  }
  return &entries_[before].value;
}

void OpenList::CountAll() {
  counts_.assign(entries_.size() + 1, 0);
  for (std::size_t i = 1; i < counts_.size(); ++i) {
    if (!entries_[i - 1].isGone) ++counts_[i];
    if (const std::size_t next = i + LowestBit(i); next < counts_.size()) counts_[next] += counts_[i];
  }
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
