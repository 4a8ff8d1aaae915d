#pragma once

#include <cstddef>
#include <vector>

#include "record/GivenDocument.h"
#include "settings/Arguments.h"

namespace tool {

/// Which documents, by their places, belong to the shard: all shards together hold each document once, and
/// every one has about as many bytes; with `sizesChange`, such as of documents that are replaced meanwhile,
/// as many documents. The same on every machine that sees the same files, in whatever order they were found.
[[nodiscard]] std::vector<std::size_t> DocumentsOfShard(const std::vector<GivenDocument>& documents,
                                                        const Shard& shard, bool sizesChange);

}  // namespace tool
