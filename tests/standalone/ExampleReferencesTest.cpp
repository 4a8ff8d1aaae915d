#include <gmock/gmock.h>

#include "file/DocumentReader.h"
#include "support/References.h"
#include "support/UpgradeFixture.h"

namespace {

using standalone::Feature;

std::size_t CountOf(const standalone::Document& document, std::string_view lateType) {
  std::size_t count = 0;
  for (const Feature* each = document.First(); each != nullptr; each = each->next)
    count += each->TypeName() == lateType ? 1 : 0;
  return count;
}

// Every variant of contact, tie and property stands in this document, with requests on each.
TEST(ExampleReferences, StaySoundWhileContactsAndPropertiesAreConverted) {
  const standalone::DocumentPtr document =
      standalone::ReadDocument(HVX_SOURCE_DIR "/examples/bolted_bracket.hvxdoc");
  ASSERT_THAT(testing_support::BrokenReferences(*document.Get()), testing::IsEmpty());
  ASSERT_GT(CountOf(*document.Get(), "HVXSurfaceToSurfaceContactLT"), 0U);
  const standalone::VersionManager manager({&testing_support::Library()});
  static_cast<void>(manager.Run(document, manager.Pending(*document.Get())));
  EXPECT_EQ(CountOf(*document.Get(), "HVXSurfaceToSurfaceContactLT"), 0U);
  EXPECT_THAT(testing_support::BrokenReferences(*document.Get()), testing::IsEmpty());
}

}  // namespace
