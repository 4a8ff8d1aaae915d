#include "hvxupgrade/Writer.h"

#include <fmt/format.h>

#include <algorithm>

#include "check/Integrity.h"
#include "file/DocumentWriter.h"
#include "file/RealPath.h"
#include "interface/Inside.h"
#include "interface/Translation.h"

namespace hvxupgrade {
namespace {

namespace fs = std::filesystem;

standalone::Compression CompressionOf(Compression compression) {
  switch (compression) {
    case Compression::kGzip:
      return standalone::Compression::kGzip;
    case Compression::kZstd:
      return standalone::Compression::kZstd;
    case Compression::kNone:
      break;
  }
  return standalone::Compression::kNone;
}

// The file, by whatever name, in the state in which the document was read from it or written to it; null when
// it never was.
const KnownFile* FindKnown(const Inside::DocumentState& state, const fs::path& real) {
  if (const auto known = state.files.find(real); known != state.files.end()) return &known->second;
  const auto now = standalone::FileIdentity::Of(real);
  const auto found = std::ranges::find_if(
      state.files, [&now](const auto& each) { return now && now->IsSameFile(each.second.identity); });
  return found == state.files.end() ? nullptr : &found->second;
}

// With a '/' the backup would not stand beside the file, and with a null character it would be the file.
void RequireSuffix(const std::string& suffix, const fs::path& file) {
  const bool hasSlash = suffix.find('/') != std::string::npos;
  if (!hasSlash && suffix.find('\0') == std::string::npos) return;
  throw Error(
      Error::Kind::kUsage, file.string(), 0,
      fmt::format("the backup suffix \"{}\" has a {} in it", suffix, hasSlash ? "'/'" : "null character"),
      "Give one that ends the name of a file, such as \".old\"; nothing was written");
}

void RequireSound(Inside::DocumentState& state, const fs::path& file) {
  const std::vector<std::string> faults = standalone::FindFaults(*state.document.Get(), 1);
  if (faults.empty()) return;
  throw Error(Error::Kind::kUnwritable, file.string(), 0,
              fmt::format("the document could not be read again ({})", faults.front()),
              "Correct what was set in it, or report what an upgrade made of it");
}

}  // namespace

void Write(Document& document, const fs::path& file, const WriteOptions& options) {
  Translated(Error::Kind::kUnwritable, file, [&] {
    Inside::DocumentState& state = Inside::StateOf(document);
    const Busy busy(state);
    RequireNamed(file, Error::Kind::kUnwritable);
    RequireSuffix(options.backupSuffix, file);
    RequireSound(state, file);
    const fs::path real = standalone::RealPathOf(file);
    const KnownFile* const known = FindKnown(state, real);
    standalone::WriteOptions writing;
    writing.overwrite = options.overwrite;
    writing.backupSuffix = options.backupSuffix;
    writing.changedAdvice = "read it again, or write to another file";
    if (known != nullptr) writing.replaces = known->identity;
    writing.compression = options.compression ? CompressionOf(*options.compression)
                          : known != nullptr  ? known->stored
                                              : standalone::CompressionNamed(file);
    writing.onProgress = [&options](std::size_t written, std::size_t total) {
      TellProgress(options.onProgress, written, total, {"writing was stopped", "Write it again"});
    };
    standalone::WriteDocument(*state.document.Get(), file, writing);
    if (!state.isRead) state.file = file;
    if (const auto written = standalone::FileIdentity::Of(real))
      state.files[real] = {*written, writing.compression};
  });
}

}  // namespace hvxupgrade
