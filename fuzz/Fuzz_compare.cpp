// Checking a document, and comparing it with what its upgrade makes of it.

#include "DocumentMutator.h"
#include "Harness.h"
#include "check/Conformity.h"
#include "compare/DocumentDifference.h"
#include "compare/FeatureDifference.h"
#include "sheet/Comparison.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  return fuzzing::MutateDocument(data, size, maxSize, seed);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace standalone;
  const DocumentPtr before = fuzzing::DocumentOf(data, size);
  if (before.Get() == nullptr) return 0;
  for (const Finding& finding : CheckConformity(*before.Get())) {
    fuzzing::Require(!finding.Explanation().empty() && !finding.NextStep().empty(),
                     "a finding has its words");
  }
  const DocumentPtr same = fuzzing::DocumentOf(data, size);
  fuzzing::Require(Compare(*before.Get(), *same.Get()).IsEmpty(), "a document holds the same as itself");

  const sheet::Sheet saidBefore = sheet::ReadSheet(*before.Get());
  const sheet::Sheet saidOfSame = sheet::ReadSheet(*same.Get());
  fuzzing::Require(sheet::Compare(saidBefore, saidOfSame, {}).differences.empty(),
                   "a document says the same as itself");

  const DocumentPtr after =
      fuzzing::DocumentOf(fuzzing::Mutated({reinterpret_cast<const char*>(data), size}, 7));
  if (after.Get() == nullptr) return 0;
  const sheet::Sheet saidAfter = sheet::ReadSheet(*after.Get());
  fuzzing::Require(
      sheet::Compare(saidBefore, saidAfter, {}).equal == sheet::Compare(saidAfter, saidBefore, {}).equal,
      "as much is the same there as back");
  const DocumentDifference there = Compare(*before.Get(), *after.Get());
  const DocumentDifference back = Compare(*after.Get(), *before.Get());
  fuzzing::Require(there.IsEmpty() == back.IsEmpty() && there.changed.size() == back.changed.size() &&
                       there.created.size() == back.removed.size(),
                   "what differs there differs back");
  for (const auto& [old, now] : there.changed)
    fuzzing::Require(!Differences(old, now).empty(), "what is told to differ differs in something");
  return 0;
}
