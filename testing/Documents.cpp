#include "Documents.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "UpgradeTest.h"
#include "file/DocumentReader.h"
#include "file/FeatureText.h"

namespace testing_support {

using namespace standalone;

DocumentPtr DocumentOf(std::string_view lines) {
  static_cast<void>(Library());
  std::string features;
  std::size_t count = 0;
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    std::string_view line = lines.substr(0, end);
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (!line.empty()) {
      features.append(line).push_back('\n');
      ++count;
    }
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
  const std::filesystem::path file =
      std::filesystem::path(testing::TempDir()) / ("fixture-" + std::to_string(getpid()) + ".hvxdoc");
  std::ofstream(file) << R"({"format":"hvxdoc","version":1,"upgrades":[],"features":)" << count << "}\n"
                      << features;
  DocumentPtr document = ReadDocument(file);
  std::filesystem::remove(file);
  return document;
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
