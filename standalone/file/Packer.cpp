#include "file/Packer.h"

#define ZLIB_CONST  // what is to be packed is not changed
#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace standalone {
namespace {

// Those that the libraries and their programs take when nobody says another: higher ones take several times
// as long for a few hundredths of the bytes.
constexpr int kGzipLevel = 6;
constexpr int kZstdLevel = 3;

class PlainPacker final : public Packer {
 public:
  explicit PlainPacker(Sink sink) : sink_(std::move(sink)) {}
  void Add(std::string_view text) override { sink_(text); }
  void Finish() override {}

 private:
  Sink sink_;
};

class GzipPacker final : public Packer {
 public:
  explicit GzipPacker(Sink sink) : sink_(std::move(sink)) {
    // Without a header of its own the library writes one that has neither a name nor a time.
    constexpr int kWithGzipHeader = 16;
    constexpr int kMemoryLevel = 8;
    if (deflateInit2(&stream_, kGzipLevel, Z_DEFLATED, kWithGzipHeader + MAX_WBITS, kMemoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK)
      throw std::bad_alloc();
  }
  ~GzipPacker() override { deflateEnd(&stream_); }
  GzipPacker(const GzipPacker&) = delete;
  GzipPacker& operator=(const GzipPacker&) = delete;

  void Add(std::string_view text) override {
    while (!text.empty()) {
      const auto size = std::min<std::size_t>(text.size(), std::numeric_limits<uInt>::max());
      stream_.next_in = reinterpret_cast<const Bytef*>(text.data());
      stream_.avail_in = static_cast<uInt>(size);
      while (stream_.avail_in != 0) Pack(Z_NO_FLUSH);
      text.remove_prefix(size);
    }
  }
  void Finish() override {
    while (Pack(Z_FINISH) != Z_STREAM_END) {
    }
  }

 private:
  int Pack(int flush) {
    stream_.next_out = reinterpret_cast<Bytef*>(buffer_.data());
    stream_.avail_out = static_cast<uInt>(buffer_.size());
    const int code = deflate(&stream_, flush);
    if (const std::size_t made = buffer_.size() - stream_.avail_out; made != 0) sink_({buffer_.data(), made});
    return code;
  }

  Sink sink_;
  z_stream stream_{};
  std::array<char, std::size_t{1} << 16> buffer_{};
};

class ZstdPacker final : public Packer {
 public:
  explicit ZstdPacker(Sink sink) : sink_(std::move(sink)), context_(ZSTD_createCCtx(), &ZSTD_freeCCtx) {
    if (!context_) throw std::bad_alloc();
    Checked(ZSTD_CCtx_setParameter(context_.get(), ZSTD_c_compressionLevel, kZstdLevel));
    Checked(ZSTD_CCtx_setParameter(context_.get(), ZSTD_c_checksumFlag, 1));  // or damage would go unnoticed
  }

  void Add(std::string_view text) override {
    ZSTD_inBuffer in{text.data(), text.size(), 0};
    while (in.pos < in.size) Pack(in, ZSTD_e_continue);
  }
  void Finish() override {
    ZSTD_inBuffer in{};
    while (Pack(in, ZSTD_e_end) != 0) {
    }
  }

 private:
  // Memory is all that it can lack.
  static std::size_t Checked(std::size_t code) {
    if (ZSTD_isError(code) != 0) throw std::bad_alloc();
    return code;
  }

  std::size_t Pack(ZSTD_inBuffer& in, ZSTD_EndDirective end) {
    ZSTD_outBuffer out{buffer_.data(), buffer_.size(), 0};
    const std::size_t left = Checked(ZSTD_compressStream2(context_.get(), &out, &in, end));
    if (out.pos != 0) sink_({buffer_.data(), out.pos});
    return left;
  }

  Sink sink_;
  std::unique_ptr<ZSTD_CCtx, std::size_t (*)(ZSTD_CCtx*)> context_;
  std::vector<char> buffer_ = std::vector<char>(ZSTD_CStreamOutSize());
};

}  // namespace

std::unique_ptr<Packer> Packer::Make(Compression compression, Sink sink) {
  switch (compression) {
    case Compression::kGzip:
      return std::make_unique<GzipPacker>(std::move(sink));
    case Compression::kZstd:
      return std::make_unique<ZstdPacker>(std::move(sink));
    case Compression::kNone:
      break;
  }
  return std::make_unique<PlainPacker>(std::move(sink));
}

}  // namespace standalone
