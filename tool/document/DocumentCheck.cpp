#include "document/DocumentCheck.h"

#include <algorithm>
#include <iterator>

#include "document/Reading.h"
#include "file/DocumentReader.h"
#include "upgrade/WithoutRules.h"

namespace tool {

CheckedDocument CheckDocument(const std::string& file, const standalone::VersionManager& manager,
                              bool withProgress) {
  CheckedDocument checked{.file = file,
                          .document = withProgress ? ReadWithProgress(file) : standalone::ReadDocument(file)};
  const standalone::Document& document = *checked.document.Get();
  checked.unknown = manager.Unknown(document);
  checked.isRefused = manager.Refuses(document);
  if (checked.isRefused) return checked;
  checked.findings = standalone::CheckConformity(*checked.document.Get());
  std::ranges::move(standalone::PendingWithoutRules(*checked.document.Get(), manager),
                    std::back_inserter(checked.findings));
  return checked;
}

}  // namespace tool
