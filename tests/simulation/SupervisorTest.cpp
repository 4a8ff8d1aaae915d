// The supervisor under all that can happen to it, by seeds: HVX_SEED=N repeats one.

#include <gtest/gtest.h>

#include <cstdlib>

#include "simulation/SimulatedOutside.h"

namespace simulation {
namespace {

constexpr unsigned kSeeds = 4000;

struct Archive {
  std::vector<tool::Load> loads;
  tool::Supervisor::Settings settings;
};

Archive ArchiveOf(unsigned seed) {
  std::minstd_rand random(seed * 7 + 1);
  Archive archive;
  archive.loads.resize(random() % 40);
  for (tool::Load& load : archive.loads) {
    load.memory = 1 + random() % (random() % 8 == 0 ? 500 : 50);
    load.timeLimit = std::chrono::seconds(1 + random() % 5);
    if (random() % 4 == 0) load.apart = static_cast<std::uint32_t>(1 + random() % 3);
  }
  archive.settings.workers = 1 + random() % 5;
  if (random() % 2 == 0) archive.settings.memory = 20 + random() % 200;
  return archive;
}

// What a seed makes go wrong: nothing, one thing, or all.
Troubles TroublesOf(unsigned seed) {
  Troubles troubles;
  int* const all[] = {&troubles.crash,    &troubles.hang,  &troubles.deaf,      &troubles.noStart,
                      &troubles.fullDisk, &troubles.grown, &troubles.interrupt, &troubles.terminate};
  constexpr int kSeldom = 60;
  constexpr int kMostly = 700;
  const unsigned which = seed % 10;
  for (unsigned i = 0; i < std::size(all); ++i) {
    const bool concernsRun = i >= 6;
    if (which == 9 || which == i) *all[i] = concernsRun ? kMostly : kSeldom;
  }
  if (which == 2) troubles.deaf = troubles.interrupt = kMostly;
  if (which == 3) troubles.noStart = kMostly;
  return troubles;
}

tool::RunEnd RunOnce(unsigned seed, const Troubles& troubles, const Archive& archive, Disk& disk) {
  std::vector<std::size_t> left;
  for (std::size_t i = 0; i < archive.loads.size(); ++i) {
    if (disk.recorded[i] == 0) left.push_back(i);
  }
  SimulatedOutside outside(seed, troubles, archive.loads, archive.settings, disk);
  tool::Supervisor supervisor(outside, archive.loads, archive.settings);
  const tool::RunEnd end = supervisor.Run(left);
  outside.CheckEnd(end, left);
  for (const std::string& breach : outside.Breaches()) ADD_FAILURE() << breach;
  return end;
}

TEST(SupervisorTest, EachDocumentIsDoneOnceWhateverHappens) {
  const char* const only = std::getenv("HVX_SEED");
  const unsigned first = only == nullptr ? 1 : static_cast<unsigned>(std::atoi(only));
  const unsigned last = only == nullptr ? kSeeds : first;
  std::map<tool::RunEnd, int> ends;
  for (unsigned seed = first; seed <= last && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("HVX_SEED=" + std::to_string(seed));
    const Archive archive = ArchiveOf(seed);
    Disk disk;
    // Stopped by this and that, the same command goes on; in the end nothing is in its way.
    for (unsigned run = 0; run < 3; ++run) {
      const tool::RunEnd end = RunOnce(seed * 31 + run, TroublesOf(seed), archive, disk);
      ++ends[end];
      if (end == tool::RunEnd::kDone) break;
    }
    EXPECT_EQ(RunOnce(seed, {}, archive, disk), tool::RunEnd::kDone);
  }
  if (only != nullptr) return;
  EXPECT_EQ(ends.size(), 4U) << "some end never came, so nothing is known of it";
}

// The same news, the same run.
TEST(SupervisorTest, ASeedRepeatsExactly) {
  for (unsigned seed = 9; seed < 400; seed += 10) {
    Disk disks[2];
    for (Disk& disk : disks) static_cast<void>(RunOnce(seed, TroublesOf(seed), ArchiveOf(seed), disk));
    EXPECT_EQ(disks[0].placed, disks[1].placed);
    EXPECT_EQ(disks[0].recorded, disks[1].recorded);
  }
}

}  // namespace
}  // namespace simulation
