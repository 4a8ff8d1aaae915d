#include "file/Unpacker.h"

#include <fmt/format.h>
#define ZLIB_CONST  // what is to be unpacked is not changed
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

#include <algorithm>
#include <limits>
#include <new>

namespace standalone {
namespace {

constexpr std::string_view kRestore = "Restore it from a backup, or create it again";

NotUnpacked Damaged(Compression compression, std::string_view how) {
  return {fmt::format("the compressed file is damaged ({}: {})", NameOf(compression), how), kRestore};
}

NotUnpacked FollowedByOther(Compression compression) {
  return {fmt::format("something else follows the compressed document ({})", NameOf(compression)),
          "Unpack it without what follows, and give the file that comes out; or restore it from a backup"};
}

class GzipUnpacker final : public Unpacker {
 public:
  GzipUnpacker() {
    constexpr int kGzipOnly = 16;
    if (inflateInit2(&stream_, kGzipOnly + MAX_WBITS) != Z_OK) throw std::bad_alloc();
  }
  ~GzipUnpacker() override { inflateEnd(&stream_); }
  GzipUnpacker(const GzipUnpacker&) = delete;
  GzipUnpacker& operator=(const GzipUnpacker&) = delete;

  Step Unpack(std::string_view packed, std::span<char> to) override {
    if (isBetween_ && !packed.empty()) BeginMember(packed.front());
    stream_.next_in = reinterpret_cast<const Bytef*>(packed.data());
    stream_.avail_in = Bounded(packed.size());
    stream_.next_out = reinterpret_cast<Bytef*>(to.data());
    stream_.avail_out = Bounded(to.size());
    const uInt before = stream_.avail_in;
    const uInt room = stream_.avail_out;
    const int code = isBetween_ ? Z_BUF_ERROR : inflate(&stream_, Z_NO_FLUSH);
    if (code == Z_MEM_ERROR) throw std::bad_alloc();
    if (code != Z_OK && code != Z_STREAM_END && code != Z_BUF_ERROR)
      throw Damaged(Compression::kGzip, stream_.msg == nullptr ? "not readable" : stream_.msg);
    isBetween_ = isBetween_ || code == Z_STREAM_END;
    return {.taken = before - stream_.avail_in, .made = room - stream_.avail_out};
  }
  [[nodiscard]] bool MayEnd() const override { return isBetween_; }

 private:
  static uInt Bounded(std::size_t size) {
    return static_cast<uInt>(std::min<std::size_t>(size, std::numeric_limits<uInt>::max()));
  }

  void BeginMember(char first) {
    constexpr char kFirstOfMember = '\x1F';
    if (first != kFirstOfMember) throw FollowedByOther(Compression::kGzip);
    inflateReset(&stream_);
    isBetween_ = false;
  }

  z_stream stream_{};
  bool isBetween_ = false;  // a member has ended, and none was begun since
};

class ZstdUnpacker final : public Unpacker {
 public:
  ZstdUnpacker() : context_(ZSTD_createDCtx(), &ZSTD_freeDCtx) {
    if (!context_) throw std::bad_alloc();
  }

  Step Unpack(std::string_view packed, std::span<char> to) override {
    // At the end of a frame, no bytes would begin the next one.
    if (packed.empty() && isBetween_) return {};
    ZSTD_inBuffer in{packed.data(), packed.size(), 0};
    ZSTD_outBuffer out{to.data(), to.size(), 0};
    const std::size_t code = ZSTD_decompressStream(context_.get(), &out, &in);
    if (ZSTD_isError(code) != 0) Fail(code);
    if (in.pos > 0 || out.pos > 0) isBetween_ = code == 0;
    hasFrame_ = hasFrame_ || isBetween_;
    return {.taken = in.pos, .made = out.pos};
  }
  [[nodiscard]] bool MayEnd() const override { return isBetween_; }

 private:
  [[noreturn]] void Fail(std::size_t code) const {
    switch (ZSTD_getErrorCode(code)) {
      case ZSTD_error_memory_allocation:
        throw std::bad_alloc();
      case ZSTD_error_prefix_unknown:
        if (hasFrame_) throw FollowedByOther(Compression::kZstd);
        break;
      case ZSTD_error_frameParameter_windowTooLarge:
        throw NotUnpacked{"to unpack the file takes more memory than is given to that (zstd --long)",
                          "Unpack it first, and give the file that comes out"};
      default:
        break;
    }
    throw Damaged(Compression::kZstd, ZSTD_getErrorName(code));
  }

  std::unique_ptr<ZSTD_DCtx, std::size_t (*)(ZSTD_DCtx*)> context_;
  bool isBetween_ = false;  // a frame has ended, and none was begun since
  bool hasFrame_ = false;   // one has ended
};

}  // namespace

std::unique_ptr<Unpacker> Unpacker::Make(Compression compression) {
  if (compression == Compression::kGzip) return std::make_unique<GzipUnpacker>();
  return std::make_unique<ZstdUnpacker>();
}

}  // namespace standalone
