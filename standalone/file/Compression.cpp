#include "file/Compression.h"

namespace standalone {

Compression CompressionOf(std::string_view start) {
  using namespace std::string_view_literals;
  if (start.starts_with("\x1F\x8B"sv)) return Compression::kGzip;
  if (start.starts_with("\x28\xB5\x2F\xFD"sv)) return Compression::kZstd;
  // A frame that is to be passed over; some programs put one in front.
  const bool isPassedOver = start.size() >= kCompressionBytes && start[0] >= '\x50' && start[0] <= '\x5F' &&
                            start.substr(1).starts_with("\x2A\x4D\x18"sv);
  return isPassedOver ? Compression::kZstd : Compression::kNone;
}

Compression CompressionNamed(const std::filesystem::path& file) {
  const std::filesystem::path ending = file.extension();
  if (ending == ".gz") return Compression::kGzip;
  return ending == ".zst" ? Compression::kZstd : Compression::kNone;
}

std::string_view NameOf(Compression compression) {
  switch (compression) {
    case Compression::kNone:
      break;
    case Compression::kGzip:
      return "gzip";
    case Compression::kZstd:
      return "zstd";
  }
  return {};
}

}  // namespace standalone
