#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Documents.h"
#include "UpgradeTest.h"
#include "adapters/FeatureAdapter.h"
#include "checkpoint/Checkpoint.h"
#include "session/Session.h"
#include "upgrade/UpgradeLibrary.h"
#include "upgrade/VersionManager.h"

namespace testing_support {

/// The file of the library in `tests/plugin`: the one built with the tests, or the one that the environment
/// variable HVX_TEST_LIBRARY names. HVX_LIBRARY names another `LibraryFile`: so `scripts/mutate` runs the
/// tests on changed libraries.
const char* TestLibraryFile();

/// An example of the project with meshes of a few nodes and elements each, which are treated one by one, each
/// like the other.
standalone::DocumentPtr ExampleWithSmallMeshes(std::string_view name);

/// The same with the features numbered anew that bear `firstMade` or a higher id, in document order: what was
/// made in several runs may bear other ids than what was made in one.
std::string LinesNumberedAnew(standalone::Document& document, standalone::FeatureId firstMade);

/// Runs the identifiers, and those that must come along, and gives the document as it is when it is saved and
/// read again.
standalone::DocumentPtr RunAndSave(const standalone::VersionManager& manager,
                                   const standalone::DocumentPtr& document,
                                   std::vector<std::string> identifiers);

}  // namespace testing_support
