#include "document/DocumentCheck.h"

#include "document/Reading.h"
#include "file/DocumentReader.h"

namespace tool {

CheckedDocument CheckDocument(const std::string& file, const standalone::VersionManager& manager,
                              bool withProgress) {
  CheckedDocument checked{
      file, withProgress ? ReadWithProgress(file) : standalone::ReadDocument(file), {}, {}};
  checked.unknown = manager.Unknown(*checked.document.Get());
  if (checked.unknown.empty()) checked.findings = standalone::CheckConformity(*checked.document.Get());
  return checked;
}

}  // namespace tool
