// Upgrades a document, tells what a person must look at, and notes in each case that it was approved:
//   approve OLD.hvxdoc NEW.hvxdoc

#include <hvxupgrade/Document.h>
#include <hvxupgrade/Findings.h>
#include <hvxupgrade/Reader.h>
#include <hvxupgrade/Upgrade.h>
#include <hvxupgrade/Writer.h>

#include <iostream>

int main(int argc, char** argv) try {
  if (argc != 3) throw std::runtime_error("usage: approve OLD.hvxdoc NEW.hvxdoc");
  hvxupgrade::Document document = hvxupgrade::Read(argv[1]);

  const auto result = hvxupgrade::Upgrader().Upgrade(document);
  std::cout << result.identifiers.size() << " upgrades, " << result.failures.size() << " failures\n";

  for (const hvxupgrade::Finding& finding : hvxupgrade::Check(document))
    std::cout << '#' << finding.feature << ": " << finding.explanation << ". " << finding.nextStep << '\n';

  for (hvxupgrade::Feature each : document.OfType("AnalysisCase")) each.Set("Approved", true);
  hvxupgrade::Write(document, argv[2]);
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
