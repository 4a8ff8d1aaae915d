// Upgrades a document, tells what a person must look at, and notes in each case that it was approved:
//   approve OLD.hvxdoc NEW.hvxdoc

#include <exception>
#include <iostream>

#include "adapters/Attributes.h"
#include "check/Conformity.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "session/InstalledFiles.h"
#include "upgrade/UpgradeLibraries.h"
#include "upgrade/VersionManager.h"

using namespace standalone;

int main(int argc, char** argv) try {
  if (argc != 3) throw std::runtime_error("usage: approve OLD.hvxdoc NEW.hvxdoc");
  InstalledFiles::Use();
  const UpgradeLibraries libraries({InstalledFiles::UpgradeLibraryFile()});
  const VersionManager manager(libraries.Descriptions());

  const DocumentPtr document = ReadDocument(argv[1]);
  const UpgradeRun run = manager.Run(document, manager.Pending(*document.Get()));
  std::cout << run.identifiers.size() << " upgrades, " << run.failures.size() << " failures\n";

  for (const Finding& finding : CheckConformity(*document.Get()))
    std::cout << '#' << finding.feature->id << ": " << finding.Explanation() << ". " << finding.NextStep()
              << '\n';

  const Key approved("Approved");
  for (Feature* feature = document->First(); feature != nullptr; feature = feature->next)
    if (feature->TypeName() == "AnalysisCase") static_cast<void>(WriteAttribute(*feature, approved, true));
  WriteDocument(*document.Get(), argv[2]);
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
