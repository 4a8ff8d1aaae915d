#include <gmock/gmock.h>

#include <sstream>

#include "base/VLMMsgCatalog.h"
#include "session/FeatureCatalogs.h"
#include "session/Messages.h"
#include "support/GermanMessages.h"
#include "support/TempFolder.h"

namespace {

using standalone::Document;
using standalone::DocumentPtr;
using standalone::FeatureCatalogs;
using standalone::Messages;

VLMUnicodeString Text(const char* catalog, const char* key) {
  return VLMMsgCatalog::BuildMessage(catalog, key, nullptr, 0, "default");
}

TEST(MessagesTest, ATextIsThatOfTheLanguageOrTheDefault) {
  const testing_support::GermanMessages german;
  EXPECT_EQ(Text("HVXVersionManager", "Jobs"), "Rechenaufträge");
  EXPECT_EQ(Text("HVXVersionManager", "No.Such.Key"), "default");
  EXPECT_EQ(Text("HVXVersionManager", "jobs"), "default");
  EXPECT_EQ(Text("NoSuchCatalog", "Jobs"), "default");
}

TEST(MessagesTest, BothLanguagesHaveTheSameCatalogsAndKeys) {
  const std::filesystem::path folder = HVX_SOURCE_DIR "/standalone/messages";
  EXPECT_EQ(Messages::LanguagesOf(folder), (std::vector<std::string>{"de", "en"}));
  const auto keysOf = [](const std::filesystem::path& file) {
    std::set<std::string> keys;
    std::istringstream lines(testing_support::BytesOf(file));
    for (std::string line; std::getline(lines, line);) {
      if (const std::size_t colon = line.find("\": "); colon != std::string::npos)
        keys.insert(line.substr(0, colon));
    }
    return keys;
  };
  for (const auto& entry : std::filesystem::directory_iterator(folder / "en")) {
    EXPECT_EQ(keysOf(entry.path()), keysOf(folder / "de" / entry.path().filename()))
        << entry.path().filename();
  }
}

TEST(MessagesTest, ParametersStandInForTheirNumbers) {
  const testing_support::GermanMessages restores;
  const testing_support::TempFolder folder;
  std::filesystem::create_directory(folder / "xx");
  static_cast<void>(folder.Put("xx/Catalog.json", R"({"key":"/P2 of /P1, /P1"})"));
  Messages::Use(folder / "", "xx");
  const VLMUnicodeString parameters[] = {"one", "two"};
  EXPECT_EQ(VLMMsgCatalog::BuildMessage("Catalog", "key", parameters, 2, ""), "two of one, one");
  EXPECT_EQ(VLMMsgCatalog::BuildMessage("Catalog", "key", parameters, 1, ""), "/P2 of one, one");
  EXPECT_EQ(VLMMsgCatalog::BuildMessage("Catalog", "key", nullptr, 0, ""), "/P2 of /P1, /P1");
}

TEST(MessagesTest, AMissingLanguageOrABrokenCatalogIsRefusedAndTheTextsStay) {
  const testing_support::GermanMessages german;
  const testing_support::TempFolder folder;
  for (const char* const language : {"aa", "bb"}) std::filesystem::create_directory(folder / language);
  const std::filesystem::path broken = folder.Put("aa/Broken.json", "[1]");
  const std::filesystem::path wrong = folder.Put("bb/Wrong.json", R"({"key":1})");
  const auto refusalOf = [&folder](const char* language) -> std::string {
    try {
      Messages::Use(folder / "", language);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_THAT(refusalOf("cc"), testing::HasSubstr(R"(no messages in language "cc". Choose one of: aa, bb)"));
  EXPECT_THAT(refusalOf("aa"), testing::StartsWith(broken.string() + ": "));
  EXPECT_THAT(refusalOf("bb"), testing::HasSubstr(R"("key" must be a text)"));
  EXPECT_EQ(Text("HVXVersionManager", "Jobs"), "Rechenaufträge");
}

TEST(MessagesTest, CatalogsThatAreNotCompleteAreRefusedWithFileAndRemedy) {
  const std::filesystem::path installed = HVX_SOURCE_DIR "/standalone/messages";
  EXPECT_NO_THROW(Messages::RequireComplete(installed, "de"));
  const testing_support::TempFolder folder;
  const auto refusalOf = [&folder](const char* language) -> std::string {
    try {
      Messages::RequireComplete(folder / "", language);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_THAT(refusalOf("en"), testing::HasSubstr("en: the folder of the messages is missing. Reinstall"));
  std::filesystem::copy(installed, folder / "", std::filesystem::copy_options::recursive);
  EXPECT_EQ(refusalOf("de"), "");
  static_cast<void>(folder.Put("de/HVXAnalysisStep.json", "{}"));
  EXPECT_THAT(refusalOf("de"),
              testing::HasSubstr(
                  R"(de/HVXAnalysisStep.json: "PreSelDefault.Title" is missing in the message catalog)"));
  static_cast<void>(folder.Put("en/HVXHacCatalogNLS.json", R"({"HVXInteractionContainerLT":""})"));
  EXPECT_THAT(refusalOf("en"), testing::HasSubstr(R"("HVXInteractionContainerLT" is missing)"));
  std::filesystem::copy(installed / "en/HVXHacCatalogNLS.json", folder / "en/HVXHacCatalogNLS.json",
                        std::filesystem::copy_options::overwrite_existing);
  std::filesystem::remove(folder / "en/HVXVersionManager.json");
  EXPECT_THAT(refusalOf("en"),
              testing::HasSubstr("en/HVXVersionManager.json: the message catalog is missing"));
}

TEST(FeatureCatalogsTest, WhatUpgradesMakeFeaturesFromMustBeThereAndSound) {
  const std::filesystem::path installed = HVX_SOURCE_DIR "/standalone/catalogs";
  const testing_support::TempFolder folder;
  std::filesystem::copy(installed, folder / "");
  const auto refusal = [&folder]() -> std::string {
    try {
      FeatureCatalogs::Use(folder / "");
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(refusal(), "");
  for (const auto& [text, complaint] : {
           std::pair{"{\"HVXElementAssignmentLT\":{", "cannot be read"},
           std::pair{"{\"HVXElementAssignmentLT\":1}", "must be an object"},
           std::pair{"{\"HVXElementAssignmentLT\":{\"a\":{}}}", "cannot be an attribute"},
           std::pair{"{\"HVXElementAssignmentLT\":{}}", "\"ElementShape\" of \"HVXElementAssignmentLT\""},
           std::pair{"{\"HVXSectionControlsLT\":{}}", "\"HVXElementAssignmentLT\" is missing"},
       }) {
    static_cast<void>(folder.Put("HVXElementPropertiesCatalog.VLMfct", text));
    EXPECT_THAT(refusal(), testing::AllOf(testing::HasSubstr("HVXElementPropertiesCatalog.VLMfct: "),
                                          testing::HasSubstr(complaint), testing::HasSubstr("Reinstall")));
  }
  std::filesystem::remove(folder / "HVXElementPropertiesCatalog.VLMfct");
  EXPECT_THAT(refusal(),
              testing::HasSubstr("HVXElementPropertiesCatalog.VLMfct: the feature catalog is missing"));
  // What was in use before still is.
  const DocumentPtr document = Document::Create("");
  EXPECT_EQ(FeatureCatalogs::Load("HVXElementPropertiesCatalog.VLMfct", *document.Get()), S_OK);
}

}  // namespace
