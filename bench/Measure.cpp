// Measures whole documents: generates one of each size from the examples, and reports what reading it,
// writing it back, upgrading it and writing the result cost, as ratios of the bare pass over the same bytes
// in the same process.
//   hvx_measure [--only ID,...] [FEATURES...]      (10000 100000 1000000 without arguments)

#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "BarePass.h"
#include "DocumentGenerator.h"
#include "OwnProcess.h"
#include "ProcessorTime.h"
#include "check/Conformity.h"
#include "check/Integrity.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "session/FeatureCatalogs.h"
#include "session/Messages.h"
#include "sheet/Comparison.h"
#include "upgrade/UpgradeLibrary.h"
#include "upgrade/VersionManager.h"

namespace {

using namespace standalone;

constexpr int kRepetitions = 9;
constexpr const char* kHead =
    "{:>9} {:>7} {:>8} {:>7} {:>7} {:>7} {:>7} {:>7} {:>7} {:>7} {:>11} {:>14} {:>11} {:>10} {:>8} {:>11}\n";
constexpr const char* kRow =
    "{:>9.0f} {:>7.1f} {:>8.1f} {:>7.3f} {:>7.3f} {:>7.3f} {:>7.3f} {:>7.3f} {:>7.3f} {:>7.3f} {:>11.2f} "
    "{:>14.2f} {:>11.2f} {:>10.2f} {:>8.2f} {:>11.2f}\n";

double TimeOf(const std::function<void()>& action) {
  const double start = bench::ProcessorTime();
  action();
  return bench::ProcessorTime() - start;
}

struct Figures {
  double bare = 0.0;
  double read = 0.0;
  double writeBack = 0.0;  // unchanged
  double upgrade = 0.0;
  double verify = 0.0;
  double sheet = 0.0;  // reading the sheets before and after, and comparing them
  double write = 0.0;
  double peakBytes = 0.0;
  double resultBytes = 0.0;
  double features = 0.0;
};

// Has the system hold memory that was touched before. A virtual machine gives free memory back to its host,
// and getting it again can cost more than the whole trip; which of it is free is no matter of this program.
void WarmMemory(std::size_t bytes) {
  void* const memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) return;
  static_cast<void>(madvise(memory, bytes, MADV_HUGEPAGE));
  std::memset(memory, 1, bytes);
  munmap(memory, bytes);
}

// One trip in a process of its own, so that the peak of memory is the trip's.
Figures MeasureOnce(const std::string& input, const std::string& output,
                    const std::vector<std::string>& only) {
  constexpr std::size_t kMostPerByteOfFile = 5;  // what a trip takes at its peak, at the most
  WarmMemory(kMostPerByteOfFile * std::filesystem::file_size(input));
  return bench::InOwnProcess([&] {
    Figures figures;
    figures.bare = TimeOf([&] { bench::BarePass(input, output); });
    const UpgradeLibrary library(HVX_LIBRARY);
    const VersionManager manager({&library.Description()});
    for (const std::string& identifier : only) {
      if (manager.Find(identifier) == nullptr)
        throw std::runtime_error(fmt::format("there is no upgrade \"{}\"", identifier));
    }
    FeatureCatalogs::Use(std::string(HVX_SOURCE_DIR) + "/standalone/catalogs");
    Messages::Use(std::string(HVX_SOURCE_DIR) + "/standalone/messages", "en");
    DocumentPtr document;
    figures.read = TimeOf([&] { document = ReadDocument(input); });
    figures.features = static_cast<double>(document->FeatureCount());
    WriteOptions options;
    options.overwrite = true;
    figures.writeBack = TimeOf([&] { WriteDocument(*document.Get(), output, options); });
    const std::vector<std::string> identifiers = only.empty() ? manager.Pending(*document.Get()) : only;
    std::optional<sheet::Sheet> before;
    figures.sheet = TimeOf([&] { before = sheet::ReadSheet(*document.Get()); });
    figures.upgrade = TimeOf([&] { static_cast<void>(manager.Run(document, identifiers)); });
    figures.verify = TimeOf([&] {
      const std::vector<std::string> faults = FindFaults(*document.Get());
      const std::vector<Finding> findings = CheckConformity(*document.Get(), FindingScope::kOfResult);
      const auto needsPerson = [](const Finding& finding) { return finding.NeedsPerson(); };
      // A benchmark of documents that do not come out sound would measure something else.
      if (!faults.empty() || (only.empty() && std::ranges::any_of(findings, needsPerson)))
        throw std::runtime_error("the result is not sound");
    });
    figures.sheet += TimeOf([&] {
      const sheet::Sheet after = sheet::ReadSheet(*document.Get(), &*before);
      const sheet::SheetTotals totals =
          sheet::Compare(*before, after, identifiers, [](const sheet::Difference&) {});
      if (totals.unaccounted != 0) throw std::runtime_error("the result is another analysis");
    });
    before.reset();
    figures.write = TimeOf([&] { WriteDocument(*document.Get(), output, options); });
    figures.resultBytes = static_cast<double>(std::filesystem::file_size(output));
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    figures.peakBytes = static_cast<double>(usage.ru_maxrss) * 1024;
    return figures;
  });
}

template <class Figure>
double MedianOf(const std::vector<Figures>& all, const Figure& figure) {
  std::vector<double> values;
  values.reserve(all.size());
  for (const Figures& figures : all) values.push_back(std::invoke(figure, figures));
  std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
  return values[values.size() / 2];
}

// The parts of one trip are compared with each other: how fast the machine is changes from one to the next.
double WholeTripOverBare(const Figures& trip) {
  return (trip.read + trip.writeBack) / trip.bare;
}
double UpgradeOverTrip(const Figures& trip) {
  return trip.upgrade / (trip.read + trip.write);
}
double VerifyOverAll(const Figures& trip) {
  return trip.verify / (trip.read + trip.upgrade + trip.verify + trip.sheet + trip.write);
}
double SheetOverAll(const Figures& trip) {
  return trip.sheet / (trip.read + trip.upgrade + trip.verify + trip.sheet + trip.write);
}
double MicrosecondsPerFeature(const Figures& trip) {
  return 1e6 * (trip.read + trip.upgrade + trip.verify + trip.sheet + trip.write) / trip.features;
}

void Measure(std::size_t featureCount, const std::vector<std::string>& only,
             const std::filesystem::path& folder) {
  const std::string input = (folder / fmt::format("{}.hvxdoc", featureCount)).string();
  const std::string output = (folder / "result.hvxdoc").string();
  WriteOptions options;
  options.overwrite = true;
  WriteDocument(
      *bench::GenerateDocument(bench::ExamplePatterns(HVX_SOURCE_DIR), featureCount, bench::kSeed).Get(),
      input, options);
  const auto bytes = static_cast<double>(std::filesystem::file_size(input));

  std::vector<Figures> all;
  for (int i = 0; i < kRepetitions; ++i) all.push_back(MeasureOnce(input, output, only));
  const double result = all.front().resultBytes;
  fmt::print(kRow, all.front().features, bytes / 1e6, result / 1e6, MedianOf(all, &Figures::bare),
             MedianOf(all, &Figures::read), MedianOf(all, &Figures::writeBack),
             MedianOf(all, &Figures::upgrade), MedianOf(all, &Figures::verify),
             MedianOf(all, &Figures::sheet), MedianOf(all, &Figures::write), MedianOf(all, WholeTripOverBare),
             MedianOf(all, UpgradeOverTrip), MedianOf(all, VerifyOverAll), MedianOf(all, SheetOverAll),
             MedianOf(all, &Figures::peakBytes) / std::max(bytes, result),
             MedianOf(all, MicrosecondsPerFeature));
  std::filesystem::remove(input);
  std::filesystem::remove(output);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Measures whole documents against the bare pass over the same bytes");
  std::vector<std::size_t> sizes{10'000, 100'000, 1'000'000};
  std::vector<std::string> only;
  app.add_option("FEATURES", sizes, "The sizes of the documents");
  app.add_option("--only", only, "The identifiers to upgrade by; all without it")
      ->delimiter(',')
      ->allow_extra_args(false);
  CLI11_PARSE(app, argc, argv);
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / fmt::format("hvx-measure-{}", getpid());
  std::filesystem::create_directory(folder);
  fmt::print("processor seconds, medians of {}\n", kRepetitions);
  fmt::print(kHead, "features", "MB", "MB after", "bare", "read", "back", "upgrade", "verify", "sheet",
             "write", "(r+b)/bare", "upgrade/(r+w)", "verify/all", "sheet/all", "peak/MB", "us/feature");
  int code = 0;
  try {
    for (const std::size_t size : sizes) Measure(size, only, folder);
  } catch (const std::exception& error) {
    fmt::print(stderr, "{}\n", error.what());
    code = 1;
  }
  std::filesystem::remove_all(folder);
  return code;
}
