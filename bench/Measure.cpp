// Measures whole documents: generates one of each size from the examples, and reports what reading, upgrading
// and writing cost as ratios of the bare pass over the same bytes in the same run.
//   hvx_measure [FEATURES...]      (10000 100000 1000000 without arguments)

#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "BarePass.h"
#include "DocumentGenerator.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "session/FeatureCatalogs.h"
#include "upgrade/UpgradeLibrary.h"
#include "upgrade/VersionManager.h"

namespace {

using namespace standalone;

constexpr int kRepetitions = 5;

// Processor time of this process, in seconds: unlike the time on the wall it does not count what others do
// meanwhile.
double Now() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double TimeOf(const std::function<void()>& action) {
  const double start = Now();
  action();
  return Now() - start;
}

struct Figures {
  double bare = 0.0;
  double read = 0.0;
  double writeBack = 0.0;  // unchanged
  double upgrade = 0.0;
  double write = 0.0;
  double peakBytes = 0.0;
  double features = 0.0;
};

// One trip in a process of its own, so that the peak of memory is the trip's.
Figures MeasureOnce(const std::string& input, const std::string& output) {
  std::array<int, 2> channel{};
  if (pipe(channel.data()) != 0) std::abort();
  if (const pid_t child = fork(); child == 0) {
    Figures figures;
    figures.bare = TimeOf([&] { bench::BarePass(input, output); });
    const UpgradeLibrary library(HVX_LIBRARY);
    const VersionManager manager({&library.Description()});
    FeatureCatalogs::Use(std::string(HVX_SOURCE_DIR) + "/standalone/catalogs");
    DocumentPtr document;
    figures.read = TimeOf([&] { document = ReadDocument(input); });
    figures.features = static_cast<double>(document->FeatureCount());
    WriteOptions options;
    options.overwrite = true;
    figures.writeBack = TimeOf([&] { WriteDocument(*document.Get(), output, options); });
    figures.upgrade =
        TimeOf([&] { static_cast<void>(manager.Run(document, manager.Pending(*document.Get()))); });
    figures.write = TimeOf([&] { WriteDocument(*document.Get(), output, options); });
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    figures.peakBytes = static_cast<double>(usage.ru_maxrss) * 1024;
    const bool sent = write(channel[1], &figures, sizeof(figures)) == sizeof(figures);
    _exit(sent ? 0 : 1);
  } else {
    Figures figures;
    const bool received = read(channel[0], &figures, sizeof(figures)) == sizeof(figures);
    int status = 0;
    waitpid(child, &status, 0);
    close(channel[0]);
    close(channel[1]);
    if (!received || status != 0) {
      fmt::print(stderr, "the measured process failed\n");
      std::exit(1);
    }
    return figures;
  }
}

double MedianOf(const std::vector<Figures>& all, double Figures::*figure) {
  std::vector<double> values;
  values.reserve(all.size());
  for (const Figures& figures : all) values.push_back(figures.*figure);
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

void Measure(std::size_t featureCount, const std::filesystem::path& folder) {
  const std::string input = (folder / fmt::format("{}.hvxdoc", featureCount)).string();
  const std::string output = (folder / "result.hvxdoc").string();
  WriteOptions options;
  options.overwrite = true;
  WriteDocument(
      *bench::GenerateDocument(bench::ExamplePatterns(HVX_SOURCE_DIR), featureCount, bench::kSeed).Get(),
      input, options);
  const auto bytes = static_cast<double>(std::filesystem::file_size(input));

  std::vector<Figures> all;
  for (int i = 0; i < kRepetitions; ++i) all.push_back(MeasureOnce(input, output));
  const double bare = MedianOf(all, &Figures::bare);
  const double read = MedianOf(all, &Figures::read);
  const double upgrade = MedianOf(all, &Figures::upgrade);
  const double back = MedianOf(all, &Figures::writeBack);
  const double write = MedianOf(all, &Figures::write);
  fmt::print(
      "{:>9.0f} {:>8.1f} {:>7.3f} {:>7.3f} {:>7.3f} {:>7.3f} {:>7.3f} {:>12.2f} {:>14.2f} {:>9.2f} "
      "{:>12.2f}\n",
      all.front().features, bytes / 1e6, bare, read, back, upgrade, write, (read + back) / bare,
      upgrade / (read + write), MedianOf(all, &Figures::peakBytes) / bytes,
      1e6 * (read + upgrade + write) / all.front().features);
  std::filesystem::remove(input);
  std::filesystem::remove(output);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  std::vector<std::size_t> sizes{10'000, 100'000, 1'000'000};
  if (!arguments.empty()) {
    sizes.clear();
    for (const std::string& argument : arguments) sizes.push_back(std::stoull(argument));
  }
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / fmt::format("hvx-measure-{}", getpid());
  std::filesystem::create_directory(folder);
  fmt::print("processor seconds, medians of {}\n", kRepetitions);
  fmt::print("{:>9} {:>8} {:>7} {:>7} {:>7} {:>7} {:>7} {:>12} {:>14} {:>9} {:>12}\n", "features", "MB",
             "bare", "read", "back", "upgrade", "write", "(r+b)/bare", "upgrade/(r+w)", "peak/MB",
             "us/feature");
  for (const std::size_t size : sizes) Measure(size, folder);
  std::filesystem::remove_all(folder);
  return 0;
}
