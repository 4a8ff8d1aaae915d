#include "file/FileDigest.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nettle/sha2.h>

namespace standalone {

std::string FileDigest::Sha256Text() const {
  return fmt::format("{:02x}", fmt::join(sha256, ""));
}

Sha256::Sha256() : context_(std::make_unique<sha256_ctx>()) {
  sha256_init(context_.get());
}

Sha256::~Sha256() = default;

void Sha256::Add(std::string_view bytes) {
  sha256_update(context_.get(), bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
}

Sha256Sum Sha256::Take() {
  Sha256Sum sum{};
  sha256_digest(context_.get(), sum.size(), sum.data());
  return sum;
}

}  // namespace standalone
