// Read, upgrade, verify, write, read again, run again what was left behind, upgrade again.

#include "DocumentMutator.h"
#include "Harness.h"
#include "check/Integrity.h"
#include "check/Losses.h"
#include "sheet/Comparison.h"
#include "upgrade/LeftBehind.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
  return fuzzing::MutateDocument(data, size, maxSize, seed);
}

namespace {

// Which the run takes for the fault of a plug-in.
void RequireNoException(const standalone::UpgradeAborted& aborted) {
  fuzzing::Require(aborted.Problem().find("an exception got out") == std::string::npos,
                   "no exception gets out of a routine");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace standalone;
  const VersionManager& manager = fuzzing::Manager();
  const DocumentPtr document = fuzzing::DocumentOf(data, size);
  if (document.Get() == nullptr || !manager.Unknown(*document.Get()).IsEmpty()) return 0;
  document->LimitCreation(100'000);
  const sheet::Sheet before = sheet::ReadSheet(*document.Get());
  const std::vector<std::string> pending = manager.Pending(*document.Get());
  try {
    static_cast<void>(manager.Run(document, pending));
  } catch (const UpgradeAborted& aborted) {
    RequireNoException(aborted);
    return 0;  // such as a limit; the document is thrown away
  }
  static_cast<void>(FindLosses(*document.Get()));
  static_cast<void>(CheckConformity(*document.Get()));
  document->DropAllDeadLinks();
  const sheet::Sheet after = sheet::ReadSheet(*document.Get(), &before);
  const std::size_t unaccounted = sheet::Compare(before, after, pending).Count(sheet::Meaning::kUnaccounted);
  const sheet::Sheet apart = sheet::ReadSheet(*document.Get());
  fuzzing::Require(sheet::Compare(before, apart, pending).Count(sheet::Meaning::kUnaccounted) == unaccounted,
                   "a sheet that shares facts says the same");
  fuzzing::Require(FindFaults(*document.Get(), 1).empty(), "a result is sound");
  const std::string text = fuzzing::TextOf(*document.Get());
  const DocumentPtr again = fuzzing::DocumentOf(text);
  fuzzing::Require(again.Get() != nullptr, "a result can be read");
  fuzzing::Require(manager.Pending(*again.Get()).empty(), "nothing is pending in a result");
  fuzzing::Require(fuzzing::TextOf(*again.Get()) == text, "a result is written the same again");

  again->LimitCreation(100'000);
  std::string retried;
  for (int round = 0; round < 2; ++round) {
    LeftBehind left(*again.Get());
    try {
      static_cast<void>(manager.RunAgain(again, [&left] { return left.Next(); }, {}));
    } catch (const UpgradeAborted& aborted) {
      RequireNoException(aborted);
      return 0;
    }
    const std::string now = fuzzing::TextOf(*again.Get());
    fuzzing::Require(round == 0 || now == retried, "a second retry changes nothing");
    retried = now;
  }
  return 0;
}
