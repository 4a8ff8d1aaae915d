#include "analysis/MeshNumbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace standalone {
namespace {

const Key kElementUserNumbers("ElementUserNumbers");
const Key kNodeUserNumbers("NodeUserNumbers");

constexpr std::int64_t kNoCounterpart = -1;

// A place: the block's number and the object's within it.
constexpr int kIndexBits = 32;
std::size_t BlockAt(std::int64_t place) {
  return static_cast<std::size_t>(place >> kIndexBits);
}
std::size_t IndexAt(std::int64_t place) {
  return static_cast<std::size_t>(place & ((std::int64_t{1} << kIndexBits) - 1));
}

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
std::vector<std::int32_t> Expand(const Attribute* attribute, std::size_t count) {
  std::vector<std::int32_t> numbers(count, kNoCounterpart);
  std::vector<Run> runs;
  if (attribute == nullptr || !ReadRuns(*attribute, runs)) return numbers;
  std::size_t next = 0;
  for (const Run& run : runs) {
    const std::size_t end = next + std::min(count - next, static_cast<std::size_t>(run.count));
    for (std::int64_t number = run.first; next<end; ++next, number += run.first> 0 ? 1 : 0) {
      numbers[next] = static_cast<std::int32_t>(number);
    }
  }
  return numbers;
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
    throw std::runtime_error(fmt::format(
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

bool MeshNumbers::Holds(std::size_t block, const void* meshObject) const {
  if (block == kNoBlock) return false;
  const auto* const first = static_cast<const char*>(blocks_[block].objects.get());
  const auto* const object = static_cast<const char*>(meshObject);
  return !std::less<>()(object, first) && std::less<>()(object, first + blocks_[block].count);
}

std::int64_t MeshNumbers::PlaceOf(const void* meshObject) const {
  if (!Holds(lastFound_, meshObject)) {
    const auto after = byAddress_.upper_bound(meshObject);
    if (after == byAddress_.begin() || !Holds(std::prev(after)->second, meshObject)) return -1;
    lastFound_ = std::prev(after)->second;
  }
  const auto* const first = static_cast<const char*>(blocks_[lastFound_].objects.get());
  return (static_cast<std::int64_t>(lastFound_) << kIndexBits) |
         (static_cast<const char*>(meshObject) - first);
}

const Feature* MeshNumbers::PartAt(std::int64_t place) const {
  return place < 0 ? nullptr : blocks_[BlockAt(place)].part;
}

bool MeshNumbers::HasCounterpart(std::int64_t place) {
  return place >= 0 && !PartAt(place)->removed && Expanded(place) != kNoCounterpart;
}

std::int32_t MeshNumbers::NumberAt(std::int64_t place) {
  return Expanded(place);
}

void MeshNumbers::SetNumberAt(std::int64_t place, std::int32_t number) {
  std::int32_t& stored = Expanded(place);
  isChanged_ = isChanged_ || stored != number;
  stored = number;
}

std::int32_t& MeshNumbers::Expanded(std::int64_t place) {
  if (expandedBlock_ != BlockAt(place)) {
    WriteBack();
    const Block& block = blocks_[BlockAt(place)];
    const Key& key = block.kind == kElements ? kElementUserNumbers : kNodeUserNumbers;
    numbers_ = Expand(block.part->document->FindAttribute(*block.part, key.Id()), block.count);
    expandedBlock_ = BlockAt(place);
    // From the first look on, not only from the first change: nobody may change the attribute unseen.
    block.part->isBehind = true;
  }
  return numbers_[IndexAt(place)];
}

void MeshNumbers::WriteBack() {
  if (expandedBlock_ == kNoBlock) return;
  const Block& block = blocks_[expandedBlock_];
  expandedBlock_ = kNoBlock;
  const std::vector<std::int32_t> numbers = std::move(numbers_);
  const bool wasChanged = std::exchange(isChanged_, false);
  block.part->isBehind = false;
  if (!wasChanged || block.part->removed) return;
  const Key& key = block.kind == kElements ? kElementUserNumbers : kNodeUserNumbers;
  Document& document = *block.part->document;
  document.SetAttribute(*block.part, key.Id(),
                        Value::List(document.Keep(std::span<const Value>(RunsOf(numbers)))));
}

}  // namespace standalone
