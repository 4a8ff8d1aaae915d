// Meta-objects, and what loading and unloading a library leaves in the registry.

#include <dlfcn.h>
#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <optional>

#include "adapters/FeatureAdapter.h"
#include "base/VLMRegistry.h"
#include "model/LateTypes.h"
#include "modeler/VLMISpecObject.h"
#include "support/TempFolder.h"
#include "support/UpgradeFixture.h"
#include "upgrade/LoadGuard.h"
#include "upgrade/UpgradeLibrary.h"
#include "workbench/HVXIUpgrade.h"

namespace {

using namespace standalone;

TEST(MetaClassTest, AClassIsMadeByTheFirstCallAndFoundByLaterOnes) {
  const VLMLibrary library("Test");
  VLMMetaClass& made = VLMMetaClass::Retrieve(library, "RegTestClass", VLMExtensionKind::kDataExtension,
                                              &VLMMetaClass::BaseUnknown(), "RegTestOneLT", "Framework");
  EXPECT_EQ(&VLMMetaClass::Retrieve(library, "RegTestClass", VLMExtensionKind::kImplementation, nullptr,
                                    "RegTestOtherLT", "Else"),
            &made);
  EXPECT_EQ(made.Kind(), VLMExtensionKind::kDataExtension);
  EXPECT_EQ(made.Framework(), "Framework");
  EXPECT_EQ(VLMMetaClass::Find("RegTestOtherLT"), nullptr);

  VLMMetaClass& another = VLMMetaClass::LateType("RegTestTwoLT");
  made.SetExtensionOf(another);
  made.SetExtensionOf(another);
  EXPECT_THAT(made.ExtendedLateTypes(), testing::ElementsAre(VLMMetaClass::Find("RegTestOneLT"), &another));
  EXPECT_THAT(another.Extensions(), testing::ElementsAre(&made));
}

TEST(MetaClassTest, IsAKindOfFollowsTheBases) {
  const VLMMetaClass& step = LateType::Of("HVXGeneralStaticStepLT").MetaClass();
  for (const char* const kind :
       {"HVXGeneralStaticStepLT", "HVXStep", "VLMSamAnalysisSet", "VLMBaseUnknown"}) {
    EXPECT_TRUE(step.IsAKindOf(kind)) << kind;
  }
  EXPECT_FALSE(step.IsAKindOf("VLMSamAnalysisEntity"));
  EXPECT_FALSE(step.IsAKindOf(""));
  EXPECT_TRUE(LateType::Of("NeverHeardOfLT").MetaClass().IsAKindOf("VLMSpecObject"));
}

TEST(MetaClassTest, ALateTypeHoldsOneEntryPerInterfaceAndItsOwnBeforeItsBases) {
  constexpr VLMInterfaceId kId("RegTestInterface");
  const VLMCreateTIE first = [](VLMBaseUnknown&) -> void* { return nullptr; };
  const VLMCreateTIE second = [](VLMBaseUnknown& extended) -> void* { return &extended; };
  VLMMetaClass& base = VLMMetaClass::LateType("RegTestBase");
  VLMMetaClass& derived = VLMMetaClass::LateType("RegTestDerived", &base);
  {
    VLMLibrary library("Test");
    EXPECT_EQ(library.DeclareTie(base, kId, first), S_OK);
    EXPECT_EQ(library.DeclareTie(base, kId, second), E_FAIL);
    EXPECT_EQ(derived.FindTie(kId), first);
    EXPECT_EQ(library.DeclareTie(derived, kId, second), S_OK);
    EXPECT_EQ(derived.FindTie(kId), second);
    EXPECT_EQ(base.FindTie(kId), first);
  }
  EXPECT_EQ(derived.FindTie(kId), nullptr);
}

TEST(MetaClassTest, AnotherLibrarysEntryCountsOnceTheFirstOneIsGoneOrItIsPreferred) {
  constexpr VLMInterfaceId kId("RegTestInterface");
  const VLMCreateTIE first = [](VLMBaseUnknown&) -> void* { return nullptr; };
  const VLMCreateTIE second = [](VLMBaseUnknown& extended) -> void* { return &extended; };
  VLMMetaClass& lateType = VLMMetaClass::LateType("RegTestSharedLT");
  VLMLibrary other("Other");
  std::optional<VLMLibrary> library(std::in_place, "Test");
  EXPECT_EQ(library->DeclareTie(lateType, kId, first), S_OK);
  EXPECT_EQ(other.DeclareTie(lateType, kId, second), E_FAIL);
  EXPECT_EQ(lateType.FindTie(kId), first);
  VLMRegistry::Instance().Prefer(lateType, kId, second);
  EXPECT_EQ(lateType.FindTie(kId), second);
  VLMRegistry::Instance().Prefer(lateType, kId, first);
  EXPECT_EQ(lateType.FindTie(kId), first);
  library.reset();
  EXPECT_EQ(lateType.FindTie(kId), second);
}

TEST(LibraryTest, ComponentsAreMadeByName) {
  {
    VLMLibrary library("Test");
    const VLMCreateComponent refuse = [](const VLMInterfaceId&, void** out) -> HRESULT {
      *out = nullptr;
      return E_NOINTERFACE;
    };
    EXPECT_EQ(library.DeclareComponent("RegTestComponent", refuse), S_OK);
    EXPECT_EQ(library.DeclareComponent("RegTestComponent", refuse), E_FAIL);
    VLMISpecObject_var component;
    EXPECT_EQ(VLMInstantiateComponent("RegTestComponent", component), E_NOINTERFACE);
    EXPECT_TRUE(component == NULL_var);
  }
  int anything = 0;
  void* out = &anything;
  EXPECT_EQ(VLMInstantiateComponent("RegTestComponent", VLMISpecObject::kId, &out), E_FAIL);
  EXPECT_EQ(out, nullptr);
}

// Loads a library, has it make an extension on `lateType` twice, unloads it; tells what is wrong, or nothing.
std::string LoadAndUnload(const char* file, const char* lateType, const char* upgradeClass) {
  const VLMRegistry::Counts before = VLMRegistry::Instance().Count();
  {
    const UpgradeLibrary library(file);
    const VLMRegistry::Counts loaded = VLMRegistry::Instance().Count();
    if (loaded.ties <= before.ties) return "no ties were declared";
    if (loaded.classes != before.classes) return "a class was registered before it was needed";
    const DocumentPtr document = Document::Create("test");
    Feature& feature = *document->Create(LateType::Of(lateType), "", nullptr, nullptr);
    for (int time = 0; time < 2; ++time) {
      if (HandleOn<HVXIUpgrade>(&feature) == NULL_var) return "the late type has no extension";
      if (VLMRegistry::Instance().Count().classes != before.classes + 1)
        return "not one class was registered";
    }
    if (VLMMetaClass::Find(upgradeClass) == nullptr) return "the class is not found by its name";
  }
  if (dlopen(file, RTLD_NOW | RTLD_NOLOAD) != nullptr) return "the library stayed in memory";
  if (VLMMetaClass::Find(upgradeClass) != nullptr) return "the class stayed registered";
  const DocumentPtr document = Document::Create("test");
  Feature& feature = *document->Create(LateType::Of(lateType), "", nullptr, nullptr);
  if (Offers(feature, HVXIUpgrade::kId)) return "the extension stayed registered";
  if (!LateType::Of(lateType).MetaClass().Extensions().empty())
    return "the late type still names its extension";
  return VLMRegistry::Instance().Count() == before ? "" : "something stayed registered";
}

TEST(LibraryTest, UnloadingLeavesNothingRegistered) {
  for (int time = 0; time < 2; ++time)
    EXPECT_EQ(LoadAndUnload(testing_support::TestLibraryFile(), "ProbeStopTooLT", "ProbeStop"), "");
}

TEST(LibraryDeathTest, UnloadingTheUpgradeLibraryLeavesNothingRegistered) {
  GTEST_FLAG_SET(death_test_style,
                 "threadsafe");  // in a process of its own, where no other test has it loaded
  EXPECT_EXIT(
      {
        for (int time = 0; time < 2; ++time) {
          const std::string wrong =
              LoadAndUnload(testing_support::LibraryFile(), "HVXJobContainerLT", "HVXEJobUpgrade");
          if (!wrong.empty()) {
            std::fprintf(stderr, "%s\n", wrong.c_str());
            std::exit(1);
          }
        }
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
}

// A program that crashes must find its own handlers, also while another thread still loads something.
TEST(LibraryTest, LoadingLeavesTheHandlersOfTheProgramAsTheyWere) {
  const auto former = std::signal(SIGFPE, SIG_IGN);
  const auto formerTerminate = std::set_terminate(&std::abort);
  stack_t before{};
  ASSERT_EQ(sigaltstack(nullptr, &before), 0);
  const std::filesystem::path file = "other.so";
  {
    const LoadGuard other(file, LoadGuard::Work::kLoading);
    const UpgradeLibrary library(testing_support::TestLibraryFile());
    EXPECT_NE(std::get_terminate(), &std::abort);
  }
  EXPECT_EQ(std::signal(SIGFPE, former), SIG_IGN);
  EXPECT_EQ(std::set_terminate(formerTerminate), &std::abort);
  stack_t after{};
  ASSERT_EQ(sigaltstack(nullptr, &after), 0);
  EXPECT_EQ(after.ss_flags, before.ss_flags);
}

TEST(LibraryTest, WhatIsNoUpgradeLibraryIsRefusedByName) {
  const auto messageFor = [](const std::string& file) -> std::string {
    try {
      const UpgradeLibrary library(file);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_THAT(messageFor("/nowhere/lib.so"),
              testing::StartsWith("/nowhere/lib.so: the upgrade library cannot be"));
  EXPECT_THAT(messageFor(HVX_SOURCE_DIR "/CMakeLists.txt"), testing::HasSubstr("cannot be loaded"));
  EXPECT_THAT(
      messageFor(HVX_OLDER_LAYOUT_LIBRARY),
      testing::HasSubstr("was built for an older version of this program (interface 3; this program has "
                         "4). Rebuild it"));
  EXPECT_THAT(
      messageFor(HVX_NEWER_LAYOUT_LIBRARY),
      testing::HasSubstr("was built for a newer version of this program (interface 9; this program has 4"));
  EXPECT_THAT(messageFor(HVX_OTHER_SIZES_LIBRARY),
              testing::HasSubstr("but structures of other sizes. Rebuild"));
  EXPECT_THAT(messageFor("libm.so.6"),
              testing::HasSubstr("cannot be loaded"));  // a path, not a name to search

  // A full disk leaves such files. Mapping one would end the program by a signal.
  const testing_support::TempFolder folder;
  const std::filesystem::path cutOff = folder / "cut.so";
  std::filesystem::copy_file(HVX_OLDER_LAYOUT_LIBRARY, cutOff);
  std::filesystem::resize_file(cutOff, std::filesystem::file_size(cutOff) / 4);
  EXPECT_THAT(messageFor(cutOff.string()), testing::HasSubstr("the file is cut off"));
}

}  // namespace
