#include "Harness.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "file/DocumentError.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "session/FeatureCatalogs.h"
#include "session/Messages.h"
#include "upgrade/UpgradeLibrary.h"

namespace fuzzing {
namespace {

using standalone::DocumentPtr;

// A file in memory, so that a document is read and written as always.
const std::string& MemoryFile() {
  static const std::string path = "/proc/self/fd/" + std::to_string(memfd_create("document", 0));
  return path;
}

DocumentPtr ReadWritten() {
  standalone::ReadOptions options;
  options.maxUnpackedBytes = std::uint64_t{1} << 24;  // more would take the time of many inputs
  try {
    return standalone::ReadDocument(MemoryFile(), options);
  } catch (const standalone::DocumentError&) {
    return {};
  }
}

}  // namespace

const standalone::VersionManager& Manager() {
  static const auto* const manager = [] {
    standalone::FeatureCatalogs::Use(HVX_SOURCE_DIR "/standalone/catalogs");
    standalone::Messages::Use(HVX_SOURCE_DIR "/standalone/messages", "en");
    static const standalone::UpgradeLibrary library(HVX_LIBRARY);
    return new standalone::VersionManager({&library.Description()});
  }();
  return *manager;
}

const std::string& MemoryFileOf(const std::string& text) {
  std::ofstream(MemoryFile(), std::ios::binary | std::ios::trunc) << text;
  return MemoryFile();
}

DocumentPtr DocumentOf(const std::string& text) {
  static_cast<void>(MemoryFileOf(text));
  return ReadWritten();
}

DocumentPtr DocumentOf(const std::uint8_t* data, std::size_t size) {
  return DocumentOf(std::string(reinterpret_cast<const char*>(data), size));
}

std::string TextOf(standalone::Document& document) {
  static const std::string file = "/dev/shm/hvx-fuzz-" + std::to_string(getpid());
  standalone::WriteDocument(document, file, {.overwrite = true, .backupSuffix = {}, .onProgress = {}});
  std::ifstream stream(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(stream), {}};
  std::remove(file.c_str());
  return text;
}

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

}  // namespace fuzzing
