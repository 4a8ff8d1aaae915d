#pragma once

#include "page/PageFile.h"
#include "report/ReportForms.h"
#include "settings/Explanations.h"
#include "upgrade/VersionManager.h"

namespace tool::page {

/// Writes the page of what runs did to documents. `isKept`: the reports stay, for who wants to see what the
/// page leaves out. Throws `standalone::DocumentError` as reading the reports does.
void WriteRunPage(const Reports& reports, bool isKept, const standalone::VersionManager& manager,
                  const Explanations& explanations, const Writer& write);

}  // namespace tool::page
