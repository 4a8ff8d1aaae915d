// Measures what documents cost that are written to cost more than their size: reading, checking, upgrading,
// verifying and writing each, at one size and at four times that, as multiples of what a harmless document of
// the same size costs.
//   hvx_hostile [--bytes N] [--check] [SHAPE...]
//   hvx_hostile --write FOLDER [--bytes N] [SHAPE...]     writes the documents instead
// With --check it ends with 1 when a shape costs more than docs/reliability.md promises.

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "DocumentGenerator.h"
#include "Shapes.h"
#include "Trip.h"
#include "file/DocumentWriter.h"

namespace {

using namespace standalone;

constexpr std::size_t kTimes = 4;  // how much larger the second size is
constexpr int kRepetitions = 3;

// What no shape may exceed: the cost per byte, as a multiple of the harmless document's, and how much more a
// byte costs at the larger size. Both leave room for a machine on which others work at the same time.
constexpr double kMostTimesHarmless = 8.0;
constexpr double kMostGrowth = 2.5;
// Below this the clock tells more than the program.
constexpr double kLeastSeconds = 0.05;

using bench::Cost;

class Measurement {
 public:
  explicit Measurement(std::filesystem::path folder) : folder_(std::move(folder)) {}

  // The least of several: what else the machine does only adds.
  [[nodiscard]] Cost Of(const std::string& text, bool isUpgraded = true) const {
    const std::string input = (folder_ / "input.hvxdoc").string();
    const std::string output = (folder_ / "output.hvxdoc").string();
    std::ofstream(input, std::ios::binary) << text;
    bench::TripOptions options;
    options.upgrade = isUpgraded;
    Cost least = MeasureTrip(input, output, options);
    for (int i = 1; i < kRepetitions; ++i) {
      const Cost cost = MeasureTrip(input, output, options);
      if (cost.Seconds() < least.Seconds()) least = cost;
    }
    return least;
  }

  // As documents are, repeated up to about so many bytes.
  [[nodiscard]] std::string Harmless(std::size_t bytes) const {
    constexpr std::size_t kBytesOfFeature = 150;
    const std::string file = (folder_ / "harmless.hvxdoc").string();
    WriteOptions options;
    options.overwrite = true;
    WriteDocument(*bench::GenerateDocument(bench::ExamplePatterns(HVX_SOURCE_DIR), bytes / kBytesOfFeature,
                                           bench::kSeed)
                       .Get(),
                  file, options);
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  std::filesystem::path folder_;
};

double PerByte(const Cost& cost, const std::string& text) {
  return cost.Seconds() / static_cast<double>(text.size());
}

// Whether the shape keeps within the bounds.
bool Report(std::string_view name, bench::HostileBound bound, const Measurement& measurement,
            const std::string& text, const std::string& larger, double harmlessPerByte, double slack) {
  const bool isUpgraded = bound != bench::HostileBound::kProduct;
  const Cost cost = measurement.Of(text, isUpgraded);
  const Cost costOfLarger = measurement.Of(larger, isUpgraded);
  const double times = PerByte(costOfLarger, larger) / harmlessPerByte;
  const double growth = PerByte(costOfLarger, larger) / PerByte(cost, text);
  const bool holds = (bound == bench::HostileBound::kConstant && growth * kTimes <= slack * kMostGrowth) ||
                     costOfLarger.Seconds() < kLeastSeconds ||
                     (times <= slack * kMostTimesHarmless && growth <= slack * kMostGrowth);
  std::string stages;
  for (std::size_t stage = 0; stage < bench::kStages; ++stage)
    stages += fmt::format(" {:>8.3f}", costOfLarger.seconds[stage]);
  fmt::print("{:<12} {:>6.1f} {}  {:>7.2f} {:>6.2f} {:>8.1f}{}\n", name,
             static_cast<double>(larger.size()) / 1e6, stages, times, growth, costOfLarger.peakBytes / 1e6,
             holds ? "" : "  TOO MUCH");
  std::fflush(stdout);
  return holds;
}

bool IsChosen(const std::vector<std::string>& chosen, std::string_view name) {
  return chosen.empty() || std::ranges::find(chosen, name) != chosen.end();
}

bool MeasureAll(const std::vector<std::string>& chosen, std::size_t bytes, const Measurement& measurement,
                double slack) {
  std::string head;
  for (const std::string_view stage : bench::kStageNames) head += fmt::format(" {:>8}", stage);
  fmt::print(
      "processor seconds at the larger size, the least of {}; cost per byte as a multiple of the harmless "
      "document's, and of its own at a quarter of the size\n"
      "{:<12} {:>6} {}  {:>7} {:>6} {:>8}\n",
      kRepetitions, "shape", "MB", head, "times", "growth", "peak MB");
  const std::string harmless = measurement.Harmless(bytes);
  const std::string largerHarmless = measurement.Harmless(kTimes * bytes);
  const double perByte = PerByte(measurement.Of(largerHarmless), largerHarmless);
  Report("harmless", bench::HostileBound::kLinear, measurement, harmless, largerHarmless, perByte, slack);
  bool hold = true;
  for (const bench::HostileShape& shape : bench::HostileShapes()) {
    if (IsChosen(chosen, shape.name))
      hold = Report(shape.name, shape.bound, measurement, shape.make(bytes), shape.make(kTimes * bytes),
                    perByte, slack) &&
             hold;
  }
  return hold;
}

void WriteAll(const std::vector<std::string>& chosen, std::size_t bytes,
              const std::filesystem::path& folder) {
  for (const bench::HostileShape& shape : bench::HostileShapes()) {
    if (!IsChosen(chosen, shape.name)) continue;
    std::ofstream(folder / fmt::format("{}.hvxdoc", shape.name), std::ios::binary) << shape.make(bytes);
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Measures documents that are written to cost more than their size");
  std::size_t bytes = 1'000'000;
  bool check = false;
  double slack = 1.0;
  std::string folderForAll;
  std::vector<std::string> chosen;
  app.add_option("SHAPE", chosen, "The shapes; all without it");
  app.add_option("--bytes", bytes, "The smaller of the two sizes");
  app.add_flag("--check", check, "End with 1 when a shape costs too much");
  app.add_option("--slack", slack, "Multiplies the bounds: where others use the machine too");
  app.add_option("--write", folderForAll, "Write the documents to this folder instead");
  CLI11_PARSE(app, argc, argv);
  if (!folderForAll.empty()) {
    WriteAll(chosen, bytes, folderForAll);
    return 0;
  }
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / fmt::format("hvx-hostile-{}", getpid());
  std::filesystem::create_directory(folder);
  int code = 0;
  try {
    const bool hold = MeasureAll(chosen, bytes, Measurement(folder), slack);
    if (check && !hold) code = 1;
  } catch (const std::exception& error) {
    fmt::print(stderr, "hvx_hostile: {}\n", error.what());
    code = 1;
  }
  std::filesystem::remove_all(folder);
  return code;
}
