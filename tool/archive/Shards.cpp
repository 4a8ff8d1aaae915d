#include "archive/Shards.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <numeric>
#include <queue>
#include <system_error>

namespace tool {

std::vector<std::size_t> DocumentsOfShard(const std::vector<GivenDocument>& documents, const Shard& shard,
                                          bool sizesChange) {
  std::vector<std::size_t> order(documents.size());
  std::iota(order.begin(), order.end(), 0);
  if (shard.of <= 1) return order;
  std::vector<std::uint64_t> sizes;
  sizes.reserve(documents.size());
  for (const GivenDocument& document : documents) {
    std::error_code error;
    const std::uintmax_t size = sizesChange ? 0 : std::filesystem::file_size(document.file, error);
    sizes.push_back(error ? 0 : size);
  }
  std::ranges::sort(order, [&](std::size_t left, std::size_t right) {
    return sizes[left] != sizes[right] ? sizes[left] > sizes[right]
                                       : documents[left].file < documents[right].file;
  });
  // Each in turn to the shard that has least; small ones level out what large ones left uneven.
  constexpr std::uint64_t kAnyDocument = 4096;
  using Fill = std::pair<std::uint64_t, std::size_t>;
  std::priority_queue<Fill, std::vector<Fill>, std::greater<>> shards;
  for (std::size_t number = 1; number <= shard.of; ++number) shards.emplace(0, number);
  std::vector<std::size_t> chosen;
  for (const std::size_t document : order) {
    const auto [bytes, number] = shards.top();
    shards.pop();
    shards.emplace(bytes + sizes[document] + kAnyDocument, number);
    if (number == shard.number) chosen.push_back(document);
  }
  std::ranges::sort(chosen);
  return chosen;
}

}  // namespace tool
