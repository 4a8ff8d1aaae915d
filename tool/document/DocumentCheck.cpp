#include "document/DocumentCheck.h"

#include "document/Reading.h"
#include "file/DocumentReader.h"

namespace tool {

CheckedDocument CheckDocument(const std::string& file, const standalone::VersionManager& manager,
                              bool withProgress) {
  CheckedDocument checked{.file = file,
                          .document = withProgress ? ReadWithProgress(file) : standalone::ReadDocument(file)};
  const standalone::Document& document = *checked.document.Get();
  checked.unknown = manager.Unknown(document);
  checked.isRefused = manager.Refuses(document);
  if (!checked.isRefused) checked.findings = standalone::CheckConformity(*checked.document.Get());
  return checked;
}

}  // namespace tool
