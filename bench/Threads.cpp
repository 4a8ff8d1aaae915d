// How much faster several threads upgrade several documents than one does.
//   hvx_threads FILE [DOCUMENTS]

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "file/DocumentReader.h"
#include "session/InstalledFiles.h"
#include "upgrade/UpgradeLibrary.h"
#include "upgrade/VersionManager.h"

namespace {

using namespace standalone;

constexpr int kTries = 5;

// The best of several: other work on the machine only ever takes time.
double Seconds(const VersionManager& manager, const char* file, int documents, std::size_t threads) {
  using Clock = std::chrono::steady_clock;
  double best = 0.0;
  for (int tried = 0; tried < kTries; ++tried) {
    std::atomic<int> left = documents;
    const Clock::time_point start = Clock::now();
    {
      std::vector<std::jthread> workers;
      for (std::size_t i = 0; i < threads; ++i) {
        workers.emplace_back([&] {
          while (left-- > 0) {
            const DocumentPtr document = ReadDocument(file);
            static_cast<void>(manager.Run(document, manager.Pending(*document.Get())));
          }
        });
      }
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    best = tried == 0 ? seconds : std::min(best, seconds);
  }
  return best;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    fmt::print(stderr, "usage: hvx_threads FILE [DOCUMENTS]\n");
    return 2;
  }
  try {
    const int documents = argc > 2 ? std::stoi(argv[2]) : 4;
    InstalledFiles::Use();
    static_cast<void>(ReadHeader(argv[1]));  // what is wrong with the file is told here, not in a thread
    const UpgradeLibrary library(InstalledFiles::UpgradeLibraryFile());
    const VersionManager manager({&library.Description()});
    fmt::print("threads  seconds  times as fast\n");
    const double alone = Seconds(manager, argv[1], documents, 1);
    for (unsigned threads = 1; threads <= std::max(2U, std::thread::hardware_concurrency()); threads *= 2) {
      const double seconds = threads == 1 ? alone : Seconds(manager, argv[1], documents, threads);
      fmt::print("{:7}  {:7.3f}  {:13.2f}\n", threads, seconds, alone / seconds);
    }
    return 0;
  } catch (const std::exception& error) {
    fmt::print(stderr, "hvx_threads: {}\n", error.what());
  }
  return 1;
}
