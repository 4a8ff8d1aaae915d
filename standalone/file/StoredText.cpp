#include "file/StoredText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "file/DocumentError.h"
#include "file/DocumentReader.h"

namespace standalone {
namespace {

constexpr std::size_t kMostBuffered = std::size_t{1} << 16;

// Documents shrink to about a tenth of their bytes, some to less.
constexpr std::uint64_t kLikelyRatio = 20;

// No document came near this: what does is made to fill a memory.
constexpr std::uint64_t kMostRatio = 100;
constexpr std::uint64_t kMostOfAnyFile = std::uint64_t{1} << 28;

}  // namespace

StoredText::StoredText(std::string file, const ReadOptions& options)
    : file_(std::move(file), options.digest != nullptr), options_(options) {
  if (file_.Stored() == Compression::kNone) return;
  unpacker_ = Unpacker::Make(file_.Stored());
  buffer_.resize(std::clamp<std::size_t>(options_.blockBytes, 1, kMostBuffered));
}

std::size_t StoredText::Read(std::span<char> to) {
  return unpacker_ ? ReadUnpacked(to) : file_.Read(to);
}

void StoredText::RefuseDamaged() {
  if (!unpacker_) return;
  std::array<char, kMostBuffered> passed{};
  while (!IsBeyondLimit() && UnpackSome(passed) != 0) {
  }
}

std::size_t StoredText::LikelyBytes() const {
  return static_cast<std::size_t>(LikelyTextBytes(file_.Stored(), file_.BytesTotal()));
}

std::size_t StoredText::ReadUnpacked(std::span<char> to) {
  std::size_t filled = 0;
  while (filled < to.size()) {
    const std::size_t made = UnpackSome(to.subspan(filled));
    if (made == 0) break;
    filled += made;
    if (IsBeyondLimit()) FailBeyondLimit();
  }
  return filled;
}

std::size_t StoredText::UnpackSome(std::span<char> to) {
  try {
    for (;;) {
      if (packed_.empty()) packed_ = {buffer_.data(), file_.Read(buffer_)};
      const bool isAtEnd = packed_.empty();
      const Unpacker::Step step = unpacker_->Unpack(packed_, to);
      packed_.remove_prefix(step.taken);
      if (step.made != 0) {
        unpacked_ += step.made;
        return step.made;
      }
      if (!isAtEnd) continue;
      if (unpacker_->MayEnd()) return 0;
      Fail(fmt::format("the compressed file ends too early ({})", NameOf(file_.Stored())),
           "It was cut off; restore it from a backup");
    }
  } catch (const NotUnpacked& fault) {
    Fail(fault.problem, fault.advice);
  }
}

bool StoredText::IsBeyondLimit() const {
  return unpacked_ > options_.maxUnpackedBytes.value_or(kMostOfAnyFile + kMostRatio * file_.BytesRead());
}

void StoredText::FailBeyondLimit() const {
  if (options_.maxUnpackedBytes)
    Fail(fmt::format("the file unpacks to more than {} bytes", *options_.maxUnpackedBytes),
         options_.unpackedAdvice);
  Fail(fmt::format("the file unpacks to more than a hundred times its size ({} MB so far)", unpacked_ >> 20U),
       options_.unpackedAdvice);
}

void StoredText::Fail(std::string_view problem, std::string_view advice) const {
  throw DocumentError(DocumentError::Kind::kInvalid, file_.Name(), 0, problem, advice);
}

std::uint64_t LikelyTextBytes(Compression compression, std::uint64_t bytes) {
  return compression == Compression::kNone ? bytes : bytes * kLikelyRatio;
}

}  // namespace standalone
