// Measures documents that hold much of one thing: each pair of father and son in the examples, N times and
// four times that. Prints what grows faster than its number: processor time, memory, host calls, allocations.
//   hvx_shapes [--times N] [--all] [SHAPE...]
//   hvx_shapes --check [--times N]            looks at counts alone, not at time
//   hvx_shapes --write FOLDER [--times N] [SHAPE...]     writes the documents instead
// A shape is called FATHER/SON, by late types.

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Multiplied.h"
#include "OwnProcess.h"
#include "Trip.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"

namespace {

using namespace standalone;
using bench::Cost;
using bench::FatherAndSon;

constexpr std::size_t kLarger = 4;   // how many times more there are in the second document
constexpr double kMostGrowth = 4.8;  // of what four times as much may cost
// Memory is asked for in pieces that double, so that the sum jumps.
constexpr double kMostGrowthOfBytes = 8.0;
constexpr int kRepetitions = 3;

struct Measure {
  std::string_view name;
  double (*of)(const Cost&);
  double most;   ///< Times as much may four times as many cost.
  double least;  ///< What is less than this says nothing.
  bool isCount;  ///< The same in every run.
};

constexpr std::array kMeasures{
    Measure{"time", [](const Cost& cost) { return cost.Seconds(); }, kMostGrowth, 0.05, false},
    Measure{"memory", [](const Cost& cost) { return cost.peakBytes; }, kMostGrowth, 10e6, false},
    Measure{"calls", [](const Cost& cost) { return cost.hostCalls; }, kMostGrowth, 1000, true},
    Measure{"allocations", [](const Cost& cost) { return cost.allocations; }, kMostGrowth, 1000, true},
    Measure{"bytes", [](const Cost& cost) { return cost.allocatedBytes; }, kMostGrowthOfBytes, 4e6, true},
};

// The costs of one shape, as the example is, N times and four times that.
struct Costs {
  Cost once;
  Cost many;
  Cost more;

  // How much more four times as many cost than N, beyond what the rest of the document costs; 0 where it is
  // too little to tell.
  [[nodiscard]] double Growth(const Measure& measure) const {
    const double base = measure.of(once);
    const double grown = measure.of(more) - base;
    if (grown < measure.least) return 0.0;
    return grown / std::max(measure.of(many) - base, measure.least / kMostGrowth);
  }
};

struct Shape {
  std::string example;
  FatherAndSon pair;
};

// What the conversions say grows faster, or never ends: there the limits of a run help. Not measured unless
// it is asked for.
struct Known {
  std::string_view shape;
  std::string_view why;
};
constexpr std::array kKnown{
    Known{"document/AnalysisModel", "each connection property of each model makes a contact in each case"},
    Known{"HVXConcentratedForce/GeometrySmartConnector",
          "the upgrade of a force goes round for ever on sons that do not belong there"},
};

std::filesystem::path FileOf(const std::string& example) {
  return std::string(HVX_SOURCE_DIR) + "/examples/" + example + ".hvxdoc";
}

// Each pair once, from the first example that has it.
std::vector<Shape> AllShapes() {
  std::vector<Shape> shapes;
  for (const std::string example : {"bolted_bracket", "heated_pipe"}) {
    const DocumentPtr document = ReadDocument(FileOf(example));
    for (const FatherAndSon& pair : bench::PairsOf(*document.Get())) {
      if (std::ranges::find(shapes, pair, &Shape::pair) == shapes.end()) shapes.push_back({example, pair});
    }
  }
  return shapes;
}

// Nodes and elements cost by their own number.
void MakeMeshesSmall(Document& document) {
  const std::array counts{NameTable::Intern("ElementCount"), NameTable::Intern("NodeCount")};
  const std::array numbers{NameTable::Intern("ElementUserNumbers"), NameTable::Intern("NodeUserNumbers")};
  const std::array run{Value::Integer(1), Value::Integer(10)};
  for (Feature* feature = document.First(); feature != nullptr; feature = feature->next) {
    for (std::size_t i = 0; i < counts.size(); ++i) {
      if (document.FindAttribute(*feature, counts[i]) == nullptr) continue;
      document.SetAttribute(*feature, counts[i], Value::Integer(10));
      document.SetAttribute(*feature, numbers[i], Value::List(document.Keep(std::span<const Value>(run))));
    }
  }
}

void Write(const Shape& shape, std::size_t times, const std::filesystem::path& file) {
  const DocumentPtr document = ReadDocument(FileOf(shape.example));
  MakeMeshesSmall(*document.Get());
  bench::Multiply(*document.Get(), shape.pair, times);
  WriteOptions options;
  options.overwrite = true;
  WriteDocument(*document.Get(), file, options);
}

// Leaves this process as small as it was.
void WriteElsewhere(const Shape& shape, std::size_t times, const std::filesystem::path& file) {
  bench::InOwnProcess([&] {
    Write(shape, times, file);
    return true;
  });
}

class Measurement {
 public:
  Measurement(std::filesystem::path folder, bool isTimed) : folder_(std::move(folder)), isTimed_(isTimed) {}

  [[nodiscard]] Costs Of(const Shape& shape, std::size_t times) const {
    return {CostOf(shape, 1), CostOf(shape, times), CostOf(shape, kLarger * times)};
  }

 private:
  [[nodiscard]] Cost CostOf(const Shape& shape, std::size_t times) const {
    const std::string input = (folder_ / "input.hvxdoc").string();
    const std::string output = (folder_ / "output.hvxdoc").string();
    WriteElsewhere(shape, times, input);
    Cost cost = bench::MeasureTrip(input, output, {.count = true});
    if (!isTimed_) return cost;
    // The least of several: what else the machine does only adds.
    Cost least = bench::MeasureTrip(input, output, {});
    for (int i = 1; i < kRepetitions; ++i) {
      const Cost again = bench::MeasureTrip(input, output, {});
      if (again.Seconds() < least.Seconds()) least = again;
    }
    cost.seconds = least.seconds;
    cost.peakBytes = least.peakBytes;
    return cost;
  }

  std::filesystem::path folder_;
  bool isTimed_;
};

// Measures the shapes, prints those that grow too fast, or all; gives how many these are.
int Report(const std::vector<Shape>& shapes, const Measurement& measurement, std::size_t times, bool isTimed,
           bool all) {
  std::string head;
  for (const Measure& measure : kMeasures) head += fmt::format(" {:>11}", measure.name);
  std::string stages;
  for (const std::string_view stage : bench::kStageNames) stages += fmt::format(" {:>8}", stage);
  fmt::print(
      "what {} cost, as a multiple of what {} cost; and the processor seconds of {}\n{:<70} {} {} {:>8}\n",
      kLarger * times, times, kLarger * times, "shape", head, stages, "peak MB");
  int tooFast = 0;
  for (const Shape& shape : shapes) {
    const Costs costs = measurement.Of(shape, times);
    std::string line;
    bool holds = costs.more.wentThrough;
    for (const Measure& measure : kMeasures) {
      if (!isTimed && !measure.isCount) continue;
      const double growth = costs.Growth(measure);
      holds = holds && growth <= measure.most;
      line += growth == 0.0 ? fmt::format(" {:>11}", "-") : fmt::format(" {:>11.1f}", growth);
    }
    for (const double seconds : costs.more.seconds) line += fmt::format(" {:>8.3f}", seconds);
    line += fmt::format(" {:>8.1f}", costs.more.peakBytes / 1e6);
    if (!holds) ++tooFast;
    if (all || !holds) {
      fmt::print("{:<70} {}{}\n", shape.pair.Name(), line, costs.more.wentThrough ? "" : "  GIVEN UP");
      std::fflush(stdout);
    }
  }
  fmt::print("{} of {} shapes grow faster than their number\n", tooFast, shapes.size());
  return tooFast;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Measures documents that hold much of one thing");
  std::size_t times = 1000;
  bool check = false;
  bool all = false;
  std::string folderForAll;
  std::vector<std::string> chosen;
  app.add_option("SHAPE", chosen, "The shapes, as FATHER/SON; all without it");
  app.add_option("--times", times, "How many there are in the smaller document");
  app.add_flag("--check", check, "Look at counts alone, and end with 1 when one grows too fast");
  app.add_flag("--all", all, "Print every shape");
  app.add_option("--write", folderForAll, "Write the larger documents to this folder instead");
  CLI11_PARSE(app, argc, argv);
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / fmt::format("hvx-shapes-{}", getpid());
  std::filesystem::create_directory(folder);
  int code = 0;
  try {
    std::vector<Shape> shapes = AllShapes();
    std::erase_if(shapes, [&chosen](const Shape& shape) {
      if (!chosen.empty()) return std::ranges::find(chosen, shape.pair.Name()) == chosen.end();
      return std::ranges::find(kKnown, shape.pair.Name(), &Known::shape) != kKnown.end();
    });
    if (chosen.empty()) {
      for (const Known& known : kKnown) fmt::print("left out: {}: {}\n", known.shape, known.why);
    }
    if (!folderForAll.empty()) {
      for (const Shape& shape : shapes) {
        std::string name = shape.pair.Name();
        std::ranges::replace(name, '/', '-');
        Write(shape, kLarger * times, std::filesystem::path(folderForAll) / (name + ".hvxdoc"));
      }
    } else if (Report(shapes, Measurement(folder, !check), times, !check, all) > 0 && check) {
      code = 1;
    }
  } catch (const std::exception& error) {
    fmt::print(stderr, "hvx_shapes: {}\n", error.what());
    code = 1;
  }
  std::filesystem::remove_all(folder);
  return code;
}
