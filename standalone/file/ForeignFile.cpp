#include "file/ForeignFile.h"

#include <algorithm>
#include <iterator>

namespace standalone {
namespace {

using namespace std::string_view_literals;

struct Entry {
  std::string_view mark;
  ForeignFile file;
  std::size_t at = 0;  // where the mark stands
};

constexpr std::string_view kUnpack = "Unpack it first, and give the file that comes out";
constexpr std::string_view kConvert = "Convert it to UTF-8 without a byte order mark";
constexpr Entry kForeign[] = {
    {"\xEF\xBB\xBF"sv,
     {"the file begins with a byte order mark",
      "Save it as UTF-8 without one, or remove its first three bytes: tail -c +4 OLD > NEW"}},
    {"\xFF\xFE"sv, {"the file is UTF-16 or UTF-32", kConvert}},
    {"\xFE\xFF"sv, {"the file is UTF-16", kConvert}},
    {"\0\0\xFE\xFF"sv, {"the file is UTF-32", kConvert}},
    {"{\0"sv, {"the file is UTF-16 or UTF-32", kConvert}},
    {"\0{"sv, {"the file is UTF-16", kConvert}},
    // What is compressed once is unpacked before anybody looks at it.
    {"\x1F\x8B"sv, {"the file is compressed twice (gzip)", kUnpack}},
    {"\x28\xB5\x2F\xFD"sv, {"the file is compressed twice (zstd)", kUnpack}},
    {"\xFD"
     "7zXZ\0"sv,
     {"the file is compressed (xz)", kUnpack}},
    {"BZh"sv, {"the file is compressed (bzip2)", kUnpack}},
    {"\x04\x22\x4D\x18"sv, {"the file is compressed (lz4)", kUnpack}},
    {"PK\x03\x04"sv, {"the file is a zip archive", kUnpack}},
    {"ustar"sv, {"the file is a tar archive", kUnpack}, 257},
};

}  // namespace

const ForeignFile* ForeignFile::Of(std::string_view start) {
  const auto* const found = std::ranges::find_if(kForeign, [start](const Entry& each) {
    return start.size() > each.at && start.substr(each.at).starts_with(each.mark);
  });
  return found == std::end(kForeign) ? nullptr : &found->file;
}

}  // namespace standalone
