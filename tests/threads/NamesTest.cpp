// Names and late types that came from documents go with them.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "base/VLMMetaClass.h"
#include "model/Document.h"
#include "support/UpgradeFixture.h"

namespace {

using namespace standalone;

// A document that nobody ever saw the like of: `names` attribute keys, late types and physical types each.
std::string UnheardOf(std::string_view prefix, int names) {
  std::string lines;
  for (int i = 1; i <= names; ++i) {
    fmt::format_to(std::back_inserter(lines),
                   R"({{"id":{0},"type":"{1}Type{0}","physicalType":"{1}Physical{0}",)"
                   R"("attributes":{{"{1}Key{0}":{0}}}}})"
                   "\n",
                   i, prefix);
  }
  return lines;
}

TEST(NamesTest, ThoseOfDocumentsGoWithTheLastThatHoldsThem) {
  const std::size_t before = NameTable::Count();
  DocumentPtr one = testing_support::DocumentOf(UnheardOf("Unheard", 3));
  const DocumentPtr kept = Document::Create("kept");
  // What is set in a document is its own from then on, wherever it came from.
  Feature& feature = *kept->Create(*one->First()->type, "", nullptr, nullptr);
  kept->SetAttribute(feature, NameTable::Find("UnheardKey2"), Value::Integer(2));
  kept->SetPhysicalType(feature, "UnheardPhysical3");
  EXPECT_EQ(NameTable::Count(), before + 9);

  one = NULL_var;

  EXPECT_EQ(NameTable::Count(), before + 3);
  EXPECT_EQ(feature.TypeName(), "UnheardType1");
  EXPECT_EQ(NameTable::Text(feature.attributes[0].key), "UnheardKey2");
  EXPECT_EQ(NameTable::Text(feature.physicalType), "UnheardPhysical3");
  EXPECT_NE(VLMMetaClass::Find("UnheardType1"), nullptr);
  EXPECT_EQ(VLMMetaClass::Find("UnheardType2"), nullptr);
  EXPECT_EQ(NameTable::Find("UnheardKey1"), kNoName);
}

TEST(NamesTest, ThoseThatTheProgramOrALibraryNamesStay) {
  DocumentPtr document = testing_support::DocumentOf(UnheardOf("Stays", 3));
  const LateType& ofProgram = LateType::Of("StaysType1");
  const NameId key = NameTable::Intern("StaysKey1");
  const VLMMetaClass& ofLibrary = VLMMetaClass::LateType("StaysType2");

  document = NULL_var;

  EXPECT_EQ(ofProgram.Name(), "StaysType1");
  EXPECT_EQ(NameTable::Text(key), "StaysKey1");
  EXPECT_EQ(&LateType::Of("StaysType1"), &ofProgram);
  EXPECT_EQ(NameTable::Find("StaysKey1"), key);
  EXPECT_EQ(VLMMetaClass::Find("StaysType2"), &ofLibrary);
  EXPECT_EQ(VLMMetaClass::Find("StaysType3"), nullptr);
  // The late type is made anew, with the meta-object of the library.
  document = testing_support::DocumentOf(UnheardOf("Stays", 2));
  EXPECT_EQ(&document->Find(2)->type->MetaClass(), &ofLibrary);
}

TEST(NamesTest, ThousandsOfDocumentsOneAfterTheOtherNeedNoMoreNumbersThanOne) {
  NameId highest = 0;
  const DocumentPtr open = Document::Create("open all the time");
  for (int i = 0; i < 3000; ++i) {
    const DocumentPtr document = Document::Create("one of many");
    for (int each = 0; each < 10; ++each) {
      const std::string name = fmt::format("Many{}of{}", each, i);
      Feature& feature = *document->Create(document->LateTypeFor(name), "", nullptr, nullptr);
      document->SetAttribute(feature, document->NameFor(name + "Key"), Value::Integer(i));
      const NameId id = std::max(feature.type->Id(), feature.attributes[0].key);
      if (i == 0) highest = std::max(highest, id);
      ASSERT_LE(id, highest) << "document " << i;
      ASSERT_EQ(feature.TypeName(), name);
    }
  }
}

}  // namespace
