#include "analysis/MeshNumbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace standalone {
namespace {

const Key kElementUserNumbers("ElementUserNumbers");
const Key kNodeUserNumbers("NodeUserNumbers");

struct Run {
  std::int64_t first = 0;
  std::int64_t count = 0;
};

// False when the attribute holds anything but sound runs.
bool ReadRuns(const Attribute& attribute, std::vector<Run>& runs) {
  if (attribute.value.Kind() != ValueKind::kList) return false;
  const std::span<const Value> entries = attribute.value.Entries();
  if (entries.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < entries.size(); i += 2) {
    if (entries[i].Kind() != ValueKind::kInteger || entries[i + 1].Kind() != ValueKind::kInteger)
      return false;
    const Run run{entries[i].AsInteger(), entries[i + 1].AsInteger()};
    constexpr std::int64_t kHighest = std::numeric_limits<std::int32_t>::max();
    if (run.first < kNoCounterpart || run.first > kHighest || run.count < 0) return false;
    if (run.first > 0 && run.count > kHighest - run.first + 1) return false;
    runs.push_back(run);
  }
  return true;
}

// What the runs do not reach has no counterpart, nor has anything when they cannot be read: then nothing is
// ever changed and the attribute stays as it is.
void Expand(const Attribute* attribute, std::size_t count, std::vector<std::int32_t>& numbers) {
  numbers.resize(count);
  auto next = numbers.begin();
  std::vector<Run> runs;
  if (attribute == nullptr || !ReadRuns(*attribute, runs)) runs.clear();
  for (const Run& run : runs) {
    const auto end = next + std::min(numbers.end() - next, static_cast<std::ptrdiff_t>(run.count));
    for (std::int64_t number = run.first; next != end; ++next) {
      *next = static_cast<std::int32_t>(number);
      if (number > 0) ++number;
    }
  }
  std::fill(next, numbers.end(), kNoCounterpart);
}

std::vector<Value> RunsOf(const std::vector<std::int32_t>& numbers) {
  std::vector<Value> entries;
  for (std::size_t i = 0; i < numbers.size();) {
    const std::int64_t first = numbers[i];
    std::int64_t count = 1;
    while (++i < numbers.size() && numbers[i] == (first > 0 ? first + count : first)) ++count;
    if (first == kNoCounterpart && i == numbers.size()) break;  // what is not reached has none anyway
    entries.push_back(Value::Integer(first));
    entries.push_back(Value::Integer(count));
  }
  return entries;
}

}  // namespace

const Key kElementCount("ElementCount");
const Key kNodeCount("NodeCount");

MeshNumbers& MeshNumbers::Of(Document& document) {
  if (document.Companion() == nullptr) document.SetCompanion(std::make_unique<MeshNumbers>());
  return static_cast<MeshNumbers&>(*document.Companion());
}

void MeshNumbers::Count(const Feature& part, std::size_t before, std::size_t now) {
  if (objects_ - before + now > kMostMeshObjects) {
    throw TooManyMeshObjects(fmt::format(
        "with mesh part {}, the mesh parts have more than {} elements and nodes, the most that this "
        "program works on",
        part.id, kMostMeshObjects));
  }
  objects_ = objects_ - before + now;
}

std::size_t MeshNumbers::AddBlock(Feature& part, Kind kind, std::size_t count,
                                  std::shared_ptr<void> objects) {
  byAddress_.emplace(objects.get(), blocks_.size());
  blocks_.push_back({&part, kind, count, std::move(objects)});
  return blocks_.size() - 1;
}

std::int64_t MeshNumbers::PlaceOf(const void* meshObject) const {
  const auto after = byAddress_.upper_bound(meshObject);
  if (after == byAddress_.begin()) return -1;
  const auto [first, block] = *std::prev(after);
  const auto index = reinterpret_cast<std::uintptr_t>(meshObject) - reinterpret_cast<std::uintptr_t>(first);
  return index < blocks_[block].count ? FirstPlace(block) + static_cast<std::int64_t>(index) : -1;
}

bool MeshNumbers::SetNumberAt(std::int64_t place, std::int32_t number) {
  if (StoredNumber(place) == nullptr) return false;
  SetNumberAtHand(place, number);
  return true;
}

std::int32_t* MeshNumbers::StoredNumber(std::int64_t place) {
  if (place < 0 || PartAt(place)->removed) return nullptr;
  if (atHand_.IndexOf(place) >= atHand_.count) TakeUp(BlockAt(place));
  std::int32_t& number = numbers_[atHand_.IndexOf(place)];
  return number == kNoCounterpart ? nullptr : &number;
}

void MeshNumbers::TakeUp(std::size_t block) {
  WriteBack();
  const auto& [part, kind, count, objects] = blocks_[block];
  const Key& key = kind == kElements ? kElementUserNumbers : kNodeUserNumbers;
  Expand(part->document->FindAttribute(*part, key.Id()), count, numbers_);
  atHand_ = {.firstObject = reinterpret_cast<std::uintptr_t>(objects.get()),
             .count = count,
             .firstPlace = FirstPlace(block)};
  // From the first look on, not only from the first change: nobody may change the attribute unseen.
  part->isBehind = true;
}

void MeshNumbers::WriteBack() {
  if (atHand_.count == 0) return;
  const Block& block = blocks_[BlockAt(atHand_.firstPlace)];
  atHand_ = {};
  const bool wasChanged = std::exchange(isChanged_, false);
  block.part->isBehind = false;
  if (!wasChanged || block.part->removed) return;
  const Key& key = block.kind == kElements ? kElementUserNumbers : kNodeUserNumbers;
  Document& document = *block.part->document;
  document.SetAttribute(*block.part, key.Id(),
                        Value::List(document.Keep(std::span<const Value>(RunsOf(numbers_)))));
}

}  // namespace standalone
