#include "model/KeyedHash.h"

#include <unistd.h>

#include <array>
#include <bit>
#include <chrono>
#include <cstring>

namespace standalone {
namespace {

using HashKey = std::array<std::uint64_t, 2>;

const HashKey& KeyOfProcess() {
  static const HashKey key = [] {
    HashKey drawn{};
    if (getentropy(drawn.data(), sizeof drawn) == 0) return drawn;
    // Without a source of randomness, still nothing that a document could have been written for.
    const auto time = std::chrono::steady_clock::now().time_since_epoch().count();
    return HashKey{static_cast<std::uint64_t>(time), std::bit_cast<std::uintptr_t>(&drawn)};
  }();
  return key;
}

// SipHash-1-3: a hash with a key that cannot be worked out from what it gives, and short texts cost little.
class Sip {
 public:
  explicit Sip(const HashKey& key)
      : a_(key[0] ^ 0x736f6d6570736575U),
        b_(key[1] ^ 0x646f72616e646f6dU),
        c_(key[0] ^ 0x6c7967656e657261U),
        d_(key[1] ^ 0x7465646279746573U) {}

  void Add(std::uint64_t word) {
    d_ ^= word;
    Round();
    a_ ^= word;
  }
  std::uint64_t Finish() {
    c_ ^= 0xff;
    for (int round = 0; round < 3; ++round) Round();
    return a_ ^ b_ ^ c_ ^ d_;
  }

 private:
  void Round() {
    a_ += b_;
    b_ = std::rotl(b_, 13) ^ a_;
    a_ = std::rotl(a_, 32);
    c_ += d_;
    d_ = std::rotl(d_, 16) ^ c_;
    a_ += d_;
    d_ = std::rotl(d_, 21) ^ a_;
    c_ += b_;
    b_ = std::rotl(b_, 17) ^ c_;
    c_ = std::rotl(c_, 32);
  }

  std::uint64_t a_;
  std::uint64_t b_;
  std::uint64_t c_;
  std::uint64_t d_;
};

}  // namespace

std::uint64_t KeyedHashOf(std::uint64_t number) noexcept {
  Sip sip(KeyOfProcess());
  sip.Add(number);
  return sip.Finish();
}

std::uint64_t KeyedHashOf(std::string_view text) noexcept {
  Sip sip(KeyOfProcess());
  const std::uint64_t size = text.size();
  std::uint64_t word = 0;
  for (; text.size() >= sizeof word; text.remove_prefix(sizeof word)) {
    std::memcpy(&word, text.data(), sizeof word);
    sip.Add(word);
  }
  word = 0;
  if (!text.empty()) std::memcpy(&word, text.data(), text.size());
  sip.Add(word ^ (size << 56U));
  return sip.Finish();
}

}  // namespace standalone
