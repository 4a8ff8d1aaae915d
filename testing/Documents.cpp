#include "Documents.h"

#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "UpgradeTest.h"
#include "file/DocumentError.h"
#include "file/DocumentReader.h"
#include "file/FeatureText.h"

namespace testing_support {

using namespace standalone;

namespace {

// A file without a name, so that nobody else can have made it and none is left behind.
class NamelessFile {
 public:
  explicit NamelessFile(std::string_view content) : descriptor_(memfd_create("document", MFD_CLOEXEC)) {
    if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "no file in memory");
    std::ofstream(Path()) << content;
  }
  ~NamelessFile() { close(descriptor_); }
  NamelessFile(const NamelessFile&) = delete;
  NamelessFile& operator=(const NamelessFile&) = delete;

  [[nodiscard]] std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
  int descriptor_;
};

// What the author of a test wrote has no file and no header line. `numbers` are those of the lines that
// became features.
[[noreturn]] void TellFault(const DocumentError& error, const std::vector<std::size_t>& numbers) {
  constexpr std::size_t kFirstFeature = 2;
  const std::size_t line = error.Line();
  const bool isOfLine = line >= kFirstFeature && line - kFirstFeature < numbers.size();
  const std::string place = isOfLine ? "line " + std::to_string(numbers[line - kFirstFeature]) + " of " : "";
  throw std::invalid_argument(place + "what was given: " + error.Problem());
}

}  // namespace

DocumentPtr DocumentOf(std::string_view lines) {
  static_cast<void>(Library());
  std::string features;
  std::vector<std::size_t> numbers;
  for (std::size_t number = 1; !lines.empty(); ++number) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    std::string_view line = lines.substr(0, end);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (!line.empty()) {
      features.append(line).push_back('\n');
      numbers.push_back(number);
    }
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
  const NamelessFile file(R"({"format":"hvxdoc","version":1,"upgrades":[],"features":)" +
                          std::to_string(numbers.size()) + "}\n" + features);
  try {
    return ReadDocument(file.Path());
  } catch (const DocumentError& error) {
    TellFault(error, numbers);
  }
}

std::string LinesOf(Document& document) {
  document.DropAllDeadLinks();
  fmt::memory_buffer text;
  FeatureTexts texts;
  for (const Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    texts.Append(text, *feature);
    text.push_back('\n');
  }
  return fmt::to_string(text);
}

}  // namespace testing_support
